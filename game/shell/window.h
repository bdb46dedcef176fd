#pragma once
// The window that shows the display and takes the player's input.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/types.h"
#include "shell/view_fit.h"

class CInput;
struct SDL_Window;
struct SDL_Renderer;
struct SDL_Texture;
struct SDL_Cursor;
union SDL_Event;

/// Resizable; keeps the display's shape. Alt+Enter switches to the full screen and back, Alt+S between smooth
/// and whole-step scaling.
class CWindow
{
  public:
    /// Null, with the reason in `error`, when there is no display to open a window on.
    static std::unique_ptr<CWindow> Open(SIZE display, bool fullscreen, ViewScale scale, std::string& error);
    ~CWindow();
    CWindow(const CWindow&) = delete;
    CWindow& operator=(const CWindow&) = delete;

    /// Takes what has happened since the last call. False when the player closed the window.
    bool Pump(CInput& input);
    /// The pixels are looked at only when they have `changed` since the last call or the window needs them
    /// anew.
    void Show(const std::uint16_t* pixels, SIZE display, bool changed);
    void SetCursorShown(bool shown);

  private:
    CWindow() = default;
    void LoadCursor();
    bool OnEvent(const SDL_Event& event, CInput& input);
    void OnKey(const SDL_Event& event, CInput& input);
    /// Alt+Enter and Alt+S. True when the key was the window's own.
    bool OnOwnKey(const SDL_Event& event);
    void OnButton(const SDL_Event& event, CInput& input);
    POINT ToDisplay(int x, int y) const;
    RECT View() const;

    SDL_Window* m_pWindow = nullptr;
    SDL_Renderer* m_pRenderer = nullptr;
    SDL_Texture* m_pTexture = nullptr;
    SDL_Cursor* m_pCursor = nullptr;
    SIZE m_Display;
    SIZE m_TextureSize;
    bool m_bTextureLost = false;
    ViewScale m_Scale = ViewScale::Smooth;
    ViewScale m_TextureScale = ViewScale::Smooth;
    std::vector<int> m_OwnKeys; // keys that the window took, until they go up
};
