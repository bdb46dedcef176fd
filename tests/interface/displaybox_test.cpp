// Picture, video, animation and flag boxes.
#include <cstring>

#include "control_harness.h"
#include "controls/itfanimationbox.h"
#include "controls/itfflagbox.h"
#include "controls/itfpicturebox.h"
#include "controls/itfvideobox.h"
#include "kernel/itfdialog.h"
#include "video/video.h"

using namespace control_test;
using seawarden_test::FakeEngine;
using seawarden_test::Sent;

namespace
{

using Lines = std::vector<std::string>;

class DisplayBoxTest : public ControlTest
{
  protected:
    bool Load(CItfDialog& dialog, const std::string& records, IEngine* core = nullptr)
    {
        WriteDialogs("TestDlg { DIALOG, \"\", 100, 50, 500, 450, " + records + " }");
        const bool loaded = dialog.CreateFromResource("Test", nullptr, nullptr, &parent, 5, 0,
                                                      core != nullptr ? core : &engine, "TestDlg");
        dialog.Show(true);
        return loaded;
    }
    Lines TakeVideoCalls() { return std::exchange(engine.video.calls, {}); }

    /// A picture of the player's folder whose cells of 4 by 4 are of the colours 1, 2, 3 ...
    void AddSheet(const std::string& name, int cols, int rows)
    {
        std::vector<std::uint16_t> pixels;
        for (int y = 0; y < rows * 4; ++y) {
            for (int x = 0; x < cols * 4; ++x)
                pixels.push_back(static_cast<std::uint16_t>(y / 4 * cols + x / 4 + 1));
        }
        SavePng((userFolder / (name + ".png")).string(), pixels.data(), cols * 4, rows * 4);
        Toolkit().spriteMap.push_back({name, name + ".png"});
    }
};

TEST_F(DisplayBoxTest, APictureBoxWalksTheCellsInUse)
{
    AddSheet("sheet", 3, 2);
    CItfDialog dialog;
    ASSERT_TRUE(
        Load(dialog, "PICTUREBOX, \"sheet\" \"\" \"\", 9, 4, 4, 3, 2, 2, 10, 10, 50, 40, 2, 3, 22, 23"));
    auto* box = dialog.GetControlAs<CItfPictureBox>(9);
    ASSERT_NE(box, nullptr);
    const auto shown = [&] { return Pixel(100 + 10 + 12, 50 + 10 + 13); };
    box->Invalidate(nullptr);
    EXPECT_EQ(shown(), 1);
    EXPECT_EQ(Extent(1), (RECT{112, 63, 132, 83})) << "stretched over the inner rectangle";

    const struct {
        const char* name;
        std::function<void()> act;
        int index;
    } steps[] = {
        {"just past the last", [&] { box->SetIndex(5); }, 0},
        {"negative", [&] { box->SetIndex(-1); }, 0},
        {"the last", [&] { box->SetIndex(4); }, 4},
        {"on from the last in use", [&] { box->Next(); }, 0},
        {"back from the first", [&] { box->Previous(); }, 4},
        {"into the row above",
         [&] {
             box->SetIndex(3);
             box->Previous();
         },
         2},
        {"into the row below", [&] { box->Next(); }, 3},
    };
    for (const auto& step : steps) {
        step.act();
        EXPECT_EQ(box->GetIndex(), step.index) << step.name;
        EXPECT_EQ(shown(), step.index + 1) << step.name;
    }
    box->SetGrid(0, 0, 0, 0, 0);
    box->SetIndex(0);
    box->Next();
    box->Previous();
}

TEST_F(DisplayBoxTest, APictureBoxTakesPicturesAndGivesThemBack)
{
    AddSheet("one", 1, 1);
    AddSheet("two", 2, 1);
    const std::size_t before = Toolkit().sprites.size();
    {
        CItfPictureBox box;
        const RECT rect = {0, 0, 40, 40};
        ASSERT_TRUE(box.Create("Picture", nullptr, &rect, &parent, 1, 0, &engine, "one"));
        box.Show(true);
        box.SetGrid(4, 4, 1, 1, 1);
        box.SetPicture("two");
        box.SetCell(1, 0);
        EXPECT_EQ(Pixel(5, 5), BLACK) << "no repaint of itself";
        box.Invalidate(nullptr);
        EXPECT_EQ(Pixel(5, 5), 2);
        box.LoadPicture("one.png");
        box.SetCell(0, 0);
        box.Invalidate(nullptr);
        EXPECT_EQ(Pixel(5, 5), 1);
        box.SetPicture("none");
        box.Invalidate(nullptr);
        EXPECT_EQ(Pixel(5, 5), 1) << "without a picture it draws nothing";
        box.SetPicture("two");
    }
    for (std::size_t i = before; i < Toolkit().sprites.size(); ++i)
        EXPECT_EQ(Toolkit().sprites[i].refs, 0) << i;
}

TEST_F(DisplayBoxTest, AVideoBoxStartsWithItsFirstTickAndRewindsAtTheEnd)
{
    const struct {
        const char* style;
        const char* flags;
    } cases[] = {{"", "22"}, {"VSTYLE_LOOP", "30"}};
    for (const auto& test : cases) {
        engine.video.calls.clear();
        CItfDialog dialog;
        ASSERT_TRUE(Load(dialog, std::string("VIDEOBOX, \"video\\x.ani\" \"\" \"") + test.style +
                                     "\", 9, 10, 20, 50, 60, 1, 2, 31, 32"));
        const std::string handle = std::to_string(*engine.video.open.begin());
        const std::string surface = std::to_string(Toolkit().screenSurface);
        EXPECT_EQ(TakeVideoCalls(), (Lines{std::string("OpenVideo video\\x.ani ") + test.flags,
                                           "SetVideoTarget " + handle + " " + surface + " 111 72 141 102"}));
        CItfWnd* box = dialog.GetControl(9);
        CItfWnd::SetDrawing(false);
        box->OnTick(20);
        EXPECT_EQ(TakeVideoCalls(), Lines());
        CItfWnd::SetDrawing(true);
        CItfWnd::TickAll(20);
        CItfWnd::TickAll(20);
        EXPECT_EQ(TakeVideoCalls(), Lines{"PlayVideo " + handle + " 1"});
        engine.video.running.clear();
        CItfWnd::TickAll(20);
        EXPECT_EQ(TakeVideoCalls(), (Lines{"StopVideo " + handle, "RewindVideo " + handle + " 0"}));
        dialog.Destroy();
    }
    EXPECT_TRUE(engine.video.open.empty()) << "each box closes its clip";
}

TEST_F(DisplayBoxTest, BoxesWithoutAClipStayEmpty)
{
    const char* const VIDEO = "VIDEOBOX, \"x.ani\" \"\" \"\", 9, 0, 0, 50, 50, -1, 0, 0, 0";
    const char* const ANIMATION = "ANIMATIONBOX, \"x.ani\" \"\", 9, 0, 0, 50, 50, -1, 0, 0, 0";
    for (const bool hasVideo : {false, true}) {
        engine.hasVideo = hasVideo;
        engine.video.missing = {"x.ani"};
        CItfDialog dialog;
        ASSERT_TRUE(Load(dialog, VIDEO));
        EXPECT_FALSE(dialog.GetControlAs<CItfVideoBox>(9)->OpenFile("x.ani"));
        engine.video.calls.clear();
        CItfWnd::TickAll(20);
        EXPECT_EQ(TakeVideoCalls(), Lines());
        CItfDialog other;
        if (!hasVideo) {
            EXPECT_TRUE(Load(other, ANIMATION)) << "a host without clips";
            continue;
        }
        EXPECT_THROW(Load(other, ANIMATION), int);
        EXPECT_EQ(TakeDebug().size(), 2U) << "the loader's lines";
    }
}

TEST_F(DisplayBoxTest, AnAnimationBoxPlaysAtItsPlaceOnTheScreen)
{
    {
        CItfDialog dialog;
        ASSERT_TRUE(Load(dialog, "ANIMATIONBOX, \"x.ani\" \"\", 9, 10, 20, 50, 60, 1, 2, 31, 32"));
        CItfWnd::TickAll(30);
        EXPECT_EQ(TakeVideoCalls(),
                  (Lines{"OpenAnimation x.ani",
                         "SetAnimationTarget 1 " + std::to_string(Toolkit().screenSurface) + " 10 20 50 60",
                         "StartAnimation 1", "TickAnimation 1 30"}));
    }
    EXPECT_EQ(TakeVideoCalls(), Lines{"CloseAnimation 1"});
}

// With the game's own clips.
class HostWithClips : public FakeEngine, public IFramePump
{
  public:
    void* GetSubsystem(int id, int kind = 0) override
    {
        if (kind == 0 && id == GetSubsystemId(SUBSYSTEM_VIDEO))
            return static_cast<IVideo*>(&clips);
        if (kind == 0 && id == GetSubsystemId(SUBSYSTEM_RENDER2D))
            return shared->GetSubsystem(id, kind);
        return FakeEngine::GetSubsystem(id, kind);
    }
    Frame PumpFrame() override { return {}; }

