#include "entities/shader.h"

#include <algorithm>

#include "iengine.h"
#include "itfrecords.h"
#include "shell/presenter.h"

namespace
{

enum ShadeWord { SHADE_TIME = 2, SHADE_RECEIVER, SHADE_MESSAGE, SHADE_EXTRA };
constexpr Word LONGEST_SHADE = 10000; // milliseconds

} // namespace

CShaderEntity::~CShaderEntity()
{
    m_Presenter.ClearFade(GetEntityId());
}

Word CShaderEntity::Init(IEngine* core)
{
    m_pCore = core;
    return 1;
}

Word CShaderEntity::OnMessage(const MessageRecord* record)
{
    if (record->message != MSG_SHADE_START)
        return 0;
    const Word* words = record->Data();
    m_nDuration =
        static_cast<int>(std::clamp(words[SHADE_TIME] / UNITS_A_MILLISECOND, Word{1}, LONGEST_SHADE));
    m_nElapsed = 0;
    m_nReceiver = static_cast<int>(words[SHADE_RECEIVER]);
    m_nMessage = static_cast<int>(words[SHADE_MESSAGE]);
    m_nExtra = static_cast<int>(words[SHADE_EXTRA]);
    m_Phase = Phase::Darkens;
    return 1;
}

Word CShaderEntity::OnFrame(Word elapsed, Word)
{
    if (m_Phase == Phase::Waits)
        return 0;
    if (m_Phase == Phase::Dark) {
        m_pCore->DestroyEntity(GetEntityId()); // which ends the fade
        return 0;
    }
    m_nElapsed += static_cast<int>(elapsed);
    if (m_nElapsed < m_nDuration) {
        m_Presenter.SetFade(GetEntityId(), static_cast<float>(m_nElapsed) / static_cast<float>(m_nDuration));
        return 0;
    }
    // The receiver ran before in this frame: its new picture comes with the next one.
    m_Phase = Phase::Dark;
    m_Presenter.SetFade(GetEntityId(), 1.0F);
    m_pCore->SendMessage(m_nMessage, m_nReceiver, m_nExtra, nullptr);
    return 0;
}
