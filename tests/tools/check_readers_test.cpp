// What the resource check reads against what the game reads: what the one takes the other takes, wherever the
// file ends.

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

#include "dialog_check.h"
#include "keelworks/text_parser.h"
#include "kernel/nameloader.h"
#include "kernel/own_names.h"
#include "logic/text_table.h"
#include "name_check.h"
#include "platform/temp_roots.h"
#include "resource_tokens.h"
#include "scenario_text.h"
#include "support/fakes.h"

namespace
{

namespace fs = std::filesystem;

const std::string FOLDER = SEAWARDEN_SOURCE_DIR "/tests/tools/check/resource/";

class CheckReaders : public ::testing::Test
{
  protected:
    CheckReaders()
    {
        roots.Put("game/resource/images/x");
        roots.Put("game/resource/txt_res/x");
        fs::copy_file(FOLDER + "images/block.png", roots.folder / "game/resource/images/block.png");
        fs::copy_file(FOLDER + "txt_res/good.fnt", roots.folder / "game/resource/txt_res/good.fnt");
    }

    void Put(const std::string& resource, const std::string& text) const
    {
        roots.Put("game/resource/txt_res/" + resource, text);
    }

    TempRoots roots;
    seawarden_test::FakeHost host;
};

// Every name that the module itself draws with, so that only the form can be wrong.
template <std::size_t N>
std::string RowsOf(const char* const (&names)[N], const char* file)
{
    std::string rows;
    for (const char* name : names)
        rows += std::string("\"") + name + "\" \"" + file + "\"\n";
    return rows;
}

std::string NameFile(std::string text)
{
    for (const auto& [mark, rows] :
         {std::pair{"$S", RowsOf(OWN_SPRITES, "block.png")}, {"$F", RowsOf(OWN_FONTS, "good.fnt")}}) {
        const std::size_t at = text.find(mark);
        if (at != std::string::npos)
            text.replace(at, 2, rows);
    }
    return text;
}

bool GameTakesNames(const std::string& text)
{
    ds_file_buffered file;
    file.open_memory("itfnames.ini", {text.begin(), text.end()});
    try {
        ReadNameMaps(&file);
        return true;
    } catch (int) {
        return false;
    }
}

std::vector<std::string> NameFaults()
{
    CFaults faults;
    CNameCheck(faults).Run();
    return faults.Sorted();
}

TEST_F(CheckReaders, TheCheckTakesTheNamesThatTheGameTakes)
{
    const struct {
        const char* text;
        bool taken;
    } cases[] = {
        {"SpriteMap { $S } FontMap { $F }", true},
        {"spritemap\n{\n$S,}\nFONTMAP // rows\n{ $F , }", true},
        {"SpriteMap { $S a \"block.png\" \"b\",\"block.png\", , c, block.png } FontMap { $F }", true},
        {"SpriteMap { $S \"two\",\n\"block.png\" } FontMap { $F }", true},
        {"FontMap { $F } SpriteMap { $S }", false},
        {"SpriteMap { $S } FontMap { }", false},
        {"SpriteMap { } FontMap { $F }", false},
        {"SpriteMap { , } FontMap { $F }", false},
        {"SpriteMap { $S \"one\" } FontMap { $F }", false},
        {"SpriteMap { $S \"one\" FontMap { $F }", false},
        {"SpriteMap { $S FontMap { $F }", false},
        {"SpriteMap { $S \"a\" = \"block.png\" } FontMap { $F }", false},
        {"SpriteMap { $S \"open block.png\n } FontMap { $F }", false},
        {"SpriteMap $S FontMap $F", false},
        {"SpriteMap { $S }", false},
        {"SpriteMap", false},
        {"", false},
    };
    for (const auto& c : cases) {
        const std::string text = NameFile(c.text);
        Put("itfnames.ini", text);
        EXPECT_EQ(GameTakesNames(text), c.taken) << c.text;
        const std::vector<std::string> faults = NameFaults();
        EXPECT_EQ(faults.empty(), c.taken) << c.text << "\n" << (faults.empty() ? "" : faults[0]);
    }
}

// A file of the last save of an editor that died may end anywhere.
TEST_F(CheckReaders, AFileThatEndsAnywhereIsRead)
{
    const std::string names =
        "SpriteMap {\n\"a\" \"block.png\",\n\"b\",\nc = \"x\" }\nFontMap { \"f\" \"good.fnt\" }";
    for (std::size_t size = 0; size <= names.size(); ++size) {
        Put("itfnames.ini", names.substr(0, size));
        ASSERT_FALSE(NameFaults().empty()) << size;
    }
    const std::string dialogs = R"(A {
    DIALOG, "", 0, 0, 800, 600,
    BUTTON, "OK" "" "up" "" "IWS_SHADE", 10, 0, 0, 80, 20, -1, -1, -1, -1,
    TABLE, "" "" "" "", 20, 0, 0, 200, 100, 0, 20, 200, 100,
    COLUMN, "Name" "RBCOL_NUMBER", 20, 0, 100, 0, 0, 31, 20,
    FLAGBOX, "" "FB_RIGHT", 30, 0, 0, 10, 10, 1.5, -.2, 0.0, 51, 40, 0.7,
    PICTUREBOX, "a" "" "", 40, 1, 2, 3, 4, 5, 0, 0, 9, 9, -1, -1, -1, -1,
    MENU, "" "" "", "", 50, 0, 0, 100, 100,
    MENUITEM, 50, "Quit" "DISABLED", "", 1, 0, 0, 100, 20
}
MainDlg {
    LABEL, "" 0, x,
    TEXTBOX, "open, 40,
})";
    for (std::size_t size = 0; size <= dialogs.size(); ++size) {
        Put("itfdlg.ini", dialogs.substr(0, size));
        CFaults faults;
        const CNameCheck noNames(faults);
        CDialogCheck(noNames, faults).Run();
        ASSERT_FALSE(faults.Sorted().empty()) << size;
    }
}