    explicit HostWithClips(FakeEngine& other) : shared(&other), clips(other.render, other.sound, *this) {}
    FakeEngine* shared;
    CVideo clips;
};

TEST_F(DisplayBoxTest, ClipsPlayInTheDialogAndNotOverABoxInFrontOfIt)
{
    const std::vector<std::uint16_t> red(16, RED);
    const std::vector<std::uint16_t> green(16, GREEN);
    SavePng((userFolder / "red.png").string(), red.data(), 4, 4);
    SavePng((userFolder / "green.png").string(), green.data(), 4, 4);
    WriteFile("x.ani", "clip { size, 4, 4, still, \"red.png\", 100, 0, still, \"green.png\", 100, 0 }");
    AddSprite("front", 800, 600, BLUE);
    HostWithClips clipHost(engine);
    CItfDialog dialog;
    ASSERT_TRUE(Load(dialog,
                     "VIDEOBOX, \"x.ani\" \"\" \"VSTYLE_LOOP\", 8, 0, 0, 40, 40, -1, 0, 0, 0, "
                     "ANIMATIONBOX, \"x.ani\" \"\", 9, 300, 200, 340, 240, -1, 0, 0, 0",
                     &clipHost));
    const auto frame = [&](int elapsed) {
        clipHost.clips.Update(elapsed);
        CItfWnd::TickAll(elapsed);
    };
    const auto expect = [&](std::uint16_t colour, const char* when) {
        EXPECT_EQ(Pixel(110, 60), colour) << "video " << when;
        EXPECT_EQ(Pixel(310, 210), colour) << "animation " << when;
    };
    expect(BLACK, "before the first tick");
    frame(20);
    expect(RED, "from the start");
    for (int i = 0; i < 5; ++i)
        frame(20);
    expect(GREEN, "after its first still");
    RecordingWnd front;
    ASSERT_TRUE(front.Create(nullptr, "front", nullptr, nullptr, 2, 0, &engine));
    front.Show(true);
    front.SetModal();
    front.Invalidate(nullptr);
    for (int i = 0; i < 20; ++i)
        frame(20);
    expect(BLUE, "behind a modal window");
    front.Destroy();
    frame(20);
    frame(20);
    expect(GREEN, "going on where it was");
}

class FlagBoxTest : public DisplayBoxTest
{
  protected:
    void SetUp() override
    {
        DisplayBoxTest::SetUp();
        engine.onMessage = [this](const Sent& sent) {
            if (sent.destination < 16)
                return Word{0};
            if (sent.number == MSG_FLAG_ATTACH)
                attached.push_back(*reinterpret_cast<const ItfFlagBlock*>(sent.words[0]));
            if (sent.number == MSG_FLAG_CHANGE)
                got.push_back(Hex(sent) + " " + std::to_string(sent.words[0]) + " " +
                              std::to_string(sent.words[1]));
            else if (sent.number == MSG_FLAG_TEXTURE)
                got.push_back(Hex(sent) + " " + std::to_string(sent.words[0]) + " " + sent.texts[0]);
            else
                got.push_back(Hex(sent));
            return Word{0};
        };
    }
    static std::string Hex(const Sent& sent)
    {
        char text[16];
        std::snprintf(text, sizeof(text), "%x %s", static_cast<unsigned>(sent.number), sent.format.c_str());
        return text;
    }
    Lines Take() { return std::exchange(got, {}); }

