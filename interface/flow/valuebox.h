#pragma once
// The message box.

#include "itfrecords.h"
#include "kernel/itfdialog.h"

/// A message, a caption and one or two buttons, modal from Create on. Posts ITFM_NOTIFY to its parent (if it
/// has one) with RESULT_FIRST or RESULT_SECOND and its own id, gives the input back to the window that was
/// modal before, and deletes itself: a holder gives its pointer up when the answer comes.
///
/// Sections "MessageBoxDlg" and "MessageBoxYesNoDlg", all controls optional.
class CValueBox : public CItfDialog
{
  public:
    enum Control : int {
        IDC_FIRST = 10,   ///< button: yes, or OK
        IDC_SECOND = 20,  ///< button: no
        IDC_CAPTION = 30, ///< text box
        IDC_MESSAGE = 40, ///< text box
    };
    enum Style : std::uint32_t {
        STYLE_YES_NO = 0x8000000,
        STYLE_OTHER_BUTTON = 0x10000000,       ///< the first button's caption is TEXT_OTHER_BUTTON
        STYLE_NO_BUTTON = BOX_STYLE_NO_BUTTON, ///< the first button is hidden
    };

    ~CValueBox() override;
    using CItfWnd::Create;
    /// Both texts are copied; null is an empty text.
    bool Create(const char* first, const char* second, CItfWnd* parent, int id, std::uint32_t style,
                IEngine* core);
    /// Deletes the object.
    void OnDestroy() override;
    const Row* GetMessageTable() const override;

  private:
    Word OnNotify(std::uint32_t code, std::int32_t id);
    int ModalBehind() const;

    int m_nOldModal = -1; ///< the modal window when this one opened
};
