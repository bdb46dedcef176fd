// What the logic reads and keeps: texts, play lists, the player's profile and options.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "engine/world.h"
#include "entities/graphics.h"
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

TEST_F(LogicTest, AWrongTextIsToldWithItsLineAndTheOthersStay)
{
    const char* const wrong[] = {"x, \"a\"", "5 \"a\"", "5, a", "5, \"a", "5, \"\\z\"", "1, \"again\"", "5,"};
    for (const char* row : wrong) {
        host.debug.clear();
        roots.Put("game/texts.ini", std::string("1, \"one\"\n\n") + row + "\n9, \"nine\"\n");
        CTextTable table;
        ASSERT_TRUE(table.Load("texts.ini"));
        EXPECT_STREQ(table.GetText(1), "one") << row;
        EXPECT_STREQ(table.GetText(9), "nine") << row;
        ASSERT_EQ(host.debug.size(), 1U) << row;
        EXPECT_TRUE(host.debug[0].starts_with("texts.ini(3): ") ||
                    host.debug[0].starts_with("texts.ini(4): "))
            << row << ": " << host.debug[0];
        EXPECT_TRUE(host.debug[0].ends_with("\r\n"));
        if (std::string(row).find('\\') != std::string::npos) {
            EXPECT_TRUE(host.debug[0].starts_with("texts.ini(3): ")) << "the text's own line";
        }
    }
    CTextTable none;
    EXPECT_FALSE(none.Load("missing.ini"));
}

TEST_F(LogicTest, ProfileKeepsItsValuesInTheFile)
{
    {
        CProfileStore store("profile.ini");
        EXPECT_FALSE(store.SelectSection("PLAYER", 0));
        EXPECT_FALSE(store.Write("Name", "s", "x")) << "no section is selected";
        ASSERT_TRUE(store.SelectSection("PLAYER", 1));
        const std::int32_t number = -7;
        const std::uint32_t word = 0xfedc0001;
        EXPECT_TRUE(store.Write("Number", "l", &number));
        EXPECT_TRUE(store.Write("Word", "x", &word));
        EXPECT_TRUE(store.Write("Name", "s", "A \"quoted\" \\ text\r\nof two lines; = [x]"));
        EXPECT_TRUE(store.Write("Word", "x", &word));
        EXPECT_FALSE(store.Write("a=b", "l", &number));
        EXPECT_FALSE(store.Write("Long", "s", std::string(CProfileStore::TEXT_SIZE, 'x').c_str()));
        EXPECT_FALSE(store.SelectSection("a]b", 1));
    }
    CProfileStore store("profile.ini");
    ASSERT_TRUE(store.SelectSection("player", 0));
    std::int32_t number = 0;
    std::uint32_t word = 0;
    char name[CProfileStore::TEXT_SIZE] = {};
    EXPECT_TRUE(store.Read("NUMBER", "l", &number));
    EXPECT_TRUE(store.Read("word", "x", &word));
    EXPECT_TRUE(store.Read("name", "s", name));
    EXPECT_EQ(number, -7);
    EXPECT_EQ(word, 0xfedc0001U);
    EXPECT_STREQ(name, "A \"quoted\" \\ text\r\nof two lines; = [x]");
    EXPECT_FALSE(store.Read("name", "l", &number)) << "a text is no number";
    EXPECT_FALSE(store.Read("nothing", "l", &number));
    EXPECT_EQ(number, -7);
    EXPECT_TRUE(host.debug.empty());
    EXPECT_FALSE(std::filesystem::exists(roots.folder / "user/profile.ini.tmp"));
}

TEST_F(LogicTest, ABrokenProfileIsSetAsideAndTheStoreStartsEmpty)
{
    const char* const broken[] = {
        "[A]\nx = 5\nnonsense\n", "x = 5\n", "[A\n", "[A]\nx = \"open\n", "[A]\nx = \"\\z\"\n",
        "[A]\nx = 99999999999\n"};
    for (const char* text : broken) {
        host.debug.clear();
        roots.Put("user/profile.ini", text);
        CProfileStore store("profile.ini");
        EXPECT_FALSE(store.SelectSection("A", 0)) << text;
        ASSERT_EQ(host.debug.size(), 1U) << text;
        EXPECT_FALSE(std::filesystem::exists(roots.folder / "user/profile.ini"));
        std::ifstream bad(roots.folder / "user/profile.ini.bad");
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(bad), {}), text);
        const std::int32_t number = 1;
        EXPECT_TRUE(store.SelectSection("A", 1) && store.Write("x", "l", &number)) << "and can be used";
        std::filesystem::remove(roots.folder / "user/profile.ini");
        std::filesystem::remove(roots.folder / "user/profile.ini.bad");
    }
}

