// Picture, video, animation and flag boxes.
#include <cstring>
#include <map>

#include "control_harness.h"
#include "controls/itfanimationbox.h"
#include "controls/itfflagbox.h"
#include "controls/itfpicturebox.h"
#include "controls/itfvideobox.h"
#include "kernel/itfdialog.h"

using namespace control_test;
using seawarden_test::Sent;

namespace
{

using Lines = std::vector<std::string>;

class DisplayBoxTest : public ControlTest
{
  protected:
    bool Load(CItfDialog& dialog, const std::string& records)
    {
        WriteDialogs("TestDlg { DIALOG, \"\", 100, 50, 500, 450, " + records + " }");
        const bool loaded =
            dialog.CreateFromResource("Test", nullptr, nullptr, &parent, 5, 0, &engine, "TestDlg");
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

    // < and > for one back and one on.
    const Rows<int, std::string, int> cases = {{5, "", 0},  {-1, "", 0}, {4, "", 4},  {4, ">", 0},
                                               {0, "<", 4}, {3, "<", 2}, {1, "<", 0}, {2, ">", 3}};
    for (const auto& [set, walk, index] : cases) {
        box->SetIndex(set);
        for (const char step : walk)
            step == '<' ? box->Previous() : box->Next();
        EXPECT_EQ(box->GetIndex(), index) << set << walk;
        EXPECT_EQ(shown(), index + 1) << set << walk;
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
    const int before = Refs();
    {
        CItfPictureBox box;
        const RECT rect = {0, 0, 40, 40};
        ASSERT_TRUE(box.Create("Picture", nullptr, &rect, &parent, 1, 0, &engine, "one"));
        box.Show(true);
        box.SetGrid(4, 4, 1, 1, 1);
        box.SetPicture("two");
        EXPECT_EQ(Pixel(5, 5), BLACK) << "no repaint of itself";
        box.SetCell(1, 0);
        box.Invalidate(nullptr);
        EXPECT_EQ(Pixel(5, 5), 2);
        box.LoadPicture("one.png");
        box.SetCell(0, 0);
        box.Invalidate(nullptr);
        EXPECT_EQ(Pixel(5, 5), 1);
        box.SetPicture("none");
        box.Invalidate(nullptr);
        box.SetPicture("two");
    }
    EXPECT_EQ(Refs(), before);
}

TEST_F(DisplayBoxTest, AVideoBoxStartsWithItsFirstTickAndRewindsAtTheEnd)
{
    for (const bool loops : {false, true}) {
        engine.video.calls.clear();
        CItfDialog dialog;
        ASSERT_TRUE(Load(dialog, std::string("VIDEOBOX, \"video\\x.ani\" \"\" \"") +
                                     (loops ? "VSTYLE_LOOP" : "") + "\", 9, 10, 20, 50, 60, 1, 2, 31, 32"));
        const std::string handle = std::to_string(*engine.video.open.begin());
        const std::string surface = std::to_string(Toolkit().screenSurface);
        EXPECT_EQ(TakeVideoCalls(), (Lines{std::string("OpenVideo video\\x.ani ") + (loops ? "30" : "22"),
                                           "SetVideoTarget " + handle + " " + surface + " 111 72 141 102"}));
        CItfWnd::SetDrawing(false);
        dialog.GetControl(9)->OnTick(20);
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
    engine.video.missing = {"x.ani"};
    for (const bool hasVideo : {true, false}) {
        engine.hasVideo = hasVideo;
        CItfDialog dialog;
        ASSERT_TRUE(Load(dialog, "VIDEOBOX, \"x.ani\" \"\" \"\", 9, 0, 0, 50, 50, -1, 0, 0, 0"));
        EXPECT_FALSE(dialog.GetControlAs<CItfVideoBox>(9)->OpenFile("x.ani"));
        engine.video.calls.clear();
        CItfWnd::TickAll(20);
        EXPECT_EQ(TakeVideoCalls(), Lines());
    }
    const char* const ANIMATION = "ANIMATIONBOX, \"x.ani\" \"\", 9, 0, 0, 50, 50, -1, 0, 0, 0";
    CItfDialog dialog;
    EXPECT_TRUE(Load(dialog, ANIMATION)) << "a host without clips";
    engine.hasVideo = true;
    CItfDialog other;
    EXPECT_THROW(Load(other, ANIMATION), int);
    EXPECT_EQ(TakeDebug().size(), 2U) << "the loader's lines";
}

class FlagBoxTest : public DisplayBoxTest
{
  protected:
    void SetUp() override
    {
        DisplayBoxTest::SetUp();
        engine.onMessage = [this](const Sent& sent) {
            static const std::map<int, std::string> names = {{MSG_FLAG_ATTACH, "attach"},
                                                             {MSG_FLAG_HIDE, "hide"},
                                                             {MSG_FLAG_SHOW, "show"},
                                                             {MSG_FLAG_CHANGE, "change "},
                                                             {MSG_FLAG_TEXTURE, "texture "}};
            if (sent.number == MSG_FLAG_ATTACH)
                attached = *reinterpret_cast<const ItfFlagBlock*>(sent.words[0]);
            if (const auto name = names.find(sent.number); sent.destination >= 16 && name != names.end())
                got.push_back(name->second + (sent.number == MSG_FLAG_TEXTURE  ? sent.texts[0]
                                              : sent.number == MSG_FLAG_CHANGE ? std::to_string(sent.words[0])
                                                                               : ""));
            return Word{0};
        };
    }
    Lines Take() { return std::exchange(got, {}); }

    Lines got;
    ItfFlagBlock attached = {};
};

constexpr char FLAG_RECORD[] = "FLAGBOX, \"\" \"FB_RIGHT TBSTYLE_CENTERED\", 9, 10, 20, 50, 60,"
                               " 1.5, -2, 3e1, 128, 64, 0.5";

TEST_F(FlagBoxTest, ItsEntityGetsTheBlockOfTheResource)
{
    CItfDialog dialog;
    ASSERT_TRUE(Load(dialog, FLAG_RECORD));
    auto* box = dialog.GetControlAs<CItfFlagBox>(9);
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(Take(), Lines()) << "no entity before the first flag";

    ASSERT_TRUE(box->SetFlag(1003, 77, 1917));
    EXPECT_EQ(Take(), (Lines{"attach", "hide"}));
    const std::int32_t ints[] = {1003, 1917, 1};
    const float floats[] = {1.5F, -2.0F, 30.0F, 128.0F, 64.0F, 0.5F};
    EXPECT_EQ(std::memcmp(&attached, floats, sizeof(floats)), 0);
    EXPECT_EQ(std::memcmp(&attached.nFlag, ints, sizeof(ints)), 0);

    ASSERT_TRUE(box->SetFlag(1004, 0, 0));
    EXPECT_EQ(engine.destroyed.size(), 1U);
    EXPECT_EQ(attached.nExtra, 1917) << "0 leaves what was there";
    Take();
    box->ChangeFlag(1005, 3);
    ASSERT_TRUE(box->SetFlagFile("white_flg.tf"));
    EXPECT_EQ(Take(), (Lines{"change 1005", "attach", "texture white_flg.tf", "hide"}));
    EXPECT_EQ(attached.nFlag, 0);
    EXPECT_EQ(attached.nExtra, 0);

    engine.refused.insert("itf_flag");
    EXPECT_FALSE(box->SetFlag(1003, 0, 0) || box->SetFlagFile("b.tf"));
    box->ChangeFlag(1, 1);
    box->ChangeTexture("c.tf");
    box->Invalidate(nullptr);
    EXPECT_EQ(Take(), Lines()) << "without an entity nobody is told";
    EXPECT_EQ(engine.destroyed.size(), 3U);
}

TEST_F(FlagBoxTest, TheFlagShowsWhileItsDialogIsPainted)
{
    {
        CItfDialog dialog;
        ASSERT_TRUE(Load(dialog, FLAG_RECORD));
        auto* box = dialog.GetControlAs<CItfFlagBox>(9);
        ASSERT_TRUE(box->SetFlag(1001, 0, 0));
        Take();
        const auto paint = [&](bool drawing) {
            CItfWnd::SetDrawing(drawing);
            box->Draw();
            return Take();
        };
        EXPECT_EQ(paint(true), Lines{"show"});
        EXPECT_EQ(paint(true), Lines());
        box->Show(true);
        EXPECT_EQ(Take(), Lines{"show"}) << "again";
        EXPECT_EQ(paint(false), Lines{"hide"});
        box->Show(true);
        EXPECT_EQ(paint(false), Lines());
        EXPECT_EQ(paint(true), Lines{"show"});
        dialog.Show(false);
        dialog.Show(false);
        dialog.Show(true);
        EXPECT_EQ(Take(), (Lines{"hide", "hide"})) << "its dialog comes, but unpainted";
        paint(true);
        box->SetFlag(1002, 0, 0);
        EXPECT_EQ(Take(), (Lines{"attach", "hide"}));
        EXPECT_EQ(paint(true), Lines{"show"});
    }
    EXPECT_EQ(engine.destroyed.size(), 2U) << "the entity ends with its box";
}

} // namespace