    Lines got;
    std::vector<ItfFlagBlock> attached;
};

constexpr char FLAG_RECORD[] = "FLAGBOX, \"\" \"FB_RIGHT TBSTYLE_CENTERED\", 9, 10, 20, 50, 60,"
                               " 1.5, -2, 3e1, 128, 64, 0.5";

TEST_F(FlagBoxTest, ItsEntityGetsTheBlockOfTheResource)
{
    CItfDialog dialog;
    ASSERT_TRUE(Load(dialog, FLAG_RECORD));
    auto* box = dialog.GetControlAs<CItfFlagBox>(9);
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->GetStyle(), 0U);
    EXPECT_EQ(box->GetInnerRect(), box->GetClientRect());
    EXPECT_EQ(Take(), Lines()) << "no entity before the first flag";

    ASSERT_TRUE(box->SetFlag(1003, 77, 1917));
    EXPECT_EQ(Take(), (Lines{"e l", "8000 "}));
    const std::int32_t ints[] = {1003, 1917, 1};
    const float floats[] = {1.5F, -2.0F, 30.0F, 128.0F, 64.0F, 0.5F};
    EXPECT_EQ(std::memcmp(&attached.back(), floats, sizeof(floats)), 0);
    EXPECT_EQ(std::memcmp(&attached.back().nFlag, ints, sizeof(ints)), 0);

