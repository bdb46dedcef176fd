#include <gtest/gtest.h>

#include <cctype>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "controls/itfeditbox.h"
#include "platform/clipboard.h"
#include "support/toolkit_fixture.h"

namespace
{

using seawarden_test::RecordingWnd;
using seawarden_test::ToolkitTest;

constexpr int BOX_LEFT = 100;
constexpr int BOX_TOP = 50;
constexpr int BOX_WIDTH = 205; ///< 25 characters of 8 pixels and the margin of 5
constexpr int PAGE = 4;        ///< lines of 10 pixels
constexpr int CONTROL_ID = 77;
constexpr std::uint16_t CARET_PIXEL = 0xb5e0; ///< red 0xb2, green 0xbd
constexpr std::uint16_t SELECTION_PIXEL = 0x001f;
constexpr std::uint16_t TEXT_PIXEL = 0xffff;
constexpr std::uint16_t BACK_PIXEL = 0x2104;
constexpr std::uint32_t MULTI = EDS_MULTILINE;
constexpr char NOTHING_SELECTED[] = "(nothing)";

const std::map<std::string, int> KEY_NAMES = {
    {"Left", VK_LEFT}, {"Right", VK_RIGHT},  {"Up", VK_UP},      {"Down", VK_DOWN},  {"Home", VK_HOME},
    {"End", VK_END},   {"PgUp", VK_PRIOR},   {"PgDn", VK_NEXT},  {"Ins", VK_INSERT}, {"Del", VK_DELETE},
    {"Back", VK_BACK}, {"Enter", VK_RETURN}, {"Esc", VK_ESCAPE}, {"F5", VK_F1 + 4},
};

// The key that types a character on a plain keyboard.
int KeyOf(char character)
{
    constexpr int punctuation = 0xbc;
    if (std::isalpha(static_cast<unsigned char>(character)))
        return std::toupper(character);
    return std::isdigit(static_cast<unsigned char>(character)) || character == ' ' ? character : punctuation;
}

std::string Lines(int count)
{
    std::string text = "L0";
    for (int i = 1; i < count; ++i)
        text += "\r\nL" + std::to_string(i);
    return text;
}

// The tables write | for CR LF.
std::string CrLf(const std::string& text)
{
    std::string result;
    for (const char character : text)
        character == '|' ? result += "\r\n" : result += character;
    return result;
}

class EditBoxTest : public ToolkitTest
{
  protected:
    EditBoxTest()
    {
        AddFont("itfMenuFont");
        AddSprite("itfTrans137", 4, 4, SELECTION_PIXEL);
        AddSprite("back", 400, 400, BACK_PIXEL);
    }

    CItfEditBox& Open(std::uint32_t style, const char* text = "", int width = BOX_WIDTH,
                      int height = PAGE * 10)
    {
        Ui();
        m_pBox.reset();
        m_pParent.reset();
        m_pParent = std::make_unique<RecordingWnd>();
        EXPECT_TRUE(m_pParent->Create("", "", nullptr, nullptr, 1, 0, &engine));
        m_pBox = std::make_unique<CItfEditBox>();
        const RECT rect = {BOX_LEFT, BOX_TOP, BOX_LEFT + width, BOX_TOP + height};
        EXPECT_TRUE(m_pBox->Create("EditBox", "back", &rect, m_pParent.get(), CONTROL_ID, style, &engine));
        m_pBox->SetText(text);
        m_pParent->Show(true);
        CItfWnd::SetDrawing(true);
        m_pBox->SetFocus();
        return *m_pBox;
    }

    void Press(const std::string& name)
    {
        const bool shift = name.rfind("S-", 0) == 0;
        const bool control = name.rfind("C-", 0) == 0;
        const std::string key = shift || control ? name.substr(2) : name;
        const auto known = KEY_NAMES.find(key);
        const int code = known != KEY_NAMES.end() ? known->second : std::toupper(key.at(0));
        if (shift)
            host.keysDown.insert(VK_SHIFT);
        if (control)
            host.keysDown.insert(VK_CONTROL);
        Key(code);
        if (code == VK_BACK || code == VK_RETURN || code == VK_ESCAPE)
            Char(code);
        else if (control && known == KEY_NAMES.end())
            Char(code - 'A' + 1);
        host.keysDown.erase(VK_SHIFT);
        host.keysDown.erase(VK_CONTROL);
    }

