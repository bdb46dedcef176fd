#include "battle/silhouette.h"

#include <cmath>
#include <initializer_list>
#include <numbers>

namespace
{

constexpr int SAMPLES = 4;              // of a pixel, in each direction
constexpr float END_ON = 0.28F;         // how much of its length a unit shows when it is seen end on
constexpr float PERISCOPE_DEPTH = 3.0F; // metres; a submarine further down shows its periscope alone
constexpr float MAX_LENGTH = 1024.0F;
constexpr int MARGIN = 2;
constexpr float MIN_LINE = 1.2F; // pixels, of masts and the like
constexpr float METRES_A_FUNNEL = 60.0F;
constexpr int MAX_FUNNELS = 4;
constexpr int BALLOON_CORNERS = 28;

struct Corner {
    float x; ///< of the length, 0.5 is the bow
    float y; ///< of the length, up from the origin
};

/// Draws shapes that are given in parts of the unit's length.
class CMask
{
  public:
    CMask(Silhouette& out, float length, float turn, float above, float below)
        : m_Out(out), m_fLength(length),
          m_fTurn(std::copysign(std::max(END_ON, std::abs(turn)), turn < 0.0F ? -1.0F : 1.0F))
    {
        const int half = static_cast<int>(length * std::abs(m_fTurn) / 2.0F) + MARGIN;
        const int top = static_cast<int>(length * above) + MARGIN;
        out.m_nWidth = half * 2 + 1;
        out.m_nHeight = top + static_cast<int>(length * below) + MARGIN;
        out.m_ptOrigin = {half, top};
        out.m_Cover.resize(static_cast<std::size_t>(out.m_nWidth) * static_cast<std::size_t>(out.m_nHeight));
    }

    void Shape(std::span<const Corner> corners);
    void Shape(std::initializer_list<Corner> corners) { Shape(std::span(corners.begin(), corners.size())); }
    void Box(float left, float bottom, float right, float top)
    {
        Shape({{left, bottom}, {right, bottom}, {right, top}, {left, top}});
    }
    /// A line up from `bottom`, at least as wide as can be seen.
    void Mast(float x, float bottom, float top)
    {
        const float half = std::max(0.003F, MIN_LINE / 2.0F / m_fLength);
        const float across = half / std::abs(m_fTurn);
        Box(x - across, bottom, x + across, top);
    }
    void Beam(float left, float right, float y)
    {
        const float half = std::max(0.0025F, MIN_LINE / 2.0F / m_fLength);
        Box(left, y - half, right, y + half);
    }
    POINT Place(const Corner& corner) const
    {
        return {static_cast<LONG>(std::lround(corner.x * m_fLength * m_fTurn)),
                static_cast<LONG>(std::lround(-corner.y * m_fLength))};
    }

  private:
    bool Inside(std::span<const Corner> corners, float x, float y) const;

