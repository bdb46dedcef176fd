#include "fields.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>

#include "platform/codepage.h"

namespace
{

constexpr std::int32_t FIGURE = SCENARIO_MAX_FIGURE;

ScenarioField Text(const char* keyword, std::size_t offset, std::size_t size)
{
    return {keyword, size, 0, {offset}, 0, 0};
}

ScenarioField Numbers(const char* keyword, std::initializer_list<std::size_t> offsets,
                      std::int32_t high = FIGURE, std::int32_t low = 0)
{
    ScenarioField field = {keyword, 0, offsets.size(), {}, low, high};
    std::copy(offsets.begin(), offsets.end(), field.offsets.begin());
    return field;
}

template <class Item>
void AddUnit(std::vector<ScenarioField>& fields, std::int32_t mostSide)
{
    fields.push_back(Text("name", offsetof(ScenarioUnit, szName), sizeof ScenarioUnit::szName));
    fields.push_back(Text("full_name", offsetof(ScenarioUnit, szFullName), sizeof ScenarioUnit::szFullName));
    fields.push_back(Text("code", offsetof(ScenarioUnit, szCode), sizeof ScenarioUnit::szCode));
    fields.push_back(Numbers("side", {offsetof(Item, nSide)}, mostSide));
}

template <class Item>
void AddPlace(std::vector<ScenarioField>& fields, const char* height)
{
    constexpr std::size_t AT = offsetof(Item, place);
    fields.push_back(Numbers("position", {AT + offsetof(ScenarioPlace, nX), AT + offsetof(ScenarioPlace, nY)},
                             SCENARIO_MAX_DISTANCE, -SCENARIO_MAX_DISTANCE));
    fields.push_back(Numbers("heading", {AT + offsetof(ScenarioPlace, nHeading)}, SCENARIO_MAX_HEADING));
    fields.push_back(Numbers("knots", {AT + offsetof(ScenarioPlace, nKnots)}, SCENARIO_MAX_KNOTS));
    fields.push_back(Numbers(height, {AT + offsetof(ScenarioPlace, nHeight)}, SCENARIO_MAX_HEIGHT));
    fields.push_back(Numbers("level", {offsetof(Item, nLevel)}, SCENARIO_MAX_LEVEL));
}

void AddModel(std::vector<ScenarioField>& fields)
{
    fields.push_back(Text("model", offsetof(ScenarioUnit, szModel), sizeof ScenarioUnit::szModel));
}

void AddShipWeapons(std::vector<ScenarioField>& fields)
{
    constexpr std::size_t AT = offsetof(ScenarioShip, figures);
    const auto pair = [&fields](const char* keyword, std::size_t count, std::size_t calibre) {
        fields.push_back(Numbers(keyword, {AT + count, AT + calibre}));
    };
    pair("main_guns", offsetof(ShipFigures, nMainGuns), offsetof(ShipFigures, nMainCalibre));
    pair("secondary_guns", offsetof(ShipFigures, nSecondaryGuns), offsetof(ShipFigures, nSecondaryCalibre));
    pair("light_guns", offsetof(ShipFigures, nLightGuns), offsetof(ShipFigures, nLightCalibre));
    pair("high_angle_guns", offsetof(ShipFigures, nHighAngleGuns), offsetof(ShipFigures, nHighAngleCalibre));
    pair("machine_guns", offsetof(ShipFigures, nMachineGuns), offsetof(ShipFigures, nMachineCalibre));
    pair("torpedo_tubes", offsetof(ShipFigures, nTorpedoTubes), offsetof(ShipFigures, nTorpedoCalibre));
    pair("depth_charges", offsetof(ShipFigures, nDepthCharges), offsetof(ShipFigures, nDepthChargeWeight));
}

std::vector<ScenarioField> ShipFields()
{
    constexpr std::size_t AT = offsetof(ScenarioShip, figures);
    constexpr std::size_t RATINGS = offsetof(ScenarioShip, nRatings);
    constexpr std::size_t WORD = sizeof(std::int32_t);
    std::vector<ScenarioField> fields;
    AddUnit<ScenarioShip>(fields, SCENARIO_NEUTRAL);
    AddModel(fields);
    fields.push_back(Numbers("class_text", {AT + offsetof(ShipFigures, nClassText)}));
    fields.push_back(Numbers("rate", {AT + offsetof(ShipFigures, nRate)}));
    fields.push_back(Numbers("launched", {AT + offsetof(ShipFigures, nYear)}));
    fields.push_back(Numbers("displacement", {AT + offsetof(ShipFigures, nDisplacement)}));
    fields.push_back(Numbers("length", {AT + offsetof(ShipFigures, nLength)}));
    fields.push_back(Numbers("crew", {AT + offsetof(ShipFigures, nCrew)}));
    fields.push_back(Numbers("speed", {AT + offsetof(ShipFigures, nSpeed)}));
    fields.push_back(Numbers("endurance", {AT + offsetof(ShipFigures, nEndurance)}));
    fields.push_back(Numbers("wireless", {AT + offsetof(ShipFigures, nWireless)}));
    fields.push_back(
        Numbers("hull", {AT + offsetof(ShipFigures, nHullBow), AT + offsetof(ShipFigures, nHullMiddle),
                         AT + offsetof(ShipFigures, nHullStern)}));
    fields.push_back(
        Numbers("armour", {AT + offsetof(ShipFigures, nArmourBelt), AT + offsetof(ShipFigures, nArmourDeck),
                           AT + offsetof(ShipFigures, nArmourTurret)}));
    AddShipWeapons(fields);
    fields.push_back(Numbers(
        "ratings", {RATINGS, RATINGS + WORD, RATINGS + 2 * WORD, RATINGS + 3 * WORD, RATINGS + 4 * WORD},
        SCENARIO_MAX_PERCENT));
    AddPlace<ScenarioShip>(fields, "height");
    return fields;
}

std::vector<ScenarioField> BalloonFields()
{
    constexpr std::size_t AT = offsetof(ScenarioBalloon, figures);
    std::vector<ScenarioField> fields;
    AddUnit<ScenarioBalloon>(fields, SCENARIO_SIDE_B);
    AddModel(fields);
    fields.push_back(Numbers("class_text", {AT + offsetof(BalloonFigures, nClassText)}));
    fields.push_back(Numbers("launched", {AT + offsetof(BalloonFigures, nYear)}));
    fields.push_back(Numbers("crew", {AT + offsetof(BalloonFigures, nCrew)}));
    fields.push_back(Numbers("volume", {AT + offsetof(BalloonFigures, nVolume)}));
    fields.push_back(Numbers("speed", {AT + offsetof(BalloonFigures, nSpeed)}));
    fields.push_back(Numbers("ceiling", {AT + offsetof(BalloonFigures, nCeiling)}));
    fields.push_back(Numbers("endurance", {AT + offsetof(BalloonFigures, nEndurance)}));
    fields.push_back(Numbers("bombs", {AT + offsetof(BalloonFigures, nBombs)}));
    fields.push_back(Numbers("machine_guns", {AT + offsetof(BalloonFigures, nMachineGuns)}));
    fields.push_back(Numbers("skill", {offsetof(ScenarioBalloon, nSkill)}, SCENARIO_MAX_PERCENT));
    AddPlace<ScenarioBalloon>(fields, "height");
    return fields;
}

std::vector<ScenarioField> SubmarineFields()
{
    constexpr std::size_t AT = offsetof(ScenarioSubmarine, figures);
    std::vector<ScenarioField> fields;
    AddUnit<ScenarioSubmarine>(fields, SCENARIO_SIDE_B);
    AddModel(fields);
    fields.push_back(Numbers("class_text", {AT + offsetof(SubmarineFigures, nClassText)}));
    fields.push_back(Numbers("launched", {AT + offsetof(SubmarineFigures, nYear)}));
    fields.push_back(Numbers("displacement", {AT + offsetof(SubmarineFigures, nDisplacement)}));
    fields.push_back(Numbers("crew", {AT + offsetof(SubmarineFigures, nCrew)}));
    fields.push_back(Numbers(
        "speed", {AT + offsetof(SubmarineFigures, nSpeed), AT + offsetof(SubmarineFigures, nSpeedBelow)}));
    fields.push_back(Numbers("torpedo_tubes", {AT + offsetof(SubmarineFigures, nTorpedoTubes)}));
    fields.push_back(Numbers("torpedoes", {AT + offsetof(SubmarineFigures, nTorpedoes)}));
    fields.push_back(Numbers("skill", {offsetof(ScenarioSubmarine, nSkill)}, SCENARIO_MAX_PERCENT));
    AddPlace<ScenarioSubmarine>(fields, "depth");
    return fields;
}

} // namespace

