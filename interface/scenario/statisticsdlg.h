#pragma once
// What each side, or each player of a network game, did in a battle.

#include "kernel/itfdialog.h"

class CItfReportBox;
class IGameEntity;

/// All figures come from the entity "game" of the scene; without one Create gives false. Section
/// "StatisticsDlg", all controls optional.
///
/// Reports RESULT_CLOSE.
class CStatisticsDlg : public CItfDialog
{
  public:
    enum Control : int {
        IDC_TABLE = 10, ///< table with the columns below
        IDC_CLOSE = 20,
        IDC_SCENARIO = 30, ///< text box
        IDC_TIME = 40,     ///< text box: how long the battle took
    };
    enum Column : int {
        COLUMN_SIDE, ///< its letter, A for the first
        COLUMN_NAME,
        COLUMN_UNITS,
        COLUMN_LOST,
        COLUMN_SUNK,
        COLUMN_ROUNDS,
        COLUMN_HITS,
        COLUMN_POINTS,
        COLUMN_COUNT,
    };

    ~CStatisticsDlg() override;
    bool Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent, int ctrlId,
                std::uint32_t style, IEngine* core) override;
    const Row* GetMessageTable() const override;

  private:
    Word OnNotify(std::uint32_t code, std::int32_t id);
    void FillSides(IGameEntity& game, CItfReportBox& table);
    void FillPlayers(IGameEntity& game, CItfReportBox& table);
    void ShowTime(IGameEntity& game);
    void ShowScenario();
};
