#pragma once
// The base of every window of the toolkit: top window, dialogs, controls.

#include <cstdint>
#include <string>
#include <vector>

#include "entity.h"
#include "kernel/toolkit.h"
#include "platform/types.h"

class IEngine;
class IRender2D;
class ISound;
class CValueBox;

/// Messages of the toolkit, beside the Windows numbers below 0x400.
enum ItfWindowMessage : std::uint32_t {
    ITFM_NOTIFY = 0x464,    ///< child to parent: code, the child's control id
    ITFM_COMMAND = 0x465,   ///< posted to the parent: two words
    ITFM_LOSTFOCUS = 0x466, ///< from SetFocus to the old holder
};

/// Notification codes of buttons.
enum ItfNotifyCode : int {
    NOTIFY_CLICKED = 100, ///< a button was clicked, a check box was pressed
    NOTIFY_PRESSED = 110, ///< a button went down
};

/// State bits. A window is visible while SHOWN is set and HIDDEN is not; only a visible window gets mouse,
/// keys, ticks or painting. DISABLED means nothing to the base: controls test it.
enum ItfWindowState : std::uint32_t {
    IWF_SHOWN = 1,
    IWF_DIRTY = 2, ///< needs painting
    IWF_HIDDEN = 4,
    IWF_DISABLED = 8,
};

/// Style bits of every window; the upper 16 bits belong to the control class.
enum ItfWindowStyle : std::uint32_t {
    IWS_ALONE = 0x1,       ///< Invalidate doesn't walk the descendants
    IWS_SHADE = 0x2,       ///< the shade effect comes before the window
    IWS_BK_KEYCOLOR = 0x4, ///< the background sprite is colour-keyed
    IWS_VSCROLL = 0x8,     ///< has a vertical scroll bar
};

/// A rectangle with a background sprite, an optional parent, and a place in the one window table. Positions
/// are relative to the parent; screen coordinates are those of the 800 by 600 screen surface.
///
/// Invariant: the window stands in the table exactly while m_nId isn't -1.
/// The parent isn't owned and must outlive the window's place in the table.
class CItfWnd
{
  public:
    using Handler = Word (CItfWnd::*)(std::uint32_t wParam, std::int32_t lParam);
    /// A message table ends in a row with a null handler; it is flat, without the base class's rows.
    struct Row {
        std::uint32_t id;
        Handler handler;
    };
    /// A row for a handler of a derived class.
    template <class T>
    static constexpr Row On(std::uint32_t id, Word (T::*handler)(std::uint32_t, std::int32_t))
    {
        return {id, static_cast<Handler>(handler)};
    }
    static constexpr Row EndOfTable() { return {0, nullptr}; }

    CItfWnd();
    /// Takes the window out of the table, with the base's OnDestroy alone: a class whose OnDestroy does more
    /// calls it in its own destructor.
    virtual ~CItfWnd();
    CItfWnd(const CItfWnd&) = delete;
    CItfWnd& operator=(const CItfWnd&) = delete;

