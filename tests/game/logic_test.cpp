// What the logic reads and keeps: texts, play lists, the player's profile and options.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "engine/world.h"
#include "entities/graphics.h"
#include "keelworks/scenario_samples.h"
#include "logic/logic.h"
#include "logic/playlist.h"
#include "logic/profile_store.h"
#include "logic/text_table.h"
#include "platform/temp_roots.h"
#include "sound/sound.h"
#include "support/fakes.h"
#include "support/full_disk.h"

namespace
{

using seawarden_test::FakeHost;

class LogicTest : public ::testing::Test
{
  protected:
    TempRoots roots;
    FakeHost host;
};

TEST_F(LogicTest, TextsAreReadWithEscapesAndJoinedPieces)
{
    roots.Put("game/texts.ini", "; comment\n16, \"Quit?\"\n"
                                "17, \"One\\nTwo\\t\" ; a comment between\n   \"\\\\three \\qx\\q\",\n"
                                "-4, \"\"\n");
    CTextTable table;
    ASSERT_TRUE(table.Load("texts.ini"));
    EXPECT_STREQ(table.GetText(16), "Quit?");
    EXPECT_STREQ(table.GetText(17), "One\r\nTwo\t\\three \"x\"");
    EXPECT_STREQ(table.GetText(-4), "");
    EXPECT_STREQ(table.GetText(99), "?99");
    EXPECT_TRUE(host.debug.empty());
}

TEST_F(LogicTest, ProfileKeepsItsValuesInTheFile)
{
    std::int32_t number = -7;
    std::uint32_t word = 0xfedc0001;
    char name[CProfileStore::TEXT_SIZE] = "A \"quoted\" \\ text\r\nof two lines; = [x]";
    const std::string written = name;
    {
        CProfileStore store("profile.ini");
        EXPECT_FALSE(store.SelectSection("PLAYER", 0));
        EXPECT_FALSE(store.Write("Name", "s", "x")) << "no section is selected";
        ASSERT_TRUE(store.SelectSection("PLAYER", 1));
        EXPECT_TRUE(store.Write("Number", "l", &number));
        EXPECT_TRUE(store.Write("Word", "x", &word));
        EXPECT_TRUE(store.Write("Name", "s", name));
        EXPECT_FALSE(store.Write("a=b", "l", &number));
        EXPECT_FALSE(store.Write("Long", "s", std::string(CProfileStore::TEXT_SIZE, 'x').c_str()));
        EXPECT_FALSE(store.SelectSection("a]b", 1));
    }
    number = 0;
    word = 0;
    CProfileStore store("profile.ini");
    ASSERT_TRUE(store.SelectSection("player", 0));
    EXPECT_TRUE(store.Read("NUMBER", "l", &number) && store.Read("word", "x", &word) &&
                store.Read("name", "s", name));
    EXPECT_FALSE(store.Read("name", "l", &number)) << "a text is no number";
    EXPECT_FALSE(store.Read("nothing", "l", &number));
    EXPECT_EQ(number, -7);
    EXPECT_EQ(word, 0xfedc0001U);
    EXPECT_EQ(name, written);
    EXPECT_TRUE(host.debug.empty());
    {
        const seawarden_test::FullDisk full;
        EXPECT_FALSE(store.Write("Name", "s", "x"));
    }
    EXPECT_EQ(roots.Get("user/profile.ini.tmp"), "(none)");
    CProfileStore whole("profile.ini");
    EXPECT_TRUE(whole.SelectSection("player", 0) && whole.Read("name", "s", name));
    EXPECT_EQ(name, written) << "what can't be written leaves the old file whole";
}

TEST_F(LogicTest, ABrokenProfileIsSetAsideAndTheStoreStartsEmpty)
{
    const char* const broken[] = {
        "[A]\nx = 5\nnonsense\n", "x = 5\n", "[A\n", "[A]\nx = \"open\n", "[A]\nx = \"\\z\"\n",
        "[A]\nx = 99999999999\n"};
    std::string aside = "user/profile.ini.bad";
    for (int i = 0; i < 6; ++i) {
        SCOPED_TRACE(broken[i]);
        host.debug.clear();
        roots.Put("user/profile.ini", broken[i]);
        CProfileStore store("profile.ini");
        EXPECT_FALSE(store.SelectSection("A", 0));
        ASSERT_EQ(host.debug.size(), 1U);
        EXPECT_EQ(roots.Get("user/profile.ini"), "(none)");
        EXPECT_EQ(roots.Get(aside + (i == 0 ? "" : std::to_string(i + 1))), broken[i]);
        const std::int32_t number = 1;
        EXPECT_TRUE(store.SelectSection("A", 1) && store.Write("x", "l", &number)) << "and can be used";
    }
    EXPECT_EQ(roots.Get(aside), broken[0]) << "none takes another's place";

    // One that is too large to read is left alone.
    const std::string large = "[A]\n" + std::string(2U << 20, ';');
    roots.Put("user/profile.ini", large);
    CProfileStore store("profile.ini");
    const std::int32_t number = 1;
    EXPECT_TRUE(store.SelectSection("A", 1) && !store.Write("x", "l", &number));
    EXPECT_EQ(roots.Get("user/profile.ini"), large);
}

TEST_F(LogicTest, TheLogicAnswersTheDialogs)
{
    roots.Put("game/resource/txt_res/texts.ini");
    roots.Put("game/resource/txt_res/playlist.ini");
    CTrace trace;
    CEntityFactory factory;
    CWorld world(trace, factory);
    CSound sound;
    CLogic logic(world, sound);
    world.SetTargets(nullptr, &logic);
    CScene& root = world.Root();
    auto* store = reinterpret_cast<IProfileStore*>(
        root.SendMessage(MSG_GET_PROFILE, DEST_LOGIC, 0, "l", PROFILE_PROGRAM));
    ASSERT_NE(store, nullptr);
    std::uint32_t version = 0;
    EXPECT_TRUE(store->SelectSection("VERSION", 1) && store->Read("Version", "x", &version));
    EXPECT_NE(version, 0U);
    EXPECT_FALSE(store->Write("Version", "x", &version)) << "it takes nothing";
    EXPECT_EQ(root.SendMessage(MSG_GET_PROFILE, DEST_LOGIC, 0, "l", 77), 0);
    // Sizes that no display can have are refused.
    world.SetDisplaySize(1024, 768);
    root.SendMessage(MSG_SET_DISPLAY_MODE, DEST_LOGIC, 0, "ll", 0, 600);
    EXPECT_EQ(world.GetDisplayInfo().nHeight, 768);
    root.SendMessage(MSG_SET_DISPLAY_MODE, DEST_LOGIC, 0, "ll", 800, 600);
    EXPECT_EQ(world.GetViewport(0)->rc, (RECT{0, 0, 800, 600}));

    const std::vector<char> scenario = CScenarioWriter(SampleScenario()).GetBytes();
    roots.Put("out/x.exp", std::string(scenario.begin(), scenario.end()));
    char buffer[260];
    std::snprintf(buffer, sizeof buffer, "%s", (roots.folder / "out/x.exp").c_str());
    EXPECT_EQ(root.SendMessage(MSG_IMPORT_SCENARIO, DEST_LOGIC, 0, "l", buffer), 1);
    EXPECT_STREQ(buffer, "x.sc");
    std::memset(buffer, 'y', sizeof buffer);
    EXPECT_EQ(root.SendMessage(MSG_IMPORT_SCENARIO, DEST_LOGIC, 0, "l", buffer), 0) << "no zero";
    EXPECT_EQ(root.SendMessage(MSG_IMPORT_SCENARIO, DEST_LOGIC, 0, "l", 0), 0);
}

TEST_F(LogicTest, ThePlayListGoesOnWithWhatWasStoppedAndPassesOverWhatCannotBePlayed)
{
    roots.Put("game/playlist.ini",
              "PlayList { \"no.wav\", \"a.wav\", \"b.wav\" }\nPlayList { \"no.wav\" }\n");
    roots.Put("game/a.wav");
    roots.Put("game/b.wav");
    CSound sound;
    CPlayList list(sound);
    list.Load("playlist.ini");
    const auto play = [&](int track) {
        list.Play(track);
        return list.GetCurrent();
    };
    EXPECT_EQ(play(0), -1) << "no list is on";
    list.Select(0, 1);
    EXPECT_EQ(play(2), 2);
    list.Skip();
    EXPECT_EQ(list.GetCurrent(), 1) << "the list goes round";
    EXPECT_EQ(host.debug.size(), 1U) << "what it passes over is told";
    list.Stop(500);
    EXPECT_EQ(list.GetCurrent(), -1);
    EXPECT_EQ(play(-1), 1);
    EXPECT_EQ(play(7), 1) << "there is no such track";
    list.Select(1, 1);
    EXPECT_EQ(play(0), -1);
    roots.Put("game/no.wav");
    EXPECT_EQ(play(-1), 0) << "when it can be played again";
    list.Select(1, 0);
    EXPECT_EQ(play(-1), -1);
}

TEST_F(LogicTest, OptionsAreHeldToTheirRangesAndKept)
{
    ItfOptions options = CGraphicsEntity::Defaults();
    options.nOptionValue = 16;
    options.fRange = 1000.0F;
    options.fLevelB = -1.0F;
    options.nFlags = 0x80000001;
    CGraphicsEntity("options.ini").SetOptions(&options);
    CGraphicsEntity("options.ini").GetOptions(&options);
    EXPECT_EQ(options.nOptionValue, 16);
    EXPECT_EQ(options.fRange, 50.0F);
    EXPECT_EQ(options.fLevelB, 0.0F);
    EXPECT_EQ(options.nFlags, 0x80000001U);

    roots.Put("user/options.ini", "[GRAPHICS]\nBrightness = 0x7fc00000\nOption = 3\nWidth = -5\n");
    CGraphicsEntity("options.ini").GetOptions(&options);
    EXPECT_EQ(options.fBrightness, 1.0F) << "not a number";
    EXPECT_EQ(options.nOptionValue, 0);
    EXPECT_EQ(options.nWidth, 320);
}

} // namespace
