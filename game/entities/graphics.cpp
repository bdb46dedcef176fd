#include "entities/graphics.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

#include "engine/display_limits.h"

namespace
{

constexpr const char* SECTION = "GRAPHICS";
constexpr int MAX_OPTION_VALUE = 32;
constexpr float MAX_BRIGHTNESS = 2.0F;
constexpr float MIN_RANGE = 10.0F;
constexpr float MAX_RANGE = 50.0F;
constexpr float DEFAULT_RANGE = 30.0F;
constexpr float DEFAULT_LEVEL = 0.8F;

/// Every word of the record and the key that it is kept under. A float is kept by its bits.
struct Field {
    const char* key;
    std::size_t offset;
};
constexpr Field FIELDS[] = {
    {"Width", offsetof(ItfOptions, nWidth)},        {"Height", offsetof(ItfOptions, nHeight)},
    {"Option", offsetof(ItfOptions, nOptionValue)}, {"ChoiceA", offsetof(ItfOptions, nChoiceA)},
    {"ChoiceB", offsetof(ItfOptions, nChoiceB)},    {"ChoiceC", offsetof(ItfOptions, nChoiceC)},
    {"ChoiceD", offsetof(ItfOptions, nChoiceD)},    {"Brightness", offsetof(ItfOptions, fBrightness)},
    {"Range", offsetof(ItfOptions, fRange)},        {"LevelA", offsetof(ItfOptions, fLevelA)},
    {"LevelB", offsetof(ItfOptions, fLevelB)},      {"LevelC", offsetof(ItfOptions, fLevelC)},
    {"Flags", offsetof(ItfOptions, nFlags)},
};

void Hold(float& value, float low, float high, float fallback)
{
    value = std::isfinite(value) ? std::clamp(value, low, high) : fallback;
}

} // namespace

ItfOptions CGraphicsEntity::Defaults()
{
    ItfOptions options = {};
    options.nWidth = 800;
    options.nHeight = 600;
    options.fBrightness = 1.0F;
    options.fRange = DEFAULT_RANGE;
    options.fLevelA = DEFAULT_LEVEL;
    options.fLevelB = DEFAULT_LEVEL;
    options.fLevelC = DEFAULT_LEVEL;
    return options;
}

CGraphicsEntity::CGraphicsEntity(const char* file) : m_Store(file), m_Options(Defaults())
{
    if (!m_Store.SelectSection(SECTION, 0))
        return;
    auto* bytes = reinterpret_cast<std::uint8_t*>(&m_Options);
    for (const Field& field : FIELDS) {
        std::uint32_t value = 0;
        if (m_Store.Read(field.key, "x", &value))
            std::memcpy(bytes + field.offset, &value, sizeof(value));
    }
    Clamp();
}

void CGraphicsEntity::Clamp()
{
    m_Options.nWidth = std::clamp(m_Options.nWidth, DISPLAY_MIN_WIDTH, DISPLAY_MAX_SIDE);
    m_Options.nHeight = std::clamp(m_Options.nHeight, DISPLAY_MIN_HEIGHT, DISPLAY_MAX_SIDE);
    const auto option = static_cast<std::uint32_t>(m_Options.nOptionValue);
    if (option > MAX_OPTION_VALUE || std::popcount(option) > 1)
        m_Options.nOptionValue = 0;
    Hold(m_Options.fBrightness, 0.0F, MAX_BRIGHTNESS, 1.0F);
    Hold(m_Options.fRange, MIN_RANGE, MAX_RANGE, DEFAULT_RANGE);
    for (float* level : {&m_Options.fLevelA, &m_Options.fLevelB, &m_Options.fLevelC})
        Hold(*level, 0.0F, 1.0F, DEFAULT_LEVEL);
}

void CGraphicsEntity::SetOptions(const ItfOptions* options)
{
    m_Options = *options;
    Clamp();
    m_Store.SelectSection(SECTION, 1);
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(&m_Options);
    for (const Field& field : FIELDS) {
        std::uint32_t value = 0;
        std::memcpy(&value, bytes + field.offset, sizeof(value));
        m_Store.Write(field.key, "x", &value);
    }
}
