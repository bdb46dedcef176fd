// Entities and messages of the engine, and what a fault in an entity does to the program.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "engine/entity_factory.h"
#include "engine/trace.h"
#include "engine/world.h"
#include "entities/shader.h"
#include "itfrecords.h"
#include "shell/presenter.h"
#include "support/fakes.h"

namespace
{

using seawarden_test::FakeHost;

/// Runs a function for each call and tells its end.
class CProbe : public Entity
{
  public:
    std::function<Word(const MessageRecord*)> onMessage;
    std::function<void()> onFrame;
    std::function<void()> onDelete;
    Word initResult = 1;

    ~CProbe() override
    {
        if (onDelete)
            onDelete();
    }
    Word Init(IEngine*) override { return initResult; }
    Word OnFrame(Word, Word) override
    {
        if (onFrame)
            onFrame();
        return 0;
    }
    Word OnMessage(const MessageRecord* record) override { return onMessage ? onMessage(record) : 0; }
};

class EngineTest : public ::testing::Test
{
  protected:
    /// An entity of the root scene.
    CProbe& Add(const char* name, const char* className = "probe")
    {
        auto made = std::make_unique<CProbe>();
        CProbe& probe = *made;
        EXPECT_GE(world.AddEntity(root, name, className, std::move(made)), CWorld::FIRST_ENTITY_ID);
        return probe;
    }

