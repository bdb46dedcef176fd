#include <functional>
#include <memory>
#include <random>
#include <string>
#include <utility>

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
    void Header(std::uint32_t msg, int x, int y = 5) { box->Dispatch(msg, 0, At(*box, x, y)); }
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

TEST_F(ReportBoxTest, AgreesWithAPlainModelUnderRandomOperations)
{
    std::mt19937 random(20);
    for (int run = 0; run < 300; ++run) {
        std::vector<std::uint8_t> input(400);
        for (std::uint8_t& byte : input)
            byte = static_cast<std::uint8_t>(random());
        // Columns and rows first, or most operations would find nothing.
        const std::uint8_t start[] = {16, 0, 16, 2, 0, 1, 7, 0, 0, 2, 9, 1, 0, 3, 4, 2, 0, 1, 8, 0};
        std::copy(std::begin(start), std::end(start), input.begin() + 1);
        report_test::ReportPlayer player(engine, input);
        ASSERT_EQ(player.Run(), "") << "run " << run;
    }
}

TEST_F(ReportBoxTest, EventsInNotificationsOut)
{
    const struct {
        std::function<void()> event;
        int newSel;
        Codes codes;
    } cases[] = {
        {[this] { Press(1, 0); }, 0, {2, 1}},
        {[this] { Press(0, 2); }, 2, {1}},
        {[this] { Column(1).Dispatch(WM_LBUTTONDBLCLK, 0, At(Column(1), 5, 5)); }, 2, {3}},
        {[this] { Key(Column(1), VK_DOWN); }, 3, {2}},
        {[this] { Key(Column(0), VK_RETURN); }, 2, {5, 2}},
        {[this] { Key(Column(1), VK_DELETE); }, 2, {6, 2}},
        {[this] { Column(0).Dispatch(WM_MOUSEWHEEL, WheelBy(-120), 0); }, 2, {}},
        {[this] { Key(*box, VK_RETURN); }, 2, {5}},
        {[this] { Key(*box, VK_DELETE); }, 2, {6}},
        {[this] { Key(*box, VK_NEXT); }, 6, {}},
        {[this] { Key(*box, VK_PRIOR); }, 0, {}},
        {[this] { Key(*box, VK_HOME); }, 2, {}},
        {[this] { box->Dispatch(WM_MOUSEWHEEL, WheelBy(0), 0); }, 3, {}},
        {[this] { box->Dispatch(WM_MOUSEWHEEL, WheelBy(1), 0); }, 1, {}},
        {[this] { box->Dispatch(ITFM_NOTIFY, LIST_PRESSED, 2); }, 2, {}}, // no such column
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        SCOPED_TRACE(i);
        Make(0, 10);
        box->SetCurSel(2);
        parent.got.clear();
        cases[i].event();
        EXPECT_EQ(box->GetColumn(0)->GetCurSel(), cases[i].newSel);
        EXPECT_EQ(box->GetColumn(1)->GetCurSel(), cases[i].newSel);
        EXPECT_EQ(box->GetColumn(0)->GetTopIndex(), box->GetColumn(1)->GetTopIndex());
        EXPECT_EQ(TakeCodes(), cases[i].codes);
    }
}

TEST_F(ReportBoxTest, HeaderClickSortsByWhatWasPressedAndReleased)
{
    // Of the number column.
    const char* const unsorted = "0741852963";
    const char* const byText = "3692581470";
    const char* const byNumber = "0123456789";
    const struct {
        std::uint32_t style;
        int down; // x; beyond all cells at 180
        int up;
        int active;
        const char* shown;
    } cases[] = {
        {0, 10, 40, 0, byText},     {0, 60, 99, 1, byNumber},   {0, 60, 40, 1, unsorted},
        {0, 110, 120, 2, unsorted}, {0, 180, 60, -1, unsorted}, {RBSTYLE_NOSORT, 60, 60, -1, unsorted},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(std::to_string(test.down) + " to " + std::to_string(test.up));
        Make(test.style, 10);
        box->SetCurSel(3);
        Header(WM_LBUTTONDOWN, test.down);
        EXPECT_EQ(CItfWnd::GetCaptureId() == box->GetId(), test.active >= 0);
        EXPECT_EQ(box->GetActiveHeader(), test.active);
        Header(WM_LBUTTONUP, test.up);
        EXPECT_EQ(CItfWnd::GetCaptureId(), -1);
        EXPECT_EQ(box->GetActiveHeader(), test.active);
        EXPECT_EQ(Texts(1), test.shown);
        EXPECT_EQ(box->HasSelection(), test.shown == unsorted) << "sorting loses it";
        EXPECT_TRUE(TakeCodes().empty());
    }
}

