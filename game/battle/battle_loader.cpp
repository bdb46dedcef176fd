#include "battle/battle_loader.h"

#include <cstring>
#include <string>

#include "keelworks/scenario_parser.h"

void CBattleLoader::ReadScenario()
{
    const std::string path(m_Command.szPath, strnlen(m_Command.szPath, sizeof(m_Command.szPath)));
    CScenarioParser parser;
    parser.OpenScenario(path.c_str());
    m_Scenario = parser.GetScenario();
    if (!CBattleSim::CanBeFought(*m_Scenario))
        throw no_fighter_exception(path);
}

bool CBattleLoader::Step()
{
    if (m_nDone == STEPS)
        return false;
    if (!m_Scenario.has_value())
        ReadScenario();
    else
        m_pBattle = std::make_shared<CBattle>(m_Command, *m_Scenario, m_nSeed);
    ++m_nDone;
    return true;
}

int CBattleLoader::Percent() const
{
    constexpr int ALL = 100;
    return m_nDone * ALL / STEPS;
}
