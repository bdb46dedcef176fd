#include "keelworks/scenario_parser.h"

#include <gtest/gtest.h>

#include "../platform/temp_roots.h"
#include "../support/rows.h"
#include "keelworks/ds_file.h"
#include "scenario_samples.h"

namespace
{

/// Keeps what it is called with.
class CKeeper : public CScenarioParser
{
  public:
    int OnScenarioItem(int category, int type, const void* item) override
    {
        EXPECT_EQ(category, SCENARIO_UNITS);
        types += std::to_string(type);
        EXPECT_TRUE(type != SCENARIO_BALLOON ||
                    static_cast<const ScenarioBalloon*>(item)->place.nHeight == 800);
        if (reopens)
            OpenScenario("another", SampleFile());
        return stops ? 0 : 1;
    }
    std::string types;
    bool stops = false;
    bool reopens = false;
};

std::string WhyRefused(const std::vector<char>& bytes)
{
    CScenarioParser parser;
    parser.OpenScenario("good", SampleFile());
    try {
        parser.OpenScenario("bad.sc", bytes);
    } catch (const scenario_exception& error) {
        EXPECT_EQ(parser.GetHeader(), nullptr) << "the scenario before it is closed too";
        return error.what();
    }
    return "taken";
}

TEST(Scenario, TheFileHasItsFieldsWhereTheyBelong)
{
    const std::string digits = "123456789";
    EXPECT_EQ(Crc32(digits.data(), 9), 0xcbf43926U) << "the usual checksum";
    EXPECT_EQ(Crc32(digits.data() + 4, 5, Crc32(digits.data(), 4)), 0xcbf43926U);
    const std::vector<char> bytes = SampleFile();
    EXPECT_STREQ(bytes.data() + 0x79, "seabattle_haze");
    for (const auto& [offset, value] : Rows<std::size_t, std::uint32_t>{{0x198, 5},
                                                                        {0x19c, 40},
                                                                        {0x1a0, 0x10},
                                                                        {0x1ac, 1001},
                                                                        {0x1b0, 2},
                                                                        {0x1b8, 0},
                                                                        {0x1bc, 2},
                                                                        {0x1c4, 0x10008},
                                                                        {0x21c, 33324},
                                                                        {0x220, 33324},
                                                                        {0x224, 1915},
                                                                        {0x260, 0},
                                                                        {0x260 + 0x14, 1},
                                                                        {0x260 + 0x18, 1},
                                                                        {0x260 + 0x24, 0xfedcba98}})
        EXPECT_EQ(WordAt(bytes, offset), value) << std::hex << offset;
    EXPECT_STREQ(bytes.data() + 0x29c, "Off the bar");
}

TEST(Scenario, ReadsBackWhatWasWritten)
{
    const Scenario sample = SampleScenario();
    TempRoots roots;
    CScenarioWriter writer(sample);
    writer.Write("scenarios\\one.sc");
    CScenarioParser parser;
    parser.OpenScenario("Scenarios/ONE.SC");
    EXPECT_EQ(parser.GetTitle(), sample.title);
    EXPECT_EQ(parser.GetDescription(), sample.description);
    EXPECT_EQ(parser.GetCustomResourceData()->guidB, sample.custom.guidB);
    EXPECT_EQ(parser.GetCRC32(), Crc32(writer.GetBytes().data(), writer.GetBytes().size()));
    EXPECT_EQ(CScenarioWriter(parser.GetScenario()).GetBytes(), writer.GetBytes());
    const auto& ship = std::get<ScenarioShip>(parser.GetScenario().items[1]);
    EXPECT_STREQ(ship.unit.szCode, "G07");
    EXPECT_EQ(ship.nSide, SCENARIO_SIDE_B);
    parser.CloseScenario();
    EXPECT_EQ(parser.GetCRC32(), 0U);
}

TEST(Scenario, AnOlderVersionHasNoBlockOfCustomNations)
{
    Scenario sample = SampleScenario();
    sample.header.nVersion = SCENARIO_VERSION_CUSTOM - 1;
    EXPECT_THROW(CScenarioWriter{sample}, scenario_exception) << "it would be lost";
    sample.custom = {};
    const std::vector<char> bytes = CScenarioWriter(sample).GetBytes();
    EXPECT_STREQ(bytes.data() + sizeof(SCENARIO_HEADER), "Off the bar");
    CScenarioParser parser;
    parser.OpenScenario("old.sc", bytes);
    EXPECT_EQ(parser.GetScenario().items.size(), sample.items.size());
}

TEST(Scenario, TheMaskSelectsTheTypes)
{
    const Rows<int, bool, bool, const char*> rows = {{1, false, false, "111"}, {6, false, false, "42"},
                                                     {2, false, false, "2"},   {0, false, false, ""},
                                                     {0xff, true, false, "1"}, {0xff, false, true, "1"}};
    for (const auto& [mask, stops, reopens, types] : rows) {
        CKeeper keeper;
        keeper.EnumScenarioItems(mask);
        EXPECT_EQ(keeper.types, "") << "none is open";
        keeper.OpenScenario("sample", SampleFile());
        keeper.stops = stops;
        keeper.reopens = reopens;
        keeper.EnumScenarioItems(mask);
        EXPECT_EQ(keeper.types, types) << mask;
    }
}

TEST(Scenario, NoShorterLongerOrChangedFileIsTaken)
{
    const std::vector<char> good = SampleFile();
    for (std::size_t size = 0; size < good.size(); ++size) {
        std::vector<char> cut(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size));
        ASSERT_NE(WhyRefused(cut), "taken") << size;
        if (size >= 8)
            Reseal(cut);
        ASSERT_NE(WhyRefused(cut), "taken") << size << " with the right checksum";
        std::vector<char> changed = good;
        changed[size] = static_cast<char>(changed[size] ^ 0x10);
        ASSERT_NE(WhyRefused(changed), "taken") << size << " changed";
    }
}