    ASSERT_TRUE(box->SetFlag(1004, 0, 0));
    EXPECT_EQ(engine.destroyed.size(), 1U);
    EXPECT_EQ(attached.back().nExtra, 1917) << "0 leaves what was there";
    Take();
    box->ChangeFlag(1005, 3);
    box->ChangeTexture("a.tf");
    EXPECT_EQ(Take(), (Lines{"8002 ll 1005 3", "8003 s 5 a.tf"}));
    ASSERT_TRUE(box->SetFlagFile("white_flg.tf"));
    EXPECT_EQ(Take(), (Lines{"e l", "8003 s 13 white_flg.tf", "8000 "}));
    EXPECT_EQ(attached.back().nFlag, 0);
    EXPECT_EQ(attached.back().nExtra, 0);

    engine.refused.insert("itf_flag");
    EXPECT_FALSE(box->SetFlag(1003, 0, 0));
    EXPECT_FALSE(box->SetFlagFile("b.tf"));
    box->ChangeFlag(1, 1);
    box->ChangeTexture("c.tf");
    box->Invalidate(nullptr);
    box->Show(false);
    EXPECT_EQ(Take(), Lines()) << "without an entity nobody is told";
    EXPECT_EQ(engine.destroyed.size(), 3U);
}

TEST_F(FlagBoxTest, TheFlagShowsWhileItsDialogIsPainted)
{
    CItfDialog dialog;
    ASSERT_TRUE(Load(dialog, FLAG_RECORD));
    auto* box = dialog.GetControlAs<CItfFlagBox>(9);
    ASSERT_TRUE(box->SetFlag(1001, 0, 0));
    Take();
    const struct {
        const char* name;
        std::function<void()> act;
        Lines told;
    } steps[] = {
        {"first painting", [&] { dialog.Invalidate(nullptr); }, {"8001 "}},
        {"painted again", [&] { dialog.Invalidate(nullptr); }, {}},
        {"shown again", [&] { box->Show(true); }, {"8001 "}},
        {"painted while drawing is off",
         [&] {
             CItfWnd::SetDrawing(false);
             box->Draw();
             box->Draw();
         },
         {"8000 "}},
        {"shown while drawing is off", [&] { box->Show(true); }, {}},
        {"drawing again",
         [&] {
             CItfWnd::SetDrawing(true);
             CItfWnd::RedrawAll();
         },
         {"8001 "}},
        {"its dialog goes", [&] { dialog.Show(false); }, {"8000 "}},
        {"and goes again", [&] { dialog.Show(false); }, {"8000 "}},
        {"and comes, unpainted", [&] { dialog.Show(true); }, {}},
        {"another flag waits for the painting",
         [&] {
             box->Draw();
             Take();
             box->SetFlag(1002, 0, 0);
         },
         {"e l", "8000 "}},
        {"and then shows", [&] { box->Draw(); }, {"8001 "}},
    };
    for (const auto& step : steps) {
        step.act();
        EXPECT_EQ(Take(), step.told) << step.name;
    }
    const std::size_t destroyed = engine.destroyed.size();
    box = nullptr;
    {
        CItfDialog gone;
        ASSERT_TRUE(Load(gone, FLAG_RECORD));
        gone.GetControlAs<CItfFlagBox>(9)->SetFlag(1, 0, 0);
    }
    EXPECT_EQ(engine.destroyed.size(), destroyed + 1) << "the entity ends with its box";
}

