#include "entity.h"

#include <gtest/gtest.h>

namespace
{

class Handler : public Entity
{
  public:
    explicit Handler(const MessageMap* messages) : m_pMessages(messages) {}
    const MessageMap* GetMessageMap() const override { return m_pMessages; }
    const WindowMap* GetWindowMessageMap() const override { return &s_Window; }
    Word OnOne(const void* data, int extra, int sender)
    {
        return 1000 + *static_cast<const Word*>(data) * 100 + extra * 10 + sender;
    }
    Word OnTwo(const void*, int, int) { return 2; }
    Word OnTwoInstead(const void*, int, int) { return 22; }
    Word OnKey(std::uint32_t wParam, std::int32_t lParam)
    {
        lastKey = static_cast<int>(wParam) + lParam;
        return 55;
    }

    static const MessageMap s_Base, s_WithoutRows, s_Derived, s_End;
    int lastKey = 0;

  private:
    static const MessageRow s_BaseRows[], s_DerivedRows[];
    static const WindowRow s_WindowRows[];
    static const WindowMap s_Window;
    const MessageMap* m_pMessages;
};
const Entity::MessageRow Handler::s_BaseRows[] = {
    {1, static_cast<MessageHandler>(&Handler::OnOne)},
    {2, static_cast<MessageHandler>(&Handler::OnTwo)},
    {2, static_cast<MessageHandler>(&Handler::OnOne)}, // dead: the first row wins
    {0, nullptr},
};
const Entity::MessageRow Handler::s_DerivedRows[] = {
    {2, static_cast<MessageHandler>(&Handler::OnTwoInstead)},
    {0, nullptr},
};
const Entity::WindowRow Handler::s_WindowRows[] = {
    {0x100, static_cast<WindowHandler>(&Handler::OnKey)},
    {0, nullptr},
};
const Entity::MessageMap Handler::s_Base = {&s_MessageMap, s_BaseRows};
const Entity::MessageMap Handler::s_WithoutRows = {&s_Base, nullptr};
const Entity::MessageMap Handler::s_Derived = {&s_WithoutRows, s_DerivedRows};
const Entity::MessageMap Handler::s_End = {nullptr, s_BaseRows};
const Entity::WindowMap Handler::s_Window = {&s_WindowMap, s_WindowRows};

Word Deliver(Entity&& entity, int number)
{
    const struct {
        MessageRecord record;
        Word words[2];
    } message = {{3, number, 7, 4}, {5, 0}};
    return entity.OnMessage(&message.record);
}

TEST(Entity, MessagesGoThroughTheChainOfMaps)
{
    EXPECT_EQ(Deliver(Handler(&Handler::s_Base), 2), 2);
    EXPECT_EQ(Deliver(Handler(&Handler::s_Derived), 1), 1543) << "data, extra and sender arrive";
    EXPECT_EQ(Deliver(Handler(&Handler::s_Derived), 2), 22) << "a derived row hides the base's";
    EXPECT_EQ(Deliver(Handler(&Handler::s_Derived), 3), 0) << "nobody handles it";
    EXPECT_EQ(Deliver(Handler(&Handler::s_Derived), 0), 0) << "the end row's number is never compared";
    EXPECT_EQ(Deliver(Handler(&Handler::s_End), 1), 0) << "the end mark's rows are never searched";
    EXPECT_EQ(Deliver(Handler(nullptr), 1), 0);
}

TEST(Entity, WindowMessagesTellOnlyWhetherTheyWereHandled)
{
    Handler handler(nullptr);
    EXPECT_EQ(handler.OnWindowMessage(0x100, 40, 2), 1) << "not the handler's 55";
    EXPECT_EQ(handler.lastKey, 42);
    EXPECT_EQ(handler.OnWindowMessage(0x101, 40, 2), 0);
    EXPECT_DEATH(handler.Op10(0), "false.*entity.*133");
    EXPECT_DEATH(handler.Op11(0, 0), "false.*entity.*134");
}

} // namespace
