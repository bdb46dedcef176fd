#include "battle/battle_loader.h"

#include <cstring>

#include "keelworks/scenario_parser.h"

void CBattleLoader::ReadScenario()
{
    const std::string path(m_Command.szPath, strnlen(m_Command.szPath, sizeof(m_Command.szPath)));
    CScenarioParser parser;
    parser.OpenScenario(path.c_str());
    m_pSea = std::make_unique<CSeaPicture>(MakeSeaScene(parser.GetScenario()), m_Display);
    m_pBattle = std::make_unique<CBattle>(m_Command, parser.GetTitle());
}

bool CBattleLoader::Step()
{
    if (m_pSea == nullptr)
        ReadScenario();
    else if (!m_pSea->PrepareStep())
        return false;
    ++m_nDone;
    return true;
}

int CBattleLoader::Percent() const
{
    constexpr int ALL = 100;
    return m_pSea == nullptr ? 0 : m_nDone * ALL / (m_pSea->StepCount() + 1);
}
