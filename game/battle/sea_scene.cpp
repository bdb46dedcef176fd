#include "battle/sea_scene.h"

#include <cmath>
#include <numbers>

namespace
{

constexpr float HOURS = 24.0F;
constexpr float MINUTES = 60.0F;
constexpr int NOON = 12;
constexpr float MIN_EXTENT = 1000.0F; // metres; a smaller scene isn't spread over the whole sea
constexpr float SUBMARINE_LENGTH = 55.0F;
constexpr float BALLOON_LENGTH = 120.0F;
constexpr float MIN_SHIP_LENGTH = 25.0F;
constexpr float MAX_SHIP_LENGTH = 280.0F;

/// The light at an hour; between two of them it changes evenly.
struct LightRow {
    float hour;
    Colour skyTop, skyLow, seaFar, seaNear, glow;
    float darkness;
};
constexpr LightRow LIGHTS[] = {
    {0.0F, {6, 9, 24}, {26, 36, 62}, {26, 38, 62}, {6, 14, 26}, {196, 206, 226}, 1.0F},
    {4.5F, {10, 14, 34}, {44, 50, 78}, {38, 48, 72}, {8, 18, 32}, {190, 200, 222}, 0.9F},
    {6.0F, {58, 84, 138}, {250, 176, 122}, {168, 140, 134}, {20, 50, 76}, {255, 214, 150}, 0.25F},
    {8.5F, {78, 128, 190}, {210, 222, 224}, {126, 160, 178}, {18, 62, 92}, {255, 244, 214}, 0.0F},
    {13.0F, {58, 118, 196}, {190, 216, 232}, {106, 152, 182}, {12, 62, 100}, {255, 250, 232}, 0.0F},
    {16.5F, {84, 124, 176}, {232, 210, 170}, {146, 150, 150}, {18, 56, 82}, {255, 232, 170}, 0.0F},
    {18.8F, {62, 62, 112}, {246, 132, 72}, {158, 104, 104}, {24, 38, 66}, {255, 176, 96}, 0.3F},
    {20.5F, {14, 18, 44}, {70, 62, 88}, {54, 54, 78}, {8, 16, 32}, {200, 204, 222}, 0.9F},
    {24.0F, {6, 9, 24}, {26, 36, 62}, {26, 38, 62}, {6, 14, 26}, {196, 206, 226}, 1.0F},
};
constexpr float SUNRISE = 5.5F;
constexpr float SUNSET = 19.2F;

const ScenarioPlace& PlaceOf(const ScenarioItem& item)
{
    return std::visit([](const auto& unit) -> const ScenarioPlace& { return unit.place; }, item);
}

struct Extent {
    float middleX = 0.0F;
    float middleY = 0.0F;
    float size = MIN_EXTENT; // metres from edge to edge

    explicit Extent(const std::vector<ScenarioItem>& items)
    {
        if (items.empty())
            return;
        ScenarioPlace low = PlaceOf(items.front());
        ScenarioPlace high = low;
        for (const ScenarioItem& item : items) {
            const ScenarioPlace& place = PlaceOf(item);
            low.nX = std::min(low.nX, place.nX);
            low.nY = std::min(low.nY, place.nY);
            high.nX = std::max(high.nX, place.nX);
            high.nY = std::max(high.nY, place.nY);
        }
        middleX = static_cast<float>(low.nX + high.nX) / 2.0F;
        middleY = static_cast<float>(low.nY + high.nY) / 2.0F;
        size = std::max(MIN_EXTENT, static_cast<float>(std::max(high.nX - low.nX, high.nY - low.nY)));
    }
};

float LengthOf(const ScenarioItem& item)
{
    if (const auto* ship = std::get_if<ScenarioShip>(&item))
        return std::clamp(static_cast<float>(ship->figures.nLength), MIN_SHIP_LENGTH, MAX_SHIP_LENGTH);
    return std::holds_alternative<ScenarioBalloon>(item) ? BALLOON_LENGTH : SUBMARINE_LENGTH;
}

SeaUnit MakeUnit(const ScenarioItem& item, const Extent& extent)
{
    const ScenarioPlace& place = PlaceOf(item);
    SeaUnit unit;
    std::visit(
        [&unit](const auto& one) {
            unit.type = one.TYPE;
            unit.side = one.nSide;
        },
        item);
    unit.across = (static_cast<float>(place.nX) - extent.middleX) / extent.size;
    unit.depth = (static_cast<float>(place.nY) - extent.middleY) / extent.size + 0.5F;
    unit.turn = std::sin(static_cast<float>(place.nHeading) * std::numbers::pi_v<float> / 180.0F);
    unit.length = LengthOf(item);
    unit.height = static_cast<float>(place.nHeight);
    return unit;
}

} // namespace

SeaScene MakeSeaScene(const Scenario& scenario)
{
    SeaScene scene;
    scene.title = scenario.title;
    const bool morning = (scenario.header.nTimeFlags & SCENARIO_TIME_AM) != 0;
    const int hour = scenario.header.nHours % NOON + (morning ? 0 : NOON);
    scene.hour = std::clamp(static_cast<float>(hour) + static_cast<float>(scenario.header.nMinutes) / MINUTES,
                            0.0F, HOURS);
    const Extent extent(scenario.items);
    for (const ScenarioItem& item : scenario.items)
        scene.units.push_back(MakeUnit(item, extent));
    return scene;
}

SeaLight LightOfHour(float hour)
{
    std::size_t next = 1;
    while (next + 1 < std::size(LIGHTS) && LIGHTS[next].hour < hour)
        ++next;
    const LightRow& a = LIGHTS[next - 1];
    const LightRow& b = LIGHTS[next];
    const float share = std::clamp((hour - a.hour) / (b.hour - a.hour), 0.0F, 1.0F);
    SeaLight light = {};
    light.skyTop = Mix(a.skyTop, b.skyTop, share);
    light.skyLow = Mix(a.skyLow, b.skyLow, share);
    light.seaFar = Mix(a.seaFar, b.seaFar, share);
    light.seaNear = Mix(a.seaNear, b.seaNear, share);
    light.glow = Mix(a.glow, b.glow, share);
    light.darkness = Mix(a.darkness, b.darkness, share);
    if (hour > SUNRISE && hour < SUNSET) {
        const float day = (hour - SUNRISE) / (SUNSET - SUNRISE);
        light.sunX = Mix(0.84F, 0.16F, day);
        light.sunY = 0.97F - 0.75F * std::sin(day * std::numbers::pi_v<float>);
    } else {
        light.sunX = 0.68F;
        light.sunY = 0.34F;
    }
    return light;
}
