// The program that checks the resources, on a folder in which nearly everything is wrong. That it finds
// nothing in the shipped data is a test of its own.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace
{

struct Output {
    int exitCode = -1;
    std::vector<std::string> lines;
};

Output Check(const std::string& arguments)
{
    Output run;
    const std::string command = std::string(SEAWARDEN_CHECK) + " " + arguments + " 2>&1";
    std::FILE* out = popen(command.c_str(), "r");
    if (out == nullptr)
        return run;
    std::string text;
    for (int c = std::fgetc(out); c != EOF; c = std::fgetc(out)) {
        if (c != '\n') {
            text += static_cast<char>(c);
            continue;
        }
        run.lines.push_back(text);
        text.clear();
    }
    const int status = pclose(out);
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

// What each line of the folder's files is broken for; sorted as the program tells them.
struct Expected {
    const char* file;
    std::vector<std::string> faults;
};
const Expected BROKEN_FOLDER[] = {
    {R"(resource\custom\broken.ini)",
     {
         "(1): expected guid { and four numbers with commas between }",
     }},
    {R"(resource\custom\good.ini)",
     {
         R"(: the texture "atoll.tf" can't be loaded: there is no such file)",
     }},
    {R"(resource\textures\)",
     {
         R"(: the texture "white_flg.tf" can't be loaded: there is no such file)",
     }},
    {R"(resource\txt_res\broken.fnt)",
     {
         R"((4): expected a number, found "eight")",
     }},
    {R"(resource\txt_res\flags.ini)",
     {
         R"((2): the texture "block.png" can't be loaded: there is no such file)",
         "(2): there is no text 1002, the name of this flag's nation",
         "(3): flag 1001 has a variant 0 already",
         R"((3): expected a number, found "x")",
         R"((3): the texture "nowhere.png" can't be loaded: there is no such file)",
         "(3): there is no text 1003, the name of this flag's nation",
     }},
    {R"(resource\txt_res\itfdlg.ini)",
     {
         "(1): expected a section's name and {, found stray",
         "(2): MainDlg lacks the MENU 10",
         "(3): the dialog 0, 0, 801, 600 isn't within the screen",
         "(4): MainDlg knows no control 20",
         "(5): there is no menu 10 above this record",
         R"((8): the sprite "nowhere" isn't in itfnames.ini)",
         R"((9): the font "nofontofours" isn't in itfnames.ini)",
         "(9): there is no style TBSTYLE_CENTRED for a TEXTBOX",
         "(10): expected a keyword, found LABEL",
         "(11): expected a text in quotes, found ,",
         "(12): expected a number, found twenty",
         "(13): expected a number, found BUTTON",
         "(14): expected a comma, found 10",
         "(15): expected a text in quotes, found OK",
         "(16): 20000 is no coordinate",
         R"((17): the font " " isn't in itfnames.ini)",
         R"((17): the sprite " " isn't in itfnames.ini)",
         R"((17): the sprite " " isn't in itfnames.ini)",
         R"((17): expected a text, found a text without its closing quote: ", 10, 0, 0, 80, 20, -1, -1, -1, -1,")",
         "(18): expected a comma or } behind 20, found -1",
         "(19): there is no style TBSTYLE_CENTERED for a CHECKBOX",
         "(19): control 10 of MessageBoxDlg has to be of the kind BUTTON",
         "(20): the section ends within this record",
         "(22): MessageBoxYesNoDlg has no DIALOG record, which gives it its place",
         R"((23): text 83 "Attention" is 72 pixels wide with itfListFont, its place has 71)",
         R"((23): text 12201 "Attention" is 72 pixels wide with itfListFont, its place has 71)",
         "(24): expected a record in front of the }",
         "(27): the rectangle 100, 0, 201, 20 isn't within the dialog",
         "(28): the rectangle 20, 0, 10, 20 has a negative size",
         "(28): the inner rectangle 0, 0, 0, 0 isn't within the control",
         R"((29): "Eleven char" is 88 pixels wide with itfBtnFont, its place has 87)",
         "(30): the inner rectangle 8, 0, 108, 20 isn't within the control",
         "(31): EditBoxDlg knows no control 0",
         "(32): the id 30 stands in this section already",
         R"((33): "Label" is 40 pixels wide with itfListFont, its place has 39)",
         R"((34): "Two words" takes 20 pixels in height with itfListFont, its place has 19)",
         R"((36): "Caption" is 56 pixels wide with itfListFont, its place has 55)",
         R"((37): "Caption" is 56 pixels wide with itfListFont, its place has 55)",
         R"((38): "Caption" is 56 pixels wide with itfListFont, its place has 55)",
         "(42): there is no table 20 above this record",
         "(43): table 20 of FileDlg has to have 1 columns, not 3",
         "(43): the columns of table 20 end 1 pixels right of it",
         R"((44): "Name" is 32 pixels wide with itfBtnFont, its place has 31)",
         "(45): -1 is no size or count",
         "(46): there is no column 3 in table 20 to sort by, they count from 0",
         "(46): the rectangle 100, 0, 201, 20 isn't within the table",
         "(47): there is no style FB_LEFT for a FLAGBOX",
         "(47): the flag 750, 0, 801, 40 isn't within the screen",
         "(47): control 30 of FileDlg has to be of the kind EDITBOX",
         "(49): no dialog reads the section NobodysDlg",
         "(52): there is a section FileDlg above already, which hides this one",
         "(53): expected a record in front of the }",
         "(56): control 10 of ScenSelDlg has to be of the kind TABLE",
         "(57): there is no style DISABELD for a MENUITEM",
         R"((57): "Thirteen char" is 104 pixels wide with itfMenuFont, its place has 100)",
         "(57): ScenSelDlg knows no menu item 1",
         "(58): the section ScenSelDlg isn't closed",
         "(58): there is no section ScenBriefDlg",
         "(58): there is no section HelpDlg",
         "(58): there is no section CreditsDlg",
         "(58): there is no section EndGameDlg",
         "(58): there is no section StatisticsDlg",
         "(58): there is no section ScStatusDlg",
     }},
    {R"(resource\txt_res\itfnames.ini)",
     {
         R"((20): the picture "broken.png" of "broken" can't be loaded: neither PNG nor BMP nor TGA)",
         R"((21): the picture "nowhere.png" of "lost" can't be loaded: there is no such file)",
         R"((22): the name "itfbtup" has a row already)",
         "(23): expected a file, found =",
         R"((24): expected a text, found a text without its closing quote: ",")",
         R"((25): the name "aNameOfThirtyTwoCharactersOrSo_32" has more than 31 characters)",
         R"((35): the font "broken.fnt" of "brokenFont" can't be loaded)",
         "(36): surface: nowhere.png: there is no such file",
         R"((36): the font "lost.fnt" of "lostFont" can't be loaded)",
         R"((37): can't open resource\txt_res\nofont.fnt)",
         R"((37): the font "nofont.fnt" of "noFont" can't be loaded)",
         "(38): the section FontMap isn't closed",
         R"((38): there is no sprite "itfScLogo")",
         R"((38): there is no font "itfMenuFontDis")",
     }},
    {R"(resource\txt_res\lost.fnt)",
     {
         R"((1): the texture "nowhere.png" can't be loaded)",
     }},
    {R"(resource\txt_res\texts.ini)",
     {
         "(5): text 26 stands in the file already",
         "(9): text 83 stands in the file already",
         "(10): nothing uses text 98",
         "(10): nothing uses text 99",
         R"((11): expected \n, \t, \q or \\ in a text)",
         "(12): expected a text in quotes behind the number",
         "(68): there is no text 13150, the program's TEXT_LEAVE_CAPTION",
         "(68): there is no text 71, the message about a scenario without a battle",
     }},
    {R"(scenarios\broken.sc)",
     {
         ": a file of 12 bytes, at byte 0",
     }},
    {R"(scenarios\unknown.sc)",
     {
         ": nobody in it can fight",
         ": there is no custom nation with the guid of its first side",
         ": there is no flag 16 for its second side",
         R"(: there is no text 1999, the class of "One")",
     }},
};

TEST(Check, TellsEveryFaultAtOnceWithItsLine)
{
    std::vector<std::string> expected;
    for (const Expected& file : BROKEN_FOLDER) {
        for (const std::string& fault : file.faults)
            expected.push_back(file.file + fault);
    }
    const Output run = Check("--data " SEAWARDEN_SOURCE_DIR "/tests/tools/check");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.lines, expected);
}

TEST(Check, AFolderWithoutResourcesIsFullOfFaults)
{
    const Output run = Check("--data " SEAWARDEN_SOURCE_DIR "/no_such_folder");
    EXPECT_EQ(run.exitCode, 1);
    for (const char* file : {"itfdlg.ini", "itfnames.ini", "texts.ini", "flags.ini"}) {
        const std::string wanted = std::string("resource\\txt_res\\") + file + ": can't open";
        const auto tells = [&wanted](const std::string& line) { return line.starts_with(wanted); };
        EXPECT_TRUE(std::any_of(run.lines.begin(), run.lines.end(), tells)) << file;
    }
}

TEST(Check, ThePlayersFilesHideTheGames)
{
    const Output run =
        Check("--data " SEAWARDEN_SOURCE_DIR "/data --user " SEAWARDEN_SOURCE_DIR "/tests/tools/check");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(std::count(run.lines.begin(), run.lines.end(),
                         R"(scenarios\broken.sc: a file of 12 bytes, at byte 0)"),
              1);
    for (const std::string& line : run.lines)
        EXPECT_EQ(line.find("white_flg"), std::string::npos) << "the game has it: " << line;
}

TEST(Check, WrongArgumentsTellTheUsage)
{
    for (const char* arguments : {"", "--data", "--date x", "--data x y", "--data x --user"}) {
        const Output run = Check(arguments);
        EXPECT_EQ(run.exitCode, 2) << arguments;
        ASSERT_FALSE(run.lines.empty());
        EXPECT_TRUE(run.lines[0].starts_with("usage:")) << run.lines[0];
    }
}

} // namespace
