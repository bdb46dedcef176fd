#include <memory>
#include <sstream>

#include "control_harness.h"
#include "controls/itfbutton.h"
#include "controls/itfprogress.h"

using namespace control_test;

namespace
{

constexpr int LEFT = 100;
constexpr int TOP = 50;
constexpr int WIDTH = 80;
constexpr int HEIGHT = 30;
constexpr int ID = 7;
constexpr std::uint32_t CHECK = BTSTYLE_CHECKBOX;

class ButtonTest : public ControlTest
{
  protected:
    void SetUp() override
    {
        ControlTest::SetUp();
        AddSprite("itfBtUp", WIDTH, HEIGHT, BLUE);
        AddSprite("itfBtDown", WIDTH, HEIGHT, GREEN);
        AddColouredFont("itfBtnFont", WHITE);
        AddColouredFont("itfBtnFontA", YELLOW);
        AddColouredFont("itfBtnFontDis", RED);
    }

    std::unique_ptr<CItfButton> Make(std::uint32_t style, const char* caption = "")
    {
        std::unique_ptr<CItfButton> button = std::make_unique<CItfButton>();
        if ((style & CHECK) != 0)
            button = std::make_unique<CItfCheckBox>(); // which needs no style
        const RECT rect = {LEFT, TOP, LEFT + WIDTH, TOP + HEIGHT};
        EXPECT_TRUE(button->Create(caption, &rect, &parent, ID, style & ~CHECK, &engine, nullptr, nullptr));
        button->Show(true);
        return button;
    }

    /// d down, u up, m move, each on the button; D, U, M beside it; ! disables it.
    void Play(CItfButton& button, const std::string& gesture)
    {
        for (const char step : gesture) {
            if (step == '!') {
                button.Enable(false);
                continue;
            }
            // One pixel past the right edge is beside it, the last column isn't.
            const std::int32_t at = At(button, step >= 'a' ? WIDTH - 1 : WIDTH, 5);
            const int kind = step | 0x20;
            button.Dispatch(kind == 'd' ? WM_LBUTTONDOWN : kind == 'u' ? WM_LBUTTONUP : WM_MOUSEMOVE, 0, at);
        }
    }

