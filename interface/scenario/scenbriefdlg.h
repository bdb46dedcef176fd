#pragma once
// One scenario in full, before it starts.

#include <string>

#include "keelworks/scenario_parser.h"
#include "kernel/itfdialog.h"

class CItfReportBox;
class ICustomResources;

/// Shows title, description, both sides with flags and ships, and takes the player's side and difficulty.
/// Parses the scenario; a broken one is told in a message box, and Create gives false.
///
/// Section "ScenBriefDlg"; must hold its three ways out, the buttons IDC_CLOSE, IDC_START and IDC_BACK, or
/// Create throws RESERR_SYNTAX.
///
/// Reports RESULT_CLOSE, RESULT_DONE (start) and RESULT_BACK (to the list).
class CScenBriefDlg : public CItfDialog, public CScenarioParser
{
  public:
    enum Control : int {
        IDC_CLOSE = 20,
        IDC_START = 30,
        IDC_DESCRIPTION = 40,
        IDC_TITLE = 50,
        IDC_SHIPS_A = 60, ///< table: name, two numbers
        IDC_SHIPS_B = 70,
        IDC_NAME_A = 80, ///< check box with the side's name as caption
        IDC_TAKE_A = 90, ///< manual check box: the player takes this side
        IDC_TAKE_B = 100,
        IDC_NAME_B = 110,
        IDC_OPTION = 140, ///< check box: an option of the start command
        IDC_FLAG_A = 150,
        IDC_FLAG_B = 160,
        IDC_BACK = 170,
        IDC_EASIER = 180,
        IDC_DIFFICULTY = 190, ///< text box
        IDC_HARDER = 200,
        BOX_BROKEN = 500,
    };

    ~CScenBriefDlg() override;
    using CItfWnd::Create;
    bool Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent, int ctrlId,
                std::uint32_t style, IEngine* core, const char* path);
    const Row* GetMessageTable() const override;
    int OnScenarioItem(int category, int type, const void* item) override;

    // The player's choices, as the start command takes them. The start button sets all but the difficulty.
    int GetSide() const { return m_nSide; }
    int GetNotSideA() const { return m_nNotSideA; }
    int GetNotSideB() const { return m_nNotSideB; }
    /// 0 to 2
    int GetDifficulty() const { return m_nDifficulty; }
    bool GetFlag() const { return m_bFlag; }

  private:
    Word OnNotify(std::uint32_t code, std::int32_t id);
    void FillFromScenario();
    void SetSideName(int control, int text, bool custom, const CObjGUID& guid);
    void SetFlags();
    void FillShips();
    void AddShip(int side, const char* name, const std::string* numbers);
    void TakeChoices();
    void StepDifficulty(int step);
    void ShowDifficulty();

    std::string m_strPath;
    int m_nSide = 0;
    int m_nNotSideA = 0;
    int m_nNotSideB = 0;
    int m_nDifficulty = 1;
    bool m_bFlag = false;
    CItfReportBox* m_pListA = nullptr; ///< control 60
    CItfReportBox* m_pListB = nullptr; ///< control 70
    ICustomResources* m_pResources = nullptr;
};
