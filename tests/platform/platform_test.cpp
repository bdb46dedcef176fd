// Clipboard, GDI fills, rectangles, cursor counter, locale and process start.

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "../../platform/src/internal.h"
#include "../support/rows.h"
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
        EXPECT_EQ(GlobalFree(block), block) << "still locked";
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
    HGLOBAL other = Block("x");
    EXPECT_EQ(SetClipboardData(CF_TEXT + 12, other), nullptr);
    EXPECT_EQ(GlobalFree(other), nullptr) << "a refused block is still the caller's";

    HGLOBAL block = Block(std::string("one\r\ntwo\0rest", 13));
    ASSERT_EQ(SetClipboardData(CF_TEXT, block), block);
    EXPECT_EQ(GlobalFree(block), block) << "no longer the caller's";
    EXPECT_EQ(SetClipboardData(CF_TEXT, block), nullptr) << "nor taken twice";
    EXPECT_TRUE(CloseClipboard());
    EXPECT_FALSE(CloseClipboard());
    EXPECT_EQ(GetClipboardData(CF_TEXT), nullptr) << "closed";

    ASSERT_TRUE(OpenClipboard(nullptr));
    HANDLE given = GetClipboardData(CF_TEXT);
    ASSERT_TRUE(given);
    EXPECT_EQ(GetClipboardData(CF_TEXT), given);
    EXPECT_STREQ(static_cast<const char*>(GlobalLock(given)), "one\r\ntwo");
    EXPECT_EQ(GlobalSize(given), 9u);
    EXPECT_TRUE(EmptyClipboard());
    EXPECT_FALSE(IsClipboardFormatAvailable(CF_TEXT));
    ASSERT_TRUE(SetClipboardData(CF_TEXT, Block("abc"))) << "without a zero";
    CloseClipboard();
    EXPECT_EQ(host.ClipboardText(), "abc");
}

constexpr LONG FAR = std::numeric_limits<LONG>::max();
constexpr LONG FAR_BACK = std::numeric_limits<LONG>::min();

/// Draws into 6 by 4 pixels that stand inside a larger array, so that a stray write shows.
template <class Draw>
std::string Drawn(Draw draw)
{
    constexpr std::size_t width = 6;
    constexpr std::size_t height = 4;
    std::vector<std::uint16_t> pixels(width * (height + 2), '.');
    HDC dc = PlatformCreateMemoryDC(pixels.data() + width, width, height);
    draw(dc);
    PlatformDeleteMemoryDC(dc);
    std::string out;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        out += i % width == 0 ? "/" : "";
        out += pixels[i] == 0xf800 ? 'r' : pixels[i] == 0x07e0 ? 'g' : pixels[i] == 0x001f ? 'b' : '.';
    }
    EXPECT_TRUE(out.starts_with("/....../") && out.ends_with("/......")) << out;
    return out.substr(8, 4 * 7 - 1);
}

TEST(Gdi, FillsAreClippedAndLeaveTheRightAndBottomEdge)
{
    const Rows<RECT, const char*> fills = {{{1, 1, 3, 3}, "....../.rr.../.rr.../......"},
                                           {{-5, -5, 2, 1}, "rr..../....../....../......"},
                                           {{4, 3, 99, 99}, "....../....../....../....rr"},
                                           {{FAR_BACK, FAR_BACK, FAR, FAR}, "rrrrrr/rrrrrr/rrrrrr/rrrrrr"},
                                           {{3, 3, 1, 1}, "....../....../....../......"}};
    HBRUSH red = CreateSolidBrush(RGB(255, 0, 0));
    for (const auto& [rect, rows] : fills)
        EXPECT_EQ(Drawn([&, &fill = rect](HDC dc) { EXPECT_EQ(FillRect(dc, &fill, red), 1); }), rows);

    // A rectangle has its pen on the edge and its brush inside.
    const Rows<int, RECT, const char*> rectangles = {
        {1, {0, 0, 6, 4}, "bbbbbb/bggggb/bggggb/bbbbbb"},   {0, {1, 1, 4, 4}, "....../.bbb../.bgb../.bbb.."},
        {1, {4, 4, 1, 1}, "....../.bbb../.bgb../.bbb.."},   {2, {1, 1, 6, 4}, "bbbbbb/bbbbbb/bbbbbb/bbbbbb"},
        {3, {-3, -3, 5, 3}, "gggbbb/bbbbbb/bbbbbb/bbbbbb"}, {1, {2, 2, 2, 4}, "....../....../....../......"}};
    HBRUSH brush = CreateSolidBrush(RGB(0, 255, 0));
    for (const auto& [width, rect, rows] : rectangles) {
        HPEN pen = CreatePen(PS_SOLID, width, RGB(0, 0, 255));
        const std::string drawn = Drawn([&, &r = rect](HDC dc) {
            HGDIOBJ oldBrush = SelectObject(dc, brush);
            HGDIOBJ oldPen = SelectObject(dc, pen);
            EXPECT_TRUE(Rectangle(dc, r.left, r.top, r.right, r.bottom));
            EXPECT_FALSE(DeleteObject(pen)) << "still selected";
            EXPECT_EQ(SelectObject(dc, oldPen), pen);
            EXPECT_EQ(SelectObject(dc, oldBrush), brush);
        });
        EXPECT_EQ(drawn, rows);
        EXPECT_TRUE(DeleteObject(pen));
    }
    EXPECT_TRUE(DeleteObject(brush) && DeleteObject(red));
}

