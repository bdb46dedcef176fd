#pragma once
// The main menu.

#include <string>

#include "controls/itftextbox.h"
#include "kernel/itfdialog.h"

class CItfMenu;

/// The version line: painted anew at every tick and never by a repaint.
class CVersionText : public CItfTextBox
{
  public:
    void Draw() override {}
    void OnTick(int) override { CItfTextBox::Draw(); }
};

/// Section "MainDlg"; must hold menu 10, or Create throws 1. Hands each item on to its parent with
/// ITFM_COMMAND, and listens for the hidden code while it has the focus.
class CMainDlg : public CItfDialog
{
  public:
    enum Control : int {
        IDC_MENU = 10,
        IDC_VERSION = 500,
    };

    ~CMainDlg() override;
    bool Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent, int ctrlId,
                std::uint32_t style, IEngine* core) override;
    /// Keeps the focus while no box is up.
    void OnTick(int elapsed) override;
    const Row* GetMessageTable() const override;

  private:
    Word OnNotify(std::uint32_t code, std::int32_t id);
    Word OnCommand(std::uint32_t first, std::int32_t second);
    Word OnChar(std::uint32_t character, std::int32_t data);
    std::string FormatVersion() const;
    bool AddVersionText();

    CItfMenu* m_pMenu = nullptr;
    std::string m_strKeys; ///< the last keys typed, at most four
};
