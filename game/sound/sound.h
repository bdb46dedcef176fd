#pragma once
// The game's sounds, by the logical names of a resource.

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "isound.h"
#include "sound/mixer.h"

/// `resource\txt_res\sounds.ini` holds one section `SoundMap { "name" "file", ... }`; a file is a WAV, as
/// given or below `resource\`. Without OpenDevice the object is silent but answers all the same.
class CSound : public ISound
{
  public:
    static constexpr std::size_t MAX_FILE_BYTES = std::size_t{64} << 20;
    static constexpr std::size_t MAX_SOUND_BYTES = std::size_t{256} << 20; ///< in the mixer's form
    static constexpr int MIN_RATE = 4000;                                  ///< frames a second of a file
    static constexpr int MAX_RATE = 192000;

    CSound() = default;
    ~CSound() override;
    CSound(const CSound&) = delete;
    CSound& operator=(const CSound&) = delete;

    /// Errors go to the debug output with file and line; the names read up to there stay.
    void LoadNames(const char* path);
    /// False, and the object stays silent, when there is no device.
    bool OpenDevice();
    void SetLevels(bool muteEffects, float effects, bool muteMusic, float music);

    void Play(const char* name, int channel, int flags) override;
    void Stop(int fade) override;

    /// Replaces the music that plays. False when the file is missing or can't be played. `position` is what
    /// StopMusic gave, 0 the beginning.
    bool PlayMusic(const std::string& file, bool loop, std::size_t position = 0);
    /// Where the music stood; 0 when there was none.
    std::size_t StopMusic(int fade);
    /// Whether music that was started without `loop` has come to its end. Never without a device.
    bool HasMusicEnded();

    /// Called with the name of every sound that is asked for.
    std::function<void(const std::string& name)> onPlay;

  private:
    static void Callback(void* self, std::uint8_t* out, int bytes);
    std::shared_ptr<const SoundSamples> Load(const std::string& file);
    /// False when there is no such file or it can't be played. Without a device the file is only looked for.
    bool Start(const std::string& file, CMixer::Group group, bool loop, std::size_t position = 0);

    std::map<std::string, std::string> m_Names; // logical name in lower case, file
    std::map<std::string, std::shared_ptr<const SoundSamples>> m_Loaded;
    CMixer m_Mixer;              // under the device's lock while one is open
    std::uint32_t m_nDevice = 0; // 0: none
    bool m_bMusic = false;
};
