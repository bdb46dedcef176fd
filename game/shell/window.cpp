#include "shell/window.h"

#include <SDL.h>
#include <SDL_image.h>
#include <algorithm>

#include "engine/game_files.h"
#include "platform/codepage.h"
#include "platform/files.h"
#include "shell/input.h"
#include "shell/keymap.h"

namespace
{

constexpr const char* TITLE = "Seawarden";
constexpr const char* CURSOR_FILE = "images\\cursor.png";
constexpr const char* ICON_FILE = "images\\icon.png";
constexpr int BYTES_A_PIXEL = 2;
constexpr Uint32 FULLSCREEN = SDL_WINDOW_FULLSCREEN_DESKTOP;
constexpr Uint32 WINDOWED = 0;

SDL_Surface* LoadImage(const char* name)
{
    const std::string file = FindGameFile(name);
    return file.empty() ? nullptr : IMG_Load(PlatformResolveRead(file.c_str()).c_str());
}

/// SDL falls back on drivers that show nothing; they count only for somebody who named one.
bool IsRealDisplay(std::string& error)
{
    const char* driver = SDL_GetCurrentVideoDriver();
    const std::string name = driver == nullptr ? "" : driver;
    const bool hidden = name == "offscreen" || name == "dummy" || name == "evdev";
    const char* const named = SDL_getenv("SDL_VIDEODRIVER");
    if (hidden && (named == nullptr || *named == '\0')) {
        error = "no video device";
        return false;
    }
    return true;
}

/// The display's size, or as much of it as the screen has room for.
SIZE FirstSize(SIZE display)
{
    SDL_Rect room;
    if (SDL_GetDisplayUsableBounds(0, &room) != 0 || room.w <= 0 || room.h <= 0 ||
        (display.cx <= room.w && display.cy <= room.h))
        return display;
    const RECT fit = FitView(display, {room.w, room.h}, ViewScale::Smooth);
    return {fit.right - fit.left, fit.bottom - fit.top};
}

} // namespace

std::unique_ptr<CWindow> CWindow::Open(SIZE display, bool fullscreen, ViewScale scale, std::string& error)
{
    std::unique_ptr<CWindow> window(new CWindow);
    window->m_Display = display;
    window->m_Scale = scale;
    SDL_SetHint(SDL_HINT_VIDEO_X11_NET_WM_BYPASS_COMPOSITOR, "0");
    const Uint32 flags = SDL_WINDOW_RESIZABLE | (fullscreen ? FULLSCREEN : WINDOWED);
    if (SDL_InitSubSystem(SDL_INIT_VIDEO) == 0 && IsRealDisplay(error)) {
        const SIZE size = FirstSize(display);
        window->m_pWindow =
            SDL_CreateWindow(TITLE, SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, size.cx, size.cy, flags);
    }
    if (window->m_pWindow != nullptr)
        window->m_pRenderer = SDL_CreateRenderer(window->m_pWindow, -1, 0);
    if (window->m_pRenderer == nullptr) {
        if (error.empty())
            error = SDL_GetError();
        return nullptr;
    }
    window->LoadCursor();
    if (SDL_Surface* icon = LoadImage(ICON_FILE)) {
        SDL_SetWindowIcon(window->m_pWindow, icon);
        SDL_FreeSurface(icon);
    }
    SDL_StartTextInput();
    return window;
}

CWindow::~CWindow()
{
    if (m_pCursor != nullptr)
        SDL_FreeCursor(m_pCursor);
    if (m_pTexture != nullptr)
        SDL_DestroyTexture(m_pTexture);
    if (m_pRenderer != nullptr)
        SDL_DestroyRenderer(m_pRenderer);
    if (m_pWindow != nullptr)
        SDL_DestroyWindow(m_pWindow);
}

void CWindow::LoadCursor()
{
    SDL_Surface* picture = LoadImage(CURSOR_FILE);
    if (picture == nullptr)
        return;
    m_pCursor = SDL_CreateColorCursor(picture, 0, 0);
    SDL_FreeSurface(picture);
    if (m_pCursor != nullptr)
        SDL_SetCursor(m_pCursor);
}

RECT CWindow::View() const
{
    int width = 1;
    int height = 1;
    SDL_GetRendererOutputSize(m_pRenderer, &width, &height);
    return FitView(m_Display, {std::max(width, 1), std::max(height, 1)}, m_Scale);
}

POINT CWindow::ToDisplay(int x, int y) const
{
    return WindowToDisplay({x, y}, View(), m_Display);
}

bool CWindow::Pump(CInput& input)
{
    SDL_Event event;
    bool open = true;
    while (SDL_PollEvent(&event) != 0)
        open = OnEvent(event, input) && open;
    return open;
}