    // Characters as they are; <Name>, <S-Name> with Shift, <C-Name> with Control.
    void Keys(const std::string& keys)
    {
        for (std::size_t i = 0; i < keys.size(); ++i) {
            if (keys[i] != '<') {
                Key(KeyOf(keys[i]));
                Char(static_cast<unsigned char>(keys[i]));
                continue;
            }
            const std::size_t end = keys.find('>', i);
            Press(keys.substr(i + 1, end - i - 1));
            i = end;
        }
    }

    std::string Selection()
    {
        host.clipboard.reset();
        Press("C-c");
        return host.clipboard.value_or(NOTHING_SELECTED);
    }

    EditPos Caret() const
    {
        EditPos pos;
        m_pBox->GetCaret(pos.line, pos.col);
        return pos;
    }

    void Press(int x, int y)
    {
        Down(BOX_LEFT + x, BOX_TOP + y);
        Up(BOX_LEFT + x, BOX_TOP + y);
    }

    // A press in the corner finds the first line and column shown.
    EditPos TopLeft()
    {
        Press(0, 0);
        return Caret();
    }

    std::uint16_t BoxPixel(int x, int y) { return Pixel(BOX_LEFT + x, BOX_TOP + y); }

    std::unique_ptr<RecordingWnd> m_pParent;
    std::unique_ptr<CItfEditBox> m_pBox;
};

struct KeyCase {
    const char* name;
    std::uint32_t style;
    int limit; ///< 0 for none; set after the text
    const char* text;
    const char* keys;
    const char* result;
    EditPos caret;
    const char* selection = NOTHING_SELECTED;
};

TEST_F(EditBoxTest, KeysChangeTextCaretAndSelection)
{
    const KeyCase cases[] = {
        {"typing", 0, 0, "", "abc", "abc", {0, 3}},
        {"typing in the middle", 0, 0, "ac", "<Right>b", "abc", {0, 2}},
        {"high characters are bytes", 0, 0, "", "\xe9\xff", "\xe9\xff", {0, 2}},
        {"left of the start", 0, 0, "ab", "<Left>x", "xab", {0, 1}},
        {"right of the end", 0, 0, "ab", "<End><Right>x", "abx", {0, 3}},
        {"up and down in one line", 0, 0, "ab", "<Right><Up><Down>", "ab", {0, 1}},
        {"home and end", 0, 0, "abc", "<End>x<Home>y", "yabcx", {0, 1}},
        {"delete and backspace", 0, 0, "abcd", "<Right><Right><Del><Back>", "ad", {0, 1}},
        {"nothing to delete", 0, 0, "ab", "<Back><End><Del>", "ab", {0, 2}},
        {"other keys", 0, 0, "ab", "<F5><C-q><C-Home>", "ab", {0, 0}},

        {"select to the right", 0, 0, "abcd", "<S-Right><S-Right>", "abcd", {0, 2}, "ab"},
        {"select to the left", 0, 0, "abcd", "<End><S-Left><S-Left>", "abcd", {0, 2}, "cd"},
        {"turn round", 0, 0, "abcd", "<Right><Right><S-Right><S-Left><S-Left>", "abcd", {0, 1}, "b"},
        {"select to both ends", 0, 0, "abcd", "<Right><Right><S-End><S-Home>", "abcd", {0, 0}, "ab"},
        {"a move drops it", 0, 0, "abcd", "<S-Right><S-Right><Right>", "abcd", {0, 3}},
        {"a letter replaces it", 0, 0, "abcd", "<S-Right><S-Right>x", "xcd", {0, 1}},
        {"a blank replaces it", 0, 0, "abcd", "<S-Right> ", " bcd", {0, 1}},
        {"punctuation drops it first", 0, 0, "abcd", "<S-Right>,", "a,bcd", {0, 2}},
        {"backspace takes it", 0, 0, "abcd", "<S-Right><S-Right><Back>", "cd", {0, 0}},
        {"delete takes it", 0, 0, "abcd", "<Right><S-End><Del>", "a", {0, 1}},
        {"escape drops it", 0, 0, "abcd", "<S-Right><Esc>", "abcd", {0, 1}},
        {"escape with shift takes it", 0, 0, "abcd", "<S-Right><S-Esc>", "bcd", {0, 0}},

        {"limit", 0, 3, "ab", "xyz", "xab", {0, 1}},
        {"limit, the selection makes room", 0, 3, "abc", "<S-Right>xy", "xbc", {0, 1}},
        {"limit, still no room", 0, 3, "abcde", "<S-Right>x", "bcde", {0, 0}},
        {"limit for each line", MULTI, 2, "", "abc<Enter>def", "ab|de", {1, 2}},
        {"digits", EDS_DIGITS, 0, "", "1a2.-,x-.", "12.--.", {0, 6}},
        {"read-only", EDS_READONLY, 0, "abc", "x<Del><Back><Esc><Enter><C-x><C-v><S-Ins>", "abc", {0, 0}},
        {"read-only selects", EDS_READONLY, 0, "abc", "<Right><S-End>", "abc", {0, 3}, "bc"},
        {"read-only keeps what is selected", EDS_READONLY, 0, "abc", "<S-End><C-x>xyz", "abc", {0, 3}, "abc"},

        {"enter splits", MULTI, 0, "abcd", "<Right><Right><Enter>x", "ab|xcd", {1, 1}},
        {"enter among lines",
         MULTI,
         0,
         "a|b|c|d|e|f|g|h|i|j",
         "<PgDn><Down><Enter>x",
         "a|b|c|d|e||xf|g|h|i|j",
         {6, 1}},
        {"enter takes the selection", MULTI, 0, "abcd", "<Right><S-Right><S-Right><Enter>", "a|d", {1, 0}},
        {"backspace joins", MULTI, 0, "ab|cd|e", "<Down><Back>x", "abxcd|e", {0, 3}},
        {"delete joins", MULTI, 0, "ab|cd|e", "<End><Del>x", "abxcd|e", {0, 3}},
        {"right goes down", MULTI, 0, "ab|cd", "<End><Right>x", "ab|xcd", {1, 1}},
        {"left goes up", MULTI, 0, "ab|cd", "<Down><Left>x", "abx|cd", {0, 3}},
        {"first and last line hold", MULTI, 0, "ab|cd", "<Up>x<Down><Down><End>y<Right>", "xab|cdy", {1, 3}},
        {"lines are kept", MULTI, 0, "a|b|c", "1<Down>2<Down>3<Up>4<Up>5", "1a5|b24|c3", {0, 5}},
        {"beyond the end: stays", MULTI, 0, "abcd|e|fghi", "<End><Down><Down>x", "abcd|e|fghix", {2, 5}},
        {"beyond the end: type", MULTI, 0, "abcd|e", "<End><Down>x", "abcd|ex", {1, 5}},
        {"beyond the end: left", MULTI, 0, "abcd|ef", "<End><Down><Left>x", "abcd|exf", {1, 2}},
        {"beyond the end: backspace", MULTI, 0, "abcd|ef", "<End><Down><Back>x", "abcd|ex", {1, 2}},
        {"beyond the end: delete", MULTI, 0, "abcd|ef|g", "<End><Down><Del>x", "abcd|efxg", {1, 3}},
        {"beyond the end: enter", MULTI, 0, "abcd|ef", "<End><Down><Enter>x", "abcd|ef|x", {2, 1}},

        {"lines: down", MULTI, 0, "ab|cd|ef", "<Right><S-Down><S-Down>", "ab|cd|ef", {2, 1}, "b|cd|e"},
        {"lines: up", MULTI, 0, "ab|cd|ef", "<Down><Down><Right><S-Up>", "ab|cd|ef", {1, 1}, "d|e"},
        {"lines: over a line's end", MULTI, 0, "ab|cd", "<End><S-Right><S-Right>", "ab|cd", {1, 1}, "|c"},
        {"lines: back to a line's end", MULTI, 0, "ab|cd", "<Down><S-Left>", "ab|cd", {0, 2}, "|"},
        {"lines: back over a line's end", MULTI, 0, "ab|cd", "<Down><S-Left><S-Left>", "ab|cd", {0, 1}, "b|"},
        {"lines: a column beyond the end", MULTI, 0, "abcd|e|fg", "<End><S-Down>", "abcd|e|fg", {1, 4}, "|e"},
        {"lines: typing joins", MULTI, 0, "ab|cd|ef", "<Right><S-Down><S-Down>x", "axf", {0, 2}},
        {"lines: delete up", MULTI, 0, "ab|cd|ef|gh", "<Down><Down><Right><S-Up><Del>x", "ab|cxf|gh", {1, 2}},
        {"lines: page down", MULTI, 0, "a|b|c|d|e|f", "<PgDn>x<PgDn>y<PgUp>z", "a|bz|c|d|xe|fy", {1, 3}},
        {"lines: select a page", MULTI, 0, "a|b|c|d|e|f", "<S-PgDn>", "a|b|c|d|e|f", {4, 0}, "a|b|c|d|"},
    };
    for (const KeyCase& c : cases) {
        SCOPED_TRACE(c.name);
        CItfEditBox& box = Open(c.style, CrLf(c.text).c_str());
        box.SetMaxLength(c.limit);
        host.clipboard = "clip";
        Keys(c.keys);
        EXPECT_EQ(box.GetText(), CrLf(c.result));
        EXPECT_EQ(Caret().line, c.caret.line);
        EXPECT_EQ(Caret().col, c.caret.col);
        EXPECT_EQ(Selection(), CrLf(c.selection));
        EXPECT_EQ(box.GetTextLength(), static_cast<int>(CrLf(c.result).size()) + 1);
    }
}

TEST_F(EditBoxTest, ClipboardGoesInAndOut)
{
    const struct {
        const char* name;
        std::uint32_t style;
        int limit;
        const char* text;
        const char* clipboard; ///< null for one without a text
        const char* keys;
        const char* result;
        EditPos caret;
        const char* left = nullptr; ///< in the clipboard; null for what was there
    } cases[] = {
        {"paste, the caret stays in front", 0, 0, "xy", "12", "<Right><C-v>", "x12y", {0, 1}},
        {"paste with Shift and Insert", 0, 0, "xy", "12", "<Right><S-Ins>", "x12y", {0, 1}},
        {"lines into one line", 0, 0, "xy", "1|2", "<Right><C-v>", "x1y", {0, 1}},
        {"lines", MULTI, 0, "xy|z", "1|2|3", "<Right><C-v>", "x1|2|3y|z", {0, 1}},
        {"empty lines", MULTI, 0, "xy", "||", "<Right><C-v>", "x||y", {0, 1}},
        {"CR and LF alone stay", MULTI, 0, "", "a\rb\nc\n\rd\r", "<C-v>", "a\rb\nc\n\rd\r", {0, 0}},
        {"behind a short line", MULTI, 0, "abcd|e", "1234567", "<End><Down><C-v>", "abcd|e1234567", {1, 1}},
        {"limit for each piece", MULTI, 3, "xy", "12345|67890|1", "<Right><C-v>", "x123|678|1y", {0, 1}},
        {"over a selection of lines", MULTI, 0, "ab|cd|e", "1|2", "<Right><S-Down><C-v>", "a1|2d|e", {0, 1}},
        {"no text takes the selection", 0, 0, "abcd", nullptr, "<S-Right><C-v>", "bcd", {0, 0}},
        {"copy", 0, 0, "abcd", "old", "<Right><S-Right><C-c>", "abcd", {0, 2}, "b"},
        {"copy with Control, Insert", 0, 0, "abcd", "old", "<S-Right><C-Ins>", "abcd", {0, 1}, "a"},
        {"copy without a selection", 0, 0, "abcd", "old", "<C-c>", "abcd", {0, 0}},
        {"copy, paste twice",
         MULTI,
         0,
         "ab|cd",
         "old",
         "<Right><S-Down><C-c><C-v><C-v>",
         "ab|cb|cd",
         {0, 1},
         "b|c"},
        {"cut", MULTI, 0, "ab|cd|e", "old", "<Right><S-Down><C-x>x", "axd|e", {0, 2}, "b|c"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        CItfEditBox& box = Open(c.style, CrLf(c.text).c_str());
        box.SetMaxLength(c.limit);
        const auto before = c.clipboard ? std::optional(CrLf(c.clipboard)) : std::nullopt;
        host.clipboard = before;
        Keys(c.keys);
        EXPECT_EQ(box.GetText(), CrLf(c.result));
        EXPECT_EQ(Caret().line, c.caret.line);
        EXPECT_EQ(Caret().col, c.caret.col);
        EXPECT_EQ(host.clipboard, c.left ? std::optional(CrLf(c.left)) : before);
        EXPECT_TRUE(OpenClipboard(nullptr)) << "the clipboard was left open";
        CloseClipboard();
    }
}

TEST_F(EditBoxTest, BusyClipboardChangesNothing)
{
    CItfEditBox& box = Open(0, "abcd");
    host.clipboard = "12";
    ASSERT_TRUE(OpenClipboard(nullptr));
    Keys("<S-Right><C-v><C-x><C-c>");
    CloseClipboard();
    EXPECT_STREQ(box.GetText(), "abcd");
    EXPECT_EQ(host.clipboard, "12");
    EXPECT_EQ(Selection(), "a");
}

// Quadratic work on any of these would take hours.
TEST_F(EditBoxTest, HugeTextsStayUsable)
{
    constexpr std::size_t megabyte = 1024 * 1024;
    const std::string flat(10 * megabyte, 'w');
    std::string lines;
    while (lines.size() < 10 * megabyte)
        lines += "a line of text\r\n";
    const int count = static_cast<int>(lines.size() / 16);

    CItfEditBox& single = Open(0, "[]");
    host.clipboard = flat;
    Keys("<Right><C-v><End>x<Left><Back><S-Home>");
    EXPECT_EQ(single.GetTextLength(), static_cast<int>(flat.size() + 3));
    EXPECT_EQ(Selection().size(), flat.size() + 1);

    CItfEditBox& multi = Open(MULTI, "[]");
    host.clipboard = lines;
    Keys("<Right><C-v>");
    EXPECT_EQ(multi.GetLineCount(), count + 1);
    EXPECT_STREQ(multi.GetLine(0), "[a line of text");
    EXPECT_STREQ(multi.GetLine(count), "]");
    multi.SetCaret(count, 0);
    Keys("<Up><Right>x");
    EXPECT_STREQ(multi.GetLine(count - 1), "ax line of text");

    // A press far right in a long line, then typing at its end.
    CItfEditBox& box = Open(0, std::string(megabyte, 'w').c_str());
    Keys("<End>");
    const int shown = TopLeft().col;
    EXPECT_EQ(shown, static_cast<int>(megabyte) - 25);
    for (int i = 0; i < 200; ++i) {
        Press(BOX_WIDTH - 1, 5);
        Keys("x");
    }
    EXPECT_EQ(box.GetTextLength(), static_cast<int>(megabyte) + 201);
}

TEST_F(EditBoxTest, TextByCall)
{
    CItfEditBox& box = Open(MULTI, "ab\r\n\r\ncd");
    EXPECT_EQ(box.GetLineCount(), 3);
    EXPECT_EQ(box.GetTextLength(), 9);
    EXPECT_STREQ(box.GetLine(1), "");
    EXPECT_STREQ(box.GetLine(2), "cd");
    EXPECT_EQ(box.GetLine(3), nullptr);
    EXPECT_EQ(box.GetLine(-1), nullptr);

    Keys("<Down><Down><S-Right><S-Right>");
    box.SetText(box.GetText()); // its own copy
    EXPECT_STREQ(box.GetText(), "ab\r\n\r\ncd");
    EXPECT_EQ(Caret(), (EditPos{0, 0}));
    EXPECT_EQ(Selection(), NOTHING_SELECTED);
    box.SetText(nullptr);
    EXPECT_STREQ(box.GetText(), "");
    EXPECT_EQ(box.GetLineCount(), 1);
    EXPECT_EQ(box.GetTextLength(), 1);

    // SetCaret holds the line, and what follows goes to that line.
    box.SetText("ab\r\ncd\r\nef");
    box.SetCaret(7, -3);
    EXPECT_EQ(Caret(), (EditPos{2, 0}));
    Keys("x<Up>y");
    box.SetCaret(-1, 9);
    Keys("z");
    EXPECT_STREQ(box.GetText(), "abz\r\ncyd\r\nxef");
    // So it does where lines are no longer exchanged.
    box.SetStyle(0);
    box.SetCaret(1, 1);
    Keys("1<Back><Back><Back><Del>");
    EXPECT_STREQ(box.GetText(), "abzd\r\nxef");

    // The limit cuts a text that is set, and a long text that is there stays.
    box.SetMaxLength(2);
    EXPECT_STREQ(box.GetLine(0), "abzd");
    box.SetText("abcd");
    EXPECT_STREQ(box.GetText(), "ab");
    box.SetMaxLength(0);
    box.SetText("abcd");
    EXPECT_STREQ(box.GetText(), "abcd");
}

TEST_F(EditBoxTest, ModifiedFollowsEdits)
{
    const struct {
        const char* keys;
        std::uint32_t style;
        bool modified;
    } cases[] = {
        {"<Home><End><S-Left><C-c><Up><PgDn><F5>", MULTI, false},
        {"x", 0, true},
        {"<Back>", 0, true},
        {"<Del>", 0, true},
        {"<C-v>", 0, true},
        {"<S-Right><C-x>", 0, true},
        {"<Esc>", 0, true},
        {"<Ins>", 0, true},
        {"<Enter>", 0, false},
        {"<Enter>", MULTI, true},
        {"x", EDS_DIGITS, false},
        {"x<Back><Del><C-v><C-x><Esc>", EDS_READONLY, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.keys);
        CItfEditBox& box = Open(c.style, "1");
        EXPECT_TRUE(box.IsModified()) << "SetText";
        box.SetModified(false);
        host.clipboard = "2";
        Keys(c.keys);
        EXPECT_EQ(box.IsModified(), c.modified);
    }
    CItfEditBox fresh;
    ASSERT_TRUE(fresh.Create("", "", nullptr, nullptr, 0, 0, &engine));
    EXPECT_FALSE(fresh.IsModified());
}

TEST_F(EditBoxTest, EnterIsTheOnlyReport)
{
    const struct {
        std::uint32_t style;
        std::size_t reports;
    } cases[] = {{0, 1}, {EDS_DIGITS, 1}, {EDS_READONLY, 0}, {MULTI, 0}, {MULTI | EDS_READONLY, 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.style);
        Open(c.style);
        Keys("1<Back><Enter>");
        ASSERT_EQ(m_pParent->got.size(), c.reports);
        if (c.reports != 0) {
            EXPECT_EQ(m_pParent->got[0].msg, static_cast<std::uint32_t>(ITFM_NOTIFY));
            EXPECT_EQ(m_pParent->got[0].wParam, static_cast<std::uint32_t>(EDIT_ENTER));
            EXPECT_EQ(m_pParent->got[0].lParam, CONTROL_ID);
        }
    }
    // The parent may delete the box in its handler.
    Open(0);
    m_pParent->onMessage = [this](const RecordingWnd::Got&) { m_pBox.reset(); };
    Keys("<Enter>");
    EXPECT_EQ(m_pBox, nullptr);
}

TEST_F(EditBoxTest, ViewFollowsTheCaret)
{
    const std::string sixty(60, 'w');
    const std::string ten = Lines(10);
    const struct {
        const char* name;
        std::uint32_t style;
        std::string text;
        std::string keys;
        EditPos topLeft;
    } cases[] = {
        {"fits", 0, std::string(25, 'w'), "<End>", {0, 0}},
        {"typed past the edge", 0, std::string(25, 'w'), "<End>xx", {0, 2}},
        {"end of a long line", 0, sixty, "<End>", {0, 35}},
        {"left edge not reached", 0, sixty, "<End>" + std::string("<Left><Left><Left><Left>"), {0, 35}},
        {"home", 0, sixty, "<End><Home>", {0, 0}},
        {"shortened to nothing", 0, sixty, "<End><S-Home><Del>", {0, 0}},
        {"a short line below", MULTI, sixty + "\r\nab", "<End><Down>", {0, 0}},
        {"paste doesn't follow what it brings", 0, sixty, "<C-v>", {0, 0}},

        {"down to the edge", MULTI, ten, "<Down><Down><Down>", {0, 0}},
        {"down past the edge", MULTI, ten, "<Down><Down><Down><Down>", {1, 0}},
        {"last line", MULTI, ten, "<PgDn><PgDn><PgDn>", {6, 0}},
        {"up within the view", MULTI, ten, "<PgDn><PgDn><PgDn><Up><Up><Up>", {6, 0}},
        {"up past the edge", MULTI, ten, "<PgDn><PgDn><PgDn><Up><Up><Up><Up>", {5, 0}},
        {"fewer lines than a page", MULTI, "a\r\nb", "<Down>", {0, 0}},
        {"the last line goes to the bottom",
         MULTI,
         ten,
         "<PgDn><PgDn><PgDn><Up><Up><Up><S-Down><S-Down><S-Down><Del>",
         {3, 0}},
        {"lines deleted from below", MULTI, ten, "<PgDn><PgDn><PgDn><S-PgUp><S-PgUp><S-PgUp><Del>", {0, 0}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Open(c.style, c.text.c_str());
        host.clipboard = sixty;
        Keys(c.keys);
        const EditPos got = TopLeft();
        EXPECT_EQ(got.line, c.topLeft.line);
        EXPECT_EQ(got.col, c.topLeft.col);
    }
    // Not even one character fits: the one before the caret shows.
    Open(0, "abc", 12);
    Keys("<End>");
    EXPECT_EQ(TopLeft().col, 2);
    // Cutting doesn't scroll, but never leaves the view behind the last line.
    Open(MULTI, ten.c_str());
    Keys("<S-PgDn><S-PgDn><S-PgDn><C-x>");
    EXPECT_STREQ(m_pBox->GetText(), "L9");
    EXPECT_EQ(BoxPixel(0, 0), TEXT_PIXEL);
    // The caret leaves the view on the left: ten columns at once.
    Open(0, sixty.c_str());
    Keys("<End>");
    for (int col = 59; col >= 36; --col)
        Keys("<Left>");
    EXPECT_EQ(Caret().col, 36);
    Keys("<Left>");
    EXPECT_EQ(TopLeft().col, 25);
}

TEST_F(EditBoxTest, PressFindsLineAndColumn)
{
    const struct {
        int x;
        int y;
        EditPos caret;
    } cases[] = {
        {0, 0, {0, 0}},   {3, 0, {0, 0}},   {4, 0, {0, 1}},   {11, 9, {0, 1}},   {12, 9, {0, 2}},
        {35, 0, {0, 4}},  {36, 0, {0, 5}},  {150, 0, {0, 5}}, {19, 10, {1, 2}},  {20, 10, {1, 3}},
        {20, 20, {2, 0}}, {20, 39, {3, 1}}, {20, 45, {3, 1}}, {20, 300, {3, 1}},
    };
    CItfEditBox& box = Open(MULTI, "abcde\r\nabc\r\n\r\na", BOX_WIDTH, 400);
    // Not counted in: the inner rectangle's corner.
    box.SetInnerRect({30, 7, BOX_WIDTH, 400});
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.x) + ", " + std::to_string(c.y));
        Press(c.x, c.y);
        EXPECT_EQ(Caret().line, c.caret.line);
        EXPECT_EQ(Caret().col, c.caret.col);
    }
}

