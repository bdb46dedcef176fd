// What the resource check reads against what the game reads: what the one takes the other takes, wherever the
// file ends.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
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
#include "support/rows.h"

namespace
{

constexpr char FOLDER[] = SEAWARDEN_SOURCE_DIR "/tests/tools/check/resource";

class CheckReaders : public ::testing::Test
{
  protected:
    void Put(const std::string& resource, const std::string& text) const
    {
        roots.Put("game/resource/txt_res/" + resource, text);
    }

    /// Opens the text as a file for a reader of the game.
    ds_file_buffered& Open(const std::string& text)
    {
        file.open_memory("a.ini", {text.begin(), text.end()});
        return file;
    }

    /// What the check reads of a dialog with one record.
    std::optional<DialogRecord> CheckedRecord(const std::string& record) const
    {
        Put("itfdlg.ini", "D { " + record + " }");
        CFaults faults;
        const CNameCheck noNames(faults);
        const std::vector<DialogSection> sections = CDialogReader(noNames, faults).Read();
        return sections.at(0).records.empty() ? std::nullopt : std::optional(sections[0].records[0]);
    }

    TempRoots roots;
    seawarden_test::FakeHost host;
    ds_file_buffered file;
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

TEST_F(CheckReaders, TheCheckTakesTheNamesThatTheGameTakes)
{
    std::filesystem::copy(FOLDER, roots.folder / "game/resource", std::filesystem::copy_options::recursive);
    const Rows<std::string, bool> cases = {
        {"SpriteMap { $S } FontMap { $F }", true},
        {"spritemap\n{\n$S,}\nFONTMAP // rows\n{ $F , }", true},
        {"SpriteMap { $S a \"block.png\" \"b\",\n\"block.png\", , c, block.png } FontMap { $F }", true},
        {"FontMap { $F } SpriteMap { $S }", false},
        {"SpriteMap { $S \"one\" } FontMap { $F }", false},
        {"SpriteMap { $S FontMap { $F }", false},
        {"SpriteMap { $S \"a\" = \"block.png\" } FontMap { $F }", false},
        {"SpriteMap { $S \"open block.png\n } FontMap { $F }", false},
        {"", false},
    };
    for (const auto& [form, taken] : cases) {
        SCOPED_TRACE(form);
        std::string text = form;
        for (const auto& [mark, rows] :
             {std::pair{"$S", RowsOf(OWN_SPRITES, "block.png")}, {"$F", RowsOf(OWN_FONTS, "good.fnt")}}) {
            if (const std::size_t at = text.find(mark); at != std::string::npos)
                text.replace(at, 2, rows);
        }
        if (taken)
            EXPECT_NO_THROW(ReadNameMaps(&Open(text)));
        else
            EXPECT_THROW(ReadNameMaps(&Open(text)), int);
        Put("itfnames.ini", text);
        CFaults faults;
        CNameCheck(faults).Run();
        EXPECT_EQ(faults.Sorted().empty(), taken);
    }
}

// A file of the last save of an editor that died may end anywhere.
TEST_F(CheckReaders, AFileThatEndsAnywhereIsRead)
{
    for (const std::string name : {"itfnames.ini", "itfdlg.ini"}) {
        std::ifstream in(std::string(FOLDER) + "/txt_res/" + name);
        const std::string whole(std::istreambuf_iterator<char>(in), {});
        for (std::size_t size = 0; size <= whole.size(); size += 5) {
            Put(name, whole.substr(0, size));
            CFaults faults;
            CNameCheck names(faults);
            name == "itfnames.ini" ? names.Run() : CDialogCheck(names, faults).Run();
            ASSERT_FALSE(faults.Sorted().empty()) << size;
        }
    }
}

// By the text parser, by the check and by the scenario compiler.
TEST_F(CheckReaders, ANumberIsTheSameForAll)
{
    const Rows<std::string, std::optional<int>> cases = {
        {"+24", 24},        {"010", 10},         {"0X18", 24}, {"0xFFFFFFFF", -1}, {"-2147483648", INT32_MIN},
        {"2147483648", {}}, {"0x100000000", {}}, {"-0x8", {}}, {"0x", {}},         {"12a", {}},
    };
    for (const auto& [form, value] : cases) {
        SCOPED_TRACE(form);
        EXPECT_EQ(ParseTextInt(form), value);
        int read = 0;
        const bool taken = CTextParser(&Open(form + ","), false).ReadIntElem(',', read);
        EXPECT_EQ(taken ? std::optional(read) : std::nullopt, value);

        const auto record =
            CheckedRecord("BUTTON, \"\" \"\" \"\" \"\" \"\", " + form + ", 0, 0, 0, 0, 0, 0, 0, 0");
        EXPECT_EQ(record ? std::optional(record->id) : std::nullopt, value);

        std::optional<int> nation;
        try {
            nation =
                ReadScenarioText(Open("scenario { title \"T\" description \"D\" scene \"S\" time 5 40 am }\n"
                                      "side { nation " +
                                      form + " } side { nation 2 }"))
                    .header.settings.nSideANation;
        } catch (const scenario_exception&) {
        }
        EXPECT_EQ(nation, value);
    }
}

TEST_F(CheckReaders, AFractionIsTheSameForBoth)
{
    const Rows<std::string, std::optional<float>> cases = {
        {"+134.0", 134.0F}, {"-.5e1", -5.0F}, {"7", 7.0F}, {"3.", 3.0F}, {"1e39", {}},
        {"1e-60", {}},      {"0x10", {}},     {"nan", {}}, {"1.5f", {}}};
    for (const auto& [form, value] : cases) {
        SCOPED_TRACE(form);
        float read = 0;
        bool ended = false;
        const bool taken = CTextParser(&Open(form + ","), false).ReadFloatElem(',', '}', read, ended);
        EXPECT_EQ(taken ? std::optional(read) : std::nullopt, value);
        const auto record = CheckedRecord("FLAGBOX, \"\" \"\", 1, 0, 0, 1, 1, " + form + ", 0, 0, 0, 0, 1");
        EXPECT_EQ(record ? std::optional(static_cast<float>(record->rcFlag.left)) : std::nullopt, value);
    }
}

TEST_F(CheckReaders, RowsOfNumbersStandAnywhere)
{
    constexpr char TEXTS[] = "resource\\txt_res\\texts.ini";
    // What the check counts, and what the game takes.
    const Rows<const char*, std::vector<int>, std::vector<int>> cases = {
        {"1, \"a\" 2, \"b\", 3, \"c\"", {1, 2, 3}, {1, 2, 3}},
        {"+1, \"a\" \"b\"\n0x2, \"c\"", {1, 2}, {1, 2}},
        {"1, \"a\n2, \"b\"", {1, 2}, {2}},
        {"1, \"a\r2, \"b\" 3, \"c\"\r", {1, 2, 3}, {2, 3}},
        {"x, \"a\" 1, \"b\"\n2, \"c\"", {2}, {2}},
        {"\"a\" 1", {}, {}},
    };
    for (const auto& [content, counted, taken] : cases) {
        SCOPED_TRACE(content);
        Put("texts.ini", content);
        CFaults faults;
        std::vector<int> rows;
        for (const NumberedRow& row : NumberedRows(ReadTokens(TEXTS, faults), 1))
            rows.push_back(row.number);
        EXPECT_EQ(rows, counted);
        CTextTable texts;
        texts.Load(TEXTS);
        for (int number = 1; number <= 3; ++number)
            EXPECT_EQ(texts.GetText(number)[0] != '?', std::count(taken.begin(), taken.end(), number) != 0);
    }
}

} // namespace
