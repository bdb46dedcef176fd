#include "shell/input.h"

#include <cstdint>
#include <cstdlib>

#include "platform/codepage.h"
#include "shell/keymap.h"

namespace
{

// The state of keys and buttons that goes with every mouse message.
constexpr DWORD MK_LBUTTON = 0x01;
constexpr DWORD MK_RBUTTON = 0x02;
constexpr DWORD MK_SHIFT = 0x04;
constexpr DWORD MK_CONTROL = 0x08;

constexpr LONG KEY_REPEATED = 1 << 30; // in a key message's lParam: the key was down before
constexpr LONG ONE_PRESS = 1;
constexpr int CTRL_LETTER = 0x40; // what a letter loses with Ctrl
constexpr unsigned char DELETE_CHARACTER = 127;
constexpr int MAX_NOTCHES = 100;
constexpr POINT OFF_THE_DISPLAY = {-1, -1};
constexpr DWORD DOUBLE_CLICK_TIME = 500; // milliseconds
constexpr int DOUBLE_CLICK_REACH = 2;    // display pixels each way

LONG PackPoint(POINT point)
{
    const auto x = static_cast<std::uint32_t>(static_cast<std::uint16_t>(point.x));
    const auto y = static_cast<std::uint32_t>(static_cast<std::uint16_t>(point.y));
    return static_cast<LONG>(y << 16 | x);
}

} // namespace

bool IsFreshPress(const InputMessage& input)
{
    switch (input.message) {
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
        return true;
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
        return (input.lParam & KEY_REPEATED) == 0 && input.key != VK_SHIFT && input.key != VK_CONTROL &&
               input.key != VK_MENU;
    default:
        return false;
    }
}

void CInput::Record(const std::string& command) const
{
    if (onRecord)
        onRecord(command);
}

void CInput::MoveTo(POINT position)
{
    if (position == m_Cursor)
        return;
    m_Cursor = position;
    m_bMoved = true;
}

void CInput::Flush()
{
    if (!m_bMoved)
        return;
    m_bMoved = false;
    const POINT origin = surfaceOrigin ? surfaceOrigin() : POINT{};
    Record("move " + std::to_string(m_Cursor.x - origin.x) + " " + std::to_string(m_Cursor.y - origin.y));
    PushMouse(WM_MOUSEMOVE, 0, 0, false);
}

DWORD CInput::MouseKeys() const
{
    return (m_Now[VK_LBUTTON] ? MK_LBUTTON : 0) | (m_Now[VK_RBUTTON] ? MK_RBUTTON : 0) |
           (m_Now[VK_SHIFT] ? MK_SHIFT : 0) | (m_Now[VK_CONTROL] ? MK_CONTROL : 0);
}

void CInput::PushMouse(UINT message, DWORD high, int key, bool down)
{
    m_Queue.push_back({message, high << 16 | MouseKeys(), PackPoint(m_Cursor), key, down});
}

void CInput::Button(int button, bool down, bool second)
{
    Flush();
    const bool left = button == VK_LBUTTON;
    m_Now[static_cast<std::size_t>(button)] = down;
    if (!down) {
        Record(left ? "up" : "rup");
        PushMouse(left ? WM_LBUTTONUP : WM_RBUTTONUP, 0, button, false);
        return;
    }
    Record(!left ? "rdown" : second ? "down2" : "down");
    PushMouse(!left ? WM_RBUTTONDOWN : second ? WM_LBUTTONDBLCLK : WM_LBUTTONDOWN, 0, button, true);
}

void CInput::PointerButton(int button, bool down, DWORD time)
{
    if (!down) {
        if (IsDownNow(button))
            Button(button, false, false);
        return;
    }
    const bool second = m_nPressed == button && time - m_nPressTime <= DOUBLE_CLICK_TIME &&
                        std::abs(m_Cursor.x - m_PressedAt.x) <= DOUBLE_CLICK_REACH &&
                        std::abs(m_Cursor.y - m_PressedAt.y) <= DOUBLE_CLICK_REACH;
    m_nPressed = second ? 0 : button; // a third press begins anew
    m_PressedAt = m_Cursor;
    m_nPressTime = time;
    Button(button, true, second);
}

void CInput::Wheel(int notches)
{
    if (notches == 0 || notches > MAX_NOTCHES || notches < -MAX_NOTCHES)
        return;
    Flush();
    Record("wheel " + std::to_string(notches));
    PushMouse(WM_MOUSEWHEEL, static_cast<std::uint16_t>(notches * WHEEL_DELTA), 0, false);
}

void CInput::PushChar(int c)
{
    m_Queue.push_back({WM_CHAR, static_cast<DWORD>(c), ONE_PRESS, 0, false});
}

void CInput::Key(int key, bool down)
{
    if (!IsKey(key))
        return;
    Flush();
    Record((down ? "keydown " : "keyup ") + KeyName(key));
    const bool repeated = m_Now[static_cast<std::size_t>(key)];
    m_Now[static_cast<std::size_t>(key)] = down;
    const bool ctrl = m_Now[VK_CONTROL];
    const bool alt = m_Now[VK_MENU] && !ctrl;
    const UINT message = down ? (alt ? WM_SYSKEYDOWN : WM_KEYDOWN) : (alt ? WM_SYSKEYUP : WM_KEYUP);
    m_Queue.push_back({message, static_cast<DWORD>(key),
                       down && repeated ? ONE_PRESS | KEY_REPEATED : ONE_PRESS, key, down});
    if (!down || alt)
        return;
    // With Ctrl the backspace's character would be the delete character, which prints nothing.
    if ((key == VK_BACK && !ctrl) || key == VK_TAB || key == VK_RETURN || key == VK_ESCAPE)
        PushChar(key);
    else if (ctrl && !m_Now[VK_MENU] && key >= 'A' && key <= 'Z')
        PushChar(key - CTRL_LETTER);
}

void CInput::Char(unsigned char c)
{
    if (c < ' ' || c == DELETE_CHARACTER)
        return;
    Flush();
    Record("char \"" + PlatformToUtf8(std::string(1, static_cast<char>(c))) + "\"");
    PushChar(c);
}

void CInput::ReleaseAll()
{
    m_nPressed = 0;
    if (IsDownNow(VK_LBUTTON) || IsDownNow(VK_RBUTTON))
        MoveTo(OFF_THE_DISPLAY);
    for (int key = 1; key < KEY_COUNT; ++key) {
        if (!IsDownNow(key))
            continue;
        if (key == VK_LBUTTON || key == VK_RBUTTON)
            Button(key, false, false);
        else
            Key(key, false);
    }
}

bool CInput::Take(InputMessage& out)
{
    if (m_Queue.empty())
        return false;
    out = m_Queue.front();
    m_Queue.pop_front();
    if (out.key != 0)
        m_Delivered[static_cast<std::size_t>(out.key)] = out.down;
    return true;
}