TEST_F(EditBoxTest, MouseSelects)
{
    CItfEditBox& box = Open(MULTI, "abcdef\r\nghijkl\r\nmn");
    const auto at = [](int col, int line) { return POINT{BOX_LEFT + 8 * col, BOX_TOP + 10 * line + 5}; };

    Down(at(2, 0).x, at(2, 0).y);
    EXPECT_EQ(CItfWnd::GetCaptureId(), box.GetId());
    Move(at(4, 1).x, at(4, 1).y);
    EXPECT_EQ(Selection(), "cdef\r\nghij");
    Move(5, 700); // outside the box, and below the last line
    EXPECT_EQ(Caret(), (EditPos{2, 0}));
    EXPECT_EQ(Selection(), "cdef\r\nghijkl\r\n");
    Up(5, 700);
    EXPECT_EQ(CItfWnd::GetCaptureId(), -1);
    Move(at(1, 0).x, at(1, 0).y);
    EXPECT_EQ(Selection(), "cdef\r\nghijkl\r\n") << "the drag went on";

    Down(at(1, 1).x, at(1, 1).y);
    EXPECT_EQ(Selection(), NOTHING_SELECTED);
    host.keysDown.erase(VK_LBUTTON); // and the release is never told
    box.Invalidate(nullptr);
    Move(at(4, 1).x, at(4, 1).y);
    EXPECT_EQ(Caret(), (EditPos{1, 1}));
    Up(at(4, 1).x, at(4, 1).y);

    // A double click takes the caret's line; typing replaces it.
    Press(8 * 3, 15);
    Mouse(WM_LBUTTONDBLCLK, at(3, 1).x, at(3, 1).y);
    EXPECT_EQ(Caret(), (EditPos{1, 3}));
    EXPECT_EQ(Selection(), "ghijkl");
    Keys("x");
    EXPECT_STREQ(box.GetText(), "abcdef\r\nx\r\nmn");
}

