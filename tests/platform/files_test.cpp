#include "platform/files.h"

#include <gtest/gtest.h>

#include <string>

#include "../support/rows.h"
#include "platform/codepage.h"
#include "temp_roots.h"

namespace
{

class Files : public testing::Test
{
  protected:
    /// Where a read finds the path, below the test's folder; empty for none.
    std::string Found(const std::string& path) const
    {
        const std::string real = PlatformResolveRead(path.c_str());
        const std::string folder = roots.folder.string() + '/';
        return real.starts_with(folder) ? real.substr(folder.size()) : real;
    }

    /// The names of a search, a blank behind each.
    static std::string List(const std::string& pattern)
    {
        std::string names;
        WIN32_FIND_DATAA data;
        const HANDLE search = FindFirstFileA(pattern.c_str(), &data);
        if (search == INVALID_HANDLE_VALUE)
            return names;
        do {
            names += std::string(data.cFileName) + ' ';
        } while (FindNextFileA(search, &data));
        EXPECT_FALSE(FindNextFileA(search, &data)) << "the end of a search stays its end";
        EXPECT_TRUE(FindClose(search));
        return names;
    }

    TempRoots roots;
};

TEST_F(Files, ReadsResolveWithoutCaseInBothRootsAndNeverLeaveThem)
{
    roots.Put("game/Resource/Txt_Res/ItfDlg.ini");
    roots.Put("game/both.txt");
    roots.Put("user/BOTH.TXT");
    roots.Put("secret.txt");
    const std::string absolute = (roots.folder / "SECRET.txt").string();
    for (const char* path : {"resource\\txt_res\\itfdlg.ini", ".\\RESOURCE//./TXT_RES\\ITFDLG.INI",
                             "resource\\none\\..\\txt_res\\itfdlg.ini"})
        EXPECT_EQ(Found(path), "game/Resource/Txt_Res/ItfDlg.ini") << path;
    EXPECT_EQ(Found("both.txt"), "user/BOTH.TXT") << "the player's file wins";
    EXPECT_EQ(Found(absolute), "secret.txt");
    for (const std::string& path :
         {std::string("resource\\missing.ini"), std::string("both.txt\\x"), std::string("..\\secret.txt"),
          std::string("resource\\..\\..\\game\\both.txt"), std::string("C:\\both.txt"),
          std::string("c:both.txt"), std::string("\\both.txt"), std::string("\\\\host\\both.txt"),
          std::string(), "/../" + absolute})
        EXPECT_EQ(Found(path), "") << path;
    EXPECT_TRUE(PlatformIsInsideRoots("scenarios\\new one.sc"));
    for (const char* outside : {"/etc/passwd", "..\\x", "a\\..\\..\\x", "D:x", "\\x", ""})
        EXPECT_FALSE(PlatformIsInsideRoots(outside)) << outside;
}

TEST_F(Files, WritesGoToThePlayersFolderAndLeaveTheGameAlone)
{
    roots.Put("game/SaveData/one.sav", "game");
    const auto write = [](const char* path, const char* mode, const char* text) {
        std::FILE* file = PlatformOpenFile(path, mode);
        return file && std::fputs(text, file) >= 0 && std::fclose(file) == 0;
    };
    EXPECT_TRUE(write("savedata\\ONE.sav", "wb", "mine"));
    EXPECT_TRUE(write("SAVEDATA\\one.SAV", "wb", "again"));
    EXPECT_EQ(roots.Get("user/savedata/ONE.sav"), "again") << "an existing file keeps its spelling";
    EXPECT_EQ(roots.Get("game/SaveData/one.sav"), "game");
    EXPECT_FALSE(write("..\\out.txt", "wb", "x"));
    EXPECT_EQ(roots.Get("out.txt"), "(none)");
    EXPECT_FALSE(write("savedata", "wb", "x")) << "a folder is no file";
    EXPECT_FALSE(PlatformOpenFile("savedata", "rb"));
    EXPECT_FALSE(write("absent.txt", "r+b", "x"));

    roots.Put("game/fixed.txt", "game");
    std::filesystem::permissions(roots.folder / "game/fixed.txt", std::filesystem::perms::owner_read);
    EXPECT_TRUE(write("fixed.txt", "ab", " and mine"));
    EXPECT_EQ(roots.Get("user/fixed.txt"), "game and mine");
    EXPECT_EQ(roots.Get("game/fixed.txt"), "game");
    const auto perms = std::filesystem::status(roots.folder / "user/fixed.txt").permissions();
    EXPECT_NE(perms & std::filesystem::perms::owner_write, std::filesystem::perms::none);

    roots.Put("user/sub/B.txt", "old");
    EXPECT_FALSE(PlatformDeleteFile("savedata\\two.sav"));
    EXPECT_TRUE(PlatformRenameFile("fixed.txt", "SUB\\b.TXT"));
    EXPECT_EQ(roots.Get("user/sub/B.txt"), "game and mine");
    EXPECT_FALSE(PlatformRenameFile("sub\\b.txt", "..\\b.txt"));
    EXPECT_TRUE(PlatformDeleteFile("sub\\b.txt"));
    EXPECT_FALSE(PlatformDeleteFile("sub")) << "a folder stays";
    EXPECT_FALSE(PlatformDeleteFile("fixed.txt")) << "so does the game's file";
    EXPECT_FALSE(PlatformRenameFile("fixed.txt", "b.txt"));
    EXPECT_EQ(roots.Get("game/fixed.txt"), "game");

    PlatformSetRoots("", (roots.folder / "game").string());
    EXPECT_FALSE(write("new.txt", "wb", "x")) << "no player's folder: read-only";
}

TEST_F(Files, SearchesGiveTheSortedUnionOfBothRoots)
{
    for (const char* name : {"beta.sc", "Alpha.sc", "notes.txt", "deep/x.sc"})
        roots.Put(std::string("game/Scenarios/") + name, "game");
    roots.Put("user/scenarios/BETA.SC", "mine, longer");
    roots.Put("user/scenarios/gamma.sc");
    roots.Put("outside.sc");
    EXPECT_EQ(List("SCENARIOS\\*.*"), ". .. Alpha.sc BETA.SC deep gamma.sc notes.txt ");
    EXPECT_EQ(List("scenarios\\*.sc"), "Alpha.sc BETA.SC gamma.sc ");
    EXPECT_EQ(List("*"), ". .. scenarios ");
    EXPECT_EQ(List(".."), ".. ");
    for (const char* pattern : {"..\\*.sc", "nowhere\\*.*", "scenarios\\", "C:*"})
        EXPECT_EQ(List(pattern), "") << pattern;
    EXPECT_EQ(List(roots.folder.string() + "/*.SC"), "outside.sc ");

    WIN32_FIND_DATAA data;
    const HANDLE search = FindFirstFileA("scenarios\\beta.*", &data);
    ASSERT_NE(search, INVALID_HANDLE_VALUE);
    EXPECT_EQ(data.nFileSizeLow, 12u) << "the player's file hides the game's";
    FindClose(search);
}

TEST_F(Files, WildcardsTakeADotOrTheEndOfANameForNothing)
{
    for (const char* name :
         {"s1.sav", "s12.sav", "s1234.sav", "s12345.sav", "name", "name.txt", "two.dots.txt", ".hidden"})
        roots.Put(std::string("game/f/") + name);
    const char* const all = ". .. .hidden name name.txt s1.sav s12.sav s1234.sav s12345.sav two.dots.txt ";
    EXPECT_EQ(List("f\\????????.???"), ". name name.txt s1.sav s12.sav s1234.sav s12345.sav ");
    for (const auto& [mask, names] : {std::pair("s????.sav", "s1.sav s12.sav s1234.sav "),
                                      {"s1?3?.sav", "s1234.sav "},
                                      {"????", "name "},
                                      {"???.dots.*", "two.dots.txt "},
                                      {"two?dots.txt", ""},
                                      {"name.*", "name name.txt "},
                                      {"NAME.?", "name "},
                                      {"name.", "name "},
                                      {"*.", ". .. name "},
                                      {"*o*.t*t", "two.dots.txt "},
                                      {".*", ". .. .hidden "},
                                      {"?", ""},
                                      {".", ". "},
                                      {"*", all},
                                      {"*.*", all}})
        EXPECT_EQ(List(std::string("f\\") + mask), names) << mask;
    EXPECT_EQ(List("f\\" + std::string(2000, '*') + "x"), "") << "in no more than a moment";
}

TEST_F(Files, NamesAreCodePageBytesHereAndUtf8OnTheDisk)
{
    roots.Put("game/\xc3\x9ctz.sc");   // U umlaut
    roots.Put("game/\xe6\xb5\xb7.sc"); // no character of the code page
    EXPECT_EQ(List("*.sc"), "\xe6\xb5\xb7.sc \xdctz.sc ");
    EXPECT_EQ(Found("\xfcTZ.SC"), "game/\xc3\x9ctz.sc") << "case of letters beyond ASCII";
    EXPECT_EQ(Found("\xe6\xb5\xb7.sc"), "game/\xe6\xb5\xb7.sc");
    std::FILE* file = PlatformOpenFile("Gr\xfc\xdfZe.txt", "wb");
    ASSERT_TRUE(file);
    std::fclose(file);
    EXPECT_EQ(roots.Get("user/Gr\xc3\xbc\xc3\x9fZe.txt"), "");

    std::string bytes;
    for (int c = 1; c < 256; ++c)
        bytes += static_cast<char>(c);
    EXPECT_EQ(PlatformFromUtf8(PlatformToUtf8(bytes)), bytes);
    EXPECT_EQ(PlatformToUtf8("\x80"), "\xe2\x82\xac");
    EXPECT_EQ(PlatformFromUtf8("a\xe6\xb5\xb7\xc3z\xed\xa0\x80\xf5\xc0\x80"), "a??z??????");
    EXPECT_EQ(PlatformLower(0x9f), 0xff);
    EXPECT_EQ(PlatformLower(0xd7), 0xd7) << "the multiplication sign is no letter";
    EXPECT_LT(PlatformCompareNoCase("ab", "ABC"), 0);
}

} // namespace
