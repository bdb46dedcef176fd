#pragma once
// The entity "sea": what is seen of a battle.

#include <array>
#include <memory>
#include <string>
#include <utility>

#include "battle/chart_view.h"
#include "entity.h"

class IEngine;
class IRender2D;

/// Draws the whole display in each frame; what runs behind it, such as the front end, draws over it. The
/// controls' time passes with its frames.
class CSeaEntity : public Entity
{
  public:
    using SideNames = std::array<std::string, CBattleSim::SIDES>;

    /// `names`: of the nations that the sides fight under.
    CSeaEntity(std::shared_ptr<CBattleControls> controls, SideNames names)
        : m_pControls(std::move(controls)), m_Names(std::move(names))
    {
    }
    ~CSeaEntity() override;
    /// Fails without a 2-D layer. The logic is asked for the words.
    Word Init(IEngine* core) override;
    Word OnFrame(Word elapsed, Word second) override;

  private:
    bool FitToDisplay(SIZE size);
    void FreeSurface();

    IEngine* m_pCore = nullptr;
    IRender2D* m_pRender2D = nullptr;
    std::shared_ptr<CBattleControls> m_pControls;
    std::unique_ptr<CChartView> m_pView;
    SideNames m_Names;
    int m_nSurface = -1;
    SIZE m_Size = {0, 0}; ///< of the surface
};
