// Keys, characters, mouse, clipboard and calls in any order on one edit box. After each step its text, lines,
// caret and flags must agree.
//
// An input is a style byte, a limit byte, then steps: an operation byte and its operands (Step below).

#include <cstdint>
#include <string>

#include "controls/itfeditbox.h"
#include "fake_host.h"

namespace
{

using fuzz::Require;

constexpr std::size_t LONGEST_TEXT = 8192;

/// Gives 0 past the end.
class Input
{
  public:
    Input(const std::uint8_t* data, std::size_t size) : m_pData(data), m_nLeft(size) {}
    bool IsEmpty() const { return m_nLeft == 0; }
    int Byte()
    {
        if (m_nLeft == 0)
            return 0;
        --m_nLeft;
        return *m_pData++;
    }
    /// A length byte and as many bytes.
    std::string Text()
    {
        std::string text;
        for (int left = Byte(); left > 0 && m_nLeft != 0; --left)
            text += static_cast<char>(Byte());
        return text;
    }

  private:
    const std::uint8_t* m_pData;
    std::size_t m_nLeft;
};

// The platform, the engine and a font: made once.
struct World {
    World()
    {
        Toolkit() = ToolkitState();
        fuzz::KeepFont(engine, {"itfMenuFont"});
        Toolkit().spriteMap.push_back({"itfTrans137", "fuzz.png"});
    }
    fuzz::FakeHost host;
    fuzz::FakeEngine engine;
};

class Player
{
  public:
    Player(World& world, Input input) : m_World(world), m_Input(input)
    {
        m_World.host.ClearClipboard(); // an input must do the same each time
        const int style = m_Input.Byte();
        const RECT rect = {10, 10, 10 + 90, 10 + 35};
        Require(m_Box.Create("", "", &rect, nullptr, 1, Style(style), &m_World.engine), "Create");
        m_Box.SetMaxLength(m_Input.Byte());
        m_Box.Show(true);
        m_Box.SetFocus();
        CItfWnd::SetDrawing(true);
    }

    void Run()
    {
        for (int steps = 0; !m_Input.IsEmpty() && steps < 400; ++steps) {
            const std::string before = m_Box.GetText();
            const bool locked = (m_Box.GetStyle() & EDS_READONLY) != 0;
            m_Box.SetModified(false);
            const bool byPlayer = Step();
            const std::string after = m_Box.GetText();
            Require(!byPlayer || !locked || before == after, "a read-only text");
            Require(before == after || m_Box.IsModified(), "the modified flag");
            CheckText(after);
            // Copying and pasting doubles the text, again and again.
            if (after.size() > LONGEST_TEXT)
                return;
        }
    }

  private:
    static std::uint32_t Style(int byte) { return static_cast<std::uint32_t>(byte & 7) << 17; }

    Word Send(UINT msg, int wParam) { return m_Box.Dispatch(msg, static_cast<std::uint32_t>(wParam), 0); }

    void Press(int key, int modifiers)
    {
        if (modifiers & 1)
            m_World.host.keysDown.insert(VK_SHIFT);
        if (modifiers & 2)
            m_World.host.keysDown.insert(VK_CONTROL);
        Send(WM_KEYDOWN, key);
        m_World.host.keysDown.clear();
    }

    void Mouse(int what)
    {
        static const UINT messages[] = {WM_LBUTTONDOWN, WM_MOUSEMOVE, WM_LBUTTONUP, WM_LBUTTONDBLCLK};
        if (what & 4)
            m_World.host.keysDown.insert(VK_LBUTTON);
        const auto x = static_cast<std::uint16_t>(m_Input.Byte() - 64);
        const auto y = static_cast<std::uint16_t>(m_Input.Byte() - 64);
        const std::uint32_t point = static_cast<std::uint32_t>(x) | (static_cast<std::uint32_t>(y) << 16);
        m_Box.Dispatch(messages[what & 3], 0, static_cast<std::int32_t>(point));
        m_World.host.keysDown.clear();
    }

    void Copy()
    {
        const std::string text = m_Box.GetText();
        m_World.host.ClearClipboard();
        Press('C', 2);
        const std::string copied = m_World.host.ClipboardText().value_or("");
        Require(text.find(copied) != std::string::npos, "what is copied is part of the text");
    }

    // True when it was the player's doing, not the program's.
    bool Step()
    {
        switch (m_Input.Byte() % 11) {
        case 0: {
            static const int keys[] = {VK_LEFT,  VK_RIGHT, VK_UP,     VK_DOWN,   VK_HOME, VK_END,
                                       VK_PRIOR, VK_NEXT,  VK_INSERT, VK_DELETE, 'X',     'V'};
            const int key = keys[static_cast<std::size_t>(m_Input.Byte()) % std::size(keys)];
            Press(key, m_Input.Byte());
            return true;
        }
        case 1: {
            const int character = m_Input.Byte();
            Press(character, 0);
            Send(WM_CHAR, character);
            return true;
        }
        case 2:
            Send(WM_CHAR, m_Input.Byte());
            return true;
        case 3:
            Mouse(m_Input.Byte());
            return true;
        case 4:
            m_World.host.SetClipboardText(m_Input.Text());
            Press('V', 2);
            return true;
        case 5:
            Copy();
            return true;
        case 6: {
            const int line = m_Input.Byte() - 8;
            m_Box.SetCaret(line, m_Input.Byte() - 8);
            return false;
        }
        case 7:
            m_Box.SetMaxLength(m_Input.Byte());
            return false;
        case 8:
            m_Box.SetStyle(Style(m_Input.Byte()));
            return false;
        case 9: {
            const int right = m_Input.Byte();
            m_Box.SetInnerRect({right % 7, right % 5, right, m_Input.Byte()});
            m_Box.Invalidate(nullptr);
            return false;
        }
        default:
            m_Box.SetText(m_Input.Text().c_str());
            return false;
        }
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

    World& m_World;
    Input m_Input;
    CItfEditBox m_Box;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static World world;
    Player(world, Input(data, size)).Run();
    CItfWnd::ReleaseCapture();
    world.host.debug.clear();
    return 0;
}
