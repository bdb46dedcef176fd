#include <functional>
#include <memory>
#include <random>
#include <string>

#include "control_harness.h"
#include "controls/itfreportbox.h"
#include "kernel/itfdialog.h"
#include "support/report_player.h"

using namespace control_test;

namespace
{

constexpr int WIDTH = 200;
constexpr int HEADER_H = 15;
constexpr int PAGE = 4;
constexpr int HEIGHT = HEADER_H + PAGE * GLYPH_H;

using Codes = std::vector<int>;

class ReportBoxTest : public BoxTest<CItfReportBox>
{
  protected:
    void SetUp() override
    {
        BoxTest::SetUp();
        AddColouredFont("itfBtnFont", GREEN);
        AddColouredFont("head", BLUE);
        AddColouredFont("headA", YELLOW);
        AddSprite("other", 4, 4, RED);
    }

    /// Two columns with their header cells, and a third cell that sorts nothing.
    void Make(std::uint32_t style, int rows = 0, int columns = 2)
    {
        MakeBox(WIDTH, HEIGHT, style);
        box->SetInnerRect({0, HEADER_H, WIDTH, HEIGHT});
        for (int i = 0; i < columns; ++i)
            ASSERT_TRUE(box->AddColumn(WIDTH / 2, 0));
        for (int i = 0; i < 3; ++i)
            box->AddHeader("x", i < 2 ? i : -1, i == 1 ? std::uint32_t{RBCOL_NUMBER} : 0,
                           {i * 50, 0, i * 50 + 50, HEADER_H});
        for (int i = 0; i < rows; ++i) {
            box->AddRow({i, std::string(1, static_cast<char>('z' - i))});
            box->SetItem(i, 1, {i, std::to_string(i * 7 % 10)});
        }
        box->Refresh(false);
    }
    CItfWnd& Column(int column) { return *CItfWnd::FindWindow(box->GetColumn(column)->GetId()); }
    void Press(int column, int line)
    {
        Column(column).Dispatch(WM_LBUTTONDOWN, 0, At(Column(column), 5, line * GLYPH_H));
    }
    void Header(std::uint32_t msg, int x) { box->Dispatch(msg, 0, At(*box, x, 5)); }
    static void Key(CItfWnd& wnd, int key) { wnd.Dispatch(WM_KEYDOWN, static_cast<std::uint32_t>(key), 0); }
    /// The texts of a column's lines.
    std::string Texts(int column)
    {
        std::string all;
        for (int i = 0; i < box->GetColumn(column)->GetCount(); ++i)
            all += box->GetColumn(column)->GetItem(i).m_Text;
        return all;
    }
    /// One for each notification that there is, on a box with rows.
    const std::vector<std::function<void()>> notifying = {
        [this] { Press(1, 1); },
        [this] { Column(1).Dispatch(WM_LBUTTONDBLCLK, 0, At(Column(1), 5, 5)); },
        [this] { Key(Column(0), VK_DOWN); },
        [this] { Key(Column(0), VK_RETURN); },
        [this] { Key(Column(1), VK_DELETE); },
        [this] { Key(*box, VK_RETURN); },
        [this] { Key(*box, VK_DELETE); },
    };
};

TEST_F(ReportBoxTest, ColumnsStayInStepUnderRandomOperations)
{
    std::mt19937 random(20);
    for (int run = 0; run < 200; ++run) {
        std::vector<std::uint8_t> input(400);
        for (std::uint8_t& byte : input)
            byte = static_cast<std::uint8_t>(random());
        report_test::ReportPlayer player(engine, input);
        ASSERT_EQ(player.Run(), "") << "run " << run;
    }
}

TEST_F(ReportBoxTest, EventsInNotificationsOut)
{
    const Rows<std::function<void()>, int, Codes> cases = {
        {[this] { Press(1, 0); }, 0, {2, 1}},
        {[this] { Press(0, 2); }, 2, {1}},
        {notifying[1], 2, {3}},
        {notifying[2], 3, {2}},
        {notifying[3], 2, {5, 2}},
        {notifying[4], 2, {6, 2}},
        {notifying[5], 2, {5}},
        {notifying[6], 2, {6}},
        {[this] { Column(0).Dispatch(WM_MOUSEWHEEL, WheelBy(-120), 0); }, 2, {}},
        {[this] { Key(*box, VK_NEXT); }, 6, {}},
        {[this] { Key(*box, VK_PRIOR); }, 0, {}},
        {[this] { box->Dispatch(WM_MOUSEWHEEL, WheelBy(0), 0); }, 3, {}},
        {[this] { box->Dispatch(WM_MOUSEWHEEL, WheelBy(1), 0); }, 1, {}},
        {[this] { box->Dispatch(ITFM_NOTIFY, LIST_PRESSED, 2); }, 2, {}}, // no such column
    };
    for (const auto& [event, sel, codes] : cases) {
        Make(0, 10);
        box->SetCurSel(2);
        parent.got.clear();
        event();
        EXPECT_EQ(box->GetCurSel(), sel);
        EXPECT_EQ(box->GetColumn(1)->GetCurSel(), sel);
        EXPECT_EQ(TakeCodes(), codes);
    }
}

TEST_F(ReportBoxTest, HeaderClickSortsByWhatWasPressedAndReleased)
{
    // Of the number column.
    const char* const unsorted = "0741852963";
    const char* const byText = "3692581470";
    const char* const byNumber = "0123456789";
    // The places of press and release (180 is beyond all cells), the active cell and what is shown.
    const Rows<std::uint32_t, int, int, int, std::string> cases = {
        {0, 10, 40, 0, byText},     {0, 60, 99, 1, byNumber},   {0, 60, 40, 1, unsorted},
        {0, 110, 120, 2, unsorted}, {0, 180, 60, -1, unsorted}, {RBSTYLE_NOSORT, 60, 60, -1, unsorted}};
    for (const auto& [style, down, up, active, shown] : cases) {
        SCOPED_TRACE(std::to_string(down) + " to " + std::to_string(up));
        Make(style, 10);
        box->SetCurSel(3);
        Header(WM_LBUTTONDOWN, down);
        EXPECT_EQ(CItfWnd::GetCaptureId() == box->GetId(), active >= 0);
        Header(WM_LBUTTONUP, up);
        EXPECT_EQ(CItfWnd::GetCaptureId(), -1);
        EXPECT_EQ(box->GetActiveHeader(), active);
        EXPECT_EQ(Texts(1), shown);
        EXPECT_EQ(box->HasSelection(), shown == unsorted) << "sorting loses it";
        EXPECT_TRUE(TakeCodes().empty());
    }
}

TEST_F(ReportBoxTest, PressedHeaderShowsActiveWithTheNextRepaint)
{
    Make(0);
    ASSERT_TRUE(box->SetHeaderFont("head"));
    Header(WM_LBUTTONDOWN, 110);
    EXPECT_EQ(Extent(YELLOW), RECT());
    EXPECT_EQ(Shown(YELLOW), (RECT{121, 2, 129, 2 + GLYPH_H})) << "also a cell that can't sort";
    Header(WM_LBUTTONUP, 110);
    Header(WM_LBUTTONDOWN, 180);
    EXPECT_EQ(Shown(YELLOW), RECT());
}

TEST_F(ReportBoxTest, SortsAscending)
{
    // Each in the order that it should get, FILEDIR with the group at the end.
    const Rows<int, std::vector<std::string>> cases = {
        {SORT_TEXT, {"", "Z", "a long beginning", "a long beginning, A", "a long beginning, B", "\xe4"}},
        {SORT_TEXT, {"a", std::string("a\0b", 3), "a\x01"}},
        {SORT_NUMBER,
         {"-99999999999999999999", "-7", "x1", "+2", "9 ships", "10", "0012", "4000000000",
          "9999999999999999999"}},
        {SORT_FILEDIR, {"zeta -1", "omega 0", "ALPHA 2", "Beta 2", "alpha 3"}},
        {SORT_FILEDIR, {"Z 0", "\xc4 0", "\xe4z 0", "\xfc 0"}},
    };
    for (const auto& [type, texts] : cases) {
        Make(0);
        const int count = static_cast<int>(texts.size());
        for (int i = 0; i < count; ++i) {
            const int place = (i * 7 + 2) % count;
            const std::string& text = texts[static_cast<std::size_t>(place)];
            box->AddRow({place, text, type == SORT_FILEDIR ? std::stoi(text.substr(text.rfind(' '))) : 0});
        }
        box->Sort(2, type); // there is no such column
        EXPECT_NE(box->GetItem(0, 0).m_nData, 0);
        box->Sort(0, type);
        for (int row = 0; row < count; ++row) {
            EXPECT_EQ(box->GetItem(row, 0).m_nData, row) << box->GetItem(row, 0).m_Text;
            EXPECT_EQ(box->GetItem(row, 1).m_nData, row) << "rows stay whole";
        }
        EXPECT_EQ(box->GetCount(), 0) << "nothing is shown before Refresh";
    }
}

// The bits of the sort rules mean something else to a list box.
TEST_F(ReportBoxTest, ColumnsTakeTheirPlacesAndStyles)
{
    Make(0, 0, 0);
    box->AddColumn(50, +RBCOL_RIGHT | +RBCOL_NUMBER);
    box->AddRow({7, "text", 3});
    box->AddColumn(500, RBCOL_FILEDIR);
    EXPECT_EQ(Column(0).GetStyle() & (+LBSTYLE_RIGHT | +LBSTYLE_NOWHEEL), +LBSTYLE_RIGHT);
    EXPECT_EQ(Column(1).GetStyle() & LBSTYLE_SORTED, 0u);
    EXPECT_EQ(Column(1).GetPos(), (POINT{50, HEADER_H}));
    EXPECT_EQ(Column(1).GetClientRect(), (RECT{0, 0, 500, HEIGHT - HEADER_H}));
    EXPECT_EQ(box->GetItem(0, 1).m_nData, 7);
    EXPECT_EQ(box->GetItem(0, 1).m_nOrder, 3);
    for (const bool on : {false, true}) {
        box->EnableSelect(on);
        EXPECT_EQ((Column(1).GetStyle() & LBSTYLE_NOSELECT) == 0, on);
    }
}

TEST_F(ReportBoxTest, FontsAndHighlightAreCounted)
{
    Make(0, 10, 3);
    for (const char* sprite : {"other", "itfTrans137", "other"})
        EXPECT_TRUE(box->SetSelSprite(sprite));
    EXPECT_FALSE(box->SetSelSprite("nothing"));
    const int other = box->GetColumn(2)->GetSelSprite();
    EXPECT_EQ(Toolkit().sprites[static_cast<std::size_t>(other)].refs, 4) << "three columns and the box";
    EXPECT_TRUE(box->SetListFont("head"));
    EXPECT_FALSE(box->SetListFont("nothing") || box->SetHeaderFont("nothing"));
    EXPECT_TRUE(box->SetHeaderFont("itfBtnFont")) << "which has no active form";
    ASSERT_TRUE(box->AddColumn(10, 0));
    EXPECT_EQ(box->GetColumn(3)->GetFontHandle(), box->GetColumn(0)->GetFontHandle());
    box.reset();
    EXPECT_EQ(Refs(), 0);
}

TEST_F(ReportBoxTest, ParentMayDeleteOrRefillTheBoxInAnyNotification)
{
    constexpr int DELETE = -1;
    for (const int rows : {DELETE, 0, 50}) {
        parent.onMessage = [&](const RecordingWnd::Got& got) {
            if (got.msg != ITFM_NOTIFY)
                return;
            if (rows == DELETE)
                return box.reset();
            box->Clear();
            for (int i = 0; i < rows; ++i) {
                box->AddRow({i, "row"});
                box->SetItem(i, 1, {i, std::to_string(rows - i)});
            }
            box->Sort(1, SORT_NUMBER);
            box->Refresh(true);
        };
        for (const auto& event : notifying) {
            Make(0, 20);
            event();
            if (rows == DELETE) {
                EXPECT_EQ(TakeCodes().size(), 1u);
                EXPECT_EQ(box, nullptr);
                continue;
            }
            const CItfListBox& last = *box->GetColumn(1);
            EXPECT_EQ(last.GetCount(), rows);
            EXPECT_EQ(last.GetItemData(0), rows - 1) << "in the new order";
            EXPECT_LT(last.GetCurSel(), rows);
            EXPECT_EQ(box->GetCurSel(), last.GetCurSel());
        }
    }
    parent.onMessage = nullptr;
}

// A bar that moves paints what lies behind it.
TEST_F(ReportBoxTest, WhatIsPaintedBehindTheBarMayDeleteTheBox)
{
    parent.onDraw = [this] { box.reset(); };
    const std::function<void()> calls[] = {
        [this] { box->SetCurSel(19); }, [this] { box->SelectData(19); },
        [this] { Press(0, 1); },        [this] { Column(0).Dispatch(WM_MOUSEWHEEL, WheelBy(-120), 0); },
        [this] { Key(*box, VK_NEXT); },
    };
    for (const auto& call : calls) {
        CItfWnd::SetDrawing(false);
        Make(0, 20);
        CItfWnd::SetDrawing(true);
        call();
        EXPECT_EQ(box, nullptr);
    }
    parent.onDraw = nullptr;
}

TEST_F(ReportBoxTest, ResourceMakesTablesWithTheirColumns)
{
    const auto load = [this](CItfDialog& dialog, const std::string& records) {
        WriteDialogs("TestDlg { DIALOG, \"\", 0, 0, 400, 300,\n" + records + " }");
        return dialog.CreateFromResource("", nullptr, nullptr, nullptr, 5, 0, &engine, "TestDlg");
    };
    const std::string table =
        "TABLE, \"\" \"itfListFont\" \"head\" \"IWS_VSCROLL\", 40, 5, 6, 205, 106, 0, 20, 180, 100,\n";
    {
        CItfDialog dialog;
        ASSERT_TRUE(load(dialog, table + "COLUMN, \"Name\" \"RBCOL_RIGHT\", 40, 7, 60, 0, 0, 60, 20,\n"
                                         "COLUMN, \"\" \"\", 40, -1, -60, 60, 0, 70, 20,\n" // no column
                                         "COLUMN, \"Size\" \"RBCOL_NUMBER\", 40, 3, 80, 70, 0, 120, 20"));
        CItfReportBox* report = dialog.FindTable(40);
        ASSERT_NE(report, nullptr);
        EXPECT_EQ(report->GetStyle(), +IWS_VSCROLL);
        EXPECT_EQ(report->GetColumnCount(), 2);
        EXPECT_EQ(report->GetHeaderCount(), 3);
        EXPECT_EQ(report->GetColumn(1)->GetPos(), (POINT{60, 20}));
        EXPECT_EQ(report->GetColumn(1)->GetClientRect(), (RECT{0, 0, 80, 80}));
    }
    const std::string column = "COLUMN, \"\" \"\", ";
    for (const std::string& records :
         {column + "40, 0, 60, 0, 0, 60, 20,\n" + table.substr(0, table.size() - 2),
          table + column + "40, 0, -60, 0, 0, 60, 20", table + column + "40, 0, 60, 0, 0, 60"}) {
        CItfDialog dialog;
        EXPECT_THROW(load(dialog, records), int) << records;
        EXPECT_EQ(TakeDebug().size(), 2u);
    }
}

} // namespace
