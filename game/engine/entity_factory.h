#pragma once
// The entity classes that the engine knows by name.

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "entity.h"

class CScene;

class CEntityFactory
{
  public:
    using Maker = std::function<std::unique_ptr<Entity>(CScene&)>;

    /// A later registration of the same name, ignoring case, replaces the earlier one.
    void Register(const std::string& name, Maker maker);
    /// Null for a name that isn't known.
    std::unique_ptr<Entity> Make(const std::string& name, CScene& scene) const;

  private:
    std::map<std::string, Maker> m_Makers;
};
