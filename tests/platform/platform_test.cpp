// Clipboard, GDI fills, rectangles, cursor counter, locale and process start.

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "../../platform/src/internal.h"
#include "platform/clipboard.h"
#include "platform/gdi.h"
#include "platform/host.h"
#include "platform/input.h"
#include "platform/rect.h"
#include "platform/system.h"
#include "temp_roots.h"

namespace
{

class FakeHost : public PlatformHost
{
  public:
    void SetCursorVisible(bool visible) override { shown += visible ? "1" : "0"; }
    bool IsKeyDown(int key) override { return key == VK_SHIFT; }
    bool IsKeyDownNow(int key) override { return key == VK_CONTROL; }
    std::optional<std::string> LocaleText(DWORD item) override
    {
        return item == LOCALE_STHOUSAND ? std::optional<std::string>("'") : std::nullopt;
    }

    std::string shown;
};

class Platform : public testing::Test
{
  protected:
    void SetUp() override { m_pBefore = SetPlatformHost(&host); }
    void TearDown() override { SetPlatformHost(m_pBefore); }

    static HGLOBAL Block(const std::string& bytes)
    {
        HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_DDESHARE, bytes.size());
        std::memcpy(GlobalLock(block), bytes.data(), bytes.size());
        EXPECT_FALSE(GlobalUnlock(block));
        return block;
    }

    FakeHost host;

  private:
    PlatformHost* m_pBefore = nullptr;
};

TEST_F(Platform, TheClipboardOwnsWhatItTookAndWhatItGives)
{
    EXPECT_FALSE(EmptyClipboard()) << "not open";
    ASSERT_TRUE(OpenClipboard(nullptr));
    EXPECT_FALSE(OpenClipboard(nullptr)) << "open already";
    EXPECT_EQ(GetClipboardData(CF_TEXT), nullptr);

    HGLOBAL other = Block("x");
    EXPECT_EQ(SetClipboardData(CF_TEXT + 12, other), nullptr);
    EXPECT_EQ(GlobalFree(other), nullptr) << "a refused block is still the caller's";

    HGLOBAL block = Block(std::string("one\r\ntwo\0rest", 13));
    EXPECT_TRUE(EmptyClipboard());
    ASSERT_EQ(SetClipboardData(CF_TEXT, block), block);
    EXPECT_EQ(GlobalFree(block), block) << "no longer the caller's";
    EXPECT_EQ(SetClipboardData(CF_TEXT, block), nullptr) << "nor taken twice";
    EXPECT_TRUE(CloseClipboard());
    EXPECT_FALSE(CloseClipboard());
    EXPECT_EQ(host.ClipboardText(), "one\r\ntwo");
    EXPECT_EQ(GetClipboardData(CF_TEXT), nullptr) << "closed";

    ASSERT_TRUE(OpenClipboard(nullptr));
    HANDLE given = GetClipboardData(CF_TEXT);
    ASSERT_TRUE(given);
    EXPECT_EQ(GetClipboardData(CF_TEXT), given);
    EXPECT_STREQ(static_cast<const char*>(GlobalLock(given)), "one\r\ntwo");
    EXPECT_EQ(GlobalSize(given), 9u);
    EXPECT_TRUE(EmptyClipboard());
    EXPECT_FALSE(IsClipboardFormatAvailable(CF_TEXT));
    EXPECT_EQ(GetClipboardData(CF_TEXT), nullptr);
    CloseClipboard();
}

TEST_F(Platform, ABlockWithoutAZeroAndATextOfTenMegabytes)
{
    const std::string large(10'000'000, 'a');
    for (const std::string& text : {std::string("abc"), large, std::string()}) {
        ASSERT_TRUE(OpenClipboard(nullptr));
        ASSERT_TRUE(SetClipboardData(CF_TEXT, Block(text)));
        CloseClipboard();
        ASSERT_TRUE(IsClipboardFormatAvailable(CF_TEXT));
        ASSERT_TRUE(OpenClipboard(nullptr));
        EXPECT_EQ(std::strlen(static_cast<char*>(GlobalLock(GetClipboardData(CF_TEXT)))), text.size());
        CloseClipboard();
    }
}

