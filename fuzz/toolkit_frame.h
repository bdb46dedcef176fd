#pragma once
// What the fuzzers of the toolkit stand on: the fakes of the tests, and a 2-D layer that shows nothing.

#include <string>

#include "frame.h"
#include "kernel/itfwnd.h"
#include "kernel/own_names.h"
#include "render/render2d.h"
#include "support/fakes.h"

/// Every picture file is a square of this side in pixels; blits do nothing.
class FuzzRender : public CRender2D
{
  public:
    explicit FuzzRender(int side = 16) : CRender2D(1, 1), m_nSide(side) {}
    int CreateSurface(const RECT* rect) override
    {
        const int surface = CRender2D::CreateSurface(rect);
        m_nCount += surface >= 0 ? 1 : 0;
        return surface;
    }
    /// Only the file without a name can't be loaded.
    int LoadSurface(const char* file) override
    {
        constexpr COLORREF INK = 0xaabbcc;
        if (*file == '\0')
            return -1;
        const RECT rect = {0, 0, m_nSide, m_nSide};
        const int surface = CreateSurface(&rect);
        FillSurface(surface, INK);
        return surface;
    }
    void FreeSurface(int surface) override
    {
        Require(Exists(surface), "a surface is freed that doesn't exist");
        CRender2D::FreeSurface(surface);
        --m_nCount;
    }
    void Blit(int, int, int source, const RECT*, const RECT*, bool) override
    {
        Require(source < 0 || Exists(source), "a blit from a surface that doesn't exist");
    }
    int Count() const { return m_nCount; }

  private:
    bool Exists(int surface)
    {
        RECT rect;
        GetSurfaceRect(surface, &rect);
        return surface >= 0 && rect.right > 0;
    }

    int m_nSide;
    int m_nCount = 0;
};

class FuzzEngine : public seawarden_test::FakeEngine
{
  public:
    void* GetSubsystem(int id, int kind) override
    {
        return id == GetSubsystemId(SUBSYSTEM_RENDER2D) ? static_cast<IRender2D*>(&surfaces)
                                                        : FakeEngine::GetSubsystem(id, kind);
    }
    FuzzRender surfaces;
};

/// Platform, engine and logical names: those that the module draws with itself, and some for dialogs. Made
/// once.
struct ToolkitWorld {
    ToolkitWorld()
    {
        // Glyphs of all widths, some over others.
        std::string font = "texture = \"fuzz.png\"\nsymbols\n{\n";
        for (int c = ' '; c < 0x7f; ++c)
            font += std::string("\"") + static_cast<char>(c) + "\", 0, 0, " + std::to_string(4 + c % 9) +
                    ", 10, " + std::to_string(c % 3) + ", " + std::to_string(3 + c % 8) +
                    (c == 0x7e ? "}\n" : ",\n");
        Roots().Put("user/resource/txt_res/fuzz.fnt", font);
        Toolkit() = ToolkitState();
        for (const char* name : OWN_SPRITES)
            Toolkit().spriteMap.push_back({name, "fuzz.png"});
        for (const char* name :
             {"itfMainMenu", "itfMessage", "itfMessagePaper", "itfEdit", "itfEditPaper", "itfEditField"})
            Toolkit().spriteMap.push_back({name, "fuzz.png"});
        Toolkit().spriteMap.push_back({"itfNoPicture", ""});
        for (const char* name : OWN_FONTS)
            Toolkit().fontMap.push_back({name, "fuzz.fnt"});
        Toolkit().fontMap.push_back({"itfHeadFont", "fuzz.fnt"});
        Toolkit().fontMap.push_back({"itfPaperFont", "fuzz.fnt"});
        // A font that is loaded stays so without a window.
        CItfWnd wnd;
        const RECT rect = {0, 0, 1, 1};
        Require(wnd.Create("", "", &rect, nullptr, 0, 0, &engine), "a window");
        for (const NameRow& row : Toolkit().fontMap)
            Require(wnd.AcquireFont(row.name.c_str()) >= 0, "the font");
    }
    /// Forgets what the fakes have kept of an input.
    void Forget()
    {
        host.debug.clear();
        host.keysDown.clear();
        engine.calls.clear();
        engine.messages.clear();
        engine.sound = {};
        engine.video = {};
    }

    seawarden_test::FakeHost host;
    FuzzEngine engine;
};

/// Of a mouse message.
inline std::int32_t PackPoint(int x, int y)
{
    return static_cast<std::int32_t>(static_cast<std::uint16_t>(x) |
                                     static_cast<std::uint32_t>(static_cast<std::uint16_t>(y)) << 16);
}
