#pragma once
// The player's input on its way to the entities: from the window or a script, as window messages.

#include <bitset>
#include <deque>
#include <functional>
#include <string>

#include "platform/types.h"

/// One message for Entity::OnWindowMessage.
struct InputMessage {
    UINT message = 0;
    DWORD wParam = 0;
    LONG lParam = 0;
    int key = 0; ///< the key or button that the message changes the state of, 0 for none
    bool down = false;
};

/// A key or button that goes down by the player's will: no repeat, no second press of a double click, no
/// Shift, Ctrl or Alt.
bool IsFreshPress(const InputMessage& input);

/// Positions are in display pixels. Pointer motion waits until a button, a key or the end of the frame, so
/// that a frame has one motion between two other inputs, however often the mouse reports.
class CInput
{
  public:
    void MoveTo(POINT position);
    /// VK_LBUTTON or VK_RBUTTON; `second` marks the second press of a double click.
    void Button(int button, bool down, bool second);
    /// A button of the real pointer, at a time in milliseconds. A press near the one before and soon behind
    /// it is the second of a double click. A release of what isn't down is passed over.
    void PointerButton(int button, bool down, DWORD time);
    /// Notches away from the user are positive.
    void Wheel(int notches);
    /// A key goes down (again, when it repeats) or up. Enter, Escape, Tab, Backspace (without Ctrl) and
    /// letters with Ctrl bring their control character along.
    void Key(int key, bool down);
    /// A printable character in code page 1252.
    void Char(unsigned char c);
    /// Everything that is down goes up, buttons off the display, so that nothing is clicked.
    void ReleaseAll();
    /// Ends the frame's input.
    void Flush();

    /// The next message; its key state is what IsDown tells from then on. False when none is left.
    bool Take(InputMessage& out);
    POINT Cursor() const { return m_Cursor; }
    bool IsDown(int key) const { return IsKey(key) && m_Delivered[static_cast<std::size_t>(key)]; }
    bool IsDownNow(int key) const { return IsKey(key) && m_Now[static_cast<std::size_t>(key)]; }

    /// Called for each input with the script command that repeats it.
    std::function<void(const std::string& command)> onRecord;
    /// Where the screen surface stands on the display; scripts count from there.
    std::function<POINT()> surfaceOrigin;

  private:
    static bool IsKey(int key) { return key > 0 && key < KEY_COUNT; }
    void PushMouse(UINT message, DWORD high, int key, bool down);
    void PushChar(int c);
    void Record(const std::string& command) const;
    DWORD MouseKeys() const;

    static constexpr int KEY_COUNT = 256;
    std::deque<InputMessage> m_Queue;
    std::bitset<KEY_COUNT> m_Now;
    std::bitset<KEY_COUNT> m_Delivered;
    POINT m_Cursor;
    bool m_bMoved = false;
    // The press that another may make a double click of.
    int m_nPressed = 0;
    POINT m_PressedAt;
    DWORD m_nPressTime = 0;
};