TEST_F(Platform, GlobalBlocksCountTheirLocks)
{
    HGLOBAL block = GlobalAlloc(GMEM_ZEROINIT, 3);
    EXPECT_EQ(static_cast<char*>(GlobalLock(block))[2], 0);
    GlobalLock(block);
    EXPECT_TRUE(GlobalUnlock(block));
    EXPECT_EQ(GlobalFree(block), block) << "still locked";
    EXPECT_FALSE(GlobalUnlock(block));
    EXPECT_FALSE(GlobalUnlock(block));
    EXPECT_EQ(GlobalFree(block), nullptr);
    EXPECT_EQ(GlobalLock(nullptr), nullptr);
    EXPECT_EQ(GlobalFree(nullptr), nullptr);
}

/// Draws into 6 by 4 pixels that stand inside a larger array, so that a stray write shows.
class Canvas
{
  public:
    Canvas()
        : m_Pixels(WIDTH * (HEIGHT + 2), '.'),
          dc(PlatformCreateMemoryDC(m_Pixels.data() + WIDTH, WIDTH, HEIGHT))
    {
    }
    ~Canvas() { PlatformDeleteMemoryDC(dc); }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    /// One letter a pixel: '.' untouched, 'r', 'g', 'b' full channels, '?' else. "stray" for a write outside.
    std::string Rows() const
    {
        std::string out;
        for (std::size_t i = 0; i < m_Pixels.size(); ++i) {
            const std::uint16_t pixel = m_Pixels[i];
            const char c = pixel == '.'      ? '.'
                           : pixel == 0xf800 ? 'r'
                           : pixel == 0x07e0 ? 'g'
                           : pixel == 0x001f ? 'b'
                                             : '?';
            if ((i < WIDTH || i >= WIDTH * (HEIGHT + 1)) && c != '.') {
                return "stray";
            }
            if (i >= WIDTH && i < WIDTH * (HEIGHT + 1)) {
                out += c;
                out += i % WIDTH == WIDTH - 1 ? "/" : "";
            }
        }
        return out;
    }

  private:
    static constexpr int WIDTH = 6;
    static constexpr int HEIGHT = 4;
    std::vector<std::uint16_t> m_Pixels;

  public:
    HDC dc;
};

constexpr COLORREF RED = RGB(255, 0, 0);
constexpr COLORREF GREEN = RGB(0, 255, 0);
constexpr COLORREF BLUE = RGB(0, 0, 255);
constexpr LONG FAR = std::numeric_limits<LONG>::max();
constexpr LONG FAR_BACK = std::numeric_limits<LONG>::min();

TEST(Gdi, FillsAreClippedAndLeaveTheRightAndBottomEdge)
{
    const struct {
        RECT rect;
        const char* rows;
    } cases[] = {
        {{1, 1, 3, 3}, "....../.rr.../.rr.../....../"},
        {{-5, -5, 2, 1}, "rr..../....../....../....../"},
        {{4, 3, 99, 99}, "....../....../....../....rr/"},
        {{FAR_BACK, FAR_BACK, FAR, FAR}, "rrrrrr/rrrrrr/rrrrrr/rrrrrr/"},
        {{3, 3, 1, 1}, "....../....../....../....../"},
        {{6, 0, 9, 4}, "....../....../....../....../"},
    };
    HBRUSH brush = CreateSolidBrush(RED);
    for (const auto& c : cases) {
        Canvas canvas;
        EXPECT_EQ(FillRect(canvas.dc, &c.rect, brush), 1);
        EXPECT_EQ(canvas.Rows(), c.rows);
    }
    EXPECT_EQ(FillRect(nullptr, &cases[0].rect, brush), 0);
    EXPECT_TRUE(DeleteObject(brush));
}

