#include "shell/presenter.h"

#include <algorithm>

namespace
{

constexpr int GAIN_ONE = 256;
constexpr float MAX_BRIGHTNESS = 2.0F;
constexpr unsigned RED_SHIFT = 11;
constexpr unsigned GREEN_SHIFT = 5;
constexpr unsigned FIVE_BITS = 0x1f;
constexpr unsigned SIX_BITS = 0x3f;

unsigned Scaled(unsigned channel, int gain, unsigned limit)
{
    return std::min(channel * static_cast<unsigned>(gain) / GAIN_ONE, limit);
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
    std::transform(m_Picture.begin(), m_Picture.end(), m_Picture.begin(), [gain](std::uint16_t pixel) {
        const unsigned red = Scaled(pixel >> RED_SHIFT, gain, FIVE_BITS);
        const unsigned green = Scaled((pixel >> GREEN_SHIFT) & SIX_BITS, gain, SIX_BITS);
        const unsigned blue = Scaled(pixel & FIVE_BITS, gain, FIVE_BITS);
        return static_cast<std::uint16_t>(red << RED_SHIFT | green << GREEN_SHIFT | blue);
    });
    return m_Picture.data();
}