TEST(Scenario, LiesAreFoundWhereTheyStand)
{
    const Scenario sample = SampleScenario();
    const std::size_t title = sizeof(SCENARIO_HEADER) + sizeof(CUSTOM_RESOURCE_DATA);
    const std::size_t count = title + sample.title.size() + 1 + sample.description.size() + 1;
    const std::size_t item = count + 4;
    const std::size_t record = item + 12;
    const Rows<std::size_t, std::uint32_t, const char*> lies = {
        {0x00, 0, "not a scenario"},
        {0x1c4, 0x10009, "version"},
        {0x1a4, 1, "a number that isn't"},
        {0x1c0, 0x80000000, "a number that isn't"},
        {0x198, 13, "a number that isn't"},
        {0x1a0, 0x11, "flags of the time"},
        {0x79 + 256, 0x41414141, "end within its field"},
        {0x1b0, 3, "other forces"},
        {0x230, 1, "nothing is known"},
        {0x260, 2, "neither 0 nor 1"},
        {0x264, 7, "isn't custom"},
        {0x260, 1, "without a guid"},
        {count, 4, "behind the last item"},
        {count, 0x40000000, " items"},
        {item, 1, "category"},
        {item + 4, 3, "type"},
        {item + 8, 0xffffffff, "bytes"},
        {record + 0xb0, 0x80000000, "a number that isn't"},
        {record + 0x150, 1, "nothing is known"},
        {record + 0x1b0, 3, "a number that isn't"},
    };
    for (const auto& [offset, value, told] : lies) {
        std::vector<char> bytes = SampleFile();
        std::memcpy(bytes.data() + offset, &value, sizeof value);
        Reseal(bytes);
        const std::string why = WhyRefused(bytes);
        EXPECT_TRUE(why.starts_with("bad.sc: ") && why.find(told) != std::string::npos)
            << std::hex << offset << ' ' << value << ": " << why;
    }
}

TEST(Scenario, WhatIsTooMuchIsRefused)
{
    Scenario sample = SampleScenario();
    sample.items.assign(SCENARIO_MAX_ITEMS, sample.items[0]);
    sample.title.assign(SCENARIO_MAX_TITLE, 't');
    sample.description.assign(SCENARIO_MAX_DESCRIPTION, 'd');
    CScenarioParser parser;
    parser.OpenScenario("full", CScenarioWriter(sample).GetBytes());
    EXPECT_EQ(std::strlen(parser.GetDescription()), SCENARIO_MAX_DESCRIPTION);

    const auto refused = [](Scenario scenario, auto change) {
        change(scenario);
        EXPECT_THROW(CScenarioWriter{scenario}, scenario_exception);
    };
    refused(sample, [](Scenario& s) { s.title[5] = '\0'; });
    refused(sample, [](Scenario& s) { s.description += 'd'; });
    refused(sample, [](Scenario& s) { s.items.push_back(s.items[0]); });
    refused(sample, [](Scenario& s) { std::get<ScenarioShip>(s.items[0]).figures.nMainGuns = INT32_MAX; });

    TempRoots roots;
    roots.Put("game/huge.sc");
    std::filesystem::resize_file(roots.folder / "game/huge.sc", std::uintmax_t{1} << 40);
    EXPECT_THROW(parser.OpenScenario("huge.sc"), scenario_exception);
}

} // namespace
