#pragma once
// Entities of the host that the module calls beyond sending them messages.

#include "entity.h"

struct ItfOptions;

/// The entity "marker": what is drawn over the scene.
class IMarkerEntity : public Entity
{
  public:
    /// 1 while the front end is up, 0 during the battle.
    virtual void SetInterfaceMode(int on) = 0;
};

/// The entity "graphics": keeper of the options record.
class IGraphicsEntity : public Entity
{
  public:
    virtual void GetOptions(ItfOptions* out) = 0;
    virtual void SetOptions(const ItfOptions* options) = 0;
};
