#include "render/surface.h"

#include <algorithm>

std::unique_ptr<CSurface> CSurface::Create(int width, int height)
{
    if (width < 1 || height < 1 || width > SURFACE_MAX_SIDE || height > SURFACE_MAX_SIDE)
        return nullptr;
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    PixelBlock pixels(static_cast<std::uint16_t*>(
        ::operator new[](count * sizeof(std::uint16_t), ALIGNMENT, std::nothrow)));
    if (!pixels)
        return nullptr;
    std::fill_n(pixels.get(), count, std::uint16_t{0});
    return std::unique_ptr<CSurface>(new CSurface(std::move(pixels), width, height));
}

CSurface::CSurface(PixelBlock pixels, int width, int height)
    : m_pPixels(std::move(pixels)), m_nWidth(width), m_nHeight(height)
{
}

CSurface::~CSurface()
{
    for (HDC dc : m_aDCs)
        PlatformDeleteMemoryDC(dc);
}

std::size_t CSurface::PixelCount() const
{
    return static_cast<std::size_t>(m_nWidth) * static_cast<std::size_t>(m_nHeight);
}

void CSurface::Fill(std::uint16_t pixel)
{
    std::fill_n(m_pPixels.get(), PixelCount(), pixel);
}

void CSurface::Unlock()
{
    if (m_nLocks > 0)
        --m_nLocks;
}

HDC CSurface::OpenDC()
{
    const HDC dc = PlatformCreateMemoryDC(m_pPixels.get(), m_nWidth, m_nHeight);
    if (dc != nullptr)
        m_aDCs.push_back(dc);
    return dc;
}

void CSurface::CloseDC(HDC dc)
{
    const auto found = std::find(m_aDCs.begin(), m_aDCs.end(), dc);
    if (found == m_aDCs.end())
        return;
    PlatformDeleteMemoryDC(dc);
    m_aDCs.erase(found);
}
