#include "entity.h"

#include "assertion.h"

namespace
{

// Finds the handler for a number along the chain of maps; the record without a next only ends it.
template <class Handler>
Handler Find(const Entity::Map<Handler>* map, std::uint32_t id)
{
    for (; map != nullptr && map->next != nullptr; map = map->next) {
        if (map->rows == nullptr)
            continue;
        for (const Entity::Row<Handler>* row = map->rows; row->handler != nullptr; ++row) {
            if (row->id == id)
                return row->handler;
        }
    }
    return nullptr;
}

} // namespace

EntityBase::~EntityBase() = default;
Word EntityBase::Init(IEngine*)
{
    return 1;
}
Word EntityBase::Op3(Word)
{
    return 0;
}
Word EntityBase::Op4(Word)
{
    return 0;
}
Word EntityBase::OnFrame(Word, Word)
{
    return 0;
}
Word EntityBase::OnWindowMessage(std::uint32_t, std::uint32_t, std::int32_t)
{
    return 0;
}
Word EntityBase::OnMessage(const MessageRecord*)
{
    return 0;
}
Word EntityBase::Op8(Word)
{
    return 0;
}
Word EntityBase::Op9(Word, Word)
{
    return 0;
}
// The line numbers are part of the text that the host's tools know.
void EntityBase::Op10(Word)
{
    AssertFailed("false", "entity", 133);
}
void EntityBase::Op11(Word, Word)
{
    AssertFailed("false", "entity", 134);
}

const Entity::MessageMap Entity::s_MessageMap = {nullptr, nullptr};
const Entity::WindowMap Entity::s_WindowMap = {nullptr, nullptr};

Entity::Entity() {} // NOLINT: the host's block stays as it is
Entity::~Entity() = default;

Word Entity::OnWindowMessage(std::uint32_t msg, std::uint32_t wParam, std::int32_t lParam)
{
    const WindowHandler handler = Find(GetWindowMessageMap(), msg);
    if (handler == nullptr)
        return 0;
    (this->*handler)(wParam, lParam);
    return 1;
}

Word Entity::OnMessage(const MessageRecord* record)
{
    const MessageHandler handler = Find(GetMessageMap(), static_cast<std::uint32_t>(record->message));
    if (handler == nullptr)
        return 0;
    return (this->*handler)(record->Data(), record->extra, record->sender);
}

const Entity::MessageMap* Entity::GetMessageMap() const
{
    return nullptr;
}
const Entity::WindowMap* Entity::GetWindowMessageMap() const
{
    return nullptr;
}
