#include "logic/front_end.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace
{

/// Whether the event has had its effect when it has been delivered, and leaves no screen.
bool IsDoneAtOnce(const ItfEvent& event)
{
    return event.code == EVENT_VIDEO || (event.code == EVENT_MISSION_BRIEF && event.value2 == 0);
}

} // namespace

bool CFrontEnd::Start(const ItfEvent& first)
{
    m_nEntity = m_World.Root().CreateEntityFromModule(NAME, MODULE, 0, -1, 1, 0);
    if (m_nEntity < 0)
        return false;
    m_nUpdates = 0;
    m_World.Root().SendMessage(MSG_ITF_START, m_nEntity, 0, "l", &first);
    return IsUp();
}

void CFrontEnd::PostEvent(const ItfEvent& event)
{
    auto sent = std::make_unique<Sent>();
    sent->event = event;
    Post(std::move(sent));
}

void CFrontEnd::PostEvent(const ItfEvent& event, const Word (&words)[4])
{
    auto sent = std::make_unique<Sent>();
    sent->event = event;
    std::ranges::copy(words, sent->words);
    sent->event.object = sent->words;
    Post(std::move(sent));
}

void CFrontEnd::PostEvent(const ItfEvent& event, const ItfScenarioStatus& status)
{
    auto sent = std::make_unique<Sent>();
    sent->event = event;
    sent->status = status;
    sent->event.object = &sent->status;
    Post(std::move(sent));
}

void CFrontEnd::Post(std::unique_ptr<Sent> sent)
{
    if (IsUp())
        PostNow(std::move(sent));
    else
        m_Pending.push_back(std::move(sent));
}

void CFrontEnd::PostNow(std::unique_ptr<Sent> sent)
{
    m_Waiting.push_back(std::move(sent));
    m_World.Root().PostMessage(MSG_ITF_EVENT, m_nEntity, 0, "l", &m_Waiting.back()->event);
}

void CFrontEnd::Update()
{
    ++m_nUpdates;
    m_Seen = std::exchange(m_Coming, std::exchange(m_Waiting, {}));
    if (m_Pending.empty())
        return;
    Events pending;
    pending.swap(m_Pending);
    m_pFirst = std::move(pending.front());
    if (!Start(m_pFirst->event))
        return; // the engine has told why; whoever posts again tries again
    for (std::size_t i = 1; i < pending.size(); ++i)
        PostNow(std::move(pending[i]));
    m_Coming = std::exchange(m_Waiting, {}); // this frame's delivery brings these as well
}

void CFrontEnd::Leave()
{
    if (!IsUp())
        return;
    std::erase_if(m_Seen, [](const auto& sent) { return IsDoneAtOnce(sent->event); });
    for (Events* events : {&m_Seen, &m_Coming, &m_Waiting})
        std::ranges::move(*events, std::back_inserter(m_Pending));
    TakeAway();
}

void CFrontEnd::TakeAway()
{
    if (!IsUp())
        return;
    // Its commands are sent by address, and go with it.
    m_World.DropPostedBy(m_nEntity);
    m_World.DestroyEntity(m_nEntity);
    m_nEntity = -1;
    for (Events* events : {&m_Seen, &m_Coming, &m_Waiting})
        events->clear();
}
