#include "render/render2d.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

#include "platform/system.h"
#include "render/picture.h"
#include "render/pixel565.h"

namespace
{

constexpr int NO_SURFACE = -1;
constexpr std::size_t NAME_IN_MESSAGES = 260; // characters of a file name that a message repeats

bool IsDisplay(int surface)
{
    return surface == DISPLAY_NOW || surface == DISPLAY_FRAME;
}

// The largest part in the middle of a surface that has the proportions of that size.
RECT MiddleOf(const CSurface& surface, int width, int height)
{
    const std::int64_t across = std::int64_t{surface.Width()} * height;
    const std::int64_t down = std::int64_t{surface.Height()} * width;
    const int partWidth = across > down ? static_cast<int>(down / height) : surface.Width();
    const int partHeight = across > down ? surface.Height() : static_cast<int>(across / width);
    const int left = (surface.Width() - partWidth) / 2;
    const int top = (surface.Height() - partHeight) / 2;
    return {left, top, left + partWidth, top + partHeight};
}

void ReportPicture(const std::string& file, const char* reason)
{
    const std::string line = "surface: " + file.substr(0, NAME_IN_MESSAGES) + ": " + reason + "\r\n";
    OutputDebugStringA(line.c_str());
}

} // namespace

CRender2D::CRender2D(int displayWidth, int displayHeight)
    : m_pDisplay(CSurface::Create(displayWidth, displayHeight))
{
    if (!m_pDisplay)
        throw std::runtime_error("a display of " + std::to_string(displayWidth) + " by " +
                                 std::to_string(displayHeight) + " pixels can't be made");
}

CRender2D::~CRender2D() = default;

bool CRender2D::SetDisplaySize(int width, int height)
{
    if (width == DisplayWidth() && height == DisplayHeight())
        return true;
    std::unique_ptr<CSurface> display = CSurface::Create(width, height);
    if (!display)
        return false;
    const RECT shown = MiddleOf(*m_pDisplay, width, height);
    BlitPixels(display->View(), display->Rect(), m_pDisplay->View(), shown, false, m_Scratch);
    m_pDisplay = std::move(display);
    m_bDisplayChanged = true;
    return true;
}

bool CRender2D::TakeDisplayChanged()
{
    return std::exchange(m_bDisplayChanged, false);
}

int CRender2D::CreateSurface(const RECT* rect)
{
    if (rect == nullptr)
        return NO_SURFACE;
    const std::int64_t width = std::int64_t{rect->right} - rect->left;
    const std::int64_t height = std::int64_t{rect->bottom} - rect->top;
    if (width > SURFACE_MAX_SIDE || height > SURFACE_MAX_SIDE || width < 1 || height < 1)
        return NO_SURFACE;
    return Add(CSurface::Create(static_cast<int>(width), static_cast<int>(height)));
}

int CRender2D::LoadSurface(const char* file)
{
    const std::string name = file == nullptr ? "" : file;
    try {
        const Picture picture = LoadPicture(name);
        std::unique_ptr<CSurface> surface = CSurface::Create(picture.m_nWidth, picture.m_nHeight);
        if (surface)
            std::copy(picture.m_aPixels.begin(), picture.m_aPixels.end(), surface->Pixels());
        const int number = Add(std::move(surface));
        if (number == NO_SURFACE)
            ReportPicture(name, "no room for another surface");
        return number;
    } catch (const std::exception& error) {
        ReportPicture(name, error.what());
        return NO_SURFACE;
    }
}

void CRender2D::FreeSurface(int surface)
{
    CSurface* const found = FindOwn(surface, false);
    if (found == nullptr)
        return;
    found->m_bFreed = true;
    RemoveIfGivenBack(surface);
}

void CRender2D::GetSurfaceRect(int surface, RECT* out)
{
    if (out == nullptr)
        return;
    const CSurface* const found = Find(surface);
    *out = found == nullptr ? RECT{} : found->Rect();
}

void CRender2D::FillSurface(int surface, COLORREF colour)
{
    CSurface* const found = Find(surface);
    if (found == nullptr)
        return;
    found->Fill(PixelFromColour(colour));
    TellDrawn(surface);
}

void CRender2D::Blit(int /*flags*/, int destination, int source, const RECT* destinationRect,
                     const RECT* sourceRect, bool keyed)
{
    CSurface* const to = Find(destination);
    CSurface* const from = Find(source);
    if (to == nullptr || from == nullptr)
        return;
    const RECT target = destinationRect == nullptr ? to->Rect() : *destinationRect;
    if (destination == DISPLAY_FRAME)
        m_rcFrame = target;
    BlitPixels(to->View(), target, from->View(), sourceRect == nullptr ? from->Rect() : *sourceRect, keyed,
               m_Scratch);
    TellDrawn(destination);
}

std::uint16_t* CRender2D::LockSurface(int surface)
{
    CSurface* const found = FindOwn(surface, false);
    if (found == nullptr)
        return nullptr;
    found->Lock();
    return found->Pixels();
}

void CRender2D::UnlockSurface(int surface, int /*flags*/)
{
    CSurface* const found = FindOwn(surface, true);
    if (found == nullptr)
        return;
    found->Unlock();
    RemoveIfGivenBack(surface);
}

HDC CRender2D::GetSurfaceDC(int surface)
{
    CSurface* const found = FindOwn(surface, false);
    return found == nullptr ? nullptr : found->OpenDC();
}

void CRender2D::ReleaseSurfaceDC(int surface, HDC dc)
{
    CSurface* const found = FindOwn(surface, true);
    if (found == nullptr)
        return;
    found->CloseDC(dc);
    RemoveIfGivenBack(surface);
}

CSurface* CRender2D::Find(int surface)
{
    return IsDisplay(surface) ? m_pDisplay.get() : FindOwn(surface, false);
}

CSurface* CRender2D::FindOwn(int surface, bool alsoFreed)
{
    if (surface < 0 || static_cast<std::size_t>(surface) >= m_apSurfaces.size())
        return nullptr;
    CSurface* const found = m_apSurfaces[static_cast<std::size_t>(surface)].get();
    return found != nullptr && found->m_bFreed && !alsoFreed ? nullptr : found;
}

int CRender2D::Add(std::unique_ptr<CSurface> surface)
{
    if (!surface)
        return NO_SURFACE;
    auto place = std::find(m_apSurfaces.begin(), m_apSurfaces.end(), nullptr);
    if (place == m_apSurfaces.end()) {
        if (m_apSurfaces.size() >= MAX_SURFACES)
            return NO_SURFACE;
        place = m_apSurfaces.emplace(place);
    }
    *place = std::move(surface);
    return static_cast<int>(place - m_apSurfaces.begin());
}

void CRender2D::RemoveIfGivenBack(int surface)
{
    std::unique_ptr<CSurface>& place = m_apSurfaces[static_cast<std::size_t>(surface)];
    if (place->m_bFreed && !place->IsHeld())
        place.reset();
}

void CRender2D::TellDrawn(int surface)
{
    if (!IsDisplay(surface))
        return;
    m_bDisplayChanged = true;
    if (surface == DISPLAY_NOW && m_OnPresentNow)
        m_OnPresentNow();
}
