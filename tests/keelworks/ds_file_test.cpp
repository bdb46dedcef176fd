#include "keelworks/ds_file.h"

#include <gtest/gtest.h>

#include <string>

#include "../platform/temp_roots.h"

namespace
{

class DsFile : public testing::Test
{
  protected:
    TempRoots roots;
};

TEST_F(DsFile, WritesToThePlayersFolderAndReadsBack)
{
    ds_file file("SaveData\\one.sav", ds_file::MODE_WRITE);
    EXPECT_EQ(file.write("hello", 5), 5u);
    EXPECT_EQ(file.get_size(), 5u);
    EXPECT_TRUE(file.set_pos(1));
    EXPECT_EQ(file.write("E", 1), 1u);
    EXPECT_TRUE(file.set_time(1'000'000'000));
    char buffer[8] = {};
    EXPECT_EQ(file.read(buffer, 8), 0u) << "opened for writing";
    EXPECT_TRUE(file.close());
    EXPECT_EQ(roots.Get("user/SaveData/one.sav"), "hEllo");

    file.open("savedata/ONE.SAV", ds_file::MODE_READ);
    ds_file::sys_time time;
    EXPECT_TRUE(file.get_sys_time(time));
    EXPECT_EQ(time.wYear, 2001);
    EXPECT_EQ(file.write("x", 1), 0u) << "opened for reading";
    EXPECT_FALSE(file.set_pos(6)) << "behind the end";
    EXPECT_TRUE(file.set_pos(4));
    EXPECT_EQ(file.read(buffer, 2), 1u);
}

TEST_F(DsFile, WhatCantBeOpenedThrowsAndLeavesTheFileClosed)
{
    // Longer than what a string keeps inside itself.
    const char* const good = "folder\\a name of some length.txt";
    roots.Put("game/folder/a name of some length.txt", "abc");
    ds_file plain(good, ds_file::MODE_READ);
    ds_file_buffered buffered(good, false);
    for (ds_file* file : {&plain, static_cast<ds_file*>(&buffered)}) {
        ASSERT_NO_THROW(file->open(file->get_name(), ds_file::MODE_READ)) << "again by its own name";
        EXPECT_STREQ(file->get_name(), good);
    }
    for (const char* path : {"missing.txt", "folder", "..\\game\\a.txt", static_cast<const char*>(nullptr)}) {
        EXPECT_THROW(plain.open(path, ds_file::MODE_READ), fopen_exception);
        EXPECT_THROW(buffered.open(path, false), fopen_exception);
        EXPECT_FALSE(plain.is_open() || buffered.is_open());
        EXPECT_EQ(buffered.get_size(), 0u);
    }
    EXPECT_THROW(plain.open(good, 0x41u), fopen_exception) << "no such mode";
    EXPECT_THROW(plain.open("..\\b.txt", ds_file::MODE_WRITE), fopen_exception);
    EXPECT_THROW(static_cast<ds_file&>(buffered).open(good, ds_file::MODE_WRITE), fopen_exception);
}

TEST_F(DsFile, AFullDiskIsToldByClose)
{
    for (const std::size_t size : {std::size_t{1}, std::size_t{1} << 20}) {
        ds_file file("/dev/full", ds_file::MODE_WRITE);
        file.write(std::string(size, 'x').data(), size);
        EXPECT_FALSE(file.close()) << size;
        EXPECT_TRUE(file.close()) << "nothing open any more";
    }
}

TEST_F(DsFile, ABufferedFileIsReadWholeAndBounded)
{
    const std::string content(200'000, 'q');
    roots.Put("game/big.txt", content);
    ds_file_buffered file("big.txt", false);
    EXPECT_EQ(std::string(file.data(), file.get_size()), content);
    EXPECT_NE(file.get_time(), 0);
    std::string all(content.size() + 5, ' ');
    EXPECT_EQ(file.read(all.data(), 7), 7u);
    EXPECT_EQ(file.read(all.data(), all.size()), content.size() - 7);
    EXPECT_FALSE(file.set_pos(content.size() + 1));
    EXPECT_TRUE(file.close());
    EXPECT_EQ(file.read(all.data(), 1), 0u);

    std::filesystem::resize_file(roots.folder / "game/big.txt", ds_file_buffered::MAX_SIZE + 1);
    EXPECT_THROW(file.open("big.txt", false), fopen_exception);
    std::filesystem::resize_file(roots.folder / "game/big.txt", 0);
    file.open("big.txt", false);
    EXPECT_TRUE(file.is_open());
}

} // namespace
