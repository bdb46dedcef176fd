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

    /// Replaces the music that plays.
    void PlayMusic(const std::string& file, bool loop);
    void StopMusic(int fade);
    /// Whether music that was started without `loop` has come to its end. Never without a device.
    bool HasMusicEnded();

    /// Called with the name of every sound that is asked for.
    std::function<void(const std::string& name)> onPlay;

  private:
    static void Callback(void* self, std::uint8_t* out, int bytes);
    std::shared_ptr<const SoundSamples> Load(const std::string& file);
    /// False when nothing sounds: no device, no such file, or one that can't be read.
    bool Start(const std::string& file, CMixer::Group group, bool loop);

    std::map<std::string, std::string> m_Names; // logical name in lower case, file
    std::map<std::string, std::shared_ptr<const SoundSamples>> m_Loaded;
    CMixer m_Mixer;              // under the device's lock while one is open
    std::uint32_t m_nDevice = 0; // 0: none
    bool m_bMusic = false;
};
