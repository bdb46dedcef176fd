// The dialog resource: grammar, styles, errors.

#include "controls/itfbutton.h"
#include "controls/itfeditbox.h"
#include "controls/itfmenu.h"
#include "controls/itfscrollbar.h"
#include "controls/itftextbox.h"
#include "keelworks/ds_file.h"
#include "kernel/dialog_loader.h"
#include "platform/files.h"
#include "support/rows.h"
#include "support/toolkit_fixture.h"

using namespace seawarden_test;

namespace
{

class DialogTest : public ToolkitTest
{
  protected:
    void SetUp() override
    {
        for (const char* name : {"itfBtUp", "itfBtDown", "itfScBar", "itfScArrUp", "itfScArrUpA",
                                 "itfScArrDown", "itfScArrDownA", "itfScHorBar", "itfScHorArrUp",
                                 "itfScHorArrUpA", "itfScHorArrDown", "itfScHorArrDownA", "back"})
            AddSprite(name, 18, 18);
        for (const char* name : {"itfBtnFont", "itfBtnFontA", "itfBtnFontDis", "itfListFont", "itfMenuFont",
                                 "itfMenuFontA", "itfMenuFontDis"})
            AddFont(name);
    }
    bool Load(CItfDialog& dialog, const std::string& text)
    {
        WriteDialogs(text);
        return dialog.CreateFromResource("Test", nullptr, nullptr, nullptr, 5, 0, &engine, "TestDlg");
    }
};

constexpr char EVERY_KEYWORD[] = R"(
OtherDlg { DIALOG, "", 0, 0, 1, 1 }
TestDlg   ; its name, then its records
{
  DIALOG, "back", 100, 110, 500, 410,
  button, "Start", "", "", "", ITFBTSTYLE_MANUAL, 10, 20, 20, 120, 50, 5, 6, 95, 26,
  CHECKBOX, "Flag" "" "" "" "", 20, 20, 60, 38, 78, -1, 0, 0, 0,
  TEXTBOX, "A text", "", "", "", "TBSTYLE_CENTERED", 30, 20, 100, 220, 130, -1,-1,-1,-1,
  TEXTBOX, "A caption", "", "", "", "TBSTYLE_HASCAPTION|TBSTYLE_NOVSCROLL", 40, 20, 140, 220, 170, 0,0,0,0,
  EDITBOX, "typed", "back", "", "EDS_READONLY", 50, 20, 180, 220, 210, 2, 2, 198, 28,
  SLIDER, "", "", 60, 20, 220, 220, 238, -1, 0, 0, 0,
  MENU, "", "x", "y", "z", 70, 20, 240, 220, 400,
  MENUITEM, 70, "First item", "", "", 1, 0, 0, 100, 20,
  BUTTON, "Twice", "", "", "", "", 10, 300, 20, 400, 50, -1, 0, 0, 0,
  MENUITEM, 70, "Second item", "POPUP DISABLED", "", 2, 0, 20, 100, 40
}
)";

