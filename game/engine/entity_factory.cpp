#include "engine/entity_factory.h"

#include <utility>

#include "engine/names.h"

void CEntityFactory::Register(const std::string& name, Maker maker)
{
    m_Makers[LowerCase(name)] = std::move(maker);
}

std::unique_ptr<Entity> CEntityFactory::Make(const std::string& name, CScene& scene) const
{
    const auto found = m_Makers.find(LowerCase(name));
    return found == m_Makers.end() ? nullptr : found->second(scene);
}
