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
#include "engine/message_text.h"
#include "engine/trace.h"
#include "engine/world.h"
#include "entities/camera.h"
#include "entities/marker.h"
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
    /// The id, and the object in `probe`.
    int Add(const char* name, CProbe*& probe, const char* className = "probe")
    {
        auto made = std::make_unique<CProbe>();
        probe = made.get();
        return world.AddEntity(world.Root(), name, className, std::move(made));
    }

    FakeHost host;
    CTrace trace;
    CEntityFactory factory;
    CWorld world{trace, factory};
};

TEST_F(EngineTest, ReceiverGetsTheRecordWithSenderAndCopiedText)
{
    CProbe* a = nullptr;
    CProbe* b = nullptr;
    const int idA = Add("a", a);
    const int idB = Add("b", b);
    EXPECT_GE(idA, CWorld::FIRST_ENTITY_ID);
    EXPECT_EQ(a->GetEntityId(), idA);

    char text[] = "hull";
    std::string seen;
    int sender = 0;
    b->onMessage = [&](const MessageRecord* record) {
        sender = record->sender;
        const Word* words = record->Data();
        EXPECT_EQ(words[0], 7);
        EXPECT_EQ(words[1], 5);
        seen = reinterpret_cast<const char*>(words[2]);
        EXPECT_NE(reinterpret_cast<const char*>(words[2]), text);
        EXPECT_EQ(record->extra, 3);
        return Word{42};
    };
    a->onMessage = [&](const MessageRecord*) {
        return world.Root().SendMessage(100, idB, 3, "ls", 7, 5, text);
    };
    EXPECT_EQ(world.Root().SendMessage(1, idA, 0, nullptr), 42);
    EXPECT_EQ(sender, idA);
    EXPECT_EQ(seen, "hull");
    world.Root().SendMessage(100, idB, 3, "ls", 7, 5, text);
    EXPECT_EQ(sender, -1) << "the program itself sends without an id";
}

TEST_F(EngineTest, PostedMessagesKeepOrderAndTextAndWaitForTheNextFrame)
{
    CProbe* probe = nullptr;
    const int id = Add("p", probe);
    std::vector<std::string> got;
    probe->onMessage = [&](const MessageRecord* record) {
        got.emplace_back(reinterpret_cast<const char*>(record->Data()[1]));
        if (record->message == 1)
            world.Root().PostMessage(3, id, 0, "s", 6, "later");
        return Word{0};
    };
    char text[] = "first";
    world.Root().PostMessage(1, id, 0, "s", 6, text);
    text[0] = 'X';
    world.Root().PostMessage(2, id, 0, "s", 7, "second");
    EXPECT_TRUE(got.empty());
    world.DeliverPosted();
    EXPECT_EQ(got, (std::vector<std::string>{"first", "second"}));
    world.DeliverPosted();
    EXPECT_EQ(got.back(), "later");

    world.Root().PostMessage(4, id, 0, "s", 5, "lost");
    world.DestroyEntity(id);
    world.DeliverPosted();
    EXPECT_EQ(got.size(), 3U) << "a message to an entity that has gone is dropped";
}

TEST_F(EngineTest, AFormatThatDoesNotFitItsValuesIsRefused)
{
    CProbe* probe = nullptr;
    const int id = Add("p", probe);
    int calls = 0;
    probe->onMessage = [&](const MessageRecord*) { return ++calls; };
    IEngine& engine = world.Root();
    EXPECT_EQ(engine.SendMessage(1, id, 0, "l"), 0);
    EXPECT_EQ(engine.SendMessage(1, id, 0, "s", 3), 0);
    EXPECT_EQ(engine.SendMessage(1, id, 0, "q", 3), 0);
    EXPECT_EQ(engine.SendMessage(1, id, 0, "l", 1, 2), 0);
    EXPECT_EQ(host.debug.size(), 4U);
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(engine.SendMessage(1, id, 0, "s", 0, static_cast<const char*>(nullptr)), 1)
        << "a null text is an empty one";
}