TEST(Gdi, ARectangleHasItsPenOnTheEdgeAndItsBrushInside)
{
    const struct {
        int pen;
        RECT rect;
        const char* rows;
    } cases[] = {
        {1, {0, 0, 6, 4}, "bbbbbb/bggggb/bggggb/bbbbbb/"},
        {0, {1, 1, 4, 4}, "....../.bbb../.bgb../.bbb../"},
        {1, {4, 4, 1, 1}, "....../.bbb../.bgb../.bbb../"},
        {2, {1, 1, 6, 4}, "bbbbbb/bbbbbb/bbbbbb/bbbbbb/"},
        {3, {-3, -3, 5, 3}, "gggbbb/bbbbbb/bbbbbb/bbbbbb/"},
        {1, {2, 2, 2, 4}, "....../....../....../....../"},
        {FAR, {FAR_BACK, 0, FAR, 1}, "bbbbbb/bbbbbb/bbbbbb/bbbbbb/"},
    };
    for (const auto& c : cases) {
        Canvas canvas;
        HBRUSH brush = CreateSolidBrush(GREEN);
        HPEN pen = CreatePen(PS_SOLID, c.pen, BLUE);
        HGDIOBJ oldBrush = SelectObject(canvas.dc, brush);
        HGDIOBJ oldPen = SelectObject(canvas.dc, pen);
        EXPECT_TRUE(Rectangle(canvas.dc, c.rect.left, c.rect.top, c.rect.right, c.rect.bottom));
        EXPECT_EQ(canvas.Rows(), c.rows);
        EXPECT_FALSE(DeleteObject(pen)) << "still selected";
        EXPECT_EQ(SelectObject(canvas.dc, oldPen), pen);
        EXPECT_EQ(SelectObject(canvas.dc, oldBrush), brush);
        EXPECT_TRUE(DeleteObject(pen));
        EXPECT_TRUE(DeleteObject(brush));
    }
    EXPECT_EQ(PlatformCreateMemoryDC(nullptr, 1, 1), nullptr);
}

TEST(Rects, EmptyOnesMeetNothingAndCountForNothing)
{
    const RECT a = {0, 0, 10, 10};
    const struct {
        RECT b;
        RECT both;
        RECT around;
    } cases[] = {
        {{5, 5, 20, 20}, {5, 5, 10, 10}, {0, 0, 20, 20}},
        {{10, 0, 20, 10}, {}, {0, 0, 20, 10}},
        {{2, 2, 2, 8}, {}, {0, 0, 10, 10}},
        {{8, 8, 2, 2}, {}, {0, 0, 10, 10}},
    };
    for (const auto& c : cases) {
        RECT out = a;
        EXPECT_EQ(IntersectRect(&out, &out, &c.b), c.both == RECT{} ? FALSE : TRUE);
        EXPECT_EQ(out, c.both);
        EXPECT_TRUE(UnionRect(&out, &c.b, &a));
        EXPECT_EQ(out, c.around);
    }
    RECT none = {5, 5, 5, 9};
    EXPECT_FALSE(UnionRect(&none, &none, &none));
    EXPECT_EQ(none, RECT{});
    EXPECT_TRUE(PtInRect(&a, {0, 9}));
    EXPECT_FALSE(PtInRect(&a, {10, 5}));

    RECT far = {FAR - 1, 0, FAR, 1};
    OffsetRect(&far, FAR, -1);
    EXPECT_EQ(far, (RECT{FAR, -1, FAR, 0}));
    InflateRect(&far, FAR_BACK, 1);
    EXPECT_EQ(far, (RECT{FAR, -2, -1, 1}));
}

