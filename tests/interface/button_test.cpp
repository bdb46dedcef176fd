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
        style &= ~BTSTYLE_CHECKBOX;
        EXPECT_TRUE(button->Create(caption, &rect, &parent, ID, style, &engine, nullptr, nullptr));
        button->Show(true);
        return button;
    }

    /// d down, u up, m move, each on the button; D, U, M beside it; ! disables it.
    void Play(CItfButton& button, const char* gesture)
    {
        for (; *gesture != '\0'; ++gesture) {
            if (*gesture == '!') {
                button.Enable(false);
                continue;
            }
            // One pixel past the right edge is beside it, the last column isn't.
            const std::int32_t at = At(button, *gesture >= 'a' ? WIDTH - 1 : WIDTH, 5);
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
    constexpr std::uint32_t CHECK = BTSTYLE_CHECKBOX;
    // Each a gesture (! disables the button), what is told (p pressed, c clicked, - nothing), state and
    // sounds.
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
            Play(*button, gesture.c_str());
            std::vector<Words> reports;
            for (const char code : codes) {
                if (code != '-')
                    reports.emplace_back(code == 'p' ? NOTIFY_PRESSED : NOTIFY_CLICKED, ID);
            }
            EXPECT_EQ(TakeGot(ITFM_NOTIFY), reports);
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

    // Only check boxes may cover with the key colour.
    Fill("itfBtUp", BLACK);
    const Rows<std::uint32_t, std::uint16_t> cases = {
        {0, RED},
        {BTSTYLE_CHECKBOX, BLACK},
        {+BTSTYLE_CHECKBOX | +IWS_BK_KEYCOLOR, RED},
    };
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
    {
        // Without the height of the plain font a caption hangs from the middle.
        const auto rows = std::exchange(Toolkit().fontMap, {{"itfBtnFontDis", "itfBtnFontDis.fnt"}});
        const auto button = Make(0, "XX");
        button->Enable(false);
        button->Invalidate(nullptr);
        EXPECT_EQ(Extent(RED), (RECT{LEFT + 32, TOP + 17, LEFT + 48, TOP + 27}));
        Toolkit().fontMap = rows;
    }
    const auto button = Make(0, "XX");
    button->SetInnerRect({20, 4, 60, 26});
    button->Invalidate(nullptr);
    EXPECT_EQ(Extent(WHITE), (RECT{LEFT + 32, TOP + 13, LEFT + 48, TOP + 23}));
}

TEST_F(ButtonTest, FontBringsItsVariantsAsFarAsTheyExist)
{
    Fill("itfBtUp", GREEN);
    using Names = std::vector<const char*>;
    using Colour = std::uint16_t;
    const Rows<std::string, Names, Colour, Colour, Colour> cases = {
        {"none", {}, WHITE, YELLOW, RED},       {"f1", {""}, BLUE, YELLOW, RED},
        {"f2", {"", "A"}, BLUE, BLUE, RED},     {"f3", {"", "A", "Dis"}, BLUE, BLUE, BLUE},
        {"f4", {"", "Dis"}, BLUE, YELLOW, RED}, // the disabled one counts only beside the hot one
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
    const RECT rect = {0, 0, 10, 10};
    {
        CItfButton button;
        EXPECT_FALSE(button.Create("", &rect, &parent, ID, 0, &engine, nullptr, "missing"));
        EXPECT_FALSE(IsInTable(button));
        EXPECT_FALSE(button.Create("", &rect, &parent, ID, 0, &engine, "missing", nullptr));
    }
    Make(0)->SetFont("itfBtnFontA");
    EXPECT_EQ(Refs(), before);
}

TEST_F(ButtonTest, ParentMayDeleteTheButtonThatReports)
{
    const Rows<std::uint32_t, const char*, int> cases = {
        {0, "d", NOTIFY_PRESSED},
        {0, "du", NOTIFY_CLICKED},
        {BTSTYLE_CHECKBOX, "d", NOTIFY_CLICKED},
    };
    for (const auto& row : cases) {
        auto button = Make(std::get<0>(row));
        CItfButton& victim = *button;
        parent.onMessage = [&](const RecordingWnd::Got& got) {
            if (static_cast<int>(got.wParam) == std::get<2>(row))
                button.reset();
        };
        Play(victim, std::get<1>(row));
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
    // 2.71 pixels for each percent, the fraction dropped; what is out of range changes nothing.
    const Rows<int, int, int> cases = {
        {0, 0, 0}, {1, 1, 2}, {50, 50, 135}, {101, 50, 135}, {-1, 50, 135}, {100, 100, 271}, {99, 99, 268},
    };
    for (const auto& [percent, kept, width] : cases) {
        ClearScreen(RED);
        bar.SetPercent(percent);
        EXPECT_EQ(bar.GetPercent(), kept);
        const RECT green = Extent(GREEN);
        EXPECT_EQ(green.right - green.left, width) << percent;
        EXPECT_EQ(Pixel(535, 508), width == 271 ? GREEN : BLUE);
    }
}

} // namespace
