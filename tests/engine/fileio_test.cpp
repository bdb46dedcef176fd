// Files by handle and searches, on real files below both roots.

#include "lib/fileio.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "../platform/temp_roots.h"
#include "lib/findfile.h"

namespace
{

class FileIO : public testing::Test
{
  protected:
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

std::set<std::string> Names(const std::filesystem::path& folder)
{
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.insert(entry.path().filename());
    return names;
}

TEST_F(FileIO, FlagsChooseAccessAndCreation)
{
    const struct {
        std::uint32_t flags;
        bool opensOld, opensNew, keepsOld, reads, writes;
    } rows[] = {
        {0x411, true, false, true, true, false}, {0x412, true, false, true, false, true},
        {0x414, true, false, true, true, true},  {0x212, true, true, false, false, true},
        {0x211, true, true, false, true, false}, {0x114, false, true, true, true, true},
        {0x711, false, true, true, true, false}, {0x012, false, true, true, false, true},
        {0x811, true, true, true, true, false},  {0x81f, true, true, true, true, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.flags);
        roots.Put("user/old", "abc");
        CFileIO file;
        EXPECT_EQ(file.Open("OLD", row.flags), row.opensOld);
        EXPECT_EQ(file.IsOpen(), row.opensOld);
        EXPECT_STREQ(file.GetName(), row.opensOld ? "OLD" : "");
        file.Close();
        EXPECT_EQ(roots.Get("user/old"), row.keepsOld ? "abc" : "");
        EXPECT_EQ(file.Open("sub\\new", row.flags), row.opensNew);
        if (file.IsOpen()) {
            char byte = 0;
            EXPECT_EQ(Thrown([&] { file.Write("x", 1); }), row.writes ? "" : "CFileIO::Write");
            EXPECT_EQ(Thrown([&] { file.Flush(); }), row.writes ? "" : "CFileIO::Flush");
            EXPECT_EQ(Thrown([&] { EXPECT_EQ(file.Read(&byte, 1), 0u); }), row.reads ? "" : "CFileIO::Read");
        }
        file.Close();
        std::filesystem::remove_all(roots.folder / "user/sub");
    }
}

TEST_F(FileIO, TheGamesFileIsCopiedBeforeItIsChanged)
{
    roots.Put("game/a.bin", "abc");
    roots.Put("game/folder/b");
    CFileIO file("a.bin", 0x414);
    file.Write("X", 1);
    file.Close();
    EXPECT_EQ(roots.Get("user/a.bin"), "Xbc");
    EXPECT_EQ(roots.Get("game/a.bin"), "abc");
    for (const char* path : {"folder", "", "../game/a.bin", "C:\\a.bin", "a.bin/under"})
        EXPECT_FALSE(file.Open(path, CFileIO::READ_EXISTING)) << path;
    EXPECT_FALSE(file.Open(nullptr, CFileIO::WRITE_ANEW));
    EXPECT_FALSE(file.Open("a.bin/under", CFileIO::WRITE_ANEW)) << "no folder";
    EXPECT_FALSE(file.Open("folder\\b", 0x114)) << "the game has it";
}

TEST_F(FileIO, SharingHoldsOthersBack)
{
    const struct {
        std::uint32_t first, second;
        bool both;
    } rows[] = {
        {0x411, 0x411, true},  {0x411, 0x212, false}, {0x212, 0x411, false}, {0x442, 0x441, true},
        {0x401, 0x411, false}, {0x411, 0x401, false}, {0x421, 0x442, true},  {0x441, 0x442, true},
        {0x422, 0x422, true},  {0x412, 0x412, false}, {0x444, 0x444, true},
    };
    for (const auto& row : rows) {
        roots.Put("user/a", "abc");
        CFileIO first("a", row.first);
        ASSERT_TRUE(first.IsOpen());
        const std::string before = roots.Get("user/a");
        CFileIO second;
        EXPECT_EQ(second.Open("a", row.second), row.both) << std::hex << row.first << ' ' << row.second;
        EXPECT_EQ(roots.Get("user/a"), before) << "a refused file isn't emptied";
        first.Close();
        EXPECT_TRUE(second.Open("a", row.second));
    }
}

TEST_F(FileIO, NumbersAndTexts)
{
    CFileIO file("a", 0x214);
    file << std::uint32_t{0x89abcdef} << std::uint16_t{0x8001} << std::uint8_t{0xfe} << "ab"
         << std::string("c\0d", 3) << static_cast<const char*>(nullptr);
    EXPECT_EQ(roots.Get("user/a"), std::string("\xef\xcd\xab\x89\x01\x80\xfe"
                                               "ab\0c\0d\0\0",
                                               15));
    EXPECT_EQ(file.SeekToBegin(), 0u);
    std::uint32_t four = 0;
    std::uint16_t two = 0;
    std::uint8_t one = 0;
    file >> four >> two >> one;
    EXPECT_EQ(four, 0x89abcdefu);
    EXPECT_EQ(two, 0x8001);
    EXPECT_EQ(one, 0xfe);
    file.Seek(-3, CFileIO::end);
    file >> four;
    EXPECT_EQ(four, 0x89abcdefu) << "the file ends within the number";
    EXPECT_EQ(file.Read(&four, 4), 0u);
    // The open file's own name may be opened again.
    EXPECT_TRUE(file.Open(file.GetName(), CFileIO::READ_EXISTING));
}

TEST_F(FileIO, PositionsAndLengths)
{
    CFileIO file("a", 0x214);
    file.Write("0123456789", 10);
    EXPECT_EQ(file.Seek(4, CFileIO::begin), 4u);
    EXPECT_EQ(file.Seek(-1, CFileIO::current), 3u);
    EXPECT_EQ(file.GetLength(), 10u);
    EXPECT_EQ(Thrown([&] { file.SetLength(0xffffffff); }), "CFileIO::Seek") << "no position";
    EXPECT_EQ(file.GetPosition(), 3u);
    file.SetLength(6);
    EXPECT_EQ(file.GetPosition(), 3u);
    EXPECT_EQ(roots.Get("user/a"), "012345");
    EXPECT_EQ(Thrown([&] { file.Seek(-1, CFileIO::begin); }), "CFileIO::Seek");
    EXPECT_EQ(Thrown([&] { file.Seek(-7, CFileIO::end); }), "CFileIO::Seek");
    EXPECT_EQ(file.GetPosition(), 3u);
    file.SetLength(0xfffffff0); // with a hole, which takes no room
    EXPECT_EQ(file.GetLength(), 0xfffffff0u);
    EXPECT_EQ(file.SeekToEnd(), 0xfffffff0u);
    EXPECT_EQ(Thrown([&] { file.Seek(0x7fffffff, CFileIO::current); }), "CFileIO::Seek");
    file.SetLength(2);
    EXPECT_EQ(file.GetPosition(), 0xfffffff0u);
    file.Close();
    std::filesystem::resize_file(roots.folder / "user/a", 0x100000000);
    file.Open("a", CFileIO::READ_EXISTING);
    EXPECT_EQ(Thrown([&] { file.GetLength(); }), "CFileIO::SeekToEnd");
    EXPECT_EQ(file.GetPosition(), 0u);
    EXPECT_EQ(Thrown([&] { file.SetLength(1); }), "CFileIO::Write");
}

TEST_F(FileIO, CopiesTakeWholeBlocksAndARest)
{
    std::string content;
    for (int i = 0; i < 3000; ++i)
        content += static_cast<char>(i * 7 % 251);
    const struct {
        std::size_t has;
        std::uint32_t copied;
        const char* thrown;
    } rows[] = {
        {3000, 0, ""},
        {3000, 1023, ""},
        {3000, 2048, ""},
        {3000, 3000, ""},
        {2047, 2048, "CFileIO::Copy"},
        {2048, 2049, "CFileIO::Copy, 2"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.copied);
        roots.Put("user/from", content.substr(0, row.has));
        CFileIO from("from", CFileIO::READ_EXISTING);
        CFileIO to("to", CFileIO::WRITE_ANEW);
        EXPECT_EQ(Thrown([&] { to.Copy(from, row.copied); }), row.thrown);
        if (*row.thrown == '\0') {
            EXPECT_EQ(roots.Get("user/to"), content.substr(0, row.copied));
            EXPECT_EQ(from.GetPosition(), row.copied);
            to.CopyAll(from); // goes on behind what was copied
            EXPECT_EQ(roots.Get("user/to"), content.substr(0, row.has));
        }
    }
}

TEST_F(FileIO, FilesAreCopiedMovedAndDeleted)
{
    roots.Put("game/a", "game's");
    roots.Put("user/b", "old");
    roots.Put("user/folder/c");
    EXPECT_FALSE(CFileIO::CopyFile("a", "b", false));
    EXPECT_FALSE(CFileIO::CopyFile("a", "folder", true));
    EXPECT_FALSE(CFileIO::CopyFile("none", "b", true));
    EXPECT_FALSE(CFileIO::CopyFile("b", "B", true)) << "itself";
    EXPECT_EQ(roots.Get("user/b"), "old");
    EXPECT_TRUE(CFileIO::CopyFile("a", "b", true));
    EXPECT_EQ(roots.Get("user/b"), "game's");

    // Whatever has the names that a copy might be made under: a file that is the source, a link, a folder.
    roots.Put("user/b.tmp", "own");
    roots.Put("user/elsewhere", "kept");
    std::filesystem::create_symlink("elsewhere", roots.folder / "user/b.tmp2");
    std::filesystem::create_symlink("nowhere", roots.folder / "user/b.tmp3");
    roots.Put("user/B.TMP4/x");
    const auto files = Names(roots.folder / "user");
    EXPECT_TRUE(CFileIO::CopyFile("b.tmp", "b", true));
    EXPECT_EQ(roots.Get("user/b"), "own");
    EXPECT_EQ(roots.Get("user/b.tmp"), "own");
    EXPECT_EQ(roots.Get("user/elsewhere"), "kept");
    EXPECT_FALSE(CFileIO::CopyFile("a", "b.tmp3", false)) << "a link, though it leads nowhere";
    EXPECT_EQ(Names(roots.folder / "user"), files);
    EXPECT_TRUE(CFileIO::CopyFile("a", "b", true));

    EXPECT_FALSE(CFileIO::MoveFile("b", "a")) << "exists";
    EXPECT_FALSE(CFileIO::MoveFile("a", "d")) << "not the player's";
    EXPECT_TRUE(CFileIO::MoveFile("b", "d"));
    EXPECT_EQ(roots.Get("user/d"), "game's");
    EXPECT_FALSE(CFileIO::DeleteFile("b"));
    EXPECT_TRUE(CFileIO::DeleteFile("d"));
    EXPECT_FALSE(CFileIO::DeleteFile("a"));
}

TEST_F(FileIO, ProgrammingErrorsEndTheProgram)
{
    roots.Put("user/a", "abc");
    CFileIO closed;
    CFileIO open("a", CFileIO::READ_EXISTING);
    CFindFile search;
    char byte = 0;
    EXPECT_DEATH(closed.Read(&byte, 1), "Assertion failed: m_hFile != NULL, file fileio, line");
    EXPECT_DEATH(closed.GetLength(), "m_hFile != NULL");
    EXPECT_DEATH(open.Copy(closed, 1), "m_hFile != NULL");
    EXPECT_DEATH(open.Seek(0, 3), "seek==begin \\|\\| seek==end \\|\\| seek==current");
    EXPECT_DEATH(search.IsFile(), "m_hFind != NULL, file findfile");
}

TEST_F(FileIO, OneSearchAtATime)
{
    roots.Put("game/f/b.txt", "12345");
    roots.Put("user/f/a.txt", "123");
    roots.Put("user/f/sub/c");
    CFindFile search;
    EXPECT_STREQ(search.GetFileName(), "");
    EXPECT_FALSE(search.FindNext());
    EXPECT_TRUE(search.FindFirst("F\\*.*"));
    std::string seen;
    do {
        seen += std::string(search.GetFileName()) + (search.IsSubdirectory() ? " sub" : "") +
                (search.IsDirectory() ? " dir" : "") +
                (search.IsFile() ? " " + std::to_string(search.GetLength()) : "") + "\n";
    } while (search.FindNext());
    EXPECT_EQ(seen, ". dir\n.. dir\na.txt 3\nb.txt 5\nsub sub dir\n");
    EXPECT_FALSE(search.FindNext());

    EXPECT_TRUE(search.FindFirst("f\\*.*"));
    EXPECT_TRUE(search.FindFirst("f\\b.txt")) << "the first search is closed";
    EXPECT_STREQ(search.GetFileName(), "b.txt");
    EXPECT_FALSE(search.FindFirst("f\\none"));
    EXPECT_FALSE(search.FindNext());
    EXPECT_TRUE(search.FindFirst(nullptr));
}

} // namespace
