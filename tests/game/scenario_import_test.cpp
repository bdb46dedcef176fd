// What the logic does for the scenario dialogs: bringing in scenarios, and the nations that players add.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include "engine/world.h"
#include "keelworks/scenario_samples.h"
#include "logic/custom_resources.h"
#include "logic/logic.h"
#include "logic/scenario_import.h"
#include "platform/temp_roots.h"
#include "sound/sound.h"
#include "support/fakes.h"
#include "support/full_disk.h"

namespace
{

using seawarden_test::FakeHost;
using seawarden_test::FullDisk;

std::string ScenarioTitled(const std::string& title)
{
    Scenario scenario = SampleScenario();
    scenario.title = title;
    const std::vector<char> bytes = CScenarioWriter(scenario).GetBytes();
    return {bytes.begin(), bytes.end()};
}

class ImportTest : public ::testing::Test
{
  protected:
    std::string Path(const std::string& name) const { return (roots.folder / name).string(); }
    TempRoots roots;
    FakeHost host;
};

TEST_F(ImportTest, TheLocalNameIsMadeOfAllowedCharacters)
{
    const struct {
        const char* picked;
        std::string local;
    } cases[] = {
        {"out/Storm.exp", "storm.sc"},
        {"out/The Long Night.SC", "the_long_night.sc"},
        {"out\\b\\..\\a\\evil.exp", "evil.sc"},
        {"out/...exp", "imported.sc"},
        {"out/.hidden.exp", "hidden.sc"},
        {"out/\xc3\xa9t\xc3\xa9; rm -rf $HOME%00.exp", "t_rm_-rf_home00.sc"},
        {"out/\xe6\x97\xa5\xe6\x9c\xac.exp", "imported.sc"},
        {"out/aaaaaaaaaabbbbbbbbbbccccccccccddddddddddeeeee.exp",
         "aaaaaaaaaabbbbbbbbbbccccccccccdddddddddd.sc"},
    };
    for (const auto& c : cases) {
        const std::string bytes = ScenarioTitled(c.picked);
        std::string real = c.picked;
        std::replace(real.begin(), real.end(), '\\', '/');
        roots.Put("out/b/x");
        roots.Put(std::filesystem::path(real).lexically_normal().string(), bytes);
        EXPECT_EQ(ImportScenario(Path(c.picked)), c.local) << c.picked;
        EXPECT_EQ(roots.Get("user/scenarios/" + c.local), bytes) << c.picked;
        std::filesystem::remove_all(roots.folder / "user/scenarios");
        EXPECT_TRUE(host.debug.empty());
    }
}

TEST_F(ImportTest, ADifferentFileIsNeverReplaced)
{
    const std::string first = ScenarioTitled("first");
    const std::string second = ScenarioTitled("second");
    const std::string shipped = ScenarioTitled("shipped");
    roots.Put("out/a.exp", first);
    roots.Put("other/A.exp", second);
    roots.Put("game/Scenarios/B.sc", shipped);
    roots.Put("out/b.exp", shipped);
    roots.Put("other/b.exp", first);
    EXPECT_EQ(ImportScenario(Path("out/a.exp")), "a.sc");
    EXPECT_EQ(ImportScenario(Path("out/a.exp")), "a.sc") << "the same again";
    EXPECT_EQ(ImportScenario(Path("other/A.exp")), "a-2.sc");
    EXPECT_EQ(ImportScenario(Path("other/A.exp")), "a-2.sc");
    EXPECT_EQ(ImportScenario(Path("out/b.exp")), "b.sc") << "the game has it";
    EXPECT_EQ(ImportScenario(Path("other/b.exp")), "b-2.sc") << "the game's isn't hidden";
    EXPECT_EQ(roots.Get("user/scenarios/a.sc"), first);
    EXPECT_EQ(roots.Get("user/scenarios/a-2.sc"), second);
    EXPECT_EQ(roots.Get("user/scenarios/b.sc"), "(none)");
    EXPECT_EQ(roots.Get("user/scenarios/b-2.sc"), first);
    std::filesystem::create_directories(roots.folder / "user/scenarios/c.sc");
    roots.Put("out/c.exp", first);
    EXPECT_EQ(ImportScenario(Path("out/c.exp")), "c-2.sc") << "a folder has the name";
    EXPECT_TRUE(host.debug.empty());
}

TEST_F(ImportTest, WhatFailsIsToldAndLeavesNothing)
{
    const std::string good = ScenarioTitled("good");
    roots.Put("out/short.exp", good.substr(0, good.size() - 1));
    roots.Put("out/empty.exp", "");
    roots.Put("out/text.exp", "not a scenario");
    roots.Put("out/good.txt", good);
    roots.Put("out/folder.exp/x");
    roots.Put("out/huge.exp");
    std::filesystem::resize_file(roots.folder / "out/huge.exp", std::uintmax_t{1} << 40);
    ASSERT_EQ(std::system(("mkfifo '" + Path("out/pipe.exp") + "'").c_str()), 0);
    for (const char* name : {"short.exp", "empty.exp", "text.exp", "good.txt", "folder.exp", "huge.exp",
                             "pipe.exp", "missing.exp", ""}) {
        host.debug.clear();
        EXPECT_EQ(ImportScenario(*name != '\0' ? Path("out/") + name : ""), "") << name;
        ASSERT_EQ(host.debug.size(), 1U) << name;
        EXPECT_TRUE(host.debug[0].starts_with("Import: ") && host.debug[0].ends_with("\r\n"))
            << host.debug[0];
    }
    EXPECT_EQ(ImportScenario("..\\out\\good.exp"), "") << "outside the game's folders";
    EXPECT_FALSE(std::filesystem::exists(roots.folder / "user/scenarios"));
    roots.Put("out/good.exp", good);
    {
        const FullDisk full;
        EXPECT_EQ(ImportScenario(Path("out/good.exp")), "") << "there is no room for it";
    }
    EXPECT_TRUE(std::filesystem::is_empty(roots.folder / "user/scenarios")) << "nor for a part of it";
}

// Whatever stands beside the new file is somebody's.
TEST_F(ImportTest, NoFileBesideItIsTouched)
{
    const std::string good = ScenarioTitled("good");
    const std::filesystem::path folder = roots.folder / "user/scenarios";
    roots.Put("out/a.exp", good);
    roots.Put("out/b.exp", good);
    roots.Put("out/c.exp", good);
    roots.Put("user/victim", "linked");
    roots.Put("user/scenarios/b.sc.tmp", "the player's");
    std::filesystem::create_symlink("../victim", folder / "a.sc.tmp");
    std::filesystem::create_symlink("../nowhere", folder / "C.sc");
    EXPECT_EQ(ImportScenario(Path("out/a.exp")), "a.sc") << "a link has the temporary file's name";
    EXPECT_EQ(ImportScenario(Path("out/b.exp")), "b.sc") << "a file has it";
    EXPECT_EQ(ImportScenario(Path("out/c.exp")), "c-2.sc") << "a link that leads nowhere has the name";
    for (const char* name : {"a.sc", "b.sc", "c-2.sc"})
        EXPECT_EQ(roots.Get(std::string("user/scenarios/") + name), good) << name;
    EXPECT_EQ(roots.Get("user/victim"), "linked");
    EXPECT_EQ(roots.Get("user/scenarios/b.sc.tmp"), "the player's");
    EXPECT_EQ(std::filesystem::read_symlink(folder / "C.sc"), "../nowhere");
    EXPECT_EQ(roots.Get("user/nowhere"), "(none)");
    const std::filesystem::directory_iterator all(folder);
    EXPECT_EQ(std::distance(begin(all), end(all)), 6) << "and no temporary file is left";
}

TEST_F(ImportTest, TheLogicAnswersTheDialogs)
{
    roots.Put("game/resource/txt_res/texts.ini");
    roots.Put("game/resource/txt_res/playlist.ini");
    roots.Put("game/resource/custom/a.ini", "guid { 1, 2, 3, 0xffffffff } name \"Atoll\" flag \"atoll.tf\"");
    CTrace trace;
    CEntityFactory factory;
    CWorld world(trace, factory);
    CSound sound;
    CLogic logic(world, sound);
    world.SetTargets(nullptr, &logic);
    auto* nations = reinterpret_cast<ICustomResources*>(
        world.Root().SendMessage(MSG_GET_CUSTOM_RESOURCES, DEST_LOGIC, 0, ""));
    const CObjGUID guid = {{1, 2, 3, 0xffffffff}};
    ASSERT_NE(nations, nullptr);
    EXPECT_EQ(nations->Find(&guid), 0);

    roots.Put("out/x.exp", ScenarioTitled("x"));
    char buffer[260];
    std::snprintf(buffer, sizeof buffer, "%s", Path("out/x.exp").c_str());
    EXPECT_EQ(world.Root().SendMessage(MSG_IMPORT_SCENARIO, DEST_LOGIC, 0, "l", buffer), 1);
    EXPECT_STREQ(buffer, "x.sc");
    std::memset(buffer, 'y', sizeof buffer);
    EXPECT_EQ(world.Root().SendMessage(MSG_IMPORT_SCENARIO, DEST_LOGIC, 0, "l", buffer), 0) << "no zero";
    EXPECT_EQ(world.Root().SendMessage(MSG_IMPORT_SCENARIO, DEST_LOGIC, 0, "l", 0), 0);
}

TEST_F(ImportTest, CustomNationsAreReadFromTheirFolder)
{
    const struct {
        const char* text;
        const char* told; ///< null for a good one
    } cases[] = {
        {"guid { 1, 2, 3, 4 }\nname \"Atoll\"\nflag \"atoll.tf\"", nullptr},
        {"flag \"sub\\b.tf\" name \"Bight\" guid { 0x1, 2, 3, 5 }", nullptr},
        {"guid { 1, 2, 3, 4 } name \"Copy\" flag \"c.tf\"", "another custom nation has this guid"},
        {"guid { 0, 0, 0, 0 } name \"Nobody\" flag \"c.tf\"", "expected a guid that isn't zero"},
        {"guid { 1, 2, 3, 6 } name \"\" flag \"c.tf\"", "expected a guid that isn't zero"},
        {"guid { 1, 2, 3, 6 } name \"Thief\" flag \"/etc/passwd\"", "expected a guid that isn't zero"},
        {"guid { 1, 2, 3, 6 } name \"Thief\" flag \"..\\x\"", "expected a guid that isn't zero"},
        {"guid { 1, 2, 3 } name \"Short\" flag \"c.tf\"", "expected guid {"},
        {"guid { 1, 2, 3, 4, 5 } name \"Long\" flag \"c.tf\"", "expected guid {"},
        {"guid { 1, 2, 3, x } name \"Letter\" flag \"c.tf\"", "expected a number"},
        {"guid { 1, 2, 3, 6 } flag \"c.tf\"", "expected the token \"name\""},
        {"", "expected the token \"guid\""},
    };
    std::size_t bad = 0;
    for (std::size_t i = 0; i < std::size(cases); ++i)
        roots.Put("user/custom/" + std::string(1, static_cast<char>('a' + i)) + ".ini", cases[i].text);
    CCustomResources nations;
    nations.Load("custom\\");
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        if (cases[i].told == nullptr)
            continue;
        ASSERT_LT(bad, host.debug.size());
        EXPECT_TRUE(host.debug[bad].starts_with("custom\\" + std::string(1, static_cast<char>('a' + i)) +
                                                ".ini(1): " + cases[i].told))
            << host.debug[bad];
        ++bad;
    }
    EXPECT_EQ(host.debug.size(), bad);
    const CObjGUID second = {{1, 2, 3, 5}};
    char buffer[6] = "?";
    EXPECT_EQ(nations.Find(nullptr), -1);
    EXPECT_EQ(nations.Find(&second), 1);
    EXPECT_FALSE(nations.GetName(1, buffer, 5)) << "no room for the zero";
    EXPECT_STREQ(buffer, "?");
    EXPECT_TRUE(nations.GetName(1, buffer, 6));
    EXPECT_STREQ(buffer, "Bight");
    for (const int index : {-1, 2})
        EXPECT_FALSE(nations.GetName(index, buffer, 6));
    char file[260];
    EXPECT_FALSE(nations.GetFlagFile(1, 1, file, sizeof file));
    EXPECT_TRUE(nations.GetFlagFile(1, 0, file, sizeof file));
    EXPECT_STREQ(file, "sub\\b.tf");
}

} // namespace
