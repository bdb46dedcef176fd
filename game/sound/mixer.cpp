#include "sound/mixer.h"

#include <algorithm>
#include <utility>

namespace
{

constexpr int GAIN_ONE = 256;
constexpr int MILLISECONDS = 1000;

} // namespace

void CMixer::Start(std::shared_ptr<const SoundSamples> samples, Group group, bool loop, std::size_t position)
{
    if (samples == nullptr || samples->size() < CHANNELS)
        return;
    if (m_Voices.size() >= MAX_VOICES) {
        const auto oldest = std::ranges::find(m_Voices, group, &Voice::group);
        m_Voices.erase(oldest == m_Voices.end() ? m_Voices.begin() : oldest);
    }
    position = position < samples->size() ? position - position % CHANNELS : 0;
    m_Voices.push_back({std::move(samples), group, loop, position, 0, 0, false});
}

void CMixer::Stop(Group group, int fade)
{
    if (fade <= 0) {
        std::erase_if(m_Voices, [group](const Voice& voice) { return voice.group == group; });
        return;
    }
    const std::size_t frames = static_cast<std::size_t>(fade) * RATE / MILLISECONDS + 1;
    for (Voice& voice : m_Voices) {
        if (voice.group != group || voice.fading)
            continue;
        voice.fading = true;
        voice.fadeFrames = frames;
        voice.fadeLeft = frames;
    }
}

void CMixer::SetLevel(Group group, float level)
{
    m_fLevels[group] = std::clamp(level, 0.0F, 1.0F);
}

bool CMixer::IsPlaying(Group group) const
{
    return std::ranges::any_of(m_Voices,
                               [group](const Voice& voice) { return voice.group == group && !voice.fading; });
}

std::size_t CMixer::Position(Group group) const
{
    for (auto voice = m_Voices.rbegin(); voice != m_Voices.rend(); ++voice) {
        if (voice->group == group && !voice->fading)
            return voice->position;
    }
    return 0;
}

bool CMixer::MixVoice(Voice& voice, std::vector<std::int32_t>& sum) const
{
    const int level = static_cast<int>(m_fLevels[voice.group] * GAIN_ONE);
    const std::size_t whole = voice.samples->size() - voice.samples->size() % CHANNELS;
    for (std::size_t i = 0; i < sum.size(); i += CHANNELS) {
        if (voice.position >= whole) {
            if (!voice.loop)
                return false;
            voice.position = 0;
        }
        int gain = level;
        if (voice.fading) {
            if (voice.fadeLeft == 0)
                return false;
            gain = static_cast<int>(static_cast<std::size_t>(level) * voice.fadeLeft / voice.fadeFrames);
            --voice.fadeLeft;
        }
        for (std::size_t channel = 0; channel < CHANNELS; ++channel)
            sum[i + channel] += (*voice.samples)[voice.position++] * gain / GAIN_ONE;
    }
    return voice.loop || voice.position < whole;
}

void CMixer::Mix(std::int16_t* out, std::size_t frames)
{
    m_Sum.assign(frames * CHANNELS, 0);
    std::erase_if(m_Voices, [this](Voice& voice) { return !MixVoice(voice, m_Sum); });
    std::ranges::transform(m_Sum, out, [](std::int32_t value) {
        return static_cast<std::int16_t>(std::clamp(value, INT16_MIN, INT16_MAX));
    });
}