TEST_F(EditBoxTest, DrawsTextCaretAndSelection)
{
    CItfEditBox& box = Open(MULTI, "abcd\r\nefgh\r\nij");
    box.SetInnerRect({4, 3, BOX_WIDTH, 40});
    const auto selected = [this](int col, int line) {
        return BoxPixel(4 + 8 * col + 4, 3 + 10 * line + 5) == SELECTION_PIXEL;
    };
    Keys("<Right><Right>");
    EXPECT_EQ(BoxPixel(4, 3), TEXT_PIXEL);
    EXPECT_EQ(BoxPixel(3, 3), BACK_PIXEL);
    EXPECT_EQ(BoxPixel(4 + 8 * 4, 3), BACK_PIXEL) << "behind the text";
    EXPECT_EQ(BoxPixel(4, 3 + 25), TEXT_PIXEL) << "the third line";

    Keys("<S-Down><S-Down>"); // from 0, 2 to the end of line 2
    const bool expected[3][4] = {
        {false, false, true, true}, {true, true, true, true}, {true, true, false, false}};
    for (int line = 0; line < 3; ++line) {
        for (int col = 0; col < 4; ++col)
            EXPECT_EQ(selected(col, line), expected[line][col]) << line << ", " << col;
    }
    EXPECT_FALSE(selected(4, 0)) << "only text is covered";
    // The caret stands behind the last line's text, a line high.
    EXPECT_EQ(BoxPixel(4 + 16, 3 + 20), CARET_PIXEL);
    EXPECT_EQ(BoxPixel(4 + 17, 3 + 29), CARET_PIXEL);
    EXPECT_EQ(BoxPixel(4 + 18, 3 + 25), BACK_PIXEL);

    // The inner rectangle cuts the caret, and a line that doesn't fit isn't drawn.
    box.SetInnerRect({4, 3, BOX_WIDTH, 29});
    box.Invalidate(nullptr);
    EXPECT_EQ(BoxPixel(4 + 16, 3 + 25), CARET_PIXEL);
    EXPECT_EQ(BoxPixel(4 + 16, 29), BACK_PIXEL);
    EXPECT_EQ(BoxPixel(4, 3 + 25), BACK_PIXEL);

    // Without the focus there is neither caret nor selection, and losing it repaints.
    m_pParent->SetFocus();
    EXPECT_EQ(BoxPixel(4 + 16, 3 + 20), BACK_PIXEL);
    EXPECT_FALSE(selected(1, 1));
}

