// The dialog resource: grammar, styles, errors.

#include "controls/itfbutton.h"
#include "controls/itfeditbox.h"
#include "controls/itfmenu.h"
#include "controls/itfscrollbar.h"
#include "controls/itftextbox.h"
#include "keelworks/ds_file.h"
#include "kernel/dialog_loader.h"
#include "platform/files.h"
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
  MENUITEM, 70, "Second item", "POPUP DISABLED", "", 2, 0, 20, 100, 40,
  BUTTON, "Twice", "", "", "", "", 10, 300, 20, 400, 50, -1, 0, 0, 0
}
)";

TEST_F(DialogTest, EveryKeywordMakesItsControl)
{
    CItfDialog dialog;
    ASSERT_TRUE(Load(dialog, EVERY_KEYWORD));
    EXPECT_EQ(dialog.GetPos(), (POINT{100, 110}));
    EXPECT_EQ(dialog.GetClientRect(), (RECT{0, 0, 400, 300}));
    EXPECT_GE(dialog.GetSprite(), 0);

    auto* button = dialog.GetControlAs<CItfButton>(10);
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->GetCaption(), "Start") << "the earlier of two with one id";
    EXPECT_EQ(button->GetStyle(), 0x100000u);
    EXPECT_EQ(button->GetInnerRect(), (RECT{5, 6, 95, 26}));
    EXPECT_TRUE(button->IsVisible());
    EXPECT_EQ(button->GetParent(), &dialog);
    auto* check = dialog.GetControlAs<CItfCheckBox>(20);
    ASSERT_NE(check, nullptr);
    EXPECT_EQ(check->GetStyle(), 0x200000u);
    EXPECT_EQ(check->GetInnerRect(), (RECT{0, 0, 18, 18})) << "a negative number: the whole control";
    auto* text = dialog.GetControlAs<CItfTextBox>(30);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->GetStyle(), 0x30000u);
    EXPECT_EQ(text->GetCaption(), "TextBox");
    auto* caption = dialog.GetControlAs<CItfTextBox>(40);
    ASSERT_NE(caption, nullptr);
    EXPECT_EQ(caption->GetCaption(), "A caption");
    EXPECT_EQ(caption->GetInnerRect(), RECT()) << "four zeros are four zeros";
    auto* edit = dialog.GetControlAs<CItfEditBox>(50);
    ASSERT_NE(edit, nullptr);
    EXPECT_STREQ(edit->GetText(), "typed");
    EXPECT_EQ(edit->GetStyle(), 0x20000u);
    auto* slider = dialog.GetControlAs<CItfSlider>(60);
    ASSERT_NE(slider, nullptr);
    EXPECT_EQ(slider->GetStyle(), 0x10000u);
    CItfMenu* menu = dialog.FindMenu(70);
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(dialog.GetControl(70), menu);
    EXPECT_EQ(dialog.FindMenu(10), nullptr);
    EXPECT_EQ(dialog.GetControl(99), nullptr);
    EXPECT_EQ(Toolkit().windows.size(), 9u) << "both buttons with id 10 exist";
    EXPECT_EQ(Toolkit().windows.back().wnd->GetCaption(), "Twice") << "table order is file order";
}

// The inner rectangle and the font come before the text: a text that only then overflows gets its bar at
// once.
TEST_F(DialogTest, ATextIsLaidOutInItsOwnInnerRectangle)
{
    CItfDialog dialog;
    ASSERT_TRUE(Load(
        dialog,
        "TestDlg { DIALOG, \"\", 0, 0, 400, 300,"
        " TEXTBOX, \"one two three four\" \"\" \"itfBtnFont\" \"\" \"\", 7, 0, 0, 200, 100, 0, 0, 60, 20,"
        " SLIDER, \"\" \"SBSTYLE_NOARROWS\", 8, 0, 200, 200, 230, 10, 5, 190, 23 }"));
    ASSERT_EQ(Toolkit().windows.size(), 4u);
    EXPECT_NE(dynamic_cast<CItfScrollBar*>(Toolkit().windows[2].wnd), nullptr) << "right behind its text box";
    EXPECT_EQ(dialog.GetControl(8)->GetInnerRect(), (RECT{10, 5, 190, 23}));
    EXPECT_EQ(dialog.GetControl(8)->GetStyle(), 0x30000u);
}