    FakeHost host;
    CTrace trace;
    CEntityFactory factory;
    CWorld world{trace, factory};
    CScene& root = world.Root();
};

TEST_F(EngineTest, ReceiverGetsTheRecordWithSenderAndCopiedText)
{
    CProbe& a = Add("a");
    CProbe& b = Add("b");
    char text[] = "hull";
    std::vector<int> senders;
    const auto send = [&] { return root.SendMessage(100, b.GetEntityId(), 3, "ls", 7, 5, text); };
    b.onMessage = [&](const MessageRecord* record) {
        senders.push_back(record->sender);
        const Word* words = record->Data();
        EXPECT_TRUE(record->extra == 3 && words[0] == 7 && words[1] == 5);
        EXPECT_STREQ(reinterpret_cast<const char*>(words[2]), "hull");
        EXPECT_NE(reinterpret_cast<const char*>(words[2]), text);
        return Word{42};
    };
    a.onMessage = [&](const MessageRecord*) { return send(); };
    EXPECT_EQ(root.SendMessage(1, a.GetEntityId(), 0, nullptr), 42);
    send();
    EXPECT_EQ(senders, (std::vector<int>{a.GetEntityId(), -1})) << "the program itself sends without an id";
}

TEST_F(EngineTest, PostedMessagesKeepOrderAndTextAndWaitForTheNextFrame)
{
    CProbe& probe = Add("p");
    const int id = probe.GetEntityId();
    std::vector<std::string> got;
    probe.onMessage = [&](const MessageRecord* record) {
        got.emplace_back(reinterpret_cast<const char*>(record->Data()[1]));
        if (record->message == 1)
            root.PostMessage(3, id, 0, "s", 6, "later");
        return Word{0};
    };
    char text[] = "first";
    root.PostMessage(1, id, 0, "s", 6, text);
    text[0] = 'X';
    root.PostMessage(2, id, 0, "s", 7, "second");
    EXPECT_TRUE(got.empty());
    world.DeliverPosted();
    EXPECT_EQ(got, (std::vector<std::string>{"first", "second"}));
    world.DeliverPosted();
    EXPECT_EQ(got.back(), "later");

    root.PostMessage(4, id, 0, "s", 5, "lost");
    world.DestroyEntity(id);
    world.DeliverPosted();
    EXPECT_EQ(got.size(), 3U) << "a message to an entity that has gone is dropped";
}

TEST_F(EngineTest, AFormatThatDoesNotFitItsValuesIsRefused)
{
    CProbe& probe = Add("p");
    const int id = probe.GetEntityId();
    int calls = 0;
    probe.onMessage = [&](const MessageRecord*) { return ++calls; };
    EXPECT_EQ(root.SendMessage(1, id, 0, "l"), 0);
    EXPECT_EQ(root.SendMessage(1, id, 0, "s", 3), 0);
    EXPECT_EQ(root.SendMessage(1, id, 0, "q", 3), 0);
    EXPECT_EQ(root.SendMessage(1, id, 0, "l", 1, 2), 0);
    EXPECT_EQ(host.debug.size(), 4U);
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(root.SendMessage(1, id, 0, "s", 0, static_cast<const char*>(nullptr)), 1)
        << "a null text is an empty one";
}

TEST_F(EngineTest, AnEntityThatDestroysItselfLivesUntilItsCodeIsOver)
{
    CProbe& outer = Add("outer");
    CProbe& inner = Add("inner");
    std::string order;
    outer.onDelete = [&] { order += "outer gone; "; };
    inner.onDelete = [&] { order += "inner gone; "; };
    inner.onMessage = [&](const MessageRecord*) {
        world.DestroyEntity(outer.GetEntityId());
        EXPECT_EQ(world.GetEntity(outer.GetEntityId()), nullptr) << "it can't be found any more";
        world.DestroyEntity(inner.GetEntityId());
        order += "inner ends; ";
        return Word{5};
    };
    outer.onMessage = [&](const MessageRecord*) {
        const Word result = root.SendMessage(1, inner.GetEntityId(), 0, nullptr);
        order += "outer ends; ";
        return result;
    };
    EXPECT_EQ(root.SendMessage(1, outer.GetEntityId(), 0, nullptr), 5);
    EXPECT_EQ(order, "inner ends; inner gone; outer ends; outer gone; ");
}

TEST_F(EngineTest, AFrameSurvivesEntitiesThatComeAndGoInIt)
{
    CProbe& first = Add("first");
    CProbe& second = Add("second");
    std::string frames;
    second.onFrame = [&] { frames += "second "; };
    first.onFrame = [&, id = second.GetEntityId()] {
        frames += "first ";
        if (world.GetEntity(id) != nullptr)
            Add("added").onFrame = [&] { frames += "added "; };
        world.DestroyEntity(id);
    };
    world.RunFrame(20);
    world.RunFrame(20);
    EXPECT_EQ(frames, "first first added ");
}

TEST_F(EngineTest, NamesAreFoundByNameAndClassWithoutCaseInTheirOwnScene)
{
    const int sea = Add("Sea", "water").GetEntityId();
    const int sky = Add("sea", "SKY").GetEntityId();
    EXPECT_EQ(root.FindEntity("SEA", nullptr), sea);
    EXPECT_EQ(root.FindNextEntity(), sky);
    EXPECT_EQ(root.FindNextEntity(), -1);
    EXPECT_EQ(root.FindEntity("sea", "sky"), sky);
    EXPECT_EQ(root.FindEntity("land", nullptr), -1);
    EXPECT_EQ(world.Scene(world.CreateScene())->FindEntity("sea", nullptr), -1);
}

TEST_F(EngineTest, ScenesTakeTheirEntitiesWithThemAndTheCurrentOneCanBeNone)
{
    factory.Register("Camera", [](CScene&) { return std::make_unique<CProbe>(); });
    IEngine* scene = GetCurrentScene(&root);
    ASSERT_NE(scene, nullptr);
    const int id = scene->CreateEntity("camera", 0, 0);
    EXPECT_NE(scene->GetEntity(id), nullptr);
    EXPECT_EQ(scene->CreateEntity("unheard", 0, 0), -1);
    EXPECT_EQ(root.CreateEntityFromModule("x", "../x.so", 0, -1, 1, 0), -1);
    world.DestroyScene(0);
    EXPECT_EQ(world.GetEntity(id), nullptr);
    EXPECT_EQ(GetCurrentScene(&root), nullptr);
    const int next = world.CreateScene();
    root.SetSceneActive(next, 1, 0, 0);
    EXPECT_EQ(GetCurrentScene(&root), world.Scene(next));

    bool deleted = false;
    auto probe = std::make_unique<CProbe>();
    probe->initResult = 0;
    probe->onDelete = [&] { deleted = true; };
    EXPECT_EQ(world.AddEntity(root, "p", "p", std::move(probe)), -1) << "its Init fails";
    EXPECT_TRUE(deleted);
}

TEST_F(EngineTest, WithoutTheEntityThatFailedTheRunGoesOn)
{
    CProbe& failing = Add("interface");
    CProbe& other = Add("other");
    const int id = failing.GetEntityId();
    const int otherId = other.GetEntityId();
    std::string told;
    world.onFailure = [&](int entity, const std::string& what, const std::string& error) {
        told = what + "|" + error;
        return entity == id;
    };
    failing.onMessage = [&](const MessageRecord*) -> Word {
        root.PostMessage(7, otherId, 0, nullptr);
        throw std::runtime_error("no file");
    };
    other.onMessage = [&](const MessageRecord* record) {
        EXPECT_EQ(record->message, 2) << "what the other had posted is gone with it";
        return root.SendMessage(1, id, 0, nullptr) + 5;
    };
    EXPECT_EQ(root.SendMessage(2, otherId, 0, nullptr), 5);
    EXPECT_EQ(told, "send 0x1 to=interface|no file");
    EXPECT_FALSE(world.Failed());
    EXPECT_EQ(world.GetEntity(id), nullptr);
    world.DeliverPosted();
    // Nobody goes on without this one, and nothing of it runs any more.
    other.onMessage = [](const MessageRecord*) -> Word { throw "odd"; };
    EXPECT_EQ(root.SendMessage(2, otherId, 0, nullptr), 0);
    EXPECT_EQ(world.Failure(), "\"other\" failed: unknown error");
    EXPECT_EQ(trace.Last(1)[0], "failure other: unknown error");
    other.onMessage = [](const MessageRecord*) -> Word { return 1; };
    EXPECT_EQ(root.SendMessage(2, otherId, 0, nullptr), 0);
}

TEST_F(EngineTest, TheTraceTellsEventsCommandsAndValuesButNoAddress)
{
    const int id = Add("interface").GetEntityId();
    ItfEvent event;
    event.code = 4;
    std::snprintf(event.text, sizeof(event.text), "a.ani");
    ItfCommand command;
    command.code = 10;
    command.nNotSideB = 1;
    // No zero within the path: the field's length alone ends it.
    std::fill(std::begin(command.szPath), std::end(command.szPath), 'p');
    root.SendMessage(MSG_ITF_EVENT, id, 0, "l", &event);
    root.PostMessage(MSG_ITF_COMMAND, DEST_LOGIC, 0, "l", &command);
    root.SendMessage(0x99, id, 0, "lls", -1, &event, 3, "ab");
    trace.Add("two\r\nlines");
    EXPECT_EQ(trace.Last(4),
              (std::vector<std::string>{
                  "event code=4 value1=0 value2=0 text=\"a.ani\"",
                  "command code=10 side=0 notA=0 notB=1 difficulty=0 option=0 brief=0 path=\"" +
                      std::string(263, 'p') + "\"",
                  "send 0x99 to=interface l=-1 l=ptr s=\"ab\"", "two  lines"}));
}

TEST_F(EngineTest, TheShaderDarkensForAQuarterOfASecondUntilTheNewPictureIsShown)
{
    constexpr std::uint16_t OLD_PICTURE = 0xffff;
    constexpr std::uint16_t NEW_PICTURE = 0xf81f;
    CPresenter presenter;
    factory.Register("shader", [&](CScene&) { return std::make_unique<CShaderEntity>(presenter); });
    // As the front end does: it presents in its own frame, and goes on drawing when it is told.
    CProbe& probe = Add("interface");
    std::uint16_t drawn = OLD_PICTURE;
    std::uint16_t display = OLD_PICTURE;
    int told = 0;
    probe.onMessage = [&](const MessageRecord* record) {
        drawn = NEW_PICTURE;
        return told = record->message;
    };
    probe.onFrame = [&] { display = drawn; };
    const int shader = root.CreateEntity("shader", 3, 0);
    root.SendMessage(MSG_SHADE_START, shader, 0, "llllll", -1, 0, 1000, probe.GetEntityId(),
                     MSG_ITF_SHADE_DONE, -1);
    int last = 32;
    for (int time = 20; time <= 260; time += 20) {
        EXPECT_EQ(told, 0) << time;
        world.RunFrame(20);
        const int red = *presenter.Compose(&display, 1, 1) >> 11;
        EXPECT_LT(red, last) << time;
        last = red;
    }
    EXPECT_EQ(told, MSG_ITF_SHADE_DONE);
    world.RunFrame(20);
    EXPECT_EQ(world.GetEntity(shader), nullptr);
    EXPECT_EQ(*presenter.Compose(&display, 1, 1), NEW_PICTURE);
}

} // namespace
