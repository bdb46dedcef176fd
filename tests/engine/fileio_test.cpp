// Files by handle and searches, on real files below both roots.

#include "lib/fileio.h"

#include <gtest/gtest.h>

#include <string>

#include "../platform/temp_roots.h"
#include "../support/rows.h"
#include "lib/findfile.h"

namespace
{

class FileIO : public testing::Test
{
  protected:
    auto CountFiles() const
    {
        const std::filesystem::directory_iterator files(roots.folder / "user");
        return std::distance(begin(files), end(files));
    }
    TempRoots roots;
};

/// The text of the FileException that `action` throws, empty without one.
template <class Action>
std::string Thrown(Action action)
{
    try {
        action();
    } catch (const CFileIO::FileException& error) {
        return error.what();
    }
    return {};
}

TEST_F(FileIO, FlagsChooseAccessAndCreation)
{
    const Rows<std::uint32_t, bool, bool, bool, bool, bool> rows = {
        {0x411, true, false, true, true, false}, {0x412, true, false, true, false, true},
        {0x414, true, false, true, true, true},  {0x212, true, true, false, false, true},
        {0x211, true, true, false, true, false}, {0x114, false, true, true, true, true},
        {0x012, false, true, true, false, true}, {0x81f, true, true, true, true, true},
    };
    for (const auto& [flags, opensOld, opensNew, keepsOld, reads, writes] : rows) {
        SCOPED_TRACE(flags);
        roots.Put("user/old", "abc");
        CFileIO file;
        EXPECT_EQ(file.Open("OLD", flags), opensOld);
        file.Close();
        EXPECT_EQ(roots.Get("user/old"), keepsOld ? "abc" : "");
        EXPECT_EQ(file.Open("sub\\new", flags), opensNew);
        if (file.IsOpen()) {
            char byte = 0;
            EXPECT_EQ(Thrown([&] { file.Write("x", 1); }), writes ? "" : "CFileIO::Write");
            EXPECT_EQ(Thrown([&] { file.Flush(); }), writes ? "" : "CFileIO::Flush");
            EXPECT_EQ(Thrown([&] { EXPECT_EQ(file.Read(&byte, 1), 0u); }), reads ? "" : "CFileIO::Read");
        }
        file.Close();
        std::filesystem::remove_all(roots.folder / "user/sub");
    }
}

TEST_F(FileIO, SharingHoldsOthersBack)
{
    const Rows<std::uint32_t, std::uint32_t, bool> rows = {
        {0x411, 0x411, true},  {0x411, 0x212, false}, {0x212, 0x411, false}, {0x442, 0x441, true},
        {0x401, 0x411, false}, {0x411, 0x401, false}, {0x421, 0x442, true},  {0x422, 0x422, true},
    };
    for (const auto& [first, second, both] : rows) {
        SCOPED_TRACE(testing::Message() << std::hex << first << ' ' << second);
        roots.Put("user/a", "abc");
        CFileIO file("a", first);
        const std::string before = roots.Get("user/a");
        CFileIO other;
        EXPECT_EQ(other.Open("a", second), both);
        EXPECT_EQ(roots.Get("user/a"), before) << "a refused file isn't emptied";
        file.Close();
        EXPECT_TRUE(other.Open("a", second));
    }
}

TEST_F(FileIO, NumbersAndTexts)
{
    CFileIO file("a", 0x214);
    file << std::uint32_t{0x89abcdef} << std::uint16_t{0x8001} << std::uint8_t{0xfe} << "ab"
         << std::string("c\0d", 3) << static_cast<const char*>(nullptr);
    EXPECT_EQ(roots.Get("user/a"), std::string("\xef\xcd\xab\x89\x01\x80\xfe\x61\x62\0c\0d\0\0", 15));
    EXPECT_EQ(file.SeekToBegin(), 0u);
    std::uint32_t four = 0;
    std::uint16_t two = 0;
    std::uint8_t one = 0;
    file >> four >> two >> one;
    EXPECT_TRUE(four == 0x89abcdef && two == 0x8001 && one == 0xfe);
    EXPECT_EQ(file.Seek(-3, CFileIO::end), 12u);
    file >> four;
    EXPECT_EQ(four, 0x89abcdefu) << "the file ends within the number";
    const std::string content(2050, 'x');
    roots.Put("user/from", content);
    CFileIO from("from", CFileIO::READ_EXISTING);
    CFileIO to("to", CFileIO::WRITE_ANEW);
    to.Copy(from, 1025);
    to.CopyAll(from); // goes on behind what was copied
    EXPECT_EQ(roots.Get("user/to"), content);
    EXPECT_EQ(Thrown([&] { to.Copy(from, 1); }), "CFileIO::Copy, 2");
    EXPECT_TRUE(file.Open(file.GetName(), CFileIO::READ_EXISTING)) << "its own name";
    EXPECT_DEATH(file.Seek(0, 3), "seek==begin \\|\\| seek==end \\|\\| seek==current");
    file.Close();
    EXPECT_DEATH(file.GetLength(), "Assertion failed: m_hFile != NULL, file fileio, line");
}

TEST_F(FileIO, PositionsHave32Bits)
{
    CFileIO file("a", 0x214);
    file.Write("0123456789", 10);
    file.Seek(3, CFileIO::begin);
    EXPECT_EQ(file.GetLength(), 10u);
    EXPECT_EQ(Thrown([&] { file.SetLength(0xffffffff); }), "CFileIO::Seek") << "no position";
    file.SetLength(6);
    EXPECT_EQ(roots.Get("user/a"), "012345");
    EXPECT_EQ(Thrown([&] { file.Seek(-7, CFileIO::end); }), "CFileIO::Seek");
    EXPECT_EQ(file.GetPosition(), 3u) << "none of them moves it";
    file.SetLength(0xfffffff0); // with a hole, which takes no room
    EXPECT_EQ(file.SeekToEnd(), 0xfffffff0u);
    EXPECT_EQ(Thrown([&] { file.Seek(0x7fffffff, CFileIO::current); }), "CFileIO::Seek");
    std::filesystem::resize_file(roots.folder / "user/a", 0x100000000);
    EXPECT_EQ(Thrown([&] { file.GetLength(); }), "CFileIO::SeekToEnd");
    EXPECT_EQ(file.GetPosition(), 0xfffffff0u);
}

TEST_F(FileIO, FilesAreCopiedMovedAndDeleted)
{
    roots.Put("game/a", "game's");
    roots.Put("user/b", "old");
    roots.Put("user/folder/c");
    CFileIO changed("a", 0x414);
    changed.Write("X", 1);
    changed.Close();
    EXPECT_EQ(roots.Get("user/a"), "Xame's") << "the game's file is copied before it is changed";
    EXPECT_EQ(roots.Get("game/a"), "game's");
    EXPECT_TRUE(CFileIO::DeleteFile("a"));
    for (const char* path : {"folder", "", "../game/a", "C:\\a", "b/under"})
        EXPECT_FALSE(changed.Open(path, CFileIO::READ_EXISTING)) << path;
    EXPECT_FALSE(changed.Open("a", 0x114)) << "the game has it";
    EXPECT_FALSE(CFileIO::CopyFile("a", "b", false));
    EXPECT_FALSE(CFileIO::CopyFile("a", "folder", true) || CFileIO::CopyFile("none", "b", true));
    EXPECT_FALSE(CFileIO::CopyFile("b", "B", true)) << "itself";
    EXPECT_EQ(roots.Get("user/b"), "old");

    // Whatever has the names that a copy might be made under: a file that is the source, a link, a folder.
    roots.Put("user/b.tmp", "own");
    roots.Put("user/elsewhere", "kept");
    std::filesystem::create_symlink("elsewhere", roots.folder / "user/b.tmp2");
    std::filesystem::create_symlink("nowhere", roots.folder / "user/b.tmp3");
    roots.Put("user/B.TMP4/x");
    const auto count = CountFiles();
    EXPECT_TRUE(CFileIO::CopyFile("b.tmp", "b", true));
    EXPECT_EQ(roots.Get("user/b"), "own");
    EXPECT_EQ(roots.Get("user/b.tmp"), "own");
    EXPECT_EQ(roots.Get("user/elsewhere"), "kept");
    EXPECT_FALSE(CFileIO::CopyFile("a", "b.tmp3", false)) << "a link, though it leads nowhere";
    EXPECT_EQ(CountFiles(), count) << "no temporary is left";
    EXPECT_TRUE(CFileIO::CopyFile("a", "b", true));

    EXPECT_FALSE(CFileIO::MoveFile("b", "a")) << "exists";
    EXPECT_FALSE(CFileIO::MoveFile("a", "d")) << "not the player's";
    EXPECT_TRUE(CFileIO::MoveFile("b", "d"));
    EXPECT_EQ(roots.Get("user/d"), "game's");
    EXPECT_FALSE(CFileIO::DeleteFile("a"));
}

TEST_F(FileIO, ASearchTellsFilesFromFolders)
{
    roots.Put("game/f/b.txt", "12345");
    roots.Put("user/f/sub/c");
    CFindFile search;
    std::string seen;
    for (bool found = search.FindFirst("F\\*.*"); found; found = search.FindNext())
        seen += std::string(search.GetFileName()) + (search.IsSubdirectory() ? " sub" : "") +
                (search.IsFile() ? " " + std::to_string(search.GetLength()) : " dir") + "\n";
    EXPECT_EQ(seen, ". dir\n.. dir\nb.txt 5\nsub sub dir\n");
    EXPECT_TRUE(search.FindFirst(nullptr));
    EXPECT_FALSE(search.FindFirst("f\\none") || search.FindNext()) << "the search before is closed";
    EXPECT_DEATH(search.IsFile(), "m_hFind != NULL, file findfile");
}

} // namespace
