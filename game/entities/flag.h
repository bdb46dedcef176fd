#pragma once
// The entity "itf_flag": a flag that waves over the front end's screen.

#include <string>
#include <vector>

#include "entities/flag_cloth.h"
#include "entities/flag_table.h"
#include "entity.h"
#include "itfflag.h"
#include "shell/presenter.h"

class CRender2D;

/// The block's floats are the flag's left and top on the screen of 800 by 600, one that isn't used, its width
/// and height in pixels, and how many waves run through it in a second. A width, height or speed of 0 or out
/// of range takes its default. FB_RIGHT puts the pole to the right. The second value of MSG_FLAG_CHANGE isn't
/// used. A flag without a texture is white.
///
/// The flag is no part of the display picture but lies over it. What the front end paints over its place
/// later, such as a message box, hides that part of it: see DrawOver.
class CFlagEntity : public Entity, public IOverlay
{
  public:
    static constexpr float DEFAULT_WIDTH = 128.0F;
    static constexpr float DEFAULT_HEIGHT = 80.0F;
    static constexpr float DEFAULT_SPEED = 0.7F;
    static constexpr float MAX_SIZE = 800.0F;
    static constexpr float MAX_SPEED = 10.0F;

    /// All must outlive the entity.
    CFlagEntity(CPresenter& presenter, const CRender2D& render, CFlagTable& flags);
    ~CFlagEntity() override;
    Word OnMessage(const MessageRecord* record) override;
    /// Moves the waves on, and, in the first frame of a flag that is shown, keeps what lies behind it.
    Word OnFrame(Word elapsed, Word second) override;
    void DrawOver(const PixelView& picture, const std::uint16_t* display) override;

  private:
    void Attach(const ItfFlagBlock& block);
    void SetNation(int flag);
    void SetTexture(const std::string& name);
    void Show(bool on);
    RECT Place() const;
    void KeepBackground();
    RECT FindCovered(const PixelView& picture, const std::uint16_t* display) const;

    CPresenter& m_Presenter;
    const CRender2D& m_Render;
    CFlagTable& m_Flags;
    CFlagCloth m_Cloth;
    ItfFlagBlock m_Block;
    bool m_bShown = false;
    float m_fTurns = 0.0F;

    RECT m_rcBehind; ///< where m_Behind lies on the display; empty before the flag's first frame
    RECT m_rcPlace;  ///< of the flag then
    std::vector<std::uint16_t> m_Behind;
};
