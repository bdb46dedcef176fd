#pragma once
// How a running battle stands.

#include "kernel/itfdialog.h"

class CScenarioParser;
struct ItfScenarioStatus;

/// Shows the scenario's title and description, both sides by name and flag, and how far each has come. Reads
/// the scenario's file for itself; when that can't be read Create gives false, and the player isn't told.
/// Section "ScStatusDlg", all controls optional.
///
/// Reports RESULT_CLOSE.
class CScStatusDlg : public CItfDialog
{
  public:
    enum Control : int {
        IDC_CLOSE = 20,
        IDC_DESCRIPTION = 30,
        IDC_TITLE = 40,
        IDC_NAME_A = 60, ///< any window: its caption is the name
        IDC_PERCENT_A = 80,
        IDC_NAME_B = 100,
        IDC_PERCENT_B = 120,
        IDC_FLAG_A = 140,
        IDC_FLAG_B = 150,
    };

    ~CScStatusDlg() override;
    using CItfWnd::Create;
    /// `status` is read during the call alone; null gives false.
    bool Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent, int ctrlId,
                std::uint32_t style, IEngine* core, const ItfScenarioStatus* status);
    const Row* GetMessageTable() const override;

  private:
    Word OnNotify(std::uint32_t code, std::int32_t id);
    void ShowScenario(CScenarioParser& scenario);
    void ShowPercentages(const ItfScenarioStatus& status);
};