TEST_F(EngineTest, AnEntityThatDestroysItselfLivesUntilItsCodeIsOver)
{
    CProbe* outer = nullptr;
    CProbe* inner = nullptr;
    const int idOuter = Add("outer", outer);
    const int idInner = Add("inner", inner);
    std::vector<std::string> order;
    outer->onDelete = [&] { order.emplace_back("outer gone"); };
    inner->onDelete = [&] { order.emplace_back("inner gone"); };
    inner->onMessage = [&](const MessageRecord*) {
        world.DestroyEntity(idOuter);
        EXPECT_EQ(world.GetEntity(idOuter), nullptr) << "it can't be found any more";
        world.DestroyEntity(idInner);
        order.emplace_back("inner ends");
        return Word{5};
    };
    outer->onMessage = [&](const MessageRecord*) {
        const Word result = world.Root().SendMessage(1, idInner, 0, nullptr);
        order.emplace_back("outer ends");
        return result;
    };
    EXPECT_EQ(world.Root().SendMessage(1, idOuter, 0, nullptr), 5);
    EXPECT_EQ(order, (std::vector<std::string>{"inner ends", "inner gone", "outer ends", "outer gone"}));
}

TEST_F(EngineTest, AFrameSurvivesEntitiesThatComeAndGoInIt)
{
    CProbe* first = nullptr;
    CProbe* second = nullptr;
    CProbe* added = nullptr;
    Add("first", first);
    const int idSecond = Add("second", second);
    int framesOfSecond = 0;
    int framesOfAdded = 0;
    second->onFrame = [&] { ++framesOfSecond; };
    first->onFrame = [&] {
        world.DestroyEntity(idSecond);
        if (added == nullptr) {
            Add("added", added);
            added->onFrame = [&] { ++framesOfAdded; };
        }
    };
    world.RunFrame(20);
    EXPECT_EQ(framesOfSecond, 0);
    EXPECT_EQ(framesOfAdded, 0);
    world.RunFrame(20);
    EXPECT_EQ(framesOfAdded, 1);
}

TEST_F(EngineTest, NamesAreFoundByNameAndClassWithoutCaseInTheirOwnScene)
{
    CProbe* probe = nullptr;
    const int sea = Add("Sea", probe, "water");
    const int sky = Add("sea", probe, "SKY");
    const int otherScene = world.CreateScene();
    IEngine& root = world.Root();
    EXPECT_EQ(root.FindEntity("SEA", nullptr), sea);
    EXPECT_EQ(root.FindNextEntity(), sky);
    EXPECT_EQ(root.FindNextEntity(), -1);
    EXPECT_EQ(root.FindEntity("sea", "sky"), sky);
    EXPECT_EQ(root.FindNextEntity(), -1);
    EXPECT_EQ(root.FindEntity("land", nullptr), -1);
    EXPECT_EQ(world.Scene(otherScene)->FindEntity("sea", nullptr), -1);
    EXPECT_EQ(GetRootScene(world.Scene(otherScene)), &root);
}

TEST_F(EngineTest, ScenesTakeTheirEntitiesWithThemAndTheCurrentOneCanBeNone)
{
    factory.Register("Camera", [](CScene&) { return std::make_unique<CProbe>(); });
    IEngine* scene = GetCurrentScene(&world.Root());
    ASSERT_NE(scene, nullptr);
    const int id = scene->CreateEntity("camera", 0, 0);
    EXPECT_NE(scene->GetEntity(id), nullptr);
    EXPECT_EQ(scene->CreateEntity("unheard", 0, 0), -1);
    world.DestroyScene(0);
    EXPECT_EQ(world.GetEntity(id), nullptr);
    EXPECT_EQ(GetCurrentScene(&world.Root()), nullptr);
    const int next = world.CreateScene();
    world.Root().SetSceneActive(next, 1, 0, 0);
    EXPECT_EQ(GetCurrentScene(&world.Root()), world.Scene(next));
}