TEST_F(EditBoxTest, OverlapsAreMeasuredAsTheFontDoes)
{
    WriteFile("resource/txt_res/odd.fnt", "texture = \"test_font.png\"\nsymbols\n{\n"
                                          "\" \", 0, 0, 4, 10, 0, 4,\n\"i\", 0, 0, 3, 10, 1, 4,\n"
                                          "\"V\", 0, 0, 8, 10, 3, 9,\n\"A\", 0, 0, 8, 10, 2, 7}\n");
    Toolkit().fontMap.push_back({"odd", "odd.fnt"});
    const std::string text = "ViA VVAi iV AAAVViViAiAVVViAAVi ViiAVAVVi AAViV VVi";
    CItfEditBox& box = Open(0, text.c_str());
    EXPECT_FALSE(box.SetFont("missing"));
    ASSERT_TRUE(box.SetFont("odd"));
    const CItfFont* font = box.GetFont(box.GetFont());

    Keys("<End>");
    const int left = TopLeft().col;
    // The view begins at the first column that leaves the end in sight.
    EXPECT_LE(font->GetWidth(text.c_str() + left), BOX_WIDTH - 5);
    EXPECT_GT(font->GetWidth(text.c_str() + left - 1), BOX_WIDTH - 5);
    // A press on each pixel takes the column whose edge is nearest.
    for (int x = 0; x < BOX_WIDTH; ++x) {
        int col = left + 1;
        const auto width = [&](int to) {
            return font->GetWidth(
                text.substr(static_cast<std::size_t>(left), static_cast<std::size_t>(to - left)).c_str());
        };
        while (width(col) < x && col < static_cast<int>(text.size()))
            ++col;
        if (2 * x < width(col - 1) + width(col))
            --col;
        Press(x, 2);
        ASSERT_EQ(Caret().col, col) << x;
    }
}

