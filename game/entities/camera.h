#pragma once

#include "entity.h"

/// The entity "camera": stands still while the front end is up.
class CCameraEntity : public Entity
{
  public:
    bool IsHeld() const { return m_bHeld; }

  protected:
    const MessageMap* GetMessageMap() const override;

  private:
    Word OnInterfaceOn(const void* data, int extra, int sender);
    Word OnInterfaceOff(const void* data, int extra, int sender);
    static const MessageRow s_Rows[];
    static const MessageMap s_Map;

    bool m_bHeld = false;
};
