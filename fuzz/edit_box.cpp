// Keys, characters, mouse, clipboard and calls in any order on one edit box. After each step its text, lines,
// caret and flags must agree.
//
// An input is a style byte, a limit byte, then steps: an operation byte and its operands (Step below).

#include <string>

#include "controls/itfeditbox.h"
#include "toolkit_frame.h"

namespace
{

constexpr std::size_t LONGEST_TEXT = 8192;
constexpr int MOST_STEPS = 400;

class Player
{
  public:
    Player(ToolkitWorld& world, const std::uint8_t* data, std::size_t size)
        : m_Host(world.host), m_pNext(data), m_pEnd(data + size)
    {
        m_Host.clipboard.reset();
        const std::uint32_t style = Style();
        const RECT rect = {10, 10, 10 + 90, 10 + 35};
        Require(m_Box.Create("", "", &rect, nullptr, 1, style, &world.engine), "Create");
        m_Box.SetMaxLength(Byte());
        m_Box.Show(true);
        m_Box.SetFocus();
        CItfWnd::SetDrawing(true);
    }

    void Run()
    {
        std::string after;
        // Copying and pasting doubles the text, again and again.
        for (int steps = 0; m_pNext != m_pEnd && steps < MOST_STEPS && after.size() <= LONGEST_TEXT;
             ++steps) {
            const std::string before = m_Box.GetText();
            const bool locked = (m_Box.GetStyle() & EDS_READONLY) != 0;
            m_Box.SetModified(false);
            const bool byPlayer = Step();
            after = m_Box.GetText();
            Require(!byPlayer || !locked || before == after, "a read-only text");
            Require(before == after || m_Box.IsModified(), "the modified flag");
            CheckText(after);
        }
    }

  private:
    /// 0 past the end.
    int Byte() { return m_pNext != m_pEnd ? *m_pNext++ : 0; }
    /// A length byte and as many bytes.
    std::string Text()
    {
        std::string text;
        for (int left = Byte(); left > 0 && m_pNext != m_pEnd; --left)
            text += static_cast<char>(Byte());
        return text;
    }
    std::uint32_t Style() { return static_cast<std::uint32_t>(Byte() & 7) << 17; }

    void Send(UINT msg, int wParam) { m_Box.Dispatch(msg, static_cast<std::uint32_t>(wParam), 0); }

    void Press(int key, int modifiers)
    {
        if (modifiers & 1)
            m_Host.keysDown.insert(VK_SHIFT);
        if (modifiers & 2)
            m_Host.keysDown.insert(VK_CONTROL);
        Send(WM_KEYDOWN, key);
        m_Host.keysDown.clear();
    }

    void Mouse()
    {
        static const UINT messages[] = {WM_LBUTTONDOWN, WM_MOUSEMOVE, WM_LBUTTONUP, WM_LBUTTONDBLCLK};
        const int what = Byte();
        if (what & 4)
            m_Host.keysDown.insert(VK_LBUTTON);
        const int x = Byte() - 64;
        m_Box.Dispatch(messages[what & 3], 0, PackPoint(x, Byte() - 64));
        m_Host.keysDown.clear();
    }

    // True when it was the player's doing, not the program's.
    bool Step()
    {
        static const int keys[] = {VK_LEFT,  VK_RIGHT, VK_UP,     VK_DOWN,   VK_HOME, VK_END,
                                   VK_PRIOR, VK_NEXT,  VK_INSERT, VK_DELETE, 'X',     'V'};
        const int operation = Byte() % 11;
        int operand = 0;
        switch (operation) {
        case 0:
            operand = keys[static_cast<std::size_t>(Byte()) % std::size(keys)];
            Press(operand, Byte());
            break;
        case 1:
            operand = Byte();
            Press(operand, 0);
            Send(WM_CHAR, operand);
            break;
        case 2:
            Send(WM_CHAR, Byte());
            break;
        case 3:
            Mouse();
            break;
        case 4:
            m_Host.clipboard = Text();
            Press('V', 2);
            break;
        case 5:
            m_Host.clipboard.reset();
            Press('C', 2);
            Require(std::string(m_Box.GetText()).find(m_Host.clipboard.value_or("")) != std::string::npos,
                    "what is copied is part of the text");
            break;
        case 6:
            operand = Byte() - 8;
            m_Box.SetCaret(operand, Byte() - 8);
            break;
        case 7:
            m_Box.SetMaxLength(Byte());
            break;
        case 8:
            m_Box.SetStyle(Style());
            break;
        case 9:
            operand = Byte();
            m_Box.SetInnerRect({operand % 7, operand % 5, operand, Byte()});
            m_Box.Invalidate(nullptr);
            break;
        default:
            m_Box.SetText(Text().c_str());
        }
        return operation < 6;
    }

    void CheckText(const std::string& text)
    {
        Require(m_Box.GetTextLength() == static_cast<int>(text.size()) + 1, "the text's length");
        const int count = m_Box.GetLineCount();
        Require(count >= 1, "there is a line");
        std::string joined;
        for (int line = 0; line < count; ++line)
            joined += std::string(line > 0 ? "\r\n" : "") + m_Box.GetLine(line);
        Require(joined == text, "lines and text");
        Require(m_Box.GetLine(count) == nullptr && m_Box.GetLine(-1) == nullptr, "lines that don't exist");
        int line = -1;
        int col = -1;
        m_Box.GetCaret(line, col);
        Require(line >= 0 && line < count && col >= 0, "the caret's place");
    }

    seawarden_test::FakeHost& m_Host;
    const std::uint8_t* m_pNext;
    const std::uint8_t* m_pEnd;
    CItfEditBox m_Box;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static ToolkitWorld world;
    Player(world, data, size).Run();
    CItfWnd::ReleaseCapture();
    world.Forget();
    return 0;
}