const ScenarioField* ScenarioUnitKind::Find(std::string_view fieldKeyword) const
{
    const auto found = std::find_if(fields.begin(), fields.end(), [fieldKeyword](const ScenarioField& field) {
        return PlatformEqualNoCase(field.keyword, fieldKeyword);
    });
    return found == fields.end() ? nullptr : &*found;
}

const std::array<ScenarioUnitKind, std::variant_size_v<ScenarioItem>>& ScenarioUnitKinds()
{
    static const std::array<ScenarioUnitKind, std::variant_size_v<ScenarioItem>> kinds = {{
        {"ship", ScenarioShip(), ShipFields()},
        {"balloon", ScenarioBalloon(), BalloonFields()},
        {"submarine", ScenarioSubmarine(), SubmarineFields()},
    }};
    return kinds;
}

char* ScenarioRecord(ScenarioItem& item)
{
    return std::visit([](auto& record) { return reinterpret_cast<char*>(&record); }, item);
}

const char* ScenarioRecord(const ScenarioItem& item)
{
    return std::visit([](const auto& record) { return reinterpret_cast<const char*>(&record); }, item);
}

std::int32_t GetNumber(const ScenarioItem& item, std::size_t offset)
{
    std::int32_t value = 0;
    std::memcpy(&value, ScenarioRecord(item) + offset, sizeof value);
    return value;
}

void SetNumber(ScenarioItem& item, std::size_t offset, std::int32_t value)
{
    std::memcpy(ScenarioRecord(item) + offset, &value, sizeof value);
}