TEST_F(Platform, TheCursorCounterTellsTheHostOnlyWhenItCrossesZero)
{
    EXPECT_EQ(ShowCursor(TRUE), 1);
    EXPECT_EQ(ShowCursor(FALSE), 0);
    EXPECT_EQ(ShowCursor(FALSE), -1);
    EXPECT_EQ(ShowCursor(FALSE), -2);
    EXPECT_EQ(ShowCursor(TRUE), -1);
    EXPECT_EQ(ShowCursor(TRUE), 0);
    EXPECT_EQ(host.shown, "01");
    POINT point = {7, 7};
    EXPECT_FALSE(GetCursorPos(&point));
    EXPECT_EQ(point, POINT{});
    EXPECT_LT(GetKeyState(VK_SHIFT), 0);
    EXPECT_EQ(GetKeyState(VK_CONTROL), 0);
    EXPECT_LT(GetAsyncKeyState(VK_CONTROL), 0);
}

TEST_F(Platform, LocaleTextsFillABufferWhole)
{
    char buffer[4] = "zz";
    EXPECT_EQ(GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_STHOUSAND, nullptr, 0), 2);
    EXPECT_EQ(GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_STHOUSAND, buffer, 1), 0);
    EXPECT_STREQ(buffer, "zz");
    EXPECT_EQ(GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_STHOUSAND, buffer, 4), 2);
    EXPECT_STREQ(buffer, "'");
    EXPECT_EQ(GetLocaleInfoA(LOCALE_USER_DEFAULT, 0x7777, buffer, 4), 0);

    SetPlatformHost(nullptr);
    for (DWORD item : {LOCALE_STHOUSAND, LOCALE_SDECIMAL, LOCALE_SDATE, LOCALE_STIME, LOCALE_SSHORTDATE,
                       LOCALE_STIMEFORMAT, LOCALE_S1159, LOCALE_S2359, LOCALE_ITIME, LOCALE_IDATE}) {
        EXPECT_GT(GetLocaleInfoA(LOCALE_SYSTEM_DEFAULT, item, nullptr, 0), 1) << item;
    }
}

TEST(Locale, DateFormatsBecomePictures)
{
    const struct {
        const char *format, *picture, *separator, *order;
    } cases[] = {
        {"%m/%d/%Y", "MM/dd/yyyy", "/", "0"},
        {"%-d.%-m.%y", "dd.MM.yy", ".", "1"},
        {"%Y-%m-%d", "yyyy-MM-dd", "-", "2"},
        {"%A %d %b %Y", "dddd dd MMM yyyy", " ", "1"},
        {"%a %B %e %Y", "ddd MMMM d yyyy", " ", "0"},
        {"%U %d.%m.", "dd.MM.", ".", "1"},
        {" %G", "", "?", "0"},
        {"%F", "yyyy-MM-dd", "-", "2"},
        {"%Ey%", "yy%", "%", "2"},
        {"%I:%M %p", "hh:mm tt", ":", "0"},
    };
    for (const auto& c : cases) {
        const std::string picture = PlatformPictureOf(c.format);
        EXPECT_EQ(picture, c.picture) << c.format;
        EXPECT_EQ(PlatformPictureSeparator(picture, "?"), c.separator) << c.format;
        EXPECT_EQ(PlatformPictureOrder(picture), c.order) << c.format;
    }
}

TEST_F(Platform, AProgramIsStartedInItsFolderWithoutAShell)
{
    TempRoots roots;
    const std::string folder = (roots.folder / "user").string();
    EXPECT_TRUE(PlatformStartProcess("cp /dev/null 'a b;$HOME'", folder.c_str()));
    for (int tries = 0; roots.Get("user/a b;$HOME") == "(none)" && tries < 500; ++tries) {
        usleep(10'000);
    }
    EXPECT_EQ(roots.Get("user/a b;$HOME"), "");
    EXPECT_FALSE(PlatformStartProcess("no-such-program-anywhere", ""));
    EXPECT_FALSE(PlatformStartProcess("true", (folder + "/missing").c_str()));
    EXPECT_FALSE(PlatformStartProcess("true 'open", nullptr));
    EXPECT_FALSE(PlatformStartProcess("  ", nullptr));
    EXPECT_FALSE(PlatformStartProcess(nullptr, nullptr));
}

} // namespace
