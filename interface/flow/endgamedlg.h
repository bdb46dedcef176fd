#pragma once
// What every finished battle ends on.

#include <memory>

#include "kernel/itfdialog.h"

class CStatisticsDlg;
struct ScenarioInfo;

/// Tells who won, shows the statistics, and lets the player choose how to go on. A single battle, one of a
/// campaign and one of a network game differ in their buttons. Every way on but the one back to the battle
/// stops the battle's logic first. Section "EndGameDlg", all controls optional.
///
/// Reports RESULT_LEAVE, RESULT_DONE (the same scenario again), RESULT_BACK (on to the list, the campaign or
/// the lobby) and RESULT_CLOSE (back to the finished battle).
class CEndGameDlg : public CItfDialog
{
  public:
    enum Control : int {
        IDC_LEAVE = 10,
        IDC_STATISTICS = 20,
        IDC_AGAIN = 30,
        IDC_GO_ON = 40,
        IDC_LOOK_ON = 50,
        IDC_RESULT = 60, ///< text box
        IDC_ART = 70,    ///< picture box with the art of a victory
    };
    enum Child : int { CHILD_STATISTICS = 500 };

    CEndGameDlg();
    ~CEndGameDlg() override;
    using CItfWnd::Create;
    bool Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent, int ctrlId,
                std::uint32_t style, IEngine* core, bool won, bool networkGame);
    const Row* GetMessageTable() const override;

  private:
    Word OnNotify(std::uint32_t code, std::int32_t id);
    void ArrangeButtons(bool campaign, bool networkGame);
    void SetCaptionOf(int control, int text);
    void HideControl(int control);
    void MoveStatisticsButton();
    void ShowResult(const ScenarioInfo* scenario);
    void StopAndReport(int result);
    void OpenStatistics();
    void CloseStatistics();

    std::unique_ptr<CStatisticsDlg> m_pStatistics;
};
