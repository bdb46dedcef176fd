#pragma once

#include "ientities.h"
#include "itfrecords.h"
#include "logic/profile_store.h"

/// The entity "graphics": keeps the options record in a file of the player's folder.
class CGraphicsEntity : public IGraphicsEntity
{
  public:
    /// Reads the file; a value that it lacks or that is out of range is the default.
    explicit CGraphicsEntity(const char* file);

    void GetOptions(ItfOptions* out) override { *out = m_Options; }
    /// Values out of range are held to it. Written to the file at once.
    void SetOptions(const ItfOptions* options) override;

    static ItfOptions Defaults();

  private:
    void Clamp();
    CProfileStore m_Store;
    ItfOptions m_Options;
};