TEST_F(DialogTest, EveryKeywordMakesItsControl)
{
    CItfDialog dialog;
    ASSERT_TRUE(Load(dialog, EVERY_KEYWORD));
    EXPECT_EQ(dialog.GetPos(), (POINT{100, 110}));
    EXPECT_EQ(dialog.GetClientRect(), (RECT{0, 0, 400, 300}));
    EXPECT_GE(dialog.GetSprite(), 0);
    const Rows<int, const char*, std::uint32_t, RECT> controls = {
        {10, "Start", 0x100000, {5, 6, 95, 26}}, // the earlier of two with one id
        {20, "Flag", 0x200000, {0, 0, 18, 18}},  // a negative number: the whole control
        {30, "TextBox", 0x30000, {0, 0, 200, 30}}, {40, "A caption", 0xc0000, {0, 0, 0, 0}},
        {50, "EditBox", 0x20000, {2, 2, 198, 28}}, {60, "Slider", 0x10000, {0, 0, 200, 18}},
    };
    for (const auto& [id, caption, style, inner] : controls) {
        SCOPED_TRACE(id);
        const CItfWnd* control = dialog.GetControl(id);
        ASSERT_NE(control, nullptr);
        EXPECT_EQ(control->GetCaption(), caption);
        EXPECT_EQ(control->GetStyle(), style);
        EXPECT_EQ(control->GetInnerRect(), inner);
        EXPECT_TRUE(control->IsVisible());
    }
    EXPECT_NE(dialog.GetControlAs<CItfCheckBox>(20), nullptr);
    EXPECT_STREQ(dialog.GetControlAs<CItfTextBox>(30)->GetText(), "A text");
    EXPECT_STREQ(dialog.GetControlAs<CItfEditBox>(50)->GetText(), "typed");
    CItfMenu* menu = dialog.FindMenu(70);
    ASSERT_NE(menu, nullptr);
    EXPECT_NE(menu->GetRoot().GetItem(1), nullptr);
    EXPECT_EQ(dialog.GetControl(99), nullptr);
    EXPECT_EQ(Toolkit().windows.back().wnd->GetCaption(), "Twice") << "table order is file order";
}

// The inner rectangle and the font come before the text: a text that only then overflows gets its bar at
// once.
TEST_F(DialogTest, ATextIsLaidOutInItsOwnInnerRectangle)
{
    CItfDialog dialog;
    ASSERT_TRUE(Load(dialog, "TestDlg { TEXTBOX, \"one two three four\" \"\" \"itfBtnFont\" \"\" \"\", 7,"
                             " 0, 0, 200, 100, 0, 0, 60, 20 }"));
    ASSERT_EQ(Toolkit().windows.size(), 3u);
    EXPECT_NE(Find<CItfScrollBar>(), nullptr);
}

TEST_F(DialogTest, StylesAreSubstringsOfTheWholeText)
{
    const Rows<const char*, std::uint32_t> cases = {
        {"", 0},
        {"TBSTYLE_CENTERED", 0x30000},
        {"xIWS_SHADEyIWS_VSCROLLz", 0xa},
        {"RBCOL_RIGHT RBCOL_NUMBER RBCOL_FILEDIR", 0x8a000000},
        {"tbstyle_centered", 0},
        {"VSTYLE_LOOP SBSTYLE_NOARROWS", 0x30000},
    };
    for (const auto& [text, style] : cases)
        EXPECT_EQ(ParseControlStyle(text), style) << text;
}

TEST_F(DialogTest, WhatStandsBeforeACommaIsPassedOverWithAWarning)
{
    CItfDialog dialog;
    EXPECT_TRUE(Load(dialog,
                     "TestDlg {\nTEXTBOX, \"a\" \"\" \"\" \"\" TBSTYLE_CENTER_HOR | TBSTYLE_NOVSCROLL,"
                     " 7, 0, 0, 9, 9, -1, 0, 0, 0 }"));
    ASSERT_NE(dialog.GetControl(7), nullptr);
    EXPECT_EQ(dialog.GetControl(7)->GetStyle(), 0x10000u) << "only the first text is the style";
    const std::vector<std::string> debug = TakeDebug();
    ASSERT_EQ(debug.size(), 1u);
    EXPECT_NE(debug[0].find("(2): [TestDlg] expected a comma"), std::string::npos) << debug[0];
}

