#pragma once
// The host's clips, drawn by the 2-D layer.

#include <map>
#include <memory>
#include <string>

#include "ivideo.h"
#include "platform/types.h"
#include "video/clip.h"
#include "video/frame_pump.h"

class IRender2D;
class ISound;

/// A clip's file is looked up as given, then below `resource\`. Clips in the background advance with Update,
/// animations with TickAnimation, and an animation goes round for ever.
///
/// A clip of a dialog (VIDEO_IN_DIALOG) advances only when IsVideoRunning was asked in the frame before, and
/// is drawn when that is asked. Its box asks in every frame in which it is visible and takes input, so that
/// the clip waits, and paints over nothing, while a message box is up or a shade runs.
class CVideo : public IVideo
{
  public:
    static constexpr std::size_t MAX_OPEN = 64;

    /// All must outlive the object.
    CVideo(IRender2D& render, ISound& sound, IFramePump& pump);
    ~CVideo() override;

    /// Advances and draws the clips that play in the background. Called once a frame, before the entities.
    void Update(int elapsed);

    int OpenVideo(const char* file, int flags) override;
    void SetVideoTarget(int video, int surface, const RECT* rect) override;
    void PlayVideo(int video, int background) override;
    bool IsVideoRunning(int video) override;
    void StopVideo(int video) override;
    void RewindVideo(int video, int position) override;
    void CloseVideo(int video) override;
    int OpenAnimation(const char* clip) override;
    void SetAnimationTarget(int animation, int surface, const RECT* rect) override;
    void StartAnimation(int animation) override;
    void TickAnimation(int animation, int elapsed) override;
    void CloseAnimation(int animation) override;

  private:
    struct Player {
        CClip clip;
        std::vector<int> surfaces; // of the stills; -1 for one that can't be loaded
        int frame = -1;            // the surface that two stills are blended on
        int target = -1;
        RECT rect;
        int time = 0; // milliseconds
        bool loop = false;
        bool running = false;
        bool inDialog = false;
        bool wanted = false; // asked about since the last Update
        bool due = false;    // has advanced since it was drawn last
    };

    Player* Find(int handle);
    int Open(const char* file, bool loop, bool inDialog);
    void Close(int handle);
    void SetTarget(int handle, int surface, const RECT* rect);
    void Advance(Player& player, int elapsed);
    void PlaySounds(const Player& player, int from, int to);
    void Draw(const Player& player);
    bool Blend(const Player& player, const ClipMoment& moment);

    IRender2D& m_Render;
    ISound& m_Sound;
    IFramePump& m_Pump;
    std::map<int, Player> m_Players;
    int m_nNext = 1;
};