TEST(Rects, EmptyOnesMeetNothingAndCountForNothing)
{
    const RECT a = {0, 0, 10, 10};
    for (const auto& [b, both, around] :
         Rows<RECT, RECT, RECT>{{{5, 5, 20, 20}, {5, 5, 10, 10}, {0, 0, 20, 20}},
                                {{10, 0, 20, 10}, {}, {0, 0, 20, 10}},
                                {{20, 2, 20, 8}, {}, {0, 0, 10, 10}},
                                {{8, 8, 2, 2}, {}, {0, 0, 10, 10}}}) {
        RECT out = a;
        EXPECT_EQ(IntersectRect(&out, &out, &b), both == RECT{} ? FALSE : TRUE);
        EXPECT_EQ(out, both);
        EXPECT_TRUE(UnionRect(&out, &b, &a));
        EXPECT_EQ(out, around);
    }
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
    const BOOL calls[] = {TRUE, FALSE, FALSE, FALSE, TRUE, TRUE};
    const int counts[] = {1, 0, -1, -2, -1, 0};
    for (std::size_t i = 0; i < std::size(calls); ++i)
        EXPECT_EQ(ShowCursor(calls[i]), counts[i]);
    EXPECT_EQ(host.shown, "01");
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
    for (DWORD item :
         {LOCALE_STHOUSAND, LOCALE_SDATE, LOCALE_STIME, LOCALE_S1159, LOCALE_ITIME, LOCALE_IDATE})
        EXPECT_GT(GetLocaleInfoA(LOCALE_SYSTEM_DEFAULT, item, nullptr, 0), 1) << item;
}

TEST(Locale, DateFormatsBecomePictures)
{
    const Rows<const char*, const char*, const char*, const char*> rows = {
        {"%m/%d/%Y", "MM/dd/yyyy", "/", "0"}, {"%-d.%-m.%y", "dd.MM.yy", ".", "1"},
        {"%U %d.%m.", "dd.MM.", ".", "1"},    {"%A %d %b", "dddd dd MMM", " ", "1"},
        {"%F", "yyyy-MM-dd", "-", "2"},       {" %G", "", "?", "0"},
        {"%a %B %e", "ddd MMMM d", " ", "0"}, {"%Ey%", "yy%", "%", "2"},
        {"%I:%M %p", "hh:mm tt", ":", "0"}};
    for (const auto& [format, expected, separator, order] : rows) {
        const std::string picture = PlatformPictureOf(format);
        EXPECT_EQ(picture, expected) << format;
        EXPECT_EQ(PlatformPictureSeparator(picture, "?"), separator) << format;
        EXPECT_EQ(PlatformPictureOrder(picture), order) << format;
    }
}

TEST_F(Platform, AProgramIsStartedInItsFolderWithoutAShell)
{
    TempRoots roots;
    const std::string folder = (roots.folder / "user").string();
    EXPECT_TRUE(PlatformStartProcess("cp /dev/null 'a b;$HOME'", folder.c_str()));
    for (int tries = 0; roots.Get("user/a b;$HOME") == "(none)" && tries < 500; ++tries)
        usleep(10'000);
    EXPECT_EQ(roots.Get("user/a b;$HOME"), "");
    EXPECT_FALSE(PlatformStartProcess("no-such-program-anywhere", ""));
    EXPECT_FALSE(PlatformStartProcess("true", (folder + "/missing").c_str()));
    EXPECT_FALSE(PlatformStartProcess("true 'open", nullptr));
    EXPECT_FALSE(PlatformStartProcess("  ", nullptr) || PlatformStartProcess(nullptr, nullptr));
}

} // namespace
