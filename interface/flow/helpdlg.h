#pragma once
// Two pages of help over a running battle.

#include "kernel/itfdialog.h"

/// Each page is a picture, which becomes the dialog's own sprite; a check box for each turns to it. The first
/// is up at the start, with neither box checked. Section "HelpDlg", all controls optional; both check boxes
/// are manual.
///
/// Reports RESULT_CLOSE.
class CHelpDlg : public CItfDialog
{
  public:
    enum Control : int {
        IDC_CLOSE = 10,
        IDC_FIRST_PAGE = 60, ///< check box
        IDC_SECOND_PAGE = 70,
    };

    ~CHelpDlg() override;
    bool Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent, int ctrlId,
                std::uint32_t style, IEngine* core) override;
    const Row* GetMessageTable() const override;

  private:
    Word OnNotify(std::uint32_t code, std::int32_t id);
    void TurnTo(int page, int other, const char* sprite);
};