TEST_F(ReportBoxTest, PressedHeaderShowsActiveWithTheNextRepaint)
{
    Make(0);
    ASSERT_TRUE(box->SetHeaderFont("head"));
    const auto active = [this](bool repaint) {
        if (repaint) {
            ClearScreen(BLACK);
            box->Invalidate(nullptr);
        }
        return Extent(YELLOW);
    };
    const RECT none;
    EXPECT_EQ(active(true), none);
    Header(WM_LBUTTONDOWN, 110);
    EXPECT_EQ(active(false), none);
    EXPECT_EQ(active(true), (RECT{LEFT + 121, TOP + 2, LEFT + 129, TOP + 2 + GLYPH_H}))
        << "also a cell that can't sort";
    Header(WM_LBUTTONUP, 110);
    Header(WM_LBUTTONDOWN, 180);
    EXPECT_NE(active(false), none);
    EXPECT_EQ(active(true), none);
}

TEST_F(ReportBoxTest, SortsAscending)
{
    const struct {
        int type;
        std::vector<ItfListItem> rows; // their data is the place that they should get
    } cases[] = {
        {SORT_TEXT,
         {{8, "\xe4"},
          {3, "a long beginning"},
          {5, "a long beginning, B"},
          {0, ""},
          {2, "a"},
          {1, "Z"},
          {4, "a long beginning, A"},
          {6, "ab"},
          {7, "b"}}},
        {SORT_TEXT, {{1, std::string("a\0b", 3)}, {0, "a"}, {2, "a\x01"}}},
        {SORT_NUMBER,
         {{5, "10"},
          {4, "9 ships"},
          {2, "x1"},
          {0, "-99999999999999999999"},
          {3, "+2"},
          {1, "-7"},
          {6, "0012"},
          {8, "99999999999999999999"},
          {7, "4000000000"}}},
        {SORT_FILEDIR, {{3, "Beta", 2}, {4, "alpha", 3}, {2, "ALPHA", 2}, {0, "zeta", -1}, {1, "omega", 0}}},
        {SORT_FILEDIR, {{2, "\xe4z"}, {1, "\xc4"}, {0, "Z"}, {3, "\xfc"}}},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        SCOPED_TRACE(i);
        Make(0);
        for (const ItfListItem& row : cases[i].rows)
            box->AddRow(row);
        box->Sort(-1, cases[i].type);
        box->Sort(2, cases[i].type);
        EXPECT_EQ(box->GetItem(0, 0).m_Text, cases[i].rows[0].m_Text) << "there is no such column";
        box->Sort(0, cases[i].type);
        for (int row = 0; row < static_cast<int>(cases[i].rows.size()); ++row) {
            EXPECT_EQ(box->GetItem(row, 0).m_nData, row) << box->GetItem(row, 0).m_Text;
            EXPECT_EQ(box->GetItem(row, 1).m_nData, row) << "rows stay whole";
        }
        EXPECT_EQ(box->GetCount(), 0) << "nothing is shown before Refresh";
    }
}

TEST_F(ReportBoxTest, ColumnsTakeTheirPlacesAndStyles)
{
    constexpr std::uint32_t always = 0x1000001;
    constexpr std::uint32_t last = 0x100000;
    constexpr std::uint32_t earlier = 0x4000000;
    for (const std::uint32_t table : {std::uint32_t{0}, std::uint32_t{RBSTYLE_NOSELECT} | IWS_VSCROLL}) {
        const std::uint32_t base = table != 0 ? std::uint32_t{LBSTYLE_NOSELECT} | IWS_VSCROLL : 0;
        Make(table, 0, 0);
        box->AddColumn(50, +RBCOL_RIGHT | +RBCOL_NUMBER);
        EXPECT_EQ(Column(0).GetStyle(), base | 0x80000000 | always | last);
        box->AddRow({7, "text", 3});
        box->AddColumn(500, RBCOL_FILEDIR);
        EXPECT_EQ(Column(0).GetStyle(), base | 0x80000000 | always | earlier);
        EXPECT_EQ(Column(1).GetStyle(), base | always | last);
        EXPECT_EQ(Column(1).GetPos(), (POINT{50, HEADER_H}));
        EXPECT_EQ(Column(1).GetClientRect(), (RECT{0, 0, 500, HEIGHT - HEADER_H}));
        EXPECT_EQ(Column(1).GetCtrlId(), 1);
        EXPECT_EQ(box->GetItem(0, 1).m_Text, "");
        EXPECT_EQ(box->GetItem(0, 1).m_nData, 7);
        EXPECT_EQ(box->GetItem(0, 1).m_nOrder, 3);
        box->EnableSelect(false);
        EXPECT_EQ(Column(0).GetStyle() & LBSTYLE_NOSELECT, +LBSTYLE_NOSELECT);
        box->EnableSelect(true);
        EXPECT_EQ(Column(1).GetStyle() & LBSTYLE_NOSELECT, 0u);
    }
}