TEST_F(DialogTest, StylesAreSubstringsOfTheWholeText)
{
    const std::pair<const char*, std::uint32_t> cases[] = {
        {"", 0},
        {"NOTHING", 0},
        {"TBSTYLE_CENTERED", 0x30000},
        {"TBSTYLE_CENTER_VERT,TBSTYLE_CENTER_HOR", 0x30000},
        {"xIWS_SHADEyIWS_VSCROLLz", 0xa},
        {"RBCOL_RIGHT RBCOL_NUMBER RBCOL_FILEDIR", 0x8a000000},
        {"LBSTYLE_NOSELECT|LBSTYLE_CENTER", 0x50000000},
        {"tbstyle_centered", 0},
        {"VSTYLE_LOOP SBSTYLE_NOARROWS", 0x30000},
    };
    for (const auto& [text, style] : cases)
        EXPECT_EQ(ParseControlStyle(text), style) << text;
}

TEST_F(DialogTest, AnyLastNumberEndsTheSection)
{
    const char* sections[] = {
        "TestDlg { DIALOG, \"\", 1, 2, 30, 40 }",
        "TestDlg { MENU, \"\" \"\" \"\", \"\", 1, 0, 0, 10, 10, MENUITEM, 1, \"a\", \"\", \"\", 1, 0, 0, 10, "
        "10 }",
    };
    for (const char* text : sections) {
        CItfDialog dialog;
        EXPECT_TRUE(Load(dialog, text)) << text;
    }
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
    struct Case {
        const char* text;
        int code;
        const char* where; ///< start of the first debug line
    };
    const std::string resource = DIALOG_RESOURCE;
    const Case cases[] = {
        {"", 1, "(1): [TestDlg] there is no section TestDlg"},
        {"OtherDlg { DIALOG, \"\", 0, 0, 1, 1 }", 1, "(1): "},
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
        {"TestDlg {\nDIALOG, \"\", 0, 0, 1, 1,\n", 1, "("},
        {"TestDlg {\nDIALOG, \"open, 0, 0, 1, 1 }\n", 1, "(2): "},
        {"TestDlg {\nDIALOG, \"a_sprite_name_that_is_longer_than_31\", 0, 0, 1, 1 }", 1, "(2): "},
        {"TestDlg {\nMENUITEM, 1 }\nOther {\nDIALOG, \"\", 0, 0, 1, 1 }", 1,
         "(2): [TestDlg] the section ends within a"},
        {"TestDlg {\nMENUITEM, 1, \"a\", \"\", \"\", 1, 0, 0, 10, 10 }", 4, "(2): "},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        CItfDialog dialog;
        int code = 0;
        try {
            Load(dialog, c.text);
        } catch (int thrown) {
            code = thrown;
        }
        EXPECT_EQ(code, c.code);
        EXPECT_TRUE(Toolkit().windows.empty()) << "nothing stays in the table";
        const std::vector<std::string> debug = TakeDebug();
        ASSERT_GE(debug.size(), 2u);
        EXPECT_EQ(debug[0].rfind(resource + c.where, 0), 0u) << debug[0];
        EXPECT_EQ(debug.back(),
                  "Interface dialog creation failed. Error code: " + std::to_string(c.code) + "\r\n");
    }
}

TEST_F(DialogTest, MissingSpritesFontsAndWindows)
{
    {
        CItfDialog dialog;
        EXPECT_THROW(
            Load(dialog,
                 "TestDlg {\nBUTTON, \"\", \"nofont\", \"nodown\", \"\", \"\", 1, 0,0,9,9, -1,0,0,0 }"),
            int);
        const std::vector<std::string> debug = TakeDebug();
        ASSERT_EQ(debug.size(), 4u);
        EXPECT_NE(debug[0].find("the font \"nofont\" isn't in itfnames.ini"), std::string::npos);
        EXPECT_NE(debug[1].find("(2): [TestDlg] the sprite \"nodown\""), std::string::npos);
        EXPECT_EQ(debug[3], "Interface dialog creation failed. Error code: 3\r\n");
    }
    {
        // One window more than the table takes.
        std::string text = "TestDlg {\nDIALOG, \"\", 0, 0, 1, 1";
        for (int i = 0; i < 200; ++i)
            text += ",\nTEXTBOX, \"\" \"\" \"\" \"\" \"\", 1, 0,0,9,9, -1,0,0,0";
        CItfDialog dialog;
        EXPECT_THROW(Load(dialog, text + "}"), int);
        EXPECT_EQ(TakeDebug().back(), "Interface dialog creation failed. Error code: 3\r\n");
        EXPECT_TRUE(Toolkit().windows.empty());
    }
    {
        // A missing file is no integer.
        PlatformSetRoots((userFolder / "nowhere").string(), (userFolder / "nowhere").string());
        CItfDialog dialog;
        EXPECT_THROW(dialog.CreateFromResource("", nullptr, nullptr, nullptr, 0, 0, &engine, "TestDlg"),
                     fopen_exception);
        EXPECT_EQ(TakeDebug().back(), "Interface dialog creation failed. Unknown error.\r\n");
    }
}

} // namespace
