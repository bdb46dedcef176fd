#pragma once
// Background music from lists of tracks.

#include <string>
#include <vector>

#include "ilogic.h"

class CSound;

/// `resource\txt_res\playlist.ini` holds sections `PlayList { "file", "file" }`, one for each list in order;
/// a file is a WAV. A list of one track repeats it, a longer one goes round; a track that can't be played is
/// left out. Without a sound device the list still knows which track would play.
class CPlayList : public IPlayList
{
  public:
    static constexpr std::size_t MAX_TRACKS = 256;

    /// The sound object must outlive the list.
    explicit CPlayList(CSound& sound) : m_Sound(sound) {}
    /// Errors go to the debug output with file and line; the tracks read up to there stay.
    void Load(const char* path);
    /// Goes on to the next track when one has ended. Called once a frame.
    void Update();

    void Play(int track) override;
    void Stop(int fade) override;
    void Skip() override;
    void Select(int list, int on) override;
    int GetCurrent() override { return m_nCurrent; }

  private:
    const std::vector<std::string>* Tracks() const;
    /// The track from `position` on, or, when it can't be played, the first behind it that can.
    void Start(int track, std::size_t position = 0);

    CSound& m_Sound;
    std::vector<std::vector<std::string>> m_Lists;
    int m_nList = -1; ///< the list switched on, -1 for none
    int m_nCurrent = -1;
    int m_nStopped = -1;          ///< what Play(-1) goes on with
    std::size_t m_nStoppedAt = 0; ///< and where
};