TEST_F(DialogTest, EveryErrorHasItsCodeAndItsLine)
{
    std::string tooMany = "TestDlg {\nDIALOG, \"\", 0, 0, 1, 1"; // for the window table
    for (int i = 0; i < 200; ++i)
        tooMany += ",\nTEXTBOX, \"\" \"\" \"\" \"\" \"\", 1, 0,0,9,9, -1,0,0,0";
    // the resource, the code, the start of the line about it
    const Rows<std::string, int, const char*> cases = {
        {"", 1, "(1): [TestDlg] there is no section TestDlg"},
        {"TestDlg", 1, "(1): "},
        {"TestDlg {\n}", 1, "(2): "},
        {"TestDlg {\nWIDGET, \"\", 1 }", 1, "(2): [TestDlg] unknown keyword \"WIDGET\""},
        {"TestDlg {\n\nTEXTBOX, \"\" \"\" \"\" \"\" \"\"", 1, "(3): [TestDlg] expected a comma"},
        {"TestDlg {\n\nDIALOG, \"\" 0, 0, 1, 1 }", 1, "(3): [TestDlg] expected a comma"},
        {"TestDlg {\nDIALOG, \"\", 0, 0, 1 }", 1, "(2): [TestDlg] the section ends within a record"},
        {"TestDlg {\nDIALOG, \"\", 0, 0, 1, x }", 1, "(2): "},
        {"TestDlg {\nDIALOG, \"\", 0, 0, 1, 99999999999 }", 1, "(2): "},
        {"TestDlg {\nDIALOG, \"\", 0, 0, 1, 70000 }", 1, "(2): [TestDlg] 70000 is no coordinate"},
        {"TestDlg {\nDIALOG, \"\", 0, 0, 1, 1,\n}", 1, "(3): "},
        {"TestDlg {\nDIALOG, \"open, 0, 0, 1, 1 }\n", 1, "(2): "},
        {"TestDlg {\nDIALOG, \"a_sprite_name_that_is_longer_than_31\", 0, 0, 1, 1 }", 1, "(2): "},
        {"TestDlg {\nMENUITEM, 1 }\nOther {\nDIALOG }", 1, "(2): [TestDlg] the section ends within a"},
        {"TestDlg {\nMENUITEM, 1, \"a\", \"\", \"\", 1, 0, 0, 10, 10 }", 4, "(2): "},
        {tooMany + "}", 3, "("},
    };
    for (const auto& [text, code, where] : cases) {
        SCOPED_TRACE(text.substr(0, 80));
        CItfDialog dialog;
        EXPECT_THROW(Load(dialog, text), int);
        EXPECT_TRUE(Toolkit().windows.empty()) << "nothing stays in the table";
        const std::vector<std::string> debug = TakeDebug();
        ASSERT_GE(debug.size(), 2u);
        EXPECT_TRUE(debug[0].starts_with(std::string(DIALOG_RESOURCE) + where)) << debug[0];
        EXPECT_EQ(debug.back(),
                  "Interface dialog creation failed. Error code: " + std::to_string(code) + "\r\n");
    }
}

TEST_F(DialogTest, MissingSpritesFontsAndFiles)
{
    CItfDialog dialog;
    EXPECT_THROW(
        Load(dialog, "TestDlg {\nBUTTON, \"\", \"nofont\", \"nodown\", \"\", \"\", 1, 0,0,9,9, -1,0,0,0 }"),
        int);
    const std::vector<std::string> debug = TakeDebug();
    ASSERT_EQ(debug.size(), 4u);
    EXPECT_NE(debug[0].find("the font \"nofont\" isn't in itfnames.ini"), std::string::npos);
    EXPECT_NE(debug[1].find("(2): [TestDlg] the sprite \"nodown\""), std::string::npos);
    EXPECT_EQ(debug[3], "Interface dialog creation failed. Error code: 3\r\n");

    // A missing file is no integer.
    PlatformSetRoots((userFolder / "nowhere").string(), (userFolder / "nowhere").string());
    CItfDialog other;
    EXPECT_THROW(other.CreateFromResource("", nullptr, nullptr, nullptr, 0, 0, &engine, "TestDlg"),
                 fopen_exception);
    EXPECT_EQ(TakeDebug().back(), "Interface dialog creation failed. Unknown error.\r\n");
}

} // namespace
