#pragma once

#include "ientities.h"

/// The entity "marker": draws nothing over the scene while the front end is up.
class CMarkerEntity : public IMarkerEntity
{
  public:
    void SetInterfaceMode(int on) override { m_bInterface = on != 0; }
    bool IsInterfaceMode() const { return m_bInterface; }

  private:
    bool m_bInterface = false;
};
