// A font file from unknown hands: read, then used to measure, find and draw.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "controls/itffont.h"
#include "irender2d.h"
#include "keelworks/ds_file.h"
#include "platform/host.h"

namespace
{

constexpr int SIDE = 64;

/// Surfaces of one size. Every pixel block is a heap block of its own, so that a step outside is noticed.
class FuzzRender : public IRender2D
{
  public:
    int CreateSurface(const RECT*) override
    {
        m_Surfaces[++m_nLast].assign(SIDE * SIDE, 0x5aa5);
        return m_nLast;
    }
    int LoadSurface(const char* file) override { return *file == '\0' ? -1 : CreateSurface(nullptr); }
    void FreeSurface(int surface) override
    {
        if (m_Surfaces.erase(surface) == 0)
            Fail("a surface is freed twice");
    }
    void GetSurfaceRect(int surface, RECT* out) override
    {
        *out = m_Surfaces.count(surface) != 0 ? RECT{0, 0, SIDE, SIDE} : RECT();
    }
    void FillSurface(int, COLORREF) override {}
    void Blit(int, int, int, const RECT*, const RECT*, bool) override {}
    std::uint16_t* LockSurface(int surface) override
    {
        const auto found = m_Surfaces.find(surface);
        return found != m_Surfaces.end() ? found->second.data() : nullptr;
    }
    void UnlockSurface(int, int) override {}
    HDC GetSurfaceDC(int) override { return nullptr; }
    void ReleaseSurfaceDC(int, HDC) override {}

    std::size_t Count() const { return m_Surfaces.size(); }

    [[noreturn]] static void Fail(const char* what)
    {
        std::fprintf(stderr, "%s\n", what);
        std::abort();
    }

  private:
    std::map<int, std::vector<std::uint16_t>> m_Surfaces;
    int m_nLast = 0;
};

class QuietHost : public PlatformHost
{
  public:
    void DebugOutput(const char*) override {}
};

void UseFont(const CItfFont& font, int target, const std::string& text)
{
    constexpr std::uint32_t FLAGS[] = {0, FONT_MULTILINE, FONT_MULTILINE | FONT_CENTER_HOR | FONT_CENTER_VERT,
                                       FONT_RIGHT | FONT_CENTER_VERT};
    const std::vector<ColourMark> marks = {{text.c_str(), 0x123456},
                                           {text.c_str() + text.size() / 2, 0xffffff}};
    for (const RECT rect :
         {RECT{0, 0, SIDE, SIDE}, RECT{-9, -30, 20, 300}, RECT{5, 5, 5, 5}, RECT{9, 0, 2, 9}}) {
        for (const std::uint32_t flags : FLAGS)
            font.DrawBox(target, &rect, text.c_str(), flags, 0x80ff40, &marks);
        const int lines = font.CountLines(&rect, text.c_str());
        if (lines > 0 && font.FindLine(&rect, text.c_str(), lines, -1) == nullptr)
            FuzzRender::Fail("the last line that was counted isn't found");
        if (lines > 0 && font.FindLine(&rect, text.c_str(), lines, 0) != nullptr)
            FuzzRender::Fail("a line behind the last is found");
    }
    font.DrawLine(target, -5, -5, SIDE + 5, text.c_str(), FONT_CENTER_HOR, 0xffffff);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static QuietHost host;
    SetPlatformHost(&host);
    FuzzRender render;
    const int target = render.CreateSurface(nullptr);
    {
        ds_file_buffered file;
        file.open_memory("fuzz.fnt", std::vector<char>(data, data + size));
        CItfFont font;
        const bool loaded = font.LoadFrom(file, &render);
        if (!loaded && (font.GetHeight() != 0 || render.Count() != 1))
            FuzzRender::Fail("a font that isn't loaded keeps something");
        std::string text;
        for (int c = 1; c < 256; ++c)
            text += static_cast<char>(c);
        UseFont(font, target, text + "\r\n");
        // The file's own bytes use its own characters most.
        std::string own(data, data + std::min<std::size_t>(size, 500));
        std::replace(own.begin(), own.end(), '\0', ' ');
        UseFont(font, target, own);
    }
    if (render.Count() != 1)
        FuzzRender::Fail("the texture isn't given back");
    return 0;
}
