// What the logic does for the scenario dialogs: bringing in scenarios, and the nations that players add.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "keelworks/scenario_samples.h"
#include "logic/custom_resources.h"
#include "logic/scenario_import.h"
#include "platform/temp_roots.h"
#include "support/fakes.h"
#include "support/full_disk.h"
#include "support/rows.h"

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
    const Rows<std::string, std::string> cases = {
        {"out/Storm.exp", "storm.sc"},
        {"out/The Long Night.SC", "the_long_night.sc"},
        {"out/...exp", "imported.sc"},
        {"out/.hidden.exp", "hidden.sc"},
        {"out/\xc3\xa9t\xc3\xa9; rm -rf $HOME%00.exp", "t_rm_-rf_home00.sc"},
        {"out/aaaaaaaaaabbbbbbbbbbccccccccccddddddddddeeeee.exp",
         "aaaaaaaaaabbbbbbbbbbccccccccccdddddddddd.sc"},
    };
    for (const auto& [picked, local] : cases) {
        const std::string bytes = ScenarioTitled(picked);
        roots.Put(picked, bytes);
        EXPECT_EQ(ImportScenario(Path(picked)), local) << picked;
        EXPECT_EQ(roots.Get("user/scenarios/" + local), bytes) << picked;
    }
    EXPECT_EQ(ImportScenario(Path("out\\b\\..\\Storm.exp")), "storm.sc");
    EXPECT_TRUE(host.debug.empty());
}

TEST_F(ImportTest, ADifferentFileIsNeverReplaced)
{
    const std::string first = ScenarioTitled("first");
    const std::string shipped = ScenarioTitled("shipped");
    roots.Put("out/a.exp", first);
    roots.Put("other/A.exp", ScenarioTitled("second"));
    roots.Put("game/Scenarios/B.sc", shipped);
    roots.Put("out/b.exp", shipped);
    roots.Put("other/b.exp", first);
    for (int again = 0; again < 2; ++again) {
        EXPECT_EQ(ImportScenario(Path("out/a.exp")), "a.sc");
        EXPECT_EQ(ImportScenario(Path("other/A.exp")), "a-2.sc");
    }
    EXPECT_EQ(ImportScenario(Path("out/b.exp")), "b.sc") << "the game has it";
    EXPECT_EQ(ImportScenario(Path("other/b.exp")), "b-2.sc") << "the game's isn't hidden";
    EXPECT_EQ(roots.Get("user/scenarios/a.sc"), first);
    EXPECT_EQ(roots.Get("user/scenarios/b.sc"), "(none)");
    std::filesystem::create_directories(roots.folder / "user/scenarios/c.sc");
    roots.Put("out/c.exp", first);
    EXPECT_EQ(ImportScenario(Path("out/c.exp")), "c-2.sc") << "a folder has the name";
    EXPECT_TRUE(host.debug.empty());
}

TEST_F(ImportTest, WhatFailsIsToldAndLeavesNothing)
{
    const std::string good = ScenarioTitled("good");
    roots.Put("out/short.exp", good.substr(0, good.size() - 1));
    roots.Put("out/text.exp", "not a scenario");
    roots.Put("out/good.txt", good);
    roots.Put("out/folder.exp/x");
    roots.Put("out/huge.exp");
    std::filesystem::resize_file(roots.folder / "out/huge.exp", std::uintmax_t{1} << 40);
    ASSERT_EQ(std::system(("mkfifo '" + Path("out/pipe.exp") + "'").c_str()), 0);
    for (const char* name :
         {"short.exp", "text.exp", "good.txt", "folder.exp", "huge.exp", "pipe.exp", "missing.exp", ""}) {
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
    for (const char* name : {"a", "b", "c"})
        roots.Put(std::string("out/") + name + ".exp", good);
    roots.Put("user/victim", "linked");
    roots.Put("user/scenarios/b.sc.tmp", "the player's");
    std::filesystem::create_symlink("../victim", folder / "a.sc.tmp");
    std::filesystem::create_symlink("../nowhere", folder / "C.sc");
    EXPECT_EQ(ImportScenario(Path("out/a.exp")), "a.sc") << "a link has the temporary file's name";
    EXPECT_EQ(ImportScenario(Path("out/b.exp")), "b.sc") << "a file has it";
    EXPECT_EQ(ImportScenario(Path("out/c.exp")), "c-2.sc") << "a link that leads nowhere has the name";
    EXPECT_EQ(roots.Get("user/victim"), "linked");
    EXPECT_EQ(roots.Get("user/scenarios/b.sc.tmp"), "the player's");
    EXPECT_EQ(std::filesystem::read_symlink(folder / "C.sc"), "../nowhere");
    EXPECT_EQ(roots.Get("user/nowhere"), "(none)");
    const std::filesystem::directory_iterator all(folder);
    EXPECT_EQ(std::distance(begin(all), end(all)), 6) << "and no temporary file is left";
}

TEST_F(ImportTest, CustomNationsAreReadFromTheirFolder)
{
    const std::string noGuid = "expected a guid that isn't zero";
    const Rows<std::string, std::string> cases = {
        {"guid { 1, 2, 3, 0xffffffff }\nname \"Atoll\"\nflag \"atoll.tf\"", ""},
        {"flag \"sub\\b.tf\" name \"Bight\" guid { 0x1, 2, 3, 5 }", ""},
        {"guid { 1, 2, 3, 5 } name \"Copy\" flag \"c.tf\"", "another custom nation has this guid"},
        {"guid { 0, 0, 0, 0 } name \"Nobody\" flag \"c.tf\"", noGuid},
        {"guid { 1, 2, 3, 6 } name \"Thief\" flag \"/etc/passwd\"", noGuid},
        {"guid { 1, 2, 3, 6 } name \"Thief\" flag \"..\\x\"", noGuid},
        {"guid { 1, 2, 3 } name \"Short\" flag \"c.tf\"", "expected guid {"},
        {"guid { 1, 2, 3, x } name \"Letter\" flag \"c.tf\"", "expected a number"},
        {"", "expected the token \"guid\""},
    };
    std::vector<std::string> expected;
    char letter = 'a'; // the files are read in their order
    for (const auto& [text, reason] : cases) {
        const std::string file = std::string("custom\\") + letter++ + ".ini";
        roots.Put("user/custom/" + file.substr(7), text);
        if (!reason.empty())
            expected.push_back(file + "(1): " + reason);
    }
    CCustomResources nations;
    nations.Load("custom\\");
    ASSERT_EQ(host.debug.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_TRUE(host.debug[i].starts_with(expected[i])) << host.debug[i];
    const CObjGUID first = {{1, 2, 3, 0xffffffff}};
    const CObjGUID second = {{1, 2, 3, 5}};
    EXPECT_EQ(nations.Find(nullptr), -1);
    EXPECT_EQ(nations.Find(&first), 0);
    EXPECT_EQ(nations.Find(&second), 1);
    char buffer[6] = "?";
    EXPECT_FALSE(nations.GetName(1, buffer, 5)) << "no room for the zero";
    EXPECT_STREQ(buffer, "?");
    EXPECT_TRUE(nations.GetName(1, buffer, 6));
    EXPECT_STREQ(buffer, "Bight");
    EXPECT_FALSE(nations.GetName(-1, buffer, 6) || nations.GetName(2, buffer, 6));
    char file[260];
    EXPECT_FALSE(nations.GetFlagFile(1, 1, file, sizeof file));
    EXPECT_TRUE(nations.GetFlagFile(1, 0, file, sizeof file));
    EXPECT_STREQ(file, "sub\\b.tf");
}

} // namespace
