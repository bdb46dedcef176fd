#pragma once
// The push button, and the check box, which is the same class with a style bit.

#include <cstdint>

#include "kernel/itfwnd.h"

enum ItfButtonStyle : std::uint32_t {
    BTSTYLE_MANUAL = 0x100000,   ///< button: stays down after a click; check box: its owner changes the state
    BTSTYLE_CHECKBOX = 0x200000, ///< reacts on going down, not on coming up
};

enum ItfButtonState : int {
    BUTTON_UP = 0,
    BUTTON_DOWN = 1, ///< of a check box: checked
};

/// Two sprites, up and down, with the caption centred on top. A plain button's sprites are colour-keyed, a
/// check box's with IWS_BK_KEYCOLOR. Tells its parent NOTIFY_PRESSED when a plain button goes down, and
/// NOTIFY_CLICKED when it comes up under the pointer or when a check box is pressed.
///
/// Owns a reference to each of its sprites and fonts. A font that doesn't exist leaves the caption undrawn.
class CItfButton : public CItfWnd
{
  public:
    CItfButton() = default;
    ~CItfButton() override;

    using CItfWnd::Create;
    /// Null sprite names take the defaults. False when the window can't be created or a sprite doesn't exist;
    /// the window is out of the table then.
    virtual bool Create(const char* caption, const RECT* rect, CItfWnd* parent, int ctrlId,
                        std::uint32_t style, IEngine* core, const char* downSprite, const char* upSprite);
    void Draw() override;
    /// Follows the pointer, since no message tells that it has left.
    void OnTick(int elapsed) override;
    const Row* GetMessageTable() const override;

    int GetState() const { return m_nState; }
    /// Repaints; sends nothing.
    void SetState(int state);
    /// Checked becomes unchecked, everything else checked. Repaints; sends nothing.
    void Toggle();
    /// False when there is no such font, and nothing changes. The name with "A" behind it becomes the font
    /// under the pointer, and where that exists, the one with "Dis" the font of a disabled button; what
    /// doesn't exist stays as it was.
    bool SetFont(const char* name);

  private:
    int m_nSpriteUp = -1;
    int m_nSpriteDown = -1;
    int m_nFont = -1;
    int m_nFontHot = -1;
    int m_nFontDisabled = -1;
    int m_nState = BUTTON_UP;
    bool m_bPressed = false; ///< the left button went down here and hasn't come up
    bool m_bHot = false;     ///< the pointer is over the button

    bool IsCheckBox() const { return (m_dwStyle & BTSTYLE_CHECKBOX) != 0; }
    bool IsManual() const { return (m_dwStyle & BTSTYLE_MANUAL) != 0; }
    void ReleaseResources();
    Word OnMouseMove(std::uint32_t wParam, std::int32_t lParam);
    Word OnLButtonDown(std::uint32_t wParam, std::int32_t lParam);
    Word OnLButtonUp(std::uint32_t wParam, std::int32_t lParam);
};

/// A button that has BTSTYLE_CHECKBOX whatever style it is created with.
class CItfCheckBox : public CItfButton
{
  public:
    using CItfButton::Create;
    bool Create(const char* caption, const RECT* rect, CItfWnd* parent, int ctrlId, std::uint32_t style,
                IEngine* core, const char* downSprite, const char* upSprite) override;
};
