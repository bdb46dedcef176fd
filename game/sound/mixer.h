#pragma once
// Adds up the sounds that play, without knowing where they are heard.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

/// Interleaved stereo, 44100 frames a second.
using SoundSamples = std::vector<std::int16_t>;

/// Not synchronised: the owner keeps Mix apart from the other calls.
class CMixer
{
  public:
    static constexpr int RATE = 44100;
    static constexpr int CHANNELS = 2;
    static constexpr std::size_t MAX_VOICES = 32;
    enum Group { GROUP_EFFECTS, GROUP_MUSIC, GROUP_COUNT };

    /// When all voices are busy, the oldest of the group makes room. `position` in samples, 0 the beginning,
    /// is what Position told.
    void Start(std::shared_ptr<const SoundSamples> samples, Group group, bool loop, std::size_t position = 0);
    /// Fades the group's voices out within `fade` milliseconds, 0 for at once.
    void Stop(Group group, int fade);
    /// 0 silent, 1 as recorded; other values are held to that range.
    void SetLevel(Group group, float level);
    /// Whether a voice of the group sounds that isn't fading out.
    bool IsPlaying(Group group) const;
    /// Where the group's latest voice that isn't fading out stands; 0 when there is none.
    std::size_t Position(Group group) const;
    /// Writes `frames` frames; sums beyond 16 bits are clipped.
    void Mix(std::int16_t* out, std::size_t frames);

  private:
    struct Voice {
        std::shared_ptr<const SoundSamples> samples;
        Group group = GROUP_EFFECTS;
        bool loop = false;
        std::size_t position = 0; // in samples
        std::size_t fadeFrames = 0;
        std::size_t fadeLeft = 0;
        bool fading = false;
    };
    /// False when the voice has ended.
    bool MixVoice(Voice& voice, std::vector<std::int32_t>& sum) const;

    std::vector<Voice> m_Voices; // the oldest first
    float m_fLevels[GROUP_COUNT] = {1.0F, 1.0F};
    std::vector<std::int32_t> m_Sum;
};