TEST_F(EditBoxTest, SurvivesAMissingFontAndATinyRectangle)
{
    Toolkit().fontMap.clear();
    CItfEditBox& box = Open(MULTI, "a\r\nb\r\nc");
    Press(0, 30); // lines count as 25 pixels high
    EXPECT_EQ(Caret(), (EditPos{1, 1}));
    for (const RECT& inner : {RECT{0, 0, 3, 5}, RECT{0, 0, 0, 0}, RECT{10, 10, 5, 5}}) {
        box.SetInnerRect(inner);
        const EditPos before = Caret();
        Keys("<PgUp><PgDn>");
        EXPECT_EQ(Caret(), before) << "no line fits, so a page is none";
        Keys("<PgUp><PgUp><PgDn><End>xyz<Home><Enter><S-PgDn><Del><Back>");
    }
    EXPECT_GE(box.GetLineCount(), 1);
}

// A box without a background lets others paint, and one of them may close it.
TEST_F(EditBoxTest, MayGoWhileItRepaints)
{
    host.clipboard = "pasted";
    for (const char* keys :
         {"a", "<Back>", "<Del>", "<S-Ins>", "<C-v>", "<C-x>", "<Left>", "<Esc>", "<Enter>"}) {
        SCOPED_TRACE(keys);
        Open(MULTI, "text");
        auto clear = std::make_unique<CItfEditBox>();
        const RECT rect = {BOX_LEFT, BOX_TOP, BOX_LEFT + BOX_WIDTH, BOX_TOP + 40};
        ASSERT_TRUE(clear->Create("", nullptr, &rect, m_pParent.get(), CONTROL_ID, MULTI, &engine));
        clear->SetText("first\r\nsecond");
        clear->Show(true);
        clear->SetFocus();
        clear->SetCaret(0, 2);
        if (std::string(keys) == "<C-x>")
            Keys("<S-End>");
        m_pParent->onDraw = [&] { clear.reset(); };
        Keys(keys);
        EXPECT_EQ(clear, nullptr);
        m_pParent->onDraw = nullptr;
    }
}

} // namespace
