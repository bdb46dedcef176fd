#include <algorithm>
#include <cctype>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "controls/itfeditbox.h"
#include "platform/clipboard.h"
#include "support/rows.h"
#include "support/toolkit_fixture.h"

using seawarden_test::RecordingWnd;

namespace
{

constexpr int BOX_LEFT = 100;
constexpr int BOX_TOP = 50;
constexpr int BOX_WIDTH = 205;                ///< 25 characters of 8 pixels and the margin of 5
constexpr int PAGE = 4;                       ///< lines of 10 pixels
constexpr std::uint16_t CARET_PIXEL = 0xb5e0; ///< red 0xb2, green 0xbd
constexpr std::uint16_t SELECTION_PIXEL = 0x001f;
constexpr std::uint16_t TEXT_PIXEL = 0xffff;
constexpr std::uint16_t BACK_PIXEL = 0x2104;
constexpr std::uint32_t MULTI = EDS_MULTILINE;
constexpr char NOTHING_SELECTED[] = "(nothing)";

// What stands for the keys without a character.
const std::map<char, int> KEY_NAMES = {
    {'L', VK_LEFT}, {'R', VK_RIGHT},  {'U', VK_UP},     {'D', VK_DOWN},   {'H', VK_HOME},
    {'E', VK_END},  {'P', VK_PRIOR},  {'N', VK_NEXT},   {'I', VK_INSERT}, {'X', VK_DELETE},
    {'B', VK_BACK}, {'T', VK_RETURN}, {'C', VK_ESCAPE}, {'F', VK_F1 + 4},
};

// The key that types a character on a plain keyboard.
int KeyOf(char character)
{
    constexpr int punctuation = 0xbc;
    return std::isalnum(static_cast<unsigned char>(character)) || character == ' ' ? std::toupper(character)
                                                                                   : punctuation;
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

class EditBoxTest : public seawarden_test::ToolkitTest
{
  protected:
    EditBoxTest()
    {
        AddFont("itfMenuFont");
        AddSprite("itfTrans137", 4, 4, SELECTION_PIXEL);
        AddSprite("back", 400, 400, BACK_PIXEL);
    }

    CItfEditBox& Open(std::uint32_t style, const char* text = "", int height = PAGE * 10,
                      const char* sprite = "back")
    {
        Ui();
        m_pBox.reset();
        m_pParent = std::make_unique<RecordingWnd>();
        EXPECT_TRUE(m_pParent->Create("", "", nullptr, nullptr, 1, 0, &engine));
        m_pBox = std::make_unique<CItfEditBox>();
        const RECT rect = {BOX_LEFT, BOX_TOP, BOX_LEFT + BOX_WIDTH, BOX_TOP + height};
        EXPECT_TRUE(m_pBox->Create("EditBox", sprite, &rect, m_pParent.get(), 77, style, &engine));
        m_pBox->SetText(text);
        m_pParent->Show(true);
        CItfWnd::SetDrawing(true);
        m_pBox->SetFocus();
        return *m_pBox;
    }

    // Characters as they are, and the keys above; + in front holds Shift, * Control.
    void Keys(const std::string& keys)
    {
        for (const char c : keys) {
            if (c == '+' || c == '*') {
                host.keysDown.insert(c == '+' ? VK_SHIFT : VK_CONTROL);
                continue;
            }
            const auto named = KEY_NAMES.find(c);
            const int code = named != KEY_NAMES.end() ? named->second : KeyOf(c);
            Key(code);
            if (code == VK_BACK || code == VK_RETURN || code == VK_ESCAPE)
                Char(code);
            else if (named == KEY_NAMES.end())
                Char(host.IsKeyDown(VK_CONTROL) ? code - 'A' + 1 : static_cast<unsigned char>(c));
            host.keysDown.erase(VK_SHIFT);
            host.keysDown.erase(VK_CONTROL);
        }
    }

    std::string Selection()
    {
        host.clipboard.reset();
        Keys("*c");
        return host.clipboard.value_or(NOTHING_SELECTED);
    }
    // The text with ^ for the caret, which _ leads to beyond the line's end, and [the selection].
    std::string Shown()
    {
        std::string shown;
        for (int line = 0; line < m_pBox->GetLineCount(); ++line) {
            std::string text = m_pBox->GetLine(line);
            if (line == Caret().line) {
                const auto col = static_cast<std::size_t>(Caret().col);
                text.resize(std::max(text.size(), col), '_');
                text.insert(col, "^");
            }
            shown += (line > 0 ? "\r\n" : "") + text;
        }
        const std::string selection = Selection();
        return selection == NOTHING_SELECTED ? shown : shown + "[" + selection + "]";
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

TEST_F(EditBoxTest, KeysChangeTextCaretAndSelection)
{
    // Each the text or - for none, the keys, and what is shown then.
    const Rows<std::uint32_t, const char*> cases = {
        {0, "ac Rb ab^c  ab Lx x^ab  ab ERx abx^  ab RUD a^b  abc ExHy y^abcx  abcd RRXB a^d  "
            "ab BEXF*q*H ab^  abcd +R+R ab^cd[ab]  abcd RR+R+L+L a^bcd[b]  abcd RR+E+H ^abcd[ab]  "
            "abcd +R+RR abc^d  abcd +R+Rx x^cd  abcd +R, a,^bcd  abcd +R+RB ^cd  abcd R+EX a^  "
            "abcd +RC a^bcd  abcd +R+C ^bcd  abcd *c ^abcd"},
        {EDS_DIGITS, "- 1a2.-,x-. 12.--.^"},
        {EDS_READONLY, "abc xXBCT*x*v+I ^abc  abc +E*xxyz abc^[abc]"},
        {MULTI, "abcd RRTx ab|x^cd  a|b|c|d|e|f NTx a|b|c|d||x^e|f  abcd R+R+RT a|^d  "
                "ab|cd|e DBx abx^cd|e  ab|cd|e EXx abx^cd|e  ab|cd ERx ab|x^cd  ab|cd DLx abx^|cd  "
                "ab|cd UxDDEyR xab|cdy^  a|b|c 1D2D3U4U5 1a5__^|b24|c3  abcd|e|fghi EDDx abcd|e|fghix^  "
                "abcd|e EDx abcd|ex___^  abcd|ef EDLx abcd|ex^f  abcd|ef EDBx abcd|ex^  "
                "abcd|ef|g EDXx abcd|efx^g  abcd|ef EDTx abcd|ef|x^  a|b|c|d|e|f|g DDDTx a|b|c||x^d|e|f|g  "
                "ab|cd|ef R+D+D ab|cd|e^f[b|cd|e]  "
                "ab|cd|ef DDR+U ab|c^d|ef[d|e]  ab|cd E+R+R ab|c^d[|c]  ab|cd D+L+L a^b|cd[b|]  "
                "abcd|e|fg E+D abcd|e___^|fg[|e]  ab|cd|ef R+D+Dx ax^f  ab|cd|ef|gh DDR+UXx ab|cx^f|gh  "
                "a|b|c|d|e|f NxNyPz a|bz_^|c|d|xe|fy  a|b|c|d|e|f +N a|b|c|d|^e|f[a|b|c|d|]"},
    };
    for (const auto& [style, script] : cases) {
        std::istringstream in(script);
        for (std::string text, keys, expected; in >> text >> keys >> expected;) {
            SCOPED_TRACE(text + " " + keys);
            for (const bool painted : {true, false}) { // which walks the lines between the keys
                CItfEditBox& box = Open(style, text == "-" ? "" : CrLf(text).c_str());
                CItfWnd::SetDrawing(painted);
                Keys(keys);
                EXPECT_EQ(box.GetTextLength(), static_cast<int>(std::string(box.GetText()).size()) + 1);
                EXPECT_EQ(Shown(), CrLf(expected));
            }
        }
    }
}

TEST_F(EditBoxTest, LimitsAndTheClipboard)
{
    // A limit or 0, set after the text; the clipboard or null for one without a text, and null where it
    // stays.
    const Rows<std::uint32_t, int, const char*, const char*, const char*, const char*, const char*> cases = {
        {0, 3, "ab", "clip", "xyz", "x^ab", nullptr},
        {MULTI, 2, "", "clip", "abcTdef", "ab|de^", nullptr},
        {0, 0, "", "clip", "\xe9\xff", "\xe9\xff^", nullptr},
        {0, 0, "xy", "12", "R+I", "x^12y", nullptr},
        {0, 0, "xy", "1|2", "R*v", "x^1y", nullptr},
        {MULTI, 0, "xy|z", "1|2||3", "R*v", "x^1|2||3y|z", nullptr},
        {MULTI, 0, "", "a\rb\nc\n\rd\r", "*v", "^a\rb\nc\n\rd\r", nullptr},
        {0, 0, "abcd", nullptr, "+R*v", "^bcd", nullptr},
        {0, 0, "abcd", "old", "R+R*c", "ab^cd[b]", "b"},
        {0, 0, "abcd", "old", "+R*I", "a^bcd[a]", "a"},
        {MULTI, 0, "ab|cd|e", "old", "R+D*xx", "ax^d|e", "b|c"},
    };
    for (const auto& [style, limit, text, clipboard, keys, expected, left] : cases) {
        SCOPED_TRACE(std::string(text) + ", " + keys);
        Open(style, CrLf(text).c_str()).SetMaxLength(limit);
        const auto before = clipboard ? std::optional(CrLf(clipboard)) : std::nullopt;
        host.clipboard = before;
        Keys(keys);
        EXPECT_EQ(host.clipboard, left ? std::optional(CrLf(left)) : before);
        EXPECT_TRUE(OpenClipboard(nullptr)) << "the clipboard was left open";
        CloseClipboard();
        EXPECT_EQ(Shown(), CrLf(expected));
    }
}

// Quadratic work on any of these would take hours.
TEST_F(EditBoxTest, HugeTextsStayUsable)
{
    constexpr int MEGABYTE = 1024 * 1024;
    constexpr int COUNT = 10 * MEGABYTE / 16;
    host.clipboard = std::string(10 * MEGABYTE, 'w');
    EXPECT_EQ(Open(0, "[]").GetTextLength(), 3);
    Keys("R*vExLB+H");
    EXPECT_EQ(Selection().size(), 10u * MEGABYTE + 1);
    CItfEditBox& multi = Open(MULTI, "[]");
    host.clipboard.emplace();
    for (int i = 0; i < COUNT; ++i)
        *host.clipboard += "a line of text\r\n";
    Keys("R*v");
    EXPECT_EQ(multi.GetLineCount(), COUNT + 1);
    EXPECT_STREQ(multi.GetLine(COUNT), "]");
    multi.SetCaret(COUNT, 0);
    Keys("URx");
    EXPECT_STREQ(multi.GetLine(COUNT - 1), "ax line of text");
}

TEST_F(EditBoxTest, TextByCall)
{
    CItfEditBox& box = Open(MULTI, "ab\r\n\r\ncd");
    EXPECT_EQ(box.GetLineCount(), 3);
    EXPECT_TRUE(box.GetLine(3) == nullptr && box.GetLine(-1) == nullptr);
    Keys("DD+R+R");
    box.SetText(box.GetText()); // its own copy
    EXPECT_EQ(Shown(), "^ab\r\n\r\ncd");
    box.SetText(nullptr);
    EXPECT_STREQ(box.GetText(), "");
    EXPECT_EQ(box.GetLineCount(), 1);

    // SetCaret holds the line, and what follows goes to that line.
    box.SetText("ab\r\ncd\r\nef");
    box.SetCaret(7, -3);
    EXPECT_EQ(Caret(), (EditPos{2, 0}));
    Keys("xUy");
    box.SetCaret(-1, 9);
    Keys("z");
    EXPECT_STREQ(box.GetText(), "abz\r\ncyd\r\nxef");
    // The limit cuts a text that is set, and a long text that is there stays.
    box.SetMaxLength(2);
    EXPECT_STREQ(box.GetLine(0), "abz");
    box.SetText("abcd");
    EXPECT_STREQ(box.GetText(), "ab");
}

TEST_F(EditBoxTest, ModifiedFollowsEditsAndEnterIsTheOnlyReport)
{
    const Rows<std::uint32_t, const char*, bool, std::size_t> cases = {
        {0, "x B X *v +R*x C I", true, 0},
        {0, "T", false, 1},
        {MULTI, "T", true, 0},
        {MULTI, "HE+L*cUNF", false, 0},
        {EDS_DIGITS, "xT", false, 1},
        {EDS_READONLY, "xBX*v*xCT", false, 0},
        {MULTI | EDS_READONLY, "T", false, 0},
    };
    for (const auto& [style, script, modified, reports] : cases) {
        std::istringstream in(script);
        for (std::string keys; in >> keys;) {
            SCOPED_TRACE(keys);
            CItfEditBox& box = Open(style, "1");
            EXPECT_TRUE(box.IsModified()) << "SetText";
            box.SetModified(false);
            host.clipboard = "2";
            Keys(keys);
            EXPECT_EQ(box.IsModified(), modified);
            ASSERT_EQ(m_pParent->got.size(), reports);
            EXPECT_TRUE(reports == 0 || m_pParent->got[0].wParam == EDIT_ENTER);
        }
    }
    // The parent may delete the box in its handler.
    Open(0);
    m_pParent->onMessage = [this](const RecordingWnd::Got&) { m_pBox.reset(); };
    Keys("T");
    EXPECT_EQ(m_pBox, nullptr);
}

TEST_F(EditBoxTest, ViewFollowsTheCaret)
{
    const std::string sixty(60, 'w');
    const std::string ten = Lines(10);
    // Each the keys and the first line and column shown then. From the left edge it goes ten columns at once,
    // a paste isn't followed, and with lines deleted the last one goes to the bottom.
    const Rows<std::uint32_t, std::string, const char*> cases = {
        {0, std::string(25, 'w'), "E 0 0  Exx 0 2"},
        {0, sixty,
         "ELLLLLLLLLLLLLLLLLLLLLLLL 0 35  ELLLLLLLLLLLLLLLLLLLLLLLLL 0 25  EH 0 0  E+HX 0 0  *v 0 0"},
        {MULTI, sixty + "\r\nab", "ED 0 0"},
        {MULTI, ten, "DDD 0 0  DDDD 1 0  NNNUUU 6 0  NNNUUUU 5 0  NNNUUU+D+D+DX 3 0  NNN+P+P+PX 0 0"},
        {MULTI, "a\r\nb", "D 0 0"},
    };
    for (const auto& [style, text, script] : cases) {
        std::istringstream in(script);
        EditPos topLeft;
        for (std::string keys; in >> keys >> topLeft.line >> topLeft.col;) {
            Open(style, text.c_str());
            host.clipboard = sixty;
            Keys(keys);
            EXPECT_EQ(TopLeft(), topLeft) << text << " " << keys;
        }
    }
    // Cutting doesn't scroll, but never leaves the view behind the last line.
    Open(MULTI, ten.c_str());
    Keys("+N+N+N*x");
    EXPECT_STREQ(m_pBox->GetText(), "L9");
    EXPECT_EQ(BoxPixel(0, 0), TEXT_PIXEL);
}

TEST_F(EditBoxTest, PressFindsLineAndColumn)
{
    const Rows<int, int, EditPos> cases = {
        {3, 0, {0, 0}},   {4, 0, {0, 1}},   {11, 9, {0, 1}},  {12, 9, {0, 2}},  {36, 0, {0, 5}},
        {150, 0, {0, 5}}, {19, 10, {1, 2}}, {20, 20, {2, 0}}, {20, 39, {3, 1}}, {20, 300, {3, 1}},
    };
    CItfEditBox& box = Open(MULTI, "abcde\r\nabc\r\n\r\na", 400);
    // Not counted in: the inner rectangle's corner.
    box.SetInnerRect({30, 7, BOX_WIDTH, 400});
    for (const auto& [x, y, caret] : cases) {
        Press(x, y);
        EXPECT_EQ(Caret(), caret) << x << ", " << y;
    }
}

TEST_F(EditBoxTest, MouseSelects)
{
    CItfEditBox& box = Open(MULTI, "abcdef\r\nghijkl\r\nmn");
    const auto mouse = [this](UINT msg, int col, int line) {
        Mouse(msg, BOX_LEFT + 8 * col, BOX_TOP + 10 * line + 5);
    };
    Down(BOX_LEFT + 16, BOX_TOP + 5);
    EXPECT_EQ(CItfWnd::GetCaptureId(), box.GetId());
    mouse(WM_MOUSEMOVE, 4, 1);
    EXPECT_EQ(Selection(), "cdef\r\nghij");
    Move(5, 700); // outside the box, and below the last line
    EXPECT_EQ(Selection(), "cdef\r\nghijkl\r\n");
    Up(5, 700);
    EXPECT_EQ(CItfWnd::GetCaptureId(), -1);
    mouse(WM_MOUSEMOVE, 1, 0);
    EXPECT_EQ(Selection(), "cdef\r\nghijkl\r\n") << "the drag went on";

    Down(BOX_LEFT + 8, BOX_TOP + 15);
    EXPECT_EQ(Selection(), NOTHING_SELECTED);
    host.keysDown.erase(VK_LBUTTON); // and the release is never told
    box.Invalidate(nullptr);
    mouse(WM_MOUSEMOVE, 4, 1);
    EXPECT_EQ(Caret(), (EditPos{1, 1}));
    mouse(WM_LBUTTONUP, 4, 1);

    // A double click takes the caret's line; typing replaces it.
    Press(8 * 3, 15);
    mouse(WM_LBUTTONDBLCLK, 3, 1);
    EXPECT_EQ(Caret(), (EditPos{1, 3}));
    EXPECT_EQ(Selection(), "ghijkl");
    Keys("x");
    EXPECT_STREQ(box.GetText(), "abcdef\r\nx\r\nmn");
}

TEST_F(EditBoxTest, DrawsTextCaretAndSelection)
{
    CItfEditBox& box = Open(MULTI, "abcd\r\nefgh\r\nij");
    box.SetInnerRect({4, 3, BOX_WIDTH, 40});
    // Of the middle of a character's place: text, selected or back.
    const auto shown = [this](int line) {
        std::string row;
        for (int col = 0; col < 5; ++col) {
            const std::uint16_t pixel = BoxPixel(4 + 8 * col + 4, 3 + 10 * line + 5);
            row += pixel == TEXT_PIXEL        ? 't'
                   : pixel == SELECTION_PIXEL ? 's'
                   : pixel == BACK_PIXEL      ? 'b'
                                              : '?';
        }
        return row;
    };
    Keys("RR+D+D"); // selects from 0, 2 to the end of line 2
    EXPECT_EQ(shown(0) + shown(1) + shown(2), "ttssb"
                                              "ssssb"
                                              "ssbbb")
        << "only text is covered";
    EXPECT_EQ(BoxPixel(3, 3), BACK_PIXEL);
    // The caret stands behind the last line's text, a line high.
    EXPECT_EQ(BoxPixel(4 + 16, 3 + 20), CARET_PIXEL);
    EXPECT_EQ(BoxPixel(4 + 17, 3 + 29), CARET_PIXEL);
    EXPECT_EQ(BoxPixel(4 + 18, 3 + 25), BACK_PIXEL);

    // A line that doesn't fit isn't drawn.
    box.SetInnerRect({4, 3, BOX_WIDTH, 29});
    box.Invalidate(nullptr);
    EXPECT_EQ(shown(2), "bbbbb");

    // Without the focus there is neither caret nor selection, and losing it repaints.
    m_pParent->SetFocus();
    EXPECT_EQ(BoxPixel(4 + 16, 3 + 20), BACK_PIXEL);
    EXPECT_EQ(shown(1), "ttttb");
}

// A box without a background lets others paint, and one of them may close it.
TEST_F(EditBoxTest, MayGoWhileItRepaints)
{
    host.clipboard = "pasted";
    for (const std::string keys : {"a", "B", "X", "+I", "*v", "*x", "L", "C", "T"}) {
        Open(MULTI, "first\r\nsecond", PAGE * 10, nullptr).SetCaret(0, 2);
        if (keys == "*x")
            Keys("+E");
        m_pParent->onDraw = [this] { m_pBox.reset(); };
        Keys(keys);
        EXPECT_EQ(m_pBox, nullptr) << keys;
    }
}

} // namespace