// By the text parser, by the check and by the scenario compiler.
TEST_F(CheckReaders, ANumberIsTheSameForAll)
{
    const struct {
        const char* form;
        std::optional<int> value;
    } cases[] = {
        {"24", 24},
        {"+24", 24},
        {"-7", -7},
        {"007", 7},
        {"0x18", 24},
        {"0X18", 24},
        {"0xFFFFFFFF", -1},
        {"0x000000001", 1},
        {"-2147483648", INT32_MIN},
        {"2147483648", std::nullopt},
        {"0x100000000", std::nullopt},
        {"0x-8C", std::nullopt},
        {"-0x8", std::nullopt},
        {"0x", std::nullopt},
        {"+-1", std::nullopt},
        {"-", std::nullopt},
        {"1.5", std::nullopt},
        {"12a", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.form);
        const std::string form = c.form;
        ds_file_buffered file;
        file.open_memory("a.ini", std::vector<char>(form.begin(), form.end()));
        EXPECT_EQ(ParseTextInt(form), c.value);
        const std::string element = form + ",";
        file.open_memory("a.ini", {element.begin(), element.end()});
        int read = 0;
        EXPECT_EQ(CTextParser(&file, false).ReadIntElem(',', read) ? std::optional(read) : std::nullopt,
                  c.value);

        Put("itfdlg.ini", "D { BUTTON, \"\" \"\" \"\" \"\" \"\", " + form + ", 0, 0, 0, 0, 0, 0, 0, 0 }");
        CFaults faults;
        const CNameCheck noNames(faults);
        const std::vector<DialogSection> sections = CDialogReader(noNames, faults).Read();
        ASSERT_EQ(sections.size(), 1U);
        EXPECT_EQ(sections[0].records.empty() ? std::nullopt : std::optional(sections[0].records[0].id),
                  c.value);

        const std::string scenario = "scenario { title \"T\" description \"D\" scene \"S\" time 5 40 am }\n"
                                     "side { nation " +
                                     form + " } side { nation 2 }";
        file.open_memory("a.txt", {scenario.begin(), scenario.end()});
        std::optional<int> nation;
        try {
            nation = ReadScenarioText(file).header.settings.nSideANation;
        } catch (const scenario_exception&) {
        }
        EXPECT_EQ(nation, c.value);
    }
}

TEST_F(CheckReaders, AFractionIsTheSameForBoth)
{
    const struct {
        const char* form;
        std::optional<float> value;
    } cases[] = {
        {"+134.0", 134.0F},      {"-.5e1", -5.0F},       {"7", 7.0F},
        {"1e2", 100.0F},         {"3.", 3.0F},           {"1e39", std::nullopt},
        {"1e-60", std::nullopt}, {"0x10", std::nullopt}, {"nan", std::nullopt},
        {"1.5f", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.form);
        const std::string element = std::string(c.form) + ",";
        ds_file_buffered file;
        file.open_memory("a.ini", {element.begin(), element.end()});
        float read = 0;
        bool ended = false;
        EXPECT_EQ(CTextParser(&file, false).ReadFloatElem(',', '}', read, ended) ? std::optional(read)
                                                                                 : std::nullopt,
                  c.value);
        Put("itfdlg.ini",
            "D { FLAGBOX, \"\" \"\", 1, 0, 0, 1, 1, " + std::string(c.form) + ", 0, 0, 0, 0, 1 }");
        CFaults faults;
        const CNameCheck noNames(faults);
        const std::vector<DialogSection> sections = CDialogReader(noNames, faults).Read();
        ASSERT_EQ(sections.size(), 1U);
        EXPECT_EQ(sections[0].records.empty()
                      ? std::nullopt
                      : std::optional(static_cast<float>(sections[0].records[0].rcFlag.left)),
                  c.value);
    }
}

TEST_F(CheckReaders, RowsOfNumbersStandAnywhere)
{
    const struct {
        const char* text;
        std::vector<int> rows;
        std::vector<int> taken; ///< by the game
    } cases[] = {
        {"1, \"a\" 2, \"b\", 3, \"c\"", {1, 2, 3}, {1, 2, 3}},
        {"+1, \"a\" \"b\"\n0x2, \"c\"", {1, 2}, {1, 2}},
        {"1, \"a\n2, \"b\"", {1, 2}, {2}},
        {"1, \"a\r2, \"b\" 3, \"c\"\r", {1, 2, 3}, {2, 3}},
        {"1,\n2, \"b\"", {1, 2}, {2}},
        {"x, \"a\" 1, \"b\"\n2, \"c\"", {2}, {2}},
        {"\"a\" 1", {}, {}},
    };
    for (const auto& c : cases) {
        Put("texts.ini", c.text);
        CFaults faults;
        std::vector<int> rows;
        for (const NumberedRow& row : NumberedRows(ReadTokens("resource\\txt_res\\texts.ini", faults), 1))
            rows.push_back(row.number);
        EXPECT_EQ(rows, c.rows) << c.text;
        CTextTable texts;
        texts.Load("resource\\txt_res\\texts.ini");
        std::vector<int> taken;
        for (int number = 1; number <= 3; ++number) {
            if (texts.GetText(number)[0] != '?')
                taken.push_back(number);
        }
        EXPECT_EQ(taken, c.taken) << c.text;
    }
}

} // namespace