    /// Enters the window in the table, not shown yet. A null rect is the whole screen; caption, sprite and
    /// parent may be null; the sides of rect lie
    /// within 30 bits. False when the window exists already, without a 2-D layer, without a screen
    /// surface, or when 200 windows exist.
    virtual bool Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent,
                        int ctrlId, std::uint32_t style, IEngine* core);
    /// Shows or not, with all descendants. Doesn't paint.
    virtual void Show(bool on);
    /// A second switch beside Show, with all descendants.
    virtual void Hide(bool on);
    /// This window alone.
    virtual void Enable(bool on);
    /// Paints the rectangle (own coordinates, null for all) now, then the descendants in it. While drawing is
    /// off only remembers it.
    virtual void Invalidate(const RECT* rect);
    virtual void Destroy();
    virtual bool HitTest(const POINT* screenPoint) const;
    /// At the end of Create.
    virtual void OnCreate();
    /// Paints this window alone, within m_rcUpdate.
    virtual void Draw();
    /// Each frame while visible, with the milliseconds since the last one.
    virtual void OnTick(int elapsed);
    /// Before the place or size changes.
    virtual void OnMove(int x, int y, bool redraw);
    virtual void OnSize(int cx, int cy, bool redraw);
    /// Leaves the table with all descendants. Nothing when it has left it already.
    virtual void OnDestroy();
    /// Null when the class handles nothing, not even WM_DESTROY.
    virtual const Row* GetMessageTable() const;

    // Geometry.
    const RECT& GetClientRect() const { return m_rcClient; }
    const RECT& GetInnerRect() const { return m_rcInner; }
    void SetInnerRect(const RECT& rect) { m_rcInner = rect; }
    const RECT& GetUpdateRect() const { return m_rcUpdate; }
    void SetUpdateRect(const RECT& rect) { m_rcUpdate = rect; }
    const POINT& GetPos() const { return m_ptPos; }
    void GetScreenOrigin(POINT* out) const;
    void GetScreenRect(RECT* out) const;
    void ClientToScreen(POINT* point) const;
    void ScreenToClient(POINT* point) const;
    void SetPos(const POINT* pos, bool redraw);
    void SetSize(const SIZE* size, bool redraw);

    // Tree.
    int GetId() const { return m_nId; }
    int GetCtrlId() const { return m_nCtrlId; }
    CItfWnd* GetParent() const { return m_pParent; }
    /// This window itself doesn't count.
    bool IsDescendantOf(int id) const;
    bool IsAncestorOf(int id) const;
    /// Null when no window has that id.
    static CItfWnd* FindWindow(int id);

    // State.
    std::uint32_t GetState() const { return m_dwState; }
    bool IsVisible() const { return (m_dwState & (IWF_SHOWN | IWF_HIDDEN)) == IWF_SHOWN; }
    bool IsEnabled() const { return (m_dwState & IWF_DISABLED) == 0; }
    std::uint32_t GetStyle() const { return m_dwStyle; }
    void SetStyle(std::uint32_t style) { m_dwStyle = style; }
    const std::string& GetCaption() const { return m_Caption; }
    /// Null empties it. Doesn't repaint.
    void SetCaption(const char* caption);

    // Background sprite.
    int GetSprite() const { return m_nSprite; }
    /// An empty name changes nothing. Gives whether the window has a sprite now.
    bool SetSprite(const char* name);
    /// False for an index that isn't in use.
    bool SetSpriteIndex(int index);

    // Focus, capture, modal window: window ids, -1 for none.
    void SetFocus();
    static int GetFocusId();
    void SetCapture();
    static void ReleaseCapture();
    static int GetCaptureId();
    /// This window's subtree alone takes input from now on, and this window the focus.
    void SetModal();
    static void SetModalId(int id);
    static int GetModalId();

    // Messages.
    /// Dispatches at once; 0 when there is no such window. The receiver may be gone afterwards, as FindWindow
    /// tells.
    static Word SendTo(int id, std::uint32_t msg, std::uint32_t wParam, std::int32_t lParam);
    /// With the next delivery. False when 256 messages wait.
    static bool PostTo(int id, std::uint32_t msg, std::uint32_t wParam, std::int32_t lParam);
    Word SendToParent(std::uint32_t msg, std::uint32_t wParam, std::int32_t lParam);
    void PostToParent(std::uint32_t msg, std::uint32_t wParam, std::int32_t lParam);
    /// Sends the parent ITFM_NOTIFY with this window's control id. The parent may delete this window: nothing
    /// of it may be touched afterwards.
    void Notify(int code);
    /// The handler may delete this window, its parent or its dialog.
    Word Dispatch(std::uint32_t msg, std::uint32_t wParam, std::int32_t lParam);

    // Per frame.
    static void DeliverPosted();
    static void TickAll(int elapsed);
    /// Shows the screen surface: at once, or with the frame.
    void Present(bool now);

    // Screen.
    static void SetDrawing(bool on);
    static bool IsDrawing();
    /// Paints every window, the modal one last.
    static void RedrawAll();
    /// Paints the other windows in a rectangle of the screen.
    void RedrawBehind(const RECT* screenRect);
    /// Invalidate for a control that changed: without a background sprite what lies behind it comes first.
    void Repaint(const RECT* rect);
    /// Places the screen surface on the display: centred when `large`.
    void SetLargeDisplay(bool large);
    static void GetVirtualScreen(RECT* out);
    /// The virtual screen becomes the whole display.
    void SetFullDisplay();
    /// The sound and, with IWS_SHADE, the effect that ends in MSG_ITF_SHADE_DONE; drawing is off until then.
    /// False without the effect: drawing stays as it is.
    bool Shade();
    /// The same; without the effect drawing goes on at once and the window is painted.
    void ShadeOrPaint();
    /// Copies what the display shows now onto the screen surface.
    void KeepLastFrame();
    /// Stretches the sprite over the screen surface.
    void PaintFullScreen(const char* sprite);

    /// Never null; "default" without a text table. Valid as long as the table.
    static const char* GetResString(int number);
    /// The same; null where the table has none.
    static const char* FindResString(int number);
    void PlaySound(const char* name);
    /// A message box, shown and modal; null when it can't be made. It deletes itself at the answer. `first`
    /// is the message and `second` the caption; parent may be null. Style: MB_… of CValueBox.
    CValueBox* MessageBox(const char* first, const char* second, CItfWnd* parent, int id,
                          std::uint32_t style);

    // Sprites: indexes into the table, -1 is none; an invalid index does nothing.
    /// The sprite of that logical name, with a reference; -1 when there is none.
    int AcquireSprite(const char* name);
    /// A nameless sprite from a picture file; -1 when it doesn't load.
    int LoadSpriteFile(const char* path);
    int CreateSprite(const RECT* rect);
    void ReleaseSprite(int index);
    void AddSpriteRef(int index);
    /// The surface number, -1 for an invalid index.
    int GetSpriteSurface(int index) const;
    /// Empty for an invalid index.
    void GetSpriteRect(int index, RECT* out) const;
    void FillSprite(int index, COLORREF colour);
    /// The whole sprite on what of `rect` (own coordinates) lies in the window.
    void DrawSprite(int index, const RECT* rect, bool keyed);
    /// The same on a rectangle of the screen, not clipped by the window.
    void DrawSpriteStretched(int index, const RECT* screenRect, bool keyed);
    /// As DrawSprite with a part of the sprite, which isn't adjusted for what clipping took away.
    void DrawSpritePart(int index, const RECT* rect, const RECT* source, bool keyed);

    // Fonts, in the same way.
    int AcquireFont(const char* name);
    void ReleaseFont(int index);
    void AddFontRef(int index);
    /// Null for an invalid index.
    CItfFont* GetFont(int index) const;
    int GetFontHeight(int index) const;
    int GetTextWidth(int index, const char* text) const;
    /// One line from the window's point x, y, up to the window's width. sprite: what to draw on, negative for
    /// the screen surface.
    void DrawTextLine(int font, int x, int y, const char* text, int sprite, std::uint32_t colour);
    /// Wrapped text in what of `rect` lies in the window. flags: FONT_… of CItfFont. marks may be null.
    void DrawTextBox(int font, const RECT* rect, const char* text, std::uint32_t flags, int sprite,
                     std::uint32_t colour, const std::vector<ColourMark>* marks);
    /// -1 for an invalid index.
    int CountTextLines(int font, const RECT* rect, const char* text) const;
    /// Where in the text line `line + offset` begins; null past the end or for an invalid index.
    const char* FindTextLine(int font, const RECT* rect, const char* text, int line, int offset) const;

    // Fills past the sprite layer; nothing when the surface gives no device context.
    void FillRectGdi(const RECT* rect, COLORREF colour);
    /// Not clipped by the window.
    void FrameRectGdi(const RECT* rect, int penWidth, COLORREF fill, COLORREF pen);

    IEngine* GetCore() const { return m_pCore; }

  protected:
    int m_nId = -1;
    int m_nCtrlId = 0;
    std::uint32_t m_dwStyle = 0;
    std::uint32_t m_dwState = 0;
    int m_nSprite = -1;
    RECT m_rcClient;
    RECT m_rcUpdate;
    RECT m_rcInner;
    POINT m_ptPos;
    CItfWnd* m_pParent = nullptr;
    IEngine* m_pCore = nullptr;
    IRender2D* m_pRender2D = nullptr;
    ISound* m_pSound = nullptr;
    std::string m_Caption;

    /// The point of a mouse message, in this window's coordinates.
    POINT MousePoint(std::int32_t lParam) const;
    /// For after a call that may have deleted `wnd`, which had this id before: whether it is there still.
    /// Nothing of the object may be touched otherwise, so this touches nothing either. True for -1, a window
    /// in no table.
    static bool IsStill(const CItfWnd* wnd, int id);
    /// Puts a font whose reference the caller hands over in the place of the one in `slot`; -1 for none.
    void ReplaceFont(int& slot, int font);
    /// False when there is no font of that name, and nothing changes. Null is no name.
    bool ReplaceFontByName(int& slot, const char* name);
    /// Surface of a sprite to draw on, the screen surface for a negative index.
    int TargetSurface(int sprite) const;

  private:
    bool ClipToScreen(const RECT* rect, RECT* screen) const;
    void BlitToScreen(int index, const RECT& destination, const RECT* source, bool keyed);
    void DrawWithin(const RECT& update);
    int NewSprite(int surface);
};
