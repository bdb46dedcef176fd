#include <memory>

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
        std::unique_ptr<CItfButton> button;
        if ((style & BTSTYLE_CHECKBOX) != 0)
            button = std::make_unique<CItfCheckBox>(); // which needs no style
        else
            button = std::make_unique<CItfButton>();
        const RECT rect = {LEFT, TOP, LEFT + WIDTH, TOP + HEIGHT};
        EXPECT_TRUE(button->Create(caption, &rect, &parent, ID, style & ~BTSTYLE_CHECKBOX, &engine, nullptr,
                                   nullptr));
        button->Show(true);
        return button;
    }

    /// d down, u up, m move, each on the button; D, U, M beside it.
    void Play(CItfButton& button, const char* gesture)
    {
        for (; *gesture != '\0'; ++gesture) {
            const bool inside = *gesture >= 'a';
            // One pixel past the right edge is beside it, the last column isn't.
            const std::int32_t at = At(button, inside ? WIDTH - 1 : WIDTH, 5);
            const int kind = *gesture | 0x20;
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
    constexpr std::uint32_t PLAIN = 0;
    constexpr std::uint32_t MANUAL = BTSTYLE_MANUAL;
    constexpr std::uint32_t CHECK = BTSTYLE_CHECKBOX;
    const int down = NOTIFY_PRESSED;
    const int click = NOTIFY_CLICKED;
    const struct {
        std::uint32_t style;
        const char* gesture;
        std::vector<int> codes;
        int state;
        std::size_t sounds;
    } cases[] = {
        {PLAIN, "d", {down}, 1, 0},
        {PLAIN, "du", {down, click}, 0, 1},
        {PLAIN, "dM", {down}, 0, 0},
        {PLAIN, "dMm", {down}, 1, 0},
        {PLAIN, "dMU", {down}, 0, 0},
        {PLAIN, "dMmu", {down, click}, 0, 1},
        {PLAIN, "dU", {down}, 0, 0}, // no move came in between
        {PLAIN, "mu", {}, 0, 0},
        {PLAIN, "duu", {down, click}, 0, 1},
        {MANUAL, "du", {down, click}, 1, 1},
        {MANUAL, "dudu", {down, click, down, click}, 1, 2},
        {MANUAL, "dudMU", {down, click, down}, 0, 1},
        {CHECK, "d", {click}, 1, 0},
        {CHECK, "du", {click}, 1, 0},
        {CHECK, "dMU", {click}, 1, 0},
        {CHECK, "dudu", {click, click}, 0, 0},
        {CHECK | MANUAL, "dudu", {click, click}, 0, 0},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(std::to_string(test.style) + " " + test.gesture);
        const auto button = Make(test.style);
        engine.sound.played.clear();
        Play(*button, test.gesture);
        std::vector<Words> reports;
        for (const int code : test.codes)
            reports.emplace_back(code, ID);
        EXPECT_EQ(TakeGot(ITFM_NOTIFY), reports);
        EXPECT_EQ(button->GetState(), test.state);
        EXPECT_EQ(engine.sound.played, std::vector<std::string>(test.sounds, "itfButtonClick"));
        const bool held = test.gesture[std::string(test.gesture).find_last_of("dDuU")] == 'd';
        EXPECT_EQ(CItfWnd::GetCaptureId(), held ? button->GetId() : -1);
        CItfWnd::ReleaseCapture();
    }
}

TEST_F(ButtonTest, DisabledButtonTakesNoPressButEndsOneThatIsUnderWay)
{
    for (const std::uint32_t style : {0u, +BTSTYLE_CHECKBOX}) {
        const auto button = Make(style);
        button->Enable(false);
        Play(*button, "du");
        EXPECT_TRUE(TakeCodes().empty());
        EXPECT_EQ(CItfWnd::GetCaptureId(), -1);
    }
    const auto button = Make(0);
    Play(*button, "d");
    button->Enable(false);
    Play(*button, "u");
    EXPECT_EQ(TakeCodes(), (std::vector<int>{NOTIFY_PRESSED, NOTIFY_CLICKED}));
    EXPECT_EQ(CItfWnd::GetCaptureId(), -1);
}

TEST_F(ButtonTest, StateChosenByTheOwnerIsShownAndNotReported)
{
    const auto button = Make(BTSTYLE_CHECKBOX);
    button->SetState(BUTTON_DOWN);
    EXPECT_EQ(Pixel(LEFT, TOP), GREEN);
    button->Toggle();
    EXPECT_EQ(Pixel(LEFT, TOP), BLUE);
    button->SetState(5);
    EXPECT_EQ(Pixel(LEFT, TOP), GREEN);
    button->Toggle(); // what isn't 1 becomes 1
    EXPECT_EQ(button->GetState(), BUTTON_DOWN);
    EXPECT_TRUE(TakeCodes().empty());
}

TEST_F(ButtonTest, OnlyCheckBoxesMayCoverWithTheKeyColour)
{
    Fill("itfBtUp", BLACK);
    const struct {
        std::uint32_t style;
        std::uint16_t shown;
    } cases[] = {{0, RED}, {BTSTYLE_CHECKBOX, BLACK}, {+BTSTYLE_CHECKBOX | +IWS_BK_KEYCOLOR, RED}};
    for (const auto& test : cases) {
        const auto button = Make(test.style);
        ClearScreen(RED);
        button->Invalidate(nullptr);
        EXPECT_EQ(Pixel(LEFT, TOP), test.shown) << test.style;
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
    EXPECT_EQ(tickAt(LEFT + WIDTH, TOP), WHITE);
    Play(*button, "m");
    EXPECT_EQ(CaptionColour(*button), YELLOW);
    EXPECT_EQ(tickAt(0, 0), WHITE);

    button->Enable(false);
    button->SetState(BUTTON_DOWN);
    EXPECT_EQ(tickAt(LEFT, TOP), RED);
    EXPECT_EQ(Pixel(LEFT, TOP), GREEN) << "a disabled button still shows its state";
    button->Enable(true);
    EXPECT_EQ(CaptionColour(*button), WHITE) << "a disabled button mustn't become hot";
    host.hasCursor = false;
    EXPECT_EQ(tickAt(LEFT, TOP), WHITE);
}

TEST_F(ButtonTest, CaptionStandsInTheMiddleOfTheInnerRectangle)
{
    const auto button = Make(0, "XX");
    button->SetInnerRect({20, 4, 60, 26});
    button->Invalidate(nullptr);
    EXPECT_EQ(Extent(WHITE), (RECT{LEFT + 32, TOP + 10, LEFT + 48, TOP + 20}));
}

TEST_F(ButtonTest, CaptionsNeedOnlyTheirOwnFont)
{
    std::erase_if(Toolkit().fontMap, [](const NameRow& row) { return row.name == "itfBtnFont"; });
    const auto button = Make(0, "XX");
    button->Enable(false);
    button->Invalidate(nullptr);
    // Without the height of the plain font the caption hangs from the middle.
    EXPECT_EQ(Extent(RED), (RECT{LEFT + 32, TOP + 15, LEFT + 48, TOP + 25}));
}

TEST_F(ButtonTest, FontBringsItsVariantsAsFarAsTheyExist)
{
    const struct {
        const char* name;
        std::vector<const char*> exist;
        bool result;
        std::uint16_t normal, hot, disabled;
    } cases[] = {
        {"none", {}, false, WHITE, YELLOW, RED},      {"f1", {""}, true, BLUE, YELLOW, RED},
        {"f2", {"", "A"}, true, BLUE, BLUE, RED},     {"f3", {"", "A", "Dis"}, true, BLUE, BLUE, BLUE},
        {"f4", {"", "Dis"}, true, BLUE, YELLOW, RED}, // the disabled one counts only beside the hot one
    };
    Fill("itfBtUp", GREEN);
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        for (const char* suffix : test.exist)
            AddColouredFont(std::string(test.name) + suffix, BLUE);
        const auto button = Make(0, "XX");
        EXPECT_EQ(button->SetFont(test.name), test.result);
        EXPECT_EQ(CaptionColour(*button), test.normal);
        Play(*button, "m");
        EXPECT_EQ(CaptionColour(*button), test.hot);
        button->Enable(false);
        EXPECT_EQ(CaptionColour(*button), test.disabled);
    }
}

TEST_F(ButtonTest, MissingSpriteFailsAndEverythingIsGivenBack)
{
    const auto refs = [] {
        int sum = 0;
        for (const SpriteEntry& entry : Toolkit().sprites)
            sum += entry.refs;
        for (const FontEntry& entry : Toolkit().fonts)
            sum += entry.refs;
        return sum;
    };
    const int before = refs();
    const RECT rect = {0, 0, 10, 10};
    {
        CItfButton button;
        EXPECT_FALSE(button.Create("", &rect, &parent, ID, 0, &engine, nullptr, "missing"));
        EXPECT_FALSE(IsInTable(button));
        EXPECT_EQ(button.GetId(), -1);
        EXPECT_FALSE(button.Create("", &rect, &parent, ID, 0, &engine, "missing", nullptr));
    }
    Make(0)->SetFont("itfBtnFontA");
    EXPECT_EQ(refs(), before);
}

TEST_F(ButtonTest, ParentMayDeleteTheButtonThatReports)
{
    const struct {
        std::uint32_t style;
        const char* gesture;
        int code;
    } cases[] = {
        {0, "d", NOTIFY_PRESSED}, {0, "du", NOTIFY_CLICKED}, {BTSTYLE_CHECKBOX, "d", NOTIFY_CLICKED}};
    for (const auto& test : cases) {
        auto button = Make(test.style);
        CItfButton& victim = *button;
        parent.onMessage = [&](const RecordingWnd::Got& got) {
            if (static_cast<int>(got.wParam) == test.code)
                button.reset();
        };
        Play(victim, test.gesture);
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
    EXPECT_FALSE(IsInTable(bar));
    AddSprite("ItfProgressEmpty", 271, 23, BLUE);
    AddSprite("ItfProgressFull", 271, 23, GREEN);
    ASSERT_TRUE(bar.Create(&rect, nullptr, 0, 0, &engine));
    bar.Show(true);
    const struct {
        int percent;
        int kept;
        int width; // 2.71 pixels for each percent, the fraction dropped
    } cases[] = {{0, 0, 0},     {1, 1, 2},       {50, 50, 135}, {101, 50, 135},
                 {-1, 50, 135}, {100, 100, 271}, {99, 99, 268}};
    for (const auto& test : cases) {
        ClearScreen(RED);
        bar.SetPercent(test.percent);
        EXPECT_EQ(bar.GetPercent(), test.kept);
        const RECT green = Extent(GREEN);
        EXPECT_EQ(green.right - green.left, test.width) << test.percent;
        EXPECT_EQ(Pixel(535, 508), test.width == 271 ? GREEN : BLUE);
    }
}

} // namespace
