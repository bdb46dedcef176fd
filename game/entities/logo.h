#pragma once

#include "entity.h"

class IEngine;

/// The entity "logo": plays a clip over the whole display, without the music, and goes.
///
/// MSG_ENTITY_START, "ll": address of the clip's path, mode. Returns to the sender when the clip is over or
/// a key or button ended it.
class CLogoEntity : public Entity
{
  public:
    Word Init(IEngine* core) override;
    Word OnMessage(const MessageRecord* record) override;

  private:
    void Play(const char* path);
    IEngine* m_pCore = nullptr;
};
