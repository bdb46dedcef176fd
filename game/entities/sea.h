#pragma once
// The entity "sea": what is seen of a battle.

#include <memory>

#include "battle/sea_picture.h"
#include "entity.h"

class IEngine;
class IRender2D;

/// Draws the whole display in each frame; what runs behind it, such as the front end, draws over it. When
/// the display changes its size the picture is prepared anew within that frame.
class CSeaEntity : public Entity
{
  public:
    explicit CSeaEntity(std::unique_ptr<CSeaPicture> picture) : m_pPicture(std::move(picture)) {}
    ~CSeaEntity() override;
    /// Fails without a 2-D layer.
    Word Init(IEngine* core) override;
    Word OnFrame(Word elapsed, Word second) override;

  private:
    bool FitToDisplay();
    void FreeSurface();

    IEngine* m_pCore = nullptr;
    IRender2D* m_pRender2D = nullptr;
    std::unique_ptr<CSeaPicture> m_pPicture;
    int m_nSurface = -1;      ///< of the picture's size
    std::int64_t m_nTime = 0; ///< milliseconds
};
