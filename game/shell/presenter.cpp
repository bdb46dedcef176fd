#include "shell/presenter.h"

#include <algorithm>
#include <array>
#include <utility>

namespace
{

constexpr int GAIN_ONE = 256;
constexpr float MAX_BRIGHTNESS = 2.0F;
constexpr unsigned RED_SHIFT = 11;
constexpr unsigned GREEN_SHIFT = 6; // of the upper five of green's six bits
constexpr unsigned FIVE_BITS = 0x1f;

using Levels = std::array<std::uint16_t, FIVE_BITS + 1>;

Levels ScaledLevels(int gain)
{
    Levels levels;
    for (unsigned i = 0; i <= FIVE_BITS; ++i)
        levels[i] =
            static_cast<std::uint16_t>(std::min(i * static_cast<unsigned>(gain) / GAIN_ONE, FIVE_BITS));
    return levels;
}

} // namespace

void CPresenter::SetFade(int owner, float level)
{
    m_Fades[owner] = std::clamp(level, 0.0F, 1.0F);
}

void CPresenter::SetBrightness(float brightness)
{
    m_fBrightness = std::clamp(brightness, 0.0F, MAX_BRIGHTNESS);
}

int CPresenter::Gain() const
{
    float fade = 0.0F;
    for (const auto& [owner, level] : m_Fades)
        fade = std::max(fade, level);
    return static_cast<int>(m_fBrightness * (1.0F - fade) * GAIN_ONE);
}

bool CPresenter::TakeChanged()
{
    const int gain = Gain();
    return std::exchange(m_nTakenGain, gain) != gain || !m_Overlays.empty();
}

const std::uint16_t* CPresenter::Compose(const std::uint16_t* display, int width, int height)
{
    const int gain = Gain();
    if (gain == GAIN_ONE && m_Overlays.empty())
        return display;
    m_Picture.assign(display, display + static_cast<std::ptrdiff_t>(width) * height);
    for (const auto& [owner, overlay] : m_Overlays)
        overlay->DrawOver({m_Picture.data(), width, height}, display);
    if (gain == GAIN_ONE)
        return m_Picture.data();
    // All channels have five bits here, so that a grey stays one.
    const Levels levels = ScaledLevels(gain);
    std::transform(m_Picture.begin(), m_Picture.end(), m_Picture.begin(), [&levels](std::uint16_t pixel) {
        const unsigned red = levels[pixel >> RED_SHIFT];
        const unsigned green = levels[(pixel >> GREEN_SHIFT) & FIVE_BITS];
        const unsigned blue = levels[pixel & FIVE_BITS];
        return static_cast<std::uint16_t>(red << RED_SHIFT | green << GREEN_SHIFT |
                                          (green >> 4) << (GREEN_SHIFT - 1) | blue);
    });
    return m_Picture.data();
}