TEST_F(LogicTest, ASecondBrokenProfileLeavesTheFirstOneSetAside)
{
    for (const char* text : {"one\n", "two\n", "three\n"}) {
        roots.Put("user/profile.ini", text);
        const CProfileStore store("profile.ini");
    }
    EXPECT_EQ(roots.Get("user/profile.ini.bad"), "one\n");
    EXPECT_EQ(roots.Get("user/profile.ini.bad2"), "two\n");
    EXPECT_EQ(roots.Get("user/profile.ini.bad3"), "three\n");
    EXPECT_NE(host.debug.at(2).find("profile.ini.bad3"), std::string::npos);
}

TEST_F(LogicTest, AProfileThatCannotBeReadIsLeftAlone)
{
    const std::string large = "[A]\n" + std::string(2U << 20, ';');
    roots.Put("user/profile.ini", large);
    CProfileStore store("profile.ini");
    ASSERT_EQ(host.debug.size(), 1U);
    EXPECT_TRUE(host.debug[0].starts_with("profile.ini can't be read")) << host.debug[0];
    const std::int32_t number = 1;
    EXPECT_TRUE(store.SelectSection("A", 1));
    EXPECT_FALSE(store.Write("x", "l", &number)) << "nothing is kept";
    EXPECT_EQ(roots.Get("user/profile.ini"), large);
    EXPECT_EQ(roots.Get("user/profile.ini.bad"), "(none)");
}

TEST_F(LogicTest, AProfileThatCannotBeWrittenLeavesTheOldFileWhole)
{
    roots.Put("user/profile.ini", "[A]\nx = 5\n");
    CProfileStore store("profile.ini");
    ASSERT_TRUE(store.SelectSection("A", 0));
    const std::int32_t number = 6;
    {
        const seawarden_test::FullDisk full;
        EXPECT_FALSE(store.Write("x", "l", &number));
    }
    EXPECT_FALSE(std::filesystem::exists(roots.folder / "user/profile.ini.tmp"));
    std::ifstream file(roots.folder / "user/profile.ini");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "[A]\nx = 5\n");
}

TEST_F(LogicTest, TheProgramStoreHasTheVersionAndTakesNothing)
{
    roots.Put("game/resource/txt_res/texts.ini");
    roots.Put("game/resource/txt_res/playlist.ini");
    CTrace trace;
    CEntityFactory factory;
    CWorld world(trace, factory);
    CSound sound;
    CLogic logic(world, sound);
    world.SetTargets(nullptr, &logic);
    auto* store = reinterpret_cast<IProfileStore*>(
        world.Root().SendMessage(MSG_GET_PROFILE, DEST_LOGIC, 0, "l", PROFILE_PROGRAM));
    ASSERT_NE(store, nullptr);
    ASSERT_TRUE(store->SelectSection("VERSION", 1));
    std::uint32_t version = 0;
    EXPECT_TRUE(store->Read("Version", "x", &version));
    EXPECT_NE(version, 0U);
    const std::uint32_t other = 1;
    EXPECT_FALSE(store->Write("Version", "x", &other));
    EXPECT_FALSE(store->SelectSection("MINE", 1));
    EXPECT_EQ(world.Root().SendMessage(MSG_GET_PROFILE, DEST_LOGIC, 0, "l", 77), 0);
    EXPECT_EQ(world.Root().SendMessage(MSG_GET_GAME_STATE, DEST_LOGIC, 0, nullptr), 0);
    // Sizes that no display can have are refused.
    world.SetDisplaySize(1024, 768);
    world.Root().SendMessage(MSG_SET_DISPLAY_MODE, DEST_LOGIC, 0, "ll", 0, 600);
    EXPECT_EQ(world.GetDisplayInfo().nHeight, 768);
    world.Root().SendMessage(MSG_SET_DISPLAY_MODE, DEST_LOGIC, 0, "ll", 800, 600);
    EXPECT_EQ(world.GetDisplayInfo().nHeight, 600);
    EXPECT_EQ(world.GetViewport(0)->rc, (RECT{0, 0, 800, 600}));
}

