// The program that checks the resources. That it finds nothing in the shipped data is a test of its own.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "run_tool.h"

namespace
{

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

constexpr char BROKEN_FOLDER[] = SEAWARDEN_SOURCE_DIR "/tests/tools/check";

std::pair<int, std::string> Check(const std::string& arguments)
{
    return RunTool(std::string(SEAWARDEN_CHECK) + " " + arguments);
}

// Nearly everything in the folder is wrong.
TEST(Check, TellsEveryFaultAtOnceWithItsLine)
{
    const auto [status, told] = Check(std::string("--data ") + BROKEN_FOLDER);
    EXPECT_EQ(status, 1);
    std::ifstream expected(std::string(BROKEN_FOLDER) + "_expected.txt");
    EXPECT_EQ(told, std::string(std::istreambuf_iterator<char>(expected), {}));
}

TEST(Check, AFolderWithoutResourcesIsFullOfFaults)
{
    const auto [status, told] = Check("--data " SEAWARDEN_SOURCE_DIR "/no_such_folder");
    EXPECT_EQ(status, 1);
    for (const char* file : {"itfdlg.ini", "itfnames.ini", "texts.ini", "flags.ini"})
        EXPECT_THAT(told, HasSubstr(std::string("resource\\txt_res\\") + file + ": can't open"));
}

TEST(Check, ThePlayersFilesHideTheGames)
{
    const auto [status, told] =
        Check(std::string("--data " SEAWARDEN_SOURCE_DIR "/data --user ") + BROKEN_FOLDER);
    EXPECT_EQ(status, 1);
    EXPECT_THAT(told, HasSubstr("scenarios\\broken.sc: a file of 12 bytes, at byte 0\n"));
    EXPECT_THAT(told, Not(HasSubstr("white_flg"))) << "the game has it";
}

TEST(Check, WrongArgumentsTellTheUsage)
{
    for (const char* arguments : {"", "--data", "--date x", "--data x y", "--data x --user"}) {
        const auto [status, told] = Check(arguments);
        EXPECT_EQ(status, 2) << arguments;
        EXPECT_THAT(told, StartsWith("usage:")) << arguments;
    }
}

} // namespace
