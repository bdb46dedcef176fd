#pragma once
// A dialog that builds itself from its section of the dialog resource.

#include <memory>
#include <string>
#include <vector>

#include "kernel/itfwnd.h"

class CItfMenu;
class CItfReportBox;
class CTextParser;

/// The dialog resource, and the error codes that its loader throws as plain integers.
inline constexpr char DIALOG_RESOURCE[] = "resource\\txt_res\\itfdlg.ini";
enum ItfResourceError : int {
    RESERR_SYNTAX = 1,    ///< also an unknown keyword, a missing section, an early end
    RESERR_MEMORY = 2,    ///< a control can't be allocated
    RESERR_CREATE = 3,    ///< a control's Create failed
    RESERR_NO_PARENT = 4, ///< a column or menu item without its table or menu above it
};

/// Kinds of controls: the number of the keyword in the resource. A check box has the button's.
enum ItfControlKind : int {
    KIND_BUTTON = 0,
    KIND_TABLE = 1,
    KIND_COLUMN = 2,
    KIND_TEXTBOX = 3,
    KIND_CHECKBOX = 4,
    KIND_EDITBOX = 5,
    KIND_LISTBOX = 6,
    KIND_DIALOG = 7,
    KIND_FLAGBOX = 8,
    KIND_SLIDER = 9,
    KIND_PICTUREBOX = 10,
    KIND_VIDEOBOX = 11,
    KIND_ANIMATIONBOX = 12,
    KIND_MENU = 13,
    KIND_MENUITEM = 14,
};

/// Owns its controls: they live exactly as long as the dialog's object. Reports its end to its parent with
/// Notify, as the last act of its handler.
class CItfDialog : public CItfWnd
{
  public:
    ~CItfDialog() override;

    /// Creates the window and its controls. `sprite` isn't used: the section's DIALOG record gives it. False
    /// when the window itself can't be created. Throws an ItfResourceError, or what the file classes throw,
    /// after the debug output got a line and the dialog has left the window table.
    virtual bool CreateFromResource(const char* caption, const char* sprite, const RECT* rect,
                                    CItfWnd* parent, int ctrlId, std::uint32_t style, IEngine* core,
                                    const char* section);

    /// The first control with that id; null when the section gives none.
    CItfWnd* GetControl(int id) const;
    /// The same, as the class the caller expects; null also when it is of another class.
    template <class T>
    T* GetControlAs(int id) const
    {
        return dynamic_cast<T*>(GetControl(id));
    }
    /// Whether the section gives a control of that kind and id. kind: ItfControlKind, a check box being a
    /// button.
    bool HasControl(int kind, int id) const;
    /// The text of the text box with that id, null for none; nothing when the section gives no such box.
    /// Doesn't repaint.
    void SetBoxText(int id, const char* text);
    /// The same, and repaints the box.
    void ShowBoxText(int id, const char* text);
    CItfReportBox* FindTable(int id) const;
    CItfMenu* FindMenu(int id) const;

  protected:
    struct Control {
        int kind;
        int id;
        std::unique_ptr<CItfWnd> wnd;
    };
    std::vector<Control> m_Controls; ///< in the order of the file

    /// Takes a created control over as the last of the list, and shows it.
    void AddControl(int kind, int id, std::unique_ptr<CItfWnd> control);

  private:
    friend class CDialogLoader;
};