TEST_F(LogicTest, ThePlayListGoesOnWithWhatWasStopped)
{
    roots.Put("game/playlist.ini", "PlayList { \"a.wav\", \"b.wav\" }\nPlayList { \"c.wav\" }\n");
    roots.Put("game/a.wav");
    roots.Put("game/b.wav");
    roots.Put("game/c.wav");
    CSound sound;
    CPlayList list(sound);
    list.Load("playlist.ini");
    list.Play(0);
    EXPECT_EQ(list.GetCurrent(), -1) << "no list is on";
    list.Select(0, 1);
    list.Play(1);
    EXPECT_EQ(list.GetCurrent(), 1);
    list.Skip();
    EXPECT_EQ(list.GetCurrent(), 0) << "the list goes round";
    list.Stop(500);
    EXPECT_EQ(list.GetCurrent(), -1);
    list.Play(-1);
    EXPECT_EQ(list.GetCurrent(), 0);
    list.Play(7);
    EXPECT_EQ(list.GetCurrent(), 0) << "there is no such track";
    list.Select(0, 0);
    list.Play(-1);
    EXPECT_EQ(list.GetCurrent(), -1);
    EXPECT_TRUE(host.debug.empty());
}

TEST_F(LogicTest, ThePlayListPassesOverTracksThatCannotBePlayed)
{
    roots.Put("game/playlist.ini",
              "PlayList { \"no.wav\", \"b.wav\", \"none.wav\" }\nPlayList { \"no.wav\" }\n");
    roots.Put("game/b.wav");
    CSound sound;
    CPlayList list(sound);
    list.Load("playlist.ini");
    list.Select(0, 1);
    list.Play(0);
    EXPECT_EQ(list.GetCurrent(), 1);
    list.Skip();
    EXPECT_EQ(list.GetCurrent(), 1) << "once round";
    EXPECT_EQ(host.debug.size(), 3U) << "each is told";
    list.Select(1, 1);
    list.Play(0);
    EXPECT_EQ(list.GetCurrent(), -1);
    roots.Put("game/no.wav");
    list.Play(-1);
    EXPECT_EQ(list.GetCurrent(), 0) << "when it can be played again";

    std::string many = "PlayList {\n";
    for (std::size_t i = 0; i <= CPlayList::MAX_TRACKS; ++i)
        many += "\"b.wav\",\n";
    roots.Put("game/playlist.ini", many + "}");
    host.debug.clear();
    list.Load("playlist.ini");
    EXPECT_EQ(host.debug, std::vector<std::string>{"playlist.ini(258): more than 256 tracks\r\n"});
}

TEST_F(LogicTest, OptionsAreHeldToTheirRangesAndKept)
{
    ItfOptions options = CGraphicsEntity::Defaults();
    options.nOptionValue = 16;
    options.fRange = 1000.0F;
    options.fLevelB = -1.0F;
    options.nFlags = 0x80000001;
    {
        CGraphicsEntity graphics("options.ini");
        graphics.SetOptions(&options);
    }
    CGraphicsEntity graphics("options.ini");
    ItfOptions read = {};
    graphics.GetOptions(&read);
    EXPECT_EQ(read.nOptionValue, 16);
    EXPECT_EQ(read.fRange, 50.0F);
    EXPECT_EQ(read.fLevelB, 0.0F);
    EXPECT_EQ(read.nFlags, 0x80000001U);

    roots.Put("user/options.ini", "[GRAPHICS]\nBrightness = 0x7fc00000\nOption = 3\nWidth = -5\n");
    CGraphicsEntity odd("options.ini");
    odd.GetOptions(&read);
    EXPECT_EQ(read.fBrightness, 1.0F) << "not a number";
    EXPECT_EQ(read.nOptionValue, 0);
    EXPECT_EQ(read.nWidth, 320);
}

} // namespace
