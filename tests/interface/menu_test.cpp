#include <memory>

#include "control_harness.h"
#include "controls/itfmenu.h"

using namespace control_test;

namespace
{

constexpr int LEFT = 50;
constexpr int TOP = 100;
constexpr int ITEM_W = 80;
constexpr int ITEM_H = 20;
constexpr int ID = 10;

class MenuTest : public ControlTest
{
  protected:
    std::unique_ptr<CItfMenu> menu;

    void SetUp() override
    {
        ControlTest::SetUp();
        AddColouredFont("itfMenuFont", WHITE);
        AddColouredFont("itfMenuFontA", YELLOW);
        AddColouredFont("itfMenuFontDis", RED);
        AddSprite("back", 200, 200, BLUE);
        menu = std::make_unique<CItfMenu>();
        const RECT rect = {LEFT, TOP, LEFT + 200, TOP + 200};
        ASSERT_TRUE(menu->Create("Menu", "back", &rect, &parent, ID, 0, &engine));
        menu->AddItem("XX", 1, "", Slot(0), "");
        menu->AddItem("XX", 2, "DISABLED", Slot(1), "");
        menu->AddItem("XX", 3, nullptr, Slot(2), nullptr);
        menu->Show(true);
        menu->Invalidate(nullptr);
    }
    void TearDown() override
    {
        menu.reset();
        ControlTest::TearDown();
    }

    static RECT Slot(int index) { return {10, ITEM_H * index, 10 + ITEM_W, ITEM_H * (index + 1)}; }
    void Send(std::uint32_t msg, int slot) { menu->Dispatch(msg, 0, At(*menu, 10, ITEM_H * slot)); }
    using Colour = std::vector<std::uint16_t>;
    /// Of the text of each item: normal white, lit yellow, disabled red.
    Colour Colours()
    {
        Colour colours;
        for (int i = 0; i < 3; ++i)
            colours.push_back(Pixel(LEFT + 10 + ITEM_W / 2, TOP + ITEM_H * i + ITEM_H / 2));
        return colours;
    }
};

TEST_F(MenuTest, PointerAndPresses)
{
    constexpr std::uint32_t MOVE = WM_MOUSEMOVE;
    constexpr std::uint32_t PRESS = WM_LBUTTONDOWN;
    // Slot 3 lies below the last item; beside the items the last one stays lit. Command 0 is none.
    const Rows<std::uint32_t, int, int, Colour, int> steps = {
        {MOVE, 0, 0, {YELLOW, RED, WHITE}, 0},   {MOVE, 2, 2, {WHITE, RED, YELLOW}, 0},
        {MOVE, 3, -1, {WHITE, RED, YELLOW}, 0},  {PRESS, 3, -1, {WHITE, RED, YELLOW}, 0},
        {PRESS, 0, -1, {YELLOW, RED, WHITE}, 1}, {MOVE, 1, 1, {WHITE, RED, WHITE}, 0},
        {PRESS, 1, 1, {WHITE, RED, WHITE}, 0},   {PRESS, 2, 1, {WHITE, RED, YELLOW}, 3}};
    for (const auto& [msg, slot, hot, shown, command] : steps) {
        SCOPED_TRACE(std::to_string(msg) + " " + std::to_string(slot));
        engine.sound.played.clear();
        Send(msg, slot);
        EXPECT_EQ(menu->GetHotItem(), hot);
        EXPECT_EQ(Colours(), shown);
        const std::size_t reports = command != 0 ? 1 : 0;
        EXPECT_EQ(engine.sound.played, std::vector<std::string>(reports, "itfMenuClick"));
        EXPECT_TRUE(TakeGot(ITFM_COMMAND).empty()) << "the report has to wait for the next frame";
        CItfWnd::DeliverPosted();
        EXPECT_EQ(TakeGot(ITFM_COMMAND), std::vector<Words>(reports, {ID, command}));
    }
    // The earlier of two overlapping items is hit.
    menu->AddItem("over", 4, "", {10, 0, 300, 300}, "");
    Send(MOVE, 1);
    EXPECT_EQ(menu->GetHotItem(), 1);
    Send(MOVE, 5);
    EXPECT_EQ(menu->GetHotItem(), 3);
}

TEST_F(MenuTest, OnlyTheNewItemsBackgroundIsRepainted)
{
    Send(WM_MOUSEMOVE, 0);
    ClearScreen(GREEN);
    Send(WM_MOUSEMOVE, 0);
    EXPECT_EQ(Colours(), (Colour{GREEN, GREEN, GREEN})) << "it was hot already";
    Send(WM_MOUSEMOVE, 2);
    EXPECT_EQ(Extent(BLUE), (RECT{LEFT + 10, TOP + 2 * ITEM_H, LEFT + 10 + ITEM_W, TOP + 3 * ITEM_H}));
    EXPECT_EQ(Colours(), (Colour{WHITE, RED, YELLOW}));
    ClearScreen(GREEN);
    menu->OnTick(20);
    EXPECT_EQ(Colours(), (Colour{GREEN, GREEN, YELLOW})) << "a tick draws the lit item once more";
}

TEST_F(MenuTest, ItemsTakeFlagsAndNamesAndAreFoundDepthFirst)
{
    for (const auto& [style, flags] : Rows<const char*, std::uint32_t>{
             {"", 0}, {"DISABLED|POPUP", 0x24}, {"xDISABLEDx", 0x20}, {"disabled", 0}})
        EXPECT_EQ(ItfMenuItem::ParseFlags(style), flags) << style;
    ItfMenuItem inner;
    inner.m_nId = 3; // as an item further down the root
    inner.SetName("12345678901234567890123456789012");
    ItfMenuItem& root = menu->GetRoot();
    root.GetItem(0)->AddItem(inner);
    EXPECT_STREQ(root.FindItem(3)->m_szName, "1234567890123456789012345678901");
    EXPECT_EQ(root.FindItem(99), nullptr);
    EXPECT_TRUE(root.GetItem(-1) == nullptr && root.GetItem(3) == nullptr);

    // Another bit, or an index out of range, leaves the highlights alone.
    const Rows<bool, int, std::uint32_t, std::vector<std::uint32_t>> steps = {
        {true, -1, 3, {3, 3, 3}},
        {true, 1, 4, {3, 7, 3}},
        {true, 3, MENUITEM_HIGHLIGHTED, {3, 7, 3}},
        {true, 2, MENUITEM_HIGHLIGHTED, {2, 6, 3}},
        {false, -1, 3, {0, 4, 0}}};
    for (const auto& [set, index, bits, expected] : steps) {
        set ? root.SetItemState(index, bits) : root.ClearItemState(index, bits);
        std::vector<std::uint32_t> states;
        for (const ItfMenuItem& item : root.m_Items)
            states.push_back(item.m_nState);
        EXPECT_EQ(states, expected) << index << " " << bits;
    }
    menu->Destroy();
    EXPECT_TRUE(root.m_Items.empty()) << "a resource that is read again would give them twice";
}

} // namespace