// Destroyed, a box keeps what the host gave it until it is created again or deleted.
TEST_F(FlagBoxTest, ASecondLifeBeginsAnew)
{
    const RECT rect = {0, 0, 40, 40};
    {
        CItfVideoBox box;
        CItfAnimationBox other;
        const auto create = [&](const char* clip) {
            const bool video = box.Create("Video", nullptr, &rect, &parent, 1, 0, &engine);
            return std::pair{video, other.Create("Animation", &rect, &parent, 2, 0, &engine, clip)};
        };
        EXPECT_EQ(create("a.ani"), std::pair(true, true));
        EXPECT_TRUE(box.OpenFile("b.ani"));
        box.OnTick(20);
        TakeVideoCalls();
        EXPECT_EQ(create("c.ani"), std::pair(false, false)) << "while they live";
        EXPECT_EQ(TakeVideoCalls(), Lines());
        box.Destroy();
        other.Destroy();
        EXPECT_EQ(create("c.ani"), std::pair(true, true));
        EXPECT_EQ(engine.video.open.size(), 1U) << "both clips of the first life are closed";
        TakeVideoCalls();
        box.OnTick(20);
        EXPECT_EQ(TakeVideoCalls(), Lines()) << "no file yet";
        EXPECT_TRUE(box.OpenFile("d.ani"));
        TakeVideoCalls();
        box.OnTick(20);
        other.OnTick(20);
        EXPECT_EQ(TakeVideoCalls(), (Lines{"PlayVideo 4 1", "TickAnimation 3 20"}));
    }
    EXPECT_TRUE(engine.video.open.empty());

    CItfFlagBox flag;
    const auto create = [&] { return flag.Create("FlagBox", nullptr, &rect, &parent, 3, 0, &engine); };
    ASSERT_TRUE(create());
    flag.Show(true);
    ASSERT_TRUE(flag.SetFlag(1001, 0, 1917));
    flag.Draw();
    EXPECT_FALSE(create());
    EXPECT_TRUE(engine.destroyed.empty()) << "a box that lives keeps its flag";
    flag.Destroy();
    ASSERT_TRUE(create());
    EXPECT_EQ(engine.destroyed.size(), 1U);
    flag.Show(true);
    Take();
    flag.Draw();
    EXPECT_EQ(Take(), Lines()) << "without a flag there is no entity";
    ASSERT_TRUE(flag.SetFlag(1002, 0, 0));
    EXPECT_EQ(attached.back().nExtra, 0) << "nothing is left of the first flag";
}

TEST_F(DisplayBoxTest, WrongNumbersOfDisplayBoxesEndTheLoading)
{
    const char* records[] = {
        "PICTUREBOX, \"\" \"\" \"\", 9, 4, 4, -1, 2, 2, 0, 0, 9, 9, -1, 0, 0, 0",
        "PICTUREBOX, \"\" \"\" \"\", 9, 4, 99999, 1, 2, 2, 0, 0, 9, 9, -1, 0, 0, 0",
        "FLAGBOX, \"\" \"\", 9, 0, 0, 9, 9, 1, 2, 3, 4, 5",
        "FLAGBOX, \"\" \"\", 9, 0, 0, 9, 9, 1, 2, x, 4, 5, 6",
    };
    for (const char* record : records) {
        CItfDialog dialog;
        EXPECT_THROW(Load(dialog, record), int) << record;
        EXPECT_EQ(TakeDebug().size(), 2U) << record;
    }
}

} // namespace