bool CWindow::OnEvent(const SDL_Event& event, CInput& input)
{
    switch (event.type) {
    case SDL_QUIT:
        return false;
    case SDL_WINDOWEVENT:
        if (event.window.event == SDL_WINDOWEVENT_FOCUS_LOST)
            input.ReleaseAll();
        break;
    case SDL_RENDER_TARGETS_RESET:
    case SDL_RENDER_DEVICE_RESET:
        m_bTextureLost = true;
        break;
    case SDL_MOUSEMOTION:
        input.MoveTo(ToDisplay(event.motion.x, event.motion.y));
        break;
    case SDL_MOUSEBUTTONDOWN:
    case SDL_MOUSEBUTTONUP:
        OnButton(event, input);
        break;
    case SDL_MOUSEWHEEL:
        input.Wheel(event.wheel.direction == SDL_MOUSEWHEEL_FLIPPED ? -event.wheel.y : event.wheel.y);
        break;
    case SDL_KEYDOWN:
    case SDL_KEYUP:
        OnKey(event, input);
        break;
    case SDL_TEXTINPUT:
        // A letter with Alt is a command, not a text; AltGr prints.
        if ((SDL_GetModState() & (KMOD_LALT | KMOD_CTRL)) == KMOD_LALT)
            break;
        for (const char c : PlatformFromUtf8(event.text.text))
            input.Char(static_cast<unsigned char>(c));
        break;
    default:
        break;
    }
    return true;
}

void CWindow::OnButton(const SDL_Event& event, CInput& input)
{
    const SDL_MouseButtonEvent& button = event.button;
    if (button.button != SDL_BUTTON_LEFT && button.button != SDL_BUTTON_RIGHT)
        return;
    const int key = button.button == SDL_BUTTON_LEFT ? VK_LBUTTON : VK_RBUTTON;
    input.MoveTo(ToDisplay(button.x, button.y));
    input.PointerButton(key, button.type == SDL_MOUSEBUTTONDOWN, button.timestamp);
    // A drag that leaves the window still ends in it.
    const bool held = input.IsDownNow(VK_LBUTTON) || input.IsDownNow(VK_RBUTTON);
    SDL_CaptureMouse(held ? SDL_TRUE : SDL_FALSE);
}

bool CWindow::OnOwnKey(const SDL_Event& event)
{
    const SDL_Keysym& key = event.key.keysym;
    const auto taken = std::ranges::find(m_OwnKeys, key.sym);
    if (event.type == SDL_KEYUP) {
        if (taken == m_OwnKeys.end())
            return false;
        m_OwnKeys.erase(taken);
        return true;
    }
    if ((key.mod & KMOD_ALT) == 0 || (key.sym != SDLK_RETURN && key.sym != SDLK_s))
        return false;
    if (event.key.repeat != 0)
        return true;
    m_OwnKeys.push_back(key.sym);
    if (key.sym == SDLK_s) {
        m_Scale = m_Scale == ViewScale::Smooth ? ViewScale::Whole : ViewScale::Smooth;
    } else {
        const bool full = (SDL_GetWindowFlags(m_pWindow) & SDL_WINDOW_FULLSCREEN_DESKTOP) != 0;
        SDL_SetWindowFullscreen(m_pWindow, full ? WINDOWED : FULLSCREEN);
    }
    return true;
}

void CWindow::OnKey(const SDL_Event& event, CInput& input)
{
    if (OnOwnKey(event))
        return;
    const bool numLock = (event.key.keysym.mod & KMOD_NUM) != 0;
    input.Key(KeyFromSdl(event.key.keysym.sym, event.key.keysym.scancode, numLock),
              event.type == SDL_KEYDOWN);
}

void CWindow::Show(const std::uint16_t* pixels, SIZE display, bool changed)
{
    m_Display = display;
    if (m_bTextureLost || m_pTexture == nullptr || m_TextureSize != display || m_TextureScale != m_Scale) {
        if (m_pTexture != nullptr)
            SDL_DestroyTexture(m_pTexture);
        SDL_SetHint(SDL_HINT_RENDER_SCALE_QUALITY, m_Scale == ViewScale::Smooth ? "linear" : "nearest");
        m_pTexture = SDL_CreateTexture(m_pRenderer, SDL_PIXELFORMAT_RGB565, SDL_TEXTUREACCESS_STREAMING,
                                       display.cx, display.cy);
        m_bTextureLost = m_pTexture == nullptr;
        m_TextureSize = display;
        m_TextureScale = m_Scale;
        changed = true;
    }
    const RECT view = View();
    const SDL_Rect target = {view.left, view.top, view.right - view.left, view.bottom - view.top};
    if (changed)
        SDL_UpdateTexture(m_pTexture, nullptr, pixels, display.cx * BYTES_A_PIXEL);
    SDL_SetRenderDrawColor(m_pRenderer, 0, 0, 0, SDL_ALPHA_OPAQUE);
    SDL_RenderClear(m_pRenderer);
    SDL_RenderCopy(m_pRenderer, m_pTexture, nullptr, &target);
    SDL_RenderPresent(m_pRenderer);
}

void CWindow::SetCursorShown(bool shown)
{
    SDL_ShowCursor(shown ? SDL_ENABLE : SDL_DISABLE);
}
