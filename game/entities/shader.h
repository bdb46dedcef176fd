#pragma once

#include "entity.h"

class CPresenter;
class IEngine;

/// The entity "shader": darkens what the display shows, tells an entity when it is dark, and goes a frame
/// later, when that entity has shown its new picture.
///
/// MSG_SHADE_START, "llllll": -1, 0, time (4 units are a millisecond), entity to tell, its message, the
/// message's extra word.
class CShaderEntity : public Entity
{
  public:
    static constexpr int UNITS_A_MILLISECOND = 4;

    /// The presenter must outlive the entity.
    explicit CShaderEntity(CPresenter& presenter) : m_Presenter(presenter) {}
    ~CShaderEntity() override;
    Word Init(IEngine* core) override;
    Word OnMessage(const MessageRecord* record) override;
    Word OnFrame(Word elapsed, Word second) override;

  private:
    enum class Phase { Waits, Darkens, Dark };

    CPresenter& m_Presenter;
    IEngine* m_pCore = nullptr;
    Phase m_Phase = Phase::Waits;
    int m_nDuration = 0; // milliseconds
    int m_nElapsed = 0;
    int m_nReceiver = -1;
    int m_nMessage = 0;
    int m_nExtra = 0;
};