TEST_F(ReportBoxTest, WithoutColumnsRowsAreOnlyCounted)
{
    Make(0, 0, 0);
    EXPECT_EQ(box->AddRow({4, "x"}), 0);
    EXPECT_EQ(box->AddRow({5, "x"}), 1);
    box->SetItem(0, 0, {1, "x"});
    box->Sort(0, SORT_TEXT);
    box->Refresh(true);
    for (const int key : {VK_RETURN, VK_DOWN})
        Key(*box, key);
    EXPECT_TRUE(TakeCodes().empty());
    EXPECT_FALSE(box->HasSelection());
    EXPECT_EQ(box->GetCurSel(), -1);
    EXPECT_EQ(box->GetCurData(), -1);
    EXPECT_EQ(box->GetCount(), 0);
    EXPECT_EQ(box->FindRow(4), -1);
    Make(0, 3);
    EXPECT_EQ(box->FindRow(2), 2);
    EXPECT_EQ(box->FindRow(9), -1);
    EXPECT_EQ(box->GetItem(3, 0).m_Text + box->GetItem(0, 2).m_Text, "");
}

TEST_F(ReportBoxTest, FontsAndHighlightAreCounted)
{
    Make(0, 10, 3);
    EXPECT_TRUE(box->SetSelSprite("other"));
    EXPECT_TRUE(box->SetSelSprite("itfTrans137"));
    EXPECT_TRUE(box->SetSelSprite("other"));
    EXPECT_FALSE(box->SetSelSprite("nothing"));
    const int other = parent.AcquireSprite("other");
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(box->GetColumn(i)->GetSelSprite(), other);
    EXPECT_EQ(Toolkit().sprites[static_cast<std::size_t>(other)].refs, 5) << "three columns, box and test";
    EXPECT_TRUE(box->SetListFont("head"));
    EXPECT_FALSE(box->SetListFont("nothing"));
    EXPECT_FALSE(box->SetHeaderFont("nothing"));
    EXPECT_TRUE(box->SetHeaderFont("itfBtnFont")) << "which has no active form";
    ASSERT_TRUE(box->AddColumn(10, 0));
    const int head = parent.AcquireFont("head");
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(box->GetColumn(i)->GetFontHandle(), head);
    parent.ReleaseFont(head);
    parent.ReleaseSprite(other);
    box.reset();
    ExpectAllGivenBack();
}

TEST_F(ReportBoxTest, ParentMayDeleteTheBoxInAnyNotification)
{
    parent.onMessage = [this](const RecordingWnd::Got& got) {
        if (got.msg == ITFM_NOTIFY)
            box.reset();
    };
    for (const auto& event : notifying) {
        Make(0, 20);
        event();
        EXPECT_EQ(TakeCodes().size(), 1u);
        EXPECT_EQ(box, nullptr);
    }
    // And so may whatever is painted behind a bar that moves.
    parent.onMessage = nullptr;
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
    ExpectAllGivenBack();
}