    std::uint16_t CaptionColour(CItfButton& button)
    {
        button.Invalidate(nullptr);
        return Pixel(LEFT + WIDTH / 2, TOP + HEIGHT / 2);
    }
};

TEST_F(ButtonTest, GesturesGiveNotificationsStateAndSound)
{
    // Each a gesture, what is told (p pressed, c clicked, - nothing), state and sounds.
    const Rows<std::uint32_t, const char*> cases = {
        {0,
         "d p 1 0  du pc 0 1  dM p 0 0  dMm p 1 0  dMU p 0 0  dMmu pc 0 1  dU p 0 0  mu - 0 0  duu pc 0 1"},
        {0, "!du - 0 0  d!u pc 0 1"},
        {BTSTYLE_MANUAL, "du pc 1 1  dudu pcpc 1 2  dudMU pcp 0 1"},
        {CHECK, "d c 1 0  dMU c 1 0  dudu cc 0 0  !du - 0 0"},
        {CHECK | BTSTYLE_MANUAL, "dudu cc 0 0"},
    };
    for (const auto& [style, script] : cases) {
        std::istringstream in(script);
        int state = 0;
        std::size_t sounds = 0;
        for (std::string gesture, codes; in >> gesture >> codes >> state >> sounds;) {
            SCOPED_TRACE(std::to_string(style) + " " + gesture);
            const auto button = Make(style);
            engine.sound.played.clear();
            Play(*button, gesture);
            std::string told;
            for (const auto& [code, control] : TakeGot(ITFM_NOTIFY)) {
                told += code == NOTIFY_PRESSED ? 'p' : code == NOTIFY_CLICKED ? 'c' : '?';
                EXPECT_EQ(control, ID);
            }
            EXPECT_EQ(told.empty() ? "-" : told, codes);
            EXPECT_EQ(button->GetState(), state);
            EXPECT_EQ(engine.sound.played, std::vector<std::string>(sounds, "itfButtonClick"));
            const bool held = gesture[gesture.find_last_of("dDuU")] == 'd';
            EXPECT_EQ(CItfWnd::GetCaptureId(), held ? button->GetId() : -1);
            CItfWnd::ReleaseCapture();
        }
    }
}

TEST_F(ButtonTest, StateChosenByTheOwnerIsShownAndNotReported)
{
    const auto button = Make(CHECK);
    button->SetState(5);
    EXPECT_EQ(Pixel(LEFT, TOP), GREEN);
    button->Toggle(); // what isn't 1 becomes 1
    EXPECT_EQ(button->GetState(), BUTTON_DOWN);
    EXPECT_TRUE(TakeCodes().empty());

    // Only check boxes may cover with the key colour.
    Fill("itfBtUp", BLACK);
    const Rows<std::uint32_t, std::uint16_t> cases = {
        {0, RED}, {CHECK, BLACK}, {CHECK | +IWS_BK_KEYCOLOR, RED}};
    for (const auto& [style, shown] : cases) {
        const auto other = Make(style);
        ClearScreen(RED);
        other->Invalidate(nullptr);
        EXPECT_EQ(Pixel(LEFT, TOP), shown) << style;
    }
}

TEST_F(ButtonTest, PointerLightsTheCaptionUntilATickFindsItGone)
{
    Toolkit().virtualScreen = {112, 84, 912, 684};
    const auto button = Make(0, "XX");
    const auto tickAt = [&](int x, int y) {
        host.cursor = {x + 112, y + 84};
        button->OnTick(20);
        return CaptionColour(*button);
    };
    EXPECT_EQ(tickAt(LEFT - 1, TOP), WHITE);
    EXPECT_EQ(tickAt(LEFT, TOP), YELLOW);
    Play(*button, "m");
    EXPECT_EQ(CaptionColour(*button), YELLOW);
    EXPECT_EQ(tickAt(LEFT + WIDTH, TOP), WHITE);

    button->Enable(false);
    button->SetState(BUTTON_DOWN);
    EXPECT_EQ(tickAt(LEFT, TOP), RED);
    EXPECT_EQ(Pixel(LEFT, TOP), GREEN) << "a disabled button still shows its state";
    button->Enable(true);
    EXPECT_EQ(CaptionColour(*button), WHITE) << "a disabled button mustn't become hot";
    host.hasCursor = false;
    EXPECT_EQ(tickAt(LEFT, TOP), WHITE);
    ClearScreen(BLACK);
    button->SetInnerRect({20, 4, 60, 26});
    button->Invalidate(nullptr);
    EXPECT_EQ(Extent(WHITE), (RECT{LEFT + 32, TOP + 13, LEFT + 48, TOP + 23})) << "in the middle of it";
}

TEST_F(ButtonTest, FontBringsItsVariantsAsFarAsTheyExist)
{
    Fill("itfBtUp", GREEN);
    // The colours of a normal, a hot and a disabled button. The disabled font counts only beside the hot one.
    using Names = std::vector<const char*>;
    const Rows<std::string, Names, std::uint16_t, std::uint16_t, std::uint16_t> cases = {
        {"none", {}, WHITE, YELLOW, RED},
        {"f1", {""}, BLUE, YELLOW, RED},
        {"f2", {"", "A", "Dis"}, BLUE, BLUE, BLUE},
        {"f3", {"", "Dis"}, BLUE, YELLOW, RED},
    };
    for (const auto& [name, exist, normal, hot, disabled] : cases) {
        SCOPED_TRACE(name);
        for (const char* suffix : exist)
            AddColouredFont(name + suffix, BLUE);
        const auto button = Make(0, "XX");
        EXPECT_EQ(button->SetFont(name.c_str()), !exist.empty());
        EXPECT_EQ(CaptionColour(*button), normal);
        Play(*button, "m");
        EXPECT_EQ(CaptionColour(*button), hot);
        button->Enable(false);
        EXPECT_EQ(CaptionColour(*button), disabled);
    }
}

TEST_F(ButtonTest, MissingSpriteFailsAndEverythingIsGivenBack)
{
    const int before = Refs();
    for (const auto& [font, sprite] :
         Rows<const char*, const char*>{{nullptr, "missing"}, {"missing", nullptr}}) {
        CItfButton button;
        EXPECT_FALSE(button.Create("", nullptr, &parent, ID, 0, &engine, font, sprite));
        EXPECT_EQ(button.GetId(), -1);
    }
    Make(0)->SetFont("itfBtnFontA");
    EXPECT_EQ(Refs(), before);
}

TEST_F(ButtonTest, ParentMayDeleteTheButtonThatReports)
{
    std::unique_ptr<CItfButton> button;
    for (const auto& [style, gesture] : Rows<std::uint32_t, std::string>{{0, "d"}, {0, "du"}, {CHECK, "d"}}) {
        button = Make(style);
        std::size_t left = style == 0 ? gesture.size() : 1;
        parent.onMessage = [&](const RecordingWnd::Got&) {
            if (--left == 0)
                button.reset();
        };
        Play(*button, gesture);
        EXPECT_EQ(button, nullptr);
        parent.onMessage = nullptr;
        CItfWnd::ReleaseCapture();
    }
}

TEST_F(ButtonTest, ProgressBarCoversThePercentageFromTheLeft)
{
    const RECT rect = {265, 486, 536, 509};
    CItfProgress bar;
    EXPECT_FALSE(bar.Create(&rect, nullptr, 0, 0, &engine)) << "there is no full bar yet";
    EXPECT_EQ(bar.GetId(), -1);
    AddSprite("ItfProgressEmpty", 271, 23, BLUE);
    AddSprite("ItfProgressFull", 271, 23, GREEN);
    ASSERT_TRUE(bar.Create(&rect, nullptr, 0, 0, &engine));
    bar.Show(true);
    // 2.71 pixels for each percent, the fraction dropped; what is out of range changes nothing.
    for (const auto& [percent, width] :
         Rows<int, int>{{0, 0}, {1, 2}, {50, 135}, {101, 135}, {-1, 135}, {100, 271}, {99, 268}}) {
        ClearScreen(RED);
        bar.SetPercent(percent);
        const RECT green = Extent(GREEN);
        EXPECT_EQ(green.right - green.left, width) << percent;
        EXPECT_EQ(Pixel(535, 508), width == 271 ? GREEN : BLUE);
    }
}

} // namespace