TEST_F(EngineTest, AnEntityWhoseInitFailsIsGone)
{
    bool deleted = false;
    auto probe = std::make_unique<CProbe>();
    probe->initResult = 0;
    probe->onDelete = [&] { deleted = true; };
    EXPECT_EQ(world.AddEntity(world.Root(), "p", "p", std::move(probe)), -1);
    EXPECT_TRUE(deleted);
    EXPECT_EQ(world.Root().CreateEntityFromModule("x", "NOSUCH.so", 0, -1, 1, 0), -1);
    EXPECT_EQ(world.Root().CreateEntityFromModule("x", "../x.so", 0, -1, 1, 0), -1);
}

TEST_F(EngineTest, AnExceptionOutOfAnEntityIsToldAndEndsTheRun)
{
    const std::vector<std::pair<std::function<void()>, std::string>> cases = {
        {[] { throw 3; }, "error code 3"},
        {[] { throw std::runtime_error("no file"); }, "no file"},
        {[] { throw "odd"; }, "unknown error"},
    };
    for (const auto& [fault, text] : cases) {
        CWorld own(trace, factory);
        auto made = std::make_unique<CProbe>();
        CProbe* probe = made.get();
        int calls = 0;
        probe->onMessage = [&, fault = fault](const MessageRecord*) {
            ++calls;
            fault();
            return Word{1};
        };
        const int id = own.AddEntity(own.Root(), "interface", "x", std::move(made));
        EXPECT_EQ(own.Root().SendMessage(1, id, 0, nullptr), 0);
        EXPECT_TRUE(own.Failed());
        EXPECT_EQ(own.Failure(), "\"interface\" failed: " + text);
        EXPECT_EQ(trace.Last(1)[0], "failure interface: " + text);
        own.Root().SendMessage(1, id, 0, nullptr);
        EXPECT_EQ(calls, 1) << "nothing of the entity runs any more";
    }
}

TEST_F(EngineTest, WithoutTheEntityThatFailedTheRunGoesOn)
{
    CProbe* failing = nullptr;
    const int id = Add("interface", failing);
    CProbe* other = nullptr;
    const int otherId = Add("other", other);
    std::string told;
    world.onFailure = [&](int entity, const std::string& what, const std::string& error) {
        EXPECT_NE(world.GetEntity(entity), nullptr);
        told = what + "|" + error;
        return entity == id;
    };
    failing->onMessage = [&](const MessageRecord*) -> Word {
        world.Root().PostMessage(7, otherId, 0, nullptr);
        throw std::runtime_error("no file");
    };
    int heard = 0;
    other->onMessage = [&](const MessageRecord* record) {
        heard += record->message == 7 ? 1 : 0;
        return record->message == 7 ? Word{0} : world.Root().SendMessage(1, id, 0, nullptr) + 5;
    };
    EXPECT_EQ(world.Root().SendMessage(2, otherId, 0, nullptr), 5);
    EXPECT_EQ(told, "send 0x1 to=interface|no file");
    EXPECT_FALSE(world.Failed());
    EXPECT_EQ(world.GetEntity(id), nullptr);
    world.DeliverPosted();
    EXPECT_EQ(heard, 0) << "what it had posted is gone with it";
    other->onMessage = [](const MessageRecord*) -> Word { throw 1; };
    world.Root().SendMessage(2, otherId, 0, nullptr);
    EXPECT_TRUE(world.Failed()) << "nobody goes on without this one";
}

