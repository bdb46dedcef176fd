#include "platform/files.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/codepage.h"
#include "temp_roots.h"

namespace
{

class Files : public testing::Test
{
  protected:
    /// The real path below the test's folder, empty for none.
    std::string Below(const std::string& real) const
    {
        const std::string folder = roots.folder.string() + '/';
        return real.starts_with(folder) ? real.substr(folder.size()) : real;
    }

    static std::vector<std::string> List(const char* pattern)
    {
        std::vector<std::string> names;
        WIN32_FIND_DATAA data;
        const HANDLE search = FindFirstFileA(pattern, &data);
        if (search == INVALID_HANDLE_VALUE) {
            return names;
        }
        do {
            names.emplace_back(data.cFileName);
        } while (FindNextFileA(search, &data));
        EXPECT_FALSE(FindNextFileA(search, &data)) << "the end of a search stays its end";
        EXPECT_TRUE(FindClose(search));
        return names;
    }

    TempRoots roots;
};

using Names = std::vector<std::string>;

TEST_F(Files, ReadsResolveWithoutCaseInBothRootsAndNeverLeaveThem)
{
    roots.Put("game/Resource/Txt_Res/ItfDlg.ini");
    roots.Put("game/both.txt");
    roots.Put("user/BOTH.TXT");
    roots.Put("secret.txt");
    const std::string absolute = (roots.folder / "SECRET.txt").string();

    const struct {
        std::string path;
        std::string found;
    } cases[] = {
        {"resource\\txt_res\\itfdlg.ini", "game/Resource/Txt_Res/ItfDlg.ini"},
        {".\\RESOURCE//./TXT_RES\\ITFDLG.INI", "game/Resource/Txt_Res/ItfDlg.ini"},
        {"resource\\none\\..\\txt_res\\itfdlg.ini", "game/Resource/Txt_Res/ItfDlg.ini"},
        {"both.txt", "user/BOTH.TXT"},
        {"resource\\missing.ini", ""},
        {"both.txt\\x", ""},
        {"..\\secret.txt", ""},
        {"resource\\..\\..\\secret.txt", ""},
        {"resource\\..\\..\\game\\both.txt", ""},
        {"C:\\both.txt", ""},
        {"c:both.txt", ""},
        {"\\both.txt", ""},
        {"\\\\host\\both.txt", ""},
        {"", ""},
        {absolute, "secret.txt"},
        {"/../" + absolute, ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Below(PlatformResolveRead(c.path.c_str())), c.found) << c.path;
    }
    EXPECT_EQ(PlatformResolveRead(nullptr), "");
    EXPECT_TRUE(PlatformIsInsideRoots("scenarios\\new one.sc"));
    for (const char* outside : {"/etc/passwd", "..\\x", "a\\..\\..\\x", "D:x", "\\x", ""}) {
        EXPECT_FALSE(PlatformIsInsideRoots(outside)) << outside;
    }
}

TEST_F(Files, WritesGoToThePlayersFolderAndLeaveTheGameAlone)
{
    roots.Put("game/SaveData/one.sav", "game");
    const auto write = [](const char* path, const char* mode, const char* text) {
        std::FILE* file = PlatformOpenFile(path, mode);
        return file && std::fputs(text, file) >= 0 && std::fclose(file) == 0;
    };
    EXPECT_TRUE(write("savedata\\ONE.sav", "wb", "mine"));
    EXPECT_EQ(roots.Get("user/savedata/ONE.sav"), "mine");
    EXPECT_TRUE(write("SAVEDATA\\one.SAV", "wb", "again"));
    EXPECT_EQ(roots.Get("user/savedata/ONE.sav"), "again") << "an existing file keeps its spelling";
    EXPECT_EQ(roots.Get("game/SaveData/one.sav"), "game");
    EXPECT_FALSE(write("..\\out.txt", "wb", "x"));
    EXPECT_EQ(roots.Get("out.txt"), "(none)");
    EXPECT_FALSE(write("savedata", "wb", "x")) << "a folder is no file";
    EXPECT_FALSE(PlatformOpenFile("savedata", "rb"));

    roots.Put("game/settings.txt", "game");
    EXPECT_TRUE(write("settings.txt", "ab", " and mine"));
    EXPECT_EQ(roots.Get("user/settings.txt"), "game and mine");
    EXPECT_EQ(roots.Get("game/settings.txt"), "game");
    EXPECT_FALSE(write("absent.txt", "r+b", "x"));

    roots.Put("game/fixed.txt", "game");
    std::filesystem::permissions(roots.folder / "game/fixed.txt", std::filesystem::perms::owner_read);
    EXPECT_TRUE(write("fixed.txt", "ab", " and mine"));
    EXPECT_EQ(roots.Get("user/fixed.txt"), "game and mine");
    const auto perms = std::filesystem::status(roots.folder / "user/fixed.txt").permissions();
    EXPECT_NE(perms & std::filesystem::perms::owner_write, std::filesystem::perms::none);

    PlatformSetRoots("", (roots.folder / "game").string());
    EXPECT_FALSE(write("new.txt", "wb", "x")) << "no player's folder: read-only";
}

TEST_F(Files, DeleteAndRenameTouchOnlyThePlayersFolder)
{
    roots.Put("game/a.txt", "game");
    EXPECT_FALSE(PlatformDeleteFile("a.txt"));
    EXPECT_FALSE(PlatformRenameFile("a.txt", "b.txt"));
    roots.Put("user/A.TXT", "mine");
    roots.Put("user/sub/B.txt", "old");
    EXPECT_TRUE(PlatformRenameFile("a.txt", "SUB\\b.TXT"));
    EXPECT_EQ(roots.Get("user/sub/B.txt"), "mine");
    EXPECT_FALSE(PlatformRenameFile("sub\\b.txt", "..\\b.txt"));
    EXPECT_TRUE(PlatformDeleteFile("sub\\b.txt"));
    EXPECT_FALSE(PlatformDeleteFile("sub\\b.txt"));
    EXPECT_FALSE(PlatformDeleteFile("sub")) << "a folder stays";
    EXPECT_EQ(roots.Get("game/a.txt"), "game");
}

TEST_F(Files, SearchesGiveTheSortedUnionOfBothRoots)
{
    roots.Put("game/Scenarios/beta.sc", "game");
    roots.Put("game/Scenarios/Alpha.sc", "game");
    roots.Put("game/Scenarios/notes.txt");
    roots.Put("game/Scenarios/deep/x.sc");
    roots.Put("user/scenarios/BETA.SC", "mine, longer");
    roots.Put("user/scenarios/gamma.sc");
    roots.Put("outside.sc");

    const struct {
        const char* pattern;
        Names names;
    } cases[] = {
        {"scenarios\\*.sc", {"Alpha.sc", "BETA.SC", "gamma.sc"}},
        {"SCENARIOS\\*.*", {".", "..", "Alpha.sc", "BETA.SC", "deep", "gamma.sc", "notes.txt"}},
        {"scenarios\\?????.sc", {"Alpha.sc", "BETA.SC", "gamma.sc"}},
        {"scenarios\\*a*a.s?", {"Alpha.sc", "gamma.sc"}},
        {"scenarios\\ALPHA.SC", {"Alpha.sc"}},
        {"scenarios\\missing.sc", {}},
        {"nowhere\\*.*", {}},
        {"scenarios\\", {}},
        {"..\\*.sc", {}},
        {"..", {".."}},
        {"C:*", {}},
        {"*", {".", "..", "scenarios"}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(List(c.pattern), c.names) << c.pattern;
    }
    EXPECT_EQ(List((roots.folder.string() + "/*.SC").c_str()), Names{"outside.sc"});

    WIN32_FIND_DATAA data;
    const HANDLE search = FindFirstFileA("scenarios\\beta.*", &data);
    ASSERT_NE(search, INVALID_HANDLE_VALUE);
    EXPECT_EQ(data.nFileSizeLow, 12u) << "the player's file hides the game's";
    EXPECT_FALSE(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY);
    FindClose(search);
    EXPECT_FALSE(FindClose(INVALID_HANDLE_VALUE));
}

TEST_F(Files, WildcardsTakeADotOrTheEndOfANameForNothing)
{
    for (const char* name : {"scen1.sav", "scen12.sav", "scen1234.sav", "scen12345.sav", "name", "name.txt",
                             "two.dots.txt", ".hidden"}) {
        roots.Put(std::string("game/f/") + name);
    }
    const Names all = {".",         "..",         ".hidden",      "name",          "name.txt",
                       "scen1.sav", "scen12.sav", "scen1234.sav", "scen12345.sav", "two.dots.txt"};
    const struct {
        const char* mask;
        Names names;
    } cases[] = {
        {"scen????.sav", {"scen1.sav", "scen12.sav", "scen1234.sav"}},
        {"scen1?3?.sav", {"scen1234.sav"}},
        {"scen1?2?.sav", {}},
        {"scen?.sav", {"scen1.sav"}},
        {"name????", {"name"}},
        {"????", {"name"}},
        {"????????.???", {".", "name", "name.txt", "scen1.sav", "scen12.sav", "scen1234.sav"}},
        {"???.dots.*", {"two.dots.txt"}},
        {"two?dots.txt", {}},
        {"name.*", {"name", "name.txt"}},
        {"NAME.?", {"name"}},
        {"name.", {"name"}},
        {"name*", {"name", "name.txt"}},
        {"*.", {".", "..", "name"}},
        {"n*.", {"name"}},
        {"*.txt", {"name.txt", "two.dots.txt"}},
        {"*.dots.*", {"two.dots.txt"}},
        {"*o*.t*t", {"two.dots.txt"}},
        {".*", {".", "..", ".hidden"}},
        {"?", {}},
        {".", {"."}},
        {"*", all},
        {"*.*", all},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(List((std::string("f\\") + c.mask).c_str()), c.names) << c.mask;
    }
    EXPECT_TRUE(List(("f\\" + std::string(2000, '*') + "x").c_str()).empty());
}

TEST_F(Files, NamesAreCodePageBytesHereAndUtf8OnTheDisk)
{
    roots.Put("game/\xc3\x9c"
              "bung.sc");              // U umlaut
    roots.Put("game/\xe6\xb5\xb7.sc"); // no character of the code page
    EXPECT_EQ(List("*.sc"), (Names{"\xe6\xb5\xb7.sc", "\xdc"
                                                      "bung.sc"}));
    EXPECT_NE(PlatformResolveRead("\xfc"
                                  "BUNG.SC"),
              "")
        << "case of letters beyond ASCII";
    EXPECT_NE(PlatformResolveRead("\xe6\xb5\xb7.sc"), "");
    std::FILE* file = PlatformOpenFile("Gr\xfc\xdf"
                                       "e.txt",
                                       "wb");
    ASSERT_TRUE(file);
    std::fclose(file);
    EXPECT_EQ(roots.Get("user/Gr\xc3\xbc\xc3\x9f"
                        "e.txt"),
              "");
}

TEST(CodePage, EveryByteSurvivesTheWayToUtf8AndBack)
{
    std::string all;
    for (int c = 1; c < 256; ++c) {
        all += static_cast<char>(c);
    }
    EXPECT_EQ(PlatformFromUtf8(PlatformToUtf8(all)), all);
    EXPECT_EQ(PlatformToUtf8("\x80"), "\xe2\x82\xac");
    EXPECT_EQ(PlatformFromUtf8("a\xe6\xb5\xb7\xc3"
                               "b\xed\xa0\x80\xf5\xc0\x80"),
              "a??b??????");
    EXPECT_EQ(PlatformLower(0x9f), 0xff);
    EXPECT_EQ(PlatformLower(0xd7), 0xd7) << "the multiplication sign is no letter";
    EXPECT_LT(PlatformCompareNoCase("ab", "ABC"), 0);
}

} // namespace