    Silhouette& m_Out;
    float m_fLength;
    float m_fTurn;
};

bool CMask::Inside(std::span<const Corner> corners, float x, float y) const
{
    bool inside = false;
    for (std::size_t i = 0, j = corners.size() - 1; i < corners.size(); j = i++) {
        const Corner& a = corners[i];
        const Corner& b = corners[j];
        if ((a.y > y) != (b.y > y) && x < (b.x - a.x) * (y - a.y) / (b.y - a.y) + a.x)
            inside = !inside;
    }
    return inside;
}

void CMask::Shape(std::span<const Corner> corners)
{
    POINT low = Place(corners[0]);
    POINT high = low;
    for (const Corner& corner : corners) {
        const POINT place = Place(corner);
        low = {std::min(low.x, place.x), std::min(low.y, place.y)};
        high = {std::max(high.x, place.x), std::max(high.y, place.y)};
    }
    const POINT origin = m_Out.m_ptOrigin;
    for (LONG y = std::max(0, origin.y + low.y - 1); y < std::min(m_Out.m_nHeight, origin.y + high.y + 2);
         ++y) {
        for (LONG x = std::max(0, origin.x + low.x - 1); x < std::min(m_Out.m_nWidth, origin.x + high.x + 2);
             ++x) {
            int hits = 0;
            for (int sample = 0; sample < SAMPLES * SAMPLES; ++sample) {
                const float sx = static_cast<float>(sample % SAMPLES) / SAMPLES + 0.5F / SAMPLES - 0.5F;
                const float sy = static_cast<float>(sample / SAMPLES) / SAMPLES + 0.5F / SAMPLES - 0.5F;
                hits += Inside(corners, (static_cast<float>(x - origin.x) + sx) / (m_fLength * m_fTurn),
                               -(static_cast<float>(y - origin.y) + sy) / m_fLength)
                            ? 1
                            : 0;
            }
            std::uint8_t& cover = m_Out.m_Cover[static_cast<std::size_t>(y * m_Out.m_nWidth + x)];
            cover = static_cast<std::uint8_t>(std::min(255, cover + hits * 255 / (SAMPLES * SAMPLES)));
        }
    }
}

void DrawShip(CMask& mask, Silhouette& out, float metres)
{
    mask.Shape({{-0.50F, 0.040F},
                {-0.47F, -0.03F},
                {0.455F, -0.03F},
                {0.50F, 0.062F},
                {0.27F, 0.046F},
                {0.26F, 0.040F},
                {-0.30F, 0.036F}});
    mask.Box(0.12F, 0.035F, 0.24F, 0.086F);
    mask.Box(0.15F, 0.080F, 0.215F, 0.114F);
    mask.Box(-0.33F, 0.03F, -0.23F, 0.064F);
    mask.Mast(0.165F, 0.10F, 0.245F);
    mask.Box(0.150F, 0.160F, 0.182F, 0.176F);
    mask.Beam(0.115F, 0.215F, 0.205F);
    mask.Mast(-0.275F, 0.05F, 0.215F);
    mask.Beam(-0.315F, -0.235F, 0.180F);
    mask.Box(0.285F, 0.038F, 0.345F, 0.068F);
    mask.Beam(0.34F, 0.415F, 0.058F);
    mask.Box(-0.415F, 0.034F, -0.360F, 0.062F);
    mask.Beam(-0.475F, -0.41F, 0.053F);
    const int funnels = std::clamp(static_cast<int>(metres / METRES_A_FUNNEL), 1, MAX_FUNNELS);
    for (int i = 0; i < funnels; ++i) {
        const float x = 0.065F - 0.25F * (static_cast<float>(i) + (funnels == 1 ? 1.0F : 0.0F)) /
                                     static_cast<float>(std::max(2, funnels));
        mask.Shape({{x - 0.017F, 0.03F}, {x + 0.017F, 0.03F}, {x + 0.011F, 0.150F}, {x - 0.023F, 0.150F}});
        out.m_aFunnels.push_back(mask.Place({x - 0.006F, 0.155F}));
    }
    out.m_ptFlag = mask.Place({-0.275F, 0.215F});
    out.m_bFlag = true;
}

void DrawSubmarine(CMask& mask, Silhouette& out, float depth)
{
    if (depth > PERISCOPE_DEPTH) {
        mask.Mast(0.0F, -0.03F, 0.085F);
        mask.Box(-0.006F, 0.072F, 0.022F, 0.086F);
        return;
    }
    mask.Shape({{-0.50F, 0.002F},
                {-0.38F, 0.028F},
                {0.40F, 0.034F},
                {0.50F, 0.012F},
                {0.46F, -0.03F},
                {-0.46F, -0.03F}});
    mask.Shape({{-0.05F, 0.02F}, {0.10F, 0.02F}, {0.085F, 0.095F}, {-0.03F, 0.095F}});
    mask.Mast(0.045F, 0.09F, 0.165F);
    mask.Mast(-0.015F, 0.09F, 0.14F);
    out.m_ptFlag = mask.Place({-0.015F, 0.14F});
    out.m_bFlag = true;
}

void DrawBalloon(CMask& mask, Silhouette& out)
{
    std::vector<Corner> envelope;
    for (int i = 0; i < BALLOON_CORNERS; ++i) {
        const float angle =
            2.0F * std::numbers::pi_v<float> * static_cast<float>(i) / static_cast<float>(BALLOON_CORNERS);
        const float along = std::cos(angle);
        // Blunt before, pointed behind.
        const float width = along > 0.0F ? 0.105F : 0.105F * (1.0F - along * along * 0.35F);
        envelope.push_back({along * 0.5F, std::sin(angle) * width});
    }
    mask.Shape(envelope);
    mask.Shape({{-0.50F, 0.13F}, {-0.43F, 0.13F}, {-0.33F, 0.03F}, {-0.46F, 0.0F}});
    mask.Shape({{-0.50F, -0.13F}, {-0.43F, -0.13F}, {-0.33F, -0.03F}, {-0.46F, 0.0F}});
    mask.Shape({{-0.10F, -0.175F}, {0.13F, -0.175F}, {0.16F, -0.140F}, {-0.12F, -0.140F}});
    for (const float x : {-0.09F, 0.02F, 0.13F})
        mask.Mast(x, -0.145F, -0.09F);
    out.m_ptFlag = mask.Place({-0.47F, 0.13F});
    out.m_bFlag = true;
}

} // namespace

Silhouette MakeSilhouette(const SeaUnit& unit, float length)
{
    length = std::clamp(length, 1.0F, MAX_LENGTH);
    Silhouette out;
    const bool balloon = unit.type == SCENARIO_BALLOON;
    CMask mask(out, length, unit.turn, balloon ? 0.14F : 0.25F, balloon ? 0.18F : 0.03F);
    if (balloon)
        DrawBalloon(mask, out);
    else if (unit.type == SCENARIO_SUBMARINE)
        DrawSubmarine(mask, out, unit.height);
    else
        DrawShip(mask, out, unit.length);
    return out;
}