TEST_F(EngineTest, TheTraceTellsEventsCommandsAndValuesButNoAddress)
{
    CProbe* probe = nullptr;
    const int id = Add("interface", probe);
    ItfEvent event;
    event.code = 4;
    std::snprintf(event.text, sizeof(event.text), "a.ani");
    ItfCommand command;
    command.code = 10;
    command.nNotSideB = 1;
    // No zero within the path: the field's length alone ends it.
    std::fill(std::begin(command.szPath), std::end(command.szPath), 'p');
    IEngine& root = world.Root();
    root.SendMessage(MSG_ITF_EVENT, id, 0, "l", &event);
    root.PostMessage(MSG_ITF_COMMAND, DEST_LOGIC, 0, "l", &command);
    root.SendMessage(0x2b70, DEST_LOGIC, 0, nullptr);
    root.SendMessage(0x99, id, 0, "lls", -1, &event, 3, "ab");
    const std::vector<std::string> lines = trace.Last(4);
    EXPECT_EQ(lines[0], "event code=4 value1=0 value2=0 text=\"a.ani\"");
    EXPECT_EQ(lines[1], "command code=10 side=0 notA=0 notB=1 difficulty=0 option=0 brief=0 path=\"" +
                            std::string(263, 'p') + "\"");
    EXPECT_EQ(lines[2], "send 0x2b70 to=logic");
    EXPECT_EQ(lines[3], "send 0x99 to=interface l=-1 l=ptr s=\"ab\"");
}

TEST_F(EngineTest, TheShaderDarkensForAQuarterOfASecondUntilTheNewPictureIsShown)
{
    constexpr std::uint16_t OLD_PICTURE = 0xffff;
    constexpr std::uint16_t NEW_PICTURE = 0xf81f;
    CPresenter presenter;
    factory.Register("shader", [&](CScene&) { return std::make_unique<CShaderEntity>(presenter); });
    // As the front end does: it presents in its own frame, and goes on drawing when it is told.
    CProbe* probe = nullptr;
    const int id = Add("interface", probe);
    std::uint16_t drawn = OLD_PICTURE;
    std::uint16_t display = OLD_PICTURE;
    int told = 0;
    probe->onMessage = [&](const MessageRecord* record) {
        drawn = NEW_PICTURE;
        return told = record->message;
    };
    probe->onFrame = [&] { display = drawn; };
    const int shader = world.Root().CreateEntity("shader", 3, 0);
    world.Root().SendMessage(MSG_SHADE_START, shader, 0, "llllll", -1, 0, 1000, id, MSG_ITF_SHADE_DONE, -1);
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

TEST_F(EngineTest, TheScenesEntitiesHearWhatTheFrontEndTells)
{
    CScene& root = world.Root();
    auto* camera = new CCameraEntity;
    const int cameraId = world.AddEntity(root, "camera", "camera", std::unique_ptr<Entity>(camera));
    for (const bool on : {true, false}) {
        root.SendMessage(on ? MSG_CAMERA_UI_ON : MSG_CAMERA_UI_OFF, cameraId, 0, nullptr);
        EXPECT_EQ(camera->IsHeld(), on);
    }
    CMarkerEntity marker;
    IMarkerEntity& asked = marker;
    for (const int on : {1, 0}) {
        asked.SetInterfaceMode(on);
        EXPECT_EQ(marker.IsInterfaceMode(), on != 0);
    }
}

TEST(TraceTest, FindsLinesFromAPlaceOnAndKeepsCountWhenOldOnesGo)
{
    CTrace trace;
    for (std::size_t i = 0; i < CTrace::LINES_KEPT + 5; ++i)
        trace.Add("line " + std::to_string(i));
    EXPECT_EQ(trace.Count(), CTrace::LINES_KEPT + 5);
    EXPECT_FALSE(trace.Find(0, "line 4 ").has_value());
    EXPECT_EQ(trace.Find(0, "line 100003"), 100003U);
    EXPECT_FALSE(trace.Find(100004, "line 100003").has_value());
    trace.Add("two\r\nlines");
    EXPECT_EQ(trace.Last(1)[0], "two  lines");
}

} // namespace
