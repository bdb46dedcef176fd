#pragma once
// A box that asks for one line of text.

#include "kernel/itfdialog.h"

/// Modal from Create on. Posts ITFM_NOTIFY to its parent with RESULT_FIRST (OK) or RESULT_SECOND (cancel) and
/// its own id, and stays: the parent reads the value and deletes it.
///
/// Section "EditBoxDlg", all controls optional.
class CEditBoxDlg : public CItfDialog
{
  public:
    enum Control : int {
        IDC_PROMPT = 10, ///< text box
        IDC_VALUE = 20,  ///< edit box
        IDC_CANCEL = 30, ///< button
        IDC_OK = 40,     ///< button
    };

    ~CEditBoxDlg() override;
    using CItfWnd::Create;
    bool Create(const char* prompt, CItfWnd* parent, int id, std::uint32_t style, IEngine* core);
    const Row* GetMessageTable() const override;

    /// Valid until the line changes; null without the control.
    const char* GetValue();
    void SetValue(const char* text);

  private:
    Word OnNotify(std::uint32_t code, std::int32_t id);
};
