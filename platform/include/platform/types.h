#pragma once
// The Win32 types and numbers that the project's code uses, with their Win32 meaning and width, so that the
// same source also builds against <windows.h>.

#include <cstdint>

using BOOL = int;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = std::uint32_t;
using LONG = std::int32_t;
using SHORT = std::int16_t;
using HANDLE = void*;
using HGLOBAL = void*;

/// 0x00BBGGRR: red in the low byte.
using COLORREF = DWORD;

constexpr BOOL TRUE = 1;
constexpr BOOL FALSE = 0;

struct POINT {
    LONG x = 0;
    LONG y = 0;
    friend bool operator==(const POINT&, const POINT&) = default;
};

struct SIZE {
    LONG cx = 0;
    LONG cy = 0;
    friend bool operator==(const SIZE&, const SIZE&) = default;
};

/// Right and bottom are exclusive.
struct RECT {
    LONG left = 0;
    LONG top = 0;
    LONG right = 0;
    LONG bottom = 0;
    friend bool operator==(const RECT&, const RECT&) = default;
};
static_assert(sizeof(RECT) == 16 && sizeof(POINT) == 8 && sizeof(SIZE) == 8);

/// A COLORREF from its channels, each 0 to 255.
constexpr COLORREF RGB(unsigned red, unsigned green, unsigned blue)
{
    return (red & 0xffu) | ((green & 0xffu) << 8) | ((blue & 0xffu) << 16);
}

// Window message numbers.
constexpr UINT WM_DESTROY = 0x0002;
constexpr UINT WM_KEYFIRST = 0x0100;
constexpr UINT WM_KEYDOWN = 0x0100;
constexpr UINT WM_KEYUP = 0x0101;
constexpr UINT WM_CHAR = 0x0102;
constexpr UINT WM_SYSKEYDOWN = 0x0104;
constexpr UINT WM_SYSKEYUP = 0x0105;
constexpr UINT WM_KEYLAST = 0x0108;
constexpr UINT WM_MOUSEFIRST = 0x0200;
constexpr UINT WM_MOUSEMOVE = 0x0200;
constexpr UINT WM_LBUTTONDOWN = 0x0201;
constexpr UINT WM_LBUTTONUP = 0x0202;
constexpr UINT WM_LBUTTONDBLCLK = 0x0203;
constexpr UINT WM_RBUTTONDOWN = 0x0204;
constexpr UINT WM_RBUTTONUP = 0x0205;
constexpr UINT WM_MOUSEWHEEL = 0x020a;
constexpr UINT WM_MOUSELAST = 0x020a;

/// One notch of the mouse wheel, in the high word of a WM_MOUSEWHEEL's wParam.
constexpr int WHEEL_DELTA = 120;

// Virtual key codes. Letters and digits are their own ASCII capitals.
constexpr int VK_LBUTTON = 0x01;
constexpr int VK_RBUTTON = 0x02;
constexpr int VK_BACK = 0x08;
constexpr int VK_TAB = 0x09;
constexpr int VK_RETURN = 0x0d;
constexpr int VK_SHIFT = 0x10;
constexpr int VK_CONTROL = 0x11;
constexpr int VK_MENU = 0x12;
constexpr int VK_PAUSE = 0x13;
constexpr int VK_CAPITAL = 0x14;
constexpr int VK_ESCAPE = 0x1b;
constexpr int VK_SPACE = 0x20;
constexpr int VK_PRIOR = 0x21;
constexpr int VK_NEXT = 0x22;
constexpr int VK_END = 0x23;
constexpr int VK_HOME = 0x24;
constexpr int VK_LEFT = 0x25;
constexpr int VK_UP = 0x26;
constexpr int VK_RIGHT = 0x27;
constexpr int VK_DOWN = 0x28;
constexpr int VK_INSERT = 0x2d;
constexpr int VK_DELETE = 0x2e;
constexpr int VK_NUMPAD0 = 0x60;
constexpr int VK_MULTIPLY = 0x6a;
constexpr int VK_ADD = 0x6b;
constexpr int VK_SUBTRACT = 0x6d;
constexpr int VK_DECIMAL = 0x6e;
constexpr int VK_DIVIDE = 0x6f;
constexpr int VK_F1 = 0x70;
constexpr int VK_F4 = 0x73;
constexpr int VK_F9 = 0x78;
constexpr int VK_F12 = 0x7b;

constexpr WORD LOWORD(DWORD value)
{
    return static_cast<WORD>(value & 0xffffu);
}
constexpr WORD HIWORD(DWORD value)
{
    return static_cast<WORD>(value >> 16);
}

struct SYSTEMTIME {
    WORD wYear = 0;
    WORD wMonth = 0;     ///< 1 to 12
    WORD wDayOfWeek = 0; ///< 0 is Sunday
    WORD wDay = 0;       ///< 1 to 31
    WORD wHour = 0;
    WORD wMinute = 0;
    WORD wSecond = 0;
    WORD wMilliseconds = 0;
};

struct FILETIME {
    DWORD dwLowDateTime = 0;
    DWORD dwHighDateTime = 0;
};
