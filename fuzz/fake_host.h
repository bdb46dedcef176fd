#pragma once
// What the fuzzers of the toolkit stand on: a 2-D layer that keeps pixels but shows nothing, an engine with
// that layer and nothing else, a platform without a window.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "iengine.h"
#include "irender2d.h"
#include "kernel/itfwnd.h"
#include "platform/files.h"
#include "platform/host.h"

namespace fuzz
{

/// Ends the run as a find when `holds` is false.
inline void Require(bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "broken: %s\n", what);
        std::abort();
    }
}

/// Surfaces that can be locked, so that fonts draw; blits do nothing. Every pixel block is a heap block of
/// its own, so that a step outside is noticed.
class FakeRender : public IRender2D
{
  public:
    /// Every picture file is a square with this side in pixels.
    explicit FakeRender(int pictureSide = 16) : m_nPictureSide(pictureSide) {}

    int CreateSurface(const RECT* rect) override
    {
        const RECT own = {0, 0, rect->right - rect->left, rect->bottom - rect->top};
        if (own.right <= 0 || own.bottom <= 0)
            return -1;
        constexpr std::uint16_t PIXEL = 0x5aa5;
        Surface& surface = m_Surfaces[++m_nLast];
        surface.rect = own;
        surface.pixels.assign(static_cast<std::size_t>(own.right) * static_cast<std::size_t>(own.bottom),
                              PIXEL);
        return m_nLast;
    }
    /// Only the file without a name can't be loaded.
    int LoadSurface(const char* file) override
    {
        const RECT rect = {0, 0, m_nPictureSide, m_nPictureSide};
        return *file == '\0' ? -1 : CreateSurface(&rect);
    }
    void FreeSurface(int surface) override
    {
        Require(m_Surfaces.erase(surface) == 1, "a surface is freed that doesn't exist");
    }
    void GetSurfaceRect(int surface, RECT* out) override
    {
        const auto found = m_Surfaces.find(surface);
        *out = found != m_Surfaces.end() ? found->second.rect : RECT();
    }
    void FillSurface(int, COLORREF) override {}
    void Blit(int, int, int source, const RECT*, const RECT*, bool) override
    {
        Require(source < 0 || m_Surfaces.count(source) != 0, "a blit from a surface that doesn't exist");
    }
    std::uint16_t* LockSurface(int surface) override
    {
        const auto found = m_Surfaces.find(surface);
        return found != m_Surfaces.end() ? found->second.pixels.data() : nullptr;
    }
    void UnlockSurface(int, int) override {}
    HDC GetSurfaceDC(int) override { return nullptr; }
    void ReleaseSurfaceDC(int, HDC) override {}

    std::size_t Count() const { return m_Surfaces.size(); }

  private:
    struct Surface {
        RECT rect;
        std::vector<std::uint16_t> pixels;
    };
    std::map<int, Surface> m_Surfaces;
    int m_nPictureSide;
    int m_nLast = 0;
};

/// Has no entities, and answers every message with 0.
class FakeEngine : public IEngine
{
  public:
    int GetSubsystemId(int number) override { return number; }
    void* GetSubsystem(int id, int) override { return id == SUBSYSTEM_RENDER2D ? &render : nullptr; }
    IEngine* GetScene(int) override { return this; }
    int CreateScene(int) override { return -1; }
    void DestroyScene(int) override {}
    void SetSceneActive(int, int, int, int) override {}
    int CreateEntity(const char*, int, int) override { return -1; }
    int CreateEntityFromModule(const char*, const char*, int, int, int, int) override { return -1; }
    void DestroyEntity(int) override {}
    Entity* GetEntity(int) override { return nullptr; }
    int FindEntity(const char*, const char*) override { return -1; }
    int FindNextEntity() override { return -1; }
    void GetScreenSize(SIZE* out) override { *out = {SCREEN_WIDTH, SCREEN_HEIGHT}; }
    DisplayInfo* GetDisplayInfo() override { return nullptr; }
    void SetDisplayInfo(DisplayInfo*, int) override {}
    void RegisterInput(int, int, int) override {}
    void SetTimerRate(int) override {}
    void SetInputMode(int) override {}
    int AddViewport(const ViewportRecord*) override { return -1; }
    void SetCamera(int, const float*, const float*) override {}
    ViewportRecord* GetViewport(int) override { return nullptr; }
    Word DoMessage(bool, int, int, int, const char*, std::span<const Word>) override { return 0; }

    FakeRender render;
};

/// Installs itself for good: one for each program.
class FakeHost : public PlatformHost
{
  public:
    FakeHost() { SetPlatformHost(this); }
    bool CursorPos(POINT& out) override
    {
        out = cursor;
        return true;
    }
    bool IsKeyDown(int key) override { return keysDown.count(key) != 0; }
    bool IsKeyDownNow(int key) override { return keysDown.count(key) != 0; }
    DWORD Milliseconds() override { return now; }
    void DebugOutput(const char* text) override { debug.push_back(text); }

    POINT cursor;
    std::set<int> keysDown;
    DWORD now = 0;
    std::vector<std::string> debug; ///< each line as it was given; the fuzzer empties it
};

/// An empty folder as both roots of the file layer. It is removed when this ends, and then no file is found.
class EmptyRoots
{
  public:
    EmptyRoots()
    {
        std::string name = (std::filesystem::temp_directory_path() / "fuzz-XXXXXX").string();
        Require(mkdtemp(name.data()) != nullptr, "a temporary folder");
        m_Folder = name;
        PlatformSetRoots(name, "");
    }
    ~EmptyRoots()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_Folder, ignored);
    }
    EmptyRoots(const EmptyRoots&) = delete;
    EmptyRoots& operator=(const EmptyRoots&) = delete;

    /// A font file for the toolkit whose glyphs have all widths, and overlap.
    void WriteFont(const std::string& file) const
    {
        std::filesystem::create_directories(m_Folder / "resource/txt_res");
        std::ofstream font(m_Folder / "resource/txt_res" / file, std::ios::binary);
        font << "texture = \"fuzz.png\"\nsymbols\n{\n";
        for (int c = ' '; c < 0x7f; ++c)
            font << '"' << static_cast<char>(c) << "\", 0, 0, " << 4 + c % 9 << ", 10, " << c % 3 << ", "
                 << 3 + c % 8 << (c == 0x7e ? "}\n" : ",\n");
    }

  private:
    std::filesystem::path m_Folder;
};

/// Loads the font under each of the logical names. It stays loaded without a window or a file.
inline void KeepFont(FakeEngine& engine, const std::vector<std::string>& names)
{
    constexpr char FONT_FILE[] = "fuzz.fnt";
    const EmptyRoots roots;
    roots.WriteFont(FONT_FILE);
    CItfWnd wnd;
    const RECT rect = {0, 0, 1, 1};
    Require(wnd.Create("", "", &rect, nullptr, 0, 0, &engine), "a window");
    for (const std::string& name : names) {
        Toolkit().fontMap.push_back({name, FONT_FILE});
        Require(wnd.AcquireFont(name.c_str()) >= 0, "the font");
    }
}

} // namespace fuzz