TEST_F(ReportBoxTest, ParentMayRefillAndSortTheBoxWheneverItRuns)
{
    const auto refill = [this](int rows) {
        box->Clear();
        for (int i = 0; i < rows; ++i) {
            box->AddRow({i, "row"});
            box->SetItem(i, 1, {i, std::to_string(rows - i)});
        }
        box->Sort(1, SORT_NUMBER);
        box->Refresh(true);
    };
    for (const int rows : {0, 1, 50}) {
        parent.onMessage = [&](const RecordingWnd::Got& got) {
            if (got.msg == ITFM_NOTIFY)
                refill(rows);
        };
        for (const auto& event : notifying) {
            Make(0, 20);
            event();
            const CItfListBox& first = *box->GetColumn(0);
            const CItfListBox& last = *box->GetColumn(1);
            EXPECT_EQ(first.GetCount(), rows);
            EXPECT_EQ(last.GetCount(), rows);
            EXPECT_EQ(last.GetItemData(0), rows - 1) << "in the new order";
            EXPECT_LT(first.GetCurSel(), rows);
            EXPECT_EQ(first.GetCurSel(), last.GetCurSel());
            EXPECT_EQ(first.GetTopIndex(), last.GetTopIndex());
        }
    }
    parent.onMessage = nullptr;
    // A bar that moves while the columns are filled paints what lies behind it.
    Make(IWS_VSCROLL, 20);
    bool cleared = false;
    parent.onDraw = [&] {
        if (!std::exchange(cleared, true))
            box->Clear();
    };
    box->Refresh(true);
    EXPECT_TRUE(cleared);
    box->Refresh(true);
    parent.onDraw = nullptr;
    EXPECT_EQ(box->GetCount(), 0);
}

TEST_F(ReportBoxTest, ResourceMakesTablesColumnsAndListBoxes)
{
    const auto load = [this](CItfDialog& dialog, const std::string& records) {
        WriteDialogs("TestDlg { DIALOG, \"\", 0, 0, 400, 300,\n" + records + " }");
        return dialog.CreateFromResource("", nullptr, nullptr, nullptr, 5, 0, &engine, "TestDlg");
    };
    const std::string table =
        "TABLE, \"\" \"itfListFont\" \"head\" \"IWS_VSCROLL\", 40, 5, 6, 205, 106, 0, 20, 180, 100,\n";
    {
        CItfDialog dialog;
        ASSERT_TRUE(load(
            dialog, table + "COLUMN, \"Name\" \"RBCOL_RIGHT\", 40, 7, 60, 0, 0, 60, 20,\n"
                            "COLUMN, \"\" \"\", 40, -1, -60, 60, 0, 70, 20,\n" // whose width means nothing
                            "LISTBOX, \"\" \"head\" \"LBSTYLE_CENTER\", 50, 0, 120, 90, 200, 1, 2, 3, 4,\n"
                            "COLUMN, \"Size\" \"RBCOL_NUMBER\", 40, 3, 80, 70, 0, 120, 20"));
        CItfReportBox* report = dialog.FindTable(40);
        ASSERT_NE(report, nullptr);
        EXPECT_EQ(dialog.FindTable(50), nullptr);
        EXPECT_EQ(report->GetCaption(), "Report");
        EXPECT_EQ(report->GetStyle(), +IWS_VSCROLL);
        EXPECT_EQ(report->GetColumnCount(), 2);
        EXPECT_EQ(report->GetHeaderCount(), 3);
        EXPECT_EQ(report->GetColumn(1)->GetPos(), (POINT{60, 20}));
        EXPECT_EQ(report->GetColumn(1)->GetClientRect(), (RECT{0, 0, 80, 80}));
        EXPECT_TRUE(report->GetColumn(1)->IsVisible());
        auto* list = dialog.GetControlAs<CItfListBox>(50);
        ASSERT_NE(list, nullptr);
        EXPECT_EQ(list->GetStyle(), +LBSTYLE_CENTER);
        EXPECT_EQ(list->GetInnerRect(), (RECT{1, 2, 3, 4}));
        dialog.Destroy();
    }
    const std::pair<std::string, int> faults[] = {
        {"COLUMN, \"\" \"\", 40, 0, 60, 0, 0, 60, 20,\n" + table.substr(0, table.size() - 2),
         RESERR_NO_PARENT},
        {table + "COLUMN, \"\" \"\", 41, 0, 60, 0, 0, 60, 20", RESERR_NO_PARENT},
        {table + "COLUMN, \"\" \"\", 40, 0, -60, 0, 0, 60, 20", RESERR_SYNTAX},
        {table + "COLUMN, \"\" \"\", 40, 0, 60, 0, 0, 60", RESERR_SYNTAX},
    };
    for (const auto& [records, code] : faults) {
        SCOPED_TRACE(records);
        CItfDialog dialog;
        int thrown = 0;
        try {
            load(dialog, records);
        } catch (int error) {
            thrown = error;
        }
        EXPECT_EQ(thrown, code);
        EXPECT_EQ(TakeDebug().size(), 2u);
    }
    ExpectAllGivenBack();
}

} // namespace
