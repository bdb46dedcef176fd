#include "entity.h"

#include <gtest/gtest.h>

namespace
{

class Base : public Entity
{
  public:
    Base() { m_HostWords[HOSTWORD_ID] = 7; }
    const MessageMap* GetMessageMap() const override { return &s_Map; }
    const WindowMap* GetWindowMessageMap() const override { return &s_Window; }
    Word OnOne(const void* data, int extra, int sender)
    {
        return 1000 + *static_cast<const Word*>(data) * 100 + extra * 10 + sender;
    }
    Word OnTwo(const void*, int, int) { return 2; }
    Word OnKey(std::uint32_t wParam, std::int32_t lParam)
    {
        lastKey = static_cast<int>(wParam) + lParam;
        return 55;
    }
    int lastKey = 0;

  protected:
    static const MessageRow s_Rows[];
    static const MessageMap s_Map;
    static const WindowRow s_WindowRows[];
    static const WindowMap s_Window;
};
const Entity::MessageRow Base::s_Rows[] = {
    {1, static_cast<MessageHandler>(&Base::OnOne)},
    {2, static_cast<MessageHandler>(&Base::OnTwo)},
    {2, static_cast<MessageHandler>(&Base::OnOne)}, // dead: the first row wins
    {0, nullptr},
};
const Entity::MessageMap Base::s_Map = {&s_MessageMap, s_Rows};
const Entity::WindowRow Base::s_WindowRows[] = {
    {0x100, static_cast<WindowHandler>(&Base::OnKey)},
    {0, nullptr},
};
const Entity::WindowMap Base::s_Window = {&Entity::s_WindowMap, s_WindowRows};

// A map without rows of its own.
class Middle : public Base
{
  public:
    const MessageMap* GetMessageMap() const override { return &s_MiddleMap; }

  protected:
    static const MessageMap s_MiddleMap;
};
const Entity::MessageMap Middle::s_MiddleMap = {&Base::s_Map, nullptr};

class Derived : public Middle
{
  public:
    const MessageMap* GetMessageMap() const override
    {
        static const MessageRow rows[] = {
            {2, static_cast<MessageHandler>(&Derived::OnTwoHidden)},
            {0, nullptr},
        };
        static const MessageMap map = {&s_MiddleMap, rows};
        return &map;
    }
    Word OnTwoHidden(const void*, int, int) { return 22; }
};

// A record whose next is null is the end mark, whatever rows it has.
class EndOnly : public Entity
{
  public:
    const MessageMap* GetMessageMap() const override
    {
        static const MessageRow rows[] = {
            {1, static_cast<MessageHandler>(&EndOnly::OnOne)},
            {0, nullptr},
        };
        static const MessageMap map = {nullptr, rows};
        return &map;
    }
    Word OnOne(const void*, int, int) { return 1; }
};

struct Message {
    MessageRecord record;
    Word words[2];
};

Word Deliver(Entity& entity, int number)
{
    const Message message = {{3, number, 7, 4}, {5, 0}};
    return entity.OnMessage(&message.record);
}

TEST(Entity, LookupGoesThroughTheChainOfMaps)
{
    Base base;
    Derived derived;
    EndOnly end;
    Entity& plain = end;
    // 1: the base's handler through a map without rows; its result, data, extra and sender arrive.
    EXPECT_EQ(Deliver(base, 1), 1543);
    EXPECT_EQ(Deliver(derived, 1), 1543);
    EXPECT_EQ(Deliver(base, 2), 2);
    EXPECT_EQ(Deliver(derived, 2), 22) << "a derived row hides the base's";
    EXPECT_EQ(Deliver(derived, 3), 0) << "nobody handles it";
    EXPECT_EQ(Deliver(derived, 0), 0) << "the end row's number is never compared";
    EXPECT_EQ(Deliver(plain, 1), 0) << "the end mark's rows are never searched";
}

TEST(Entity, WindowMessagesTellOnlyWhetherTheyWereHandled)
{
    Derived derived;
    EXPECT_EQ(derived.OnWindowMessage(0x100, 40, 2), 1) << "not the handler's 55";
    EXPECT_EQ(derived.lastKey, 42);
    EXPECT_EQ(derived.OnWindowMessage(0x101, 40, 2), 0);
}

TEST(Entity, DefaultsOfTheOperations)
{
    EntityBase base;
    EXPECT_EQ(base.Init(nullptr), 1);
    EXPECT_EQ(base.Op3(1) + base.Op4(1) + base.Op8(1) + base.Op9(1, 2) + base.OnFrame(1, 2), 0);
    EXPECT_EQ(base.OnWindowMessage(0x100, 1, 2), 0);

    class Mapless : public Entity
    {
    } mapless;
    EXPECT_EQ(Deliver(mapless, 1), 0);
    EXPECT_EQ(mapless.OnWindowMessage(0x100, 1, 2), 0);
    EXPECT_EQ(mapless.GetMessageMap(), nullptr);
    EXPECT_DEATH(mapless.Op10(0), "false.*entity.*133");
    EXPECT_DEATH(mapless.Op11(0, 0), "false.*entity.*134");
}

} // namespace
