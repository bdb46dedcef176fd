#include "render/blit.h"

#include <algorithm>
#include <cstring>

#include "render/blit_rows.h"

namespace
{

/// One axis of a blit after clipping: the target pixels to draw and, stepped along with them, the source
/// pixel that each shows. The stepping is that of an exact division: source + error / targetSize is the
/// source position of the current target pixel.
class CBlitAxis
{
  public:
    CBlitAxis(LONG targetFrom, LONG targetTo, int targetLimit, LONG sourceFrom, LONG sourceTo,
              int sourceLimit)
    {
        const std::int64_t targetSize = std::int64_t{targetTo} - targetFrom;
        const std::int64_t sourceSize = std::int64_t{sourceTo} - sourceFrom;
        if (targetSize <= 0 || sourceSize <= 0 || sourceFrom >= sourceLimit)
            return;
        m_nTargetSize = static_cast<std::uint64_t>(targetSize);
        m_nSourceSize = static_cast<std::uint64_t>(sourceSize);

        // The range of target pixels, counted from the rectangle's own edge. Sizes have 32 bits, so that none
        // of the products leaves 64.
        std::uint64_t from = targetFrom < 0 ? static_cast<std::uint64_t>(-std::int64_t{targetFrom}) : 0;
        if (sourceFrom < 0)
            from = std::max(from, FirstAt(static_cast<std::uint64_t>(-std::int64_t{sourceFrom})));
        const std::int64_t room = std::int64_t{targetLimit} - targetFrom;
        if (room <= 0)
            return;
        std::uint64_t to = std::min(m_nTargetSize, static_cast<std::uint64_t>(room));
        to = std::min(to, FirstAt(static_cast<std::uint64_t>(std::int64_t{sourceLimit} - sourceFrom)));
        if (from >= to)
            return;

        m_nCount = static_cast<int>(to - from);
        m_nTarget = static_cast<int>(targetFrom + static_cast<std::int64_t>(from));
        m_nSource = static_cast<int>(sourceFrom + static_cast<std::int64_t>(SourceAt(from)));
        m_nLastSource = static_cast<int>(sourceFrom + static_cast<std::int64_t>(SourceAt(to - 1)));
        m_nError = from * m_nSourceSize % m_nTargetSize;
        m_nStep = static_cast<int>(std::min(m_nSourceSize / m_nTargetSize, std::uint64_t{INT32_MAX}));
        m_nStepError = m_nSourceSize % m_nTargetSize;
    }

    int Count() const { return m_nCount; }
    int Target() const { return m_nTarget; }
    int Source() const { return m_nSource; }
    /// The source pixels that are shown lie from Source() of a fresh axis to this one, both counted in.
    int LastSource() const { return m_nLastSource; }
    bool IsPlain() const { return m_nTargetSize == m_nSourceSize; }
    /// Then no source pixel between the first and the last shown is left out.
    bool IsWider() const { return m_nTargetSize > m_nSourceSize; }

    /// To the next target pixel; at most Count() - 1 times, so that Source() never passes LastSource().
    void Step()
    {
        m_nSource += m_nStep;
        m_nError += m_nStepError;
        if (m_nError >= m_nTargetSize) {
            m_nError -= m_nTargetSize;
            ++m_nSource;
        }
    }

    void ShiftSource(int by)
    {
        m_nSource -= by;
        m_nLastSource -= by;
    }

  private:
    std::uint64_t SourceAt(std::uint64_t target) const { return target * m_nSourceSize / m_nTargetSize; }

    /// The first target pixel that shows source pixel `source` or a later one, both counted from their edges.
    std::uint64_t FirstAt(std::uint64_t source) const
    {
        return (source * m_nTargetSize + m_nSourceSize - 1) / m_nSourceSize;
    }

    std::uint64_t m_nTargetSize = 0;
    std::uint64_t m_nSourceSize = 0;
    std::uint64_t m_nError = 0;
    std::uint64_t m_nStepError = 0;
    int m_nCount = 0;
    int m_nTarget = 0;
    int m_nSource = 0;
    int m_nLastSource = 0;
    int m_nStep = 0;
};

std::uint16_t* PixelAt(const PixelView& view, int x, int y)
{
    return view.m_pPixels + static_cast<std::size_t>(y) * static_cast<std::size_t>(view.m_nWidth) +
           static_cast<std::size_t>(x);
}

void CopyRow(std::uint16_t* target, const std::uint16_t* source, std::size_t count, bool keyed)
{
    if (keyed)
        KeyedRow(target, source, count);
    else
        std::memcpy(target, source, count * sizeof(std::uint16_t));
}

bool SourceIsDrawnOver(const CBlitAxis& x, const CBlitAxis& y)
{
    return x.Target() <= x.LastSource() && x.Source() < x.Target() + x.Count() &&
           y.Target() <= y.LastSource() && y.Source() < y.Target() + y.Count();
}

/// The part of the source that is shown, copied aside; the axes then count from its corner.
PixelView CopyAside(const PixelView& source, CBlitAxis& x, CBlitAxis& y, std::vector<std::uint16_t>& into)
{
    const int width = x.LastSource() - x.Source() + 1;
    const int height = y.LastSource() - y.Source() + 1;
    into.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const PixelView copy{into.data(), width, height};
    for (int row = 0; row < height; ++row)
        std::memcpy(PixelAt(copy, 0, row), PixelAt(source, x.Source(), y.Source() + row),
                    static_cast<std::size_t>(width) * sizeof(std::uint16_t));
    x.ShiftSource(x.Source());
    y.ShiftSource(y.Source());
    return copy;
}

void CopyPlain(const PixelView& target, const PixelView& source, const CBlitAxis& x, const CBlitAxis& y,
               bool keyed)
{
    const auto width = static_cast<std::size_t>(x.Count());
    if (x.Count() == target.m_nWidth && x.Count() == source.m_nWidth) {
        // Whole rows without padding are one long row.
        CopyRow(PixelAt(target, 0, y.Target()), PixelAt(source, 0, y.Source()),
                width * static_cast<std::size_t>(y.Count()), keyed);
        return;
    }
    for (int row = 0; row < y.Count(); ++row)
        CopyRow(PixelAt(target, x.Target(), y.Target() + row), PixelAt(source, x.Source(), y.Source() + row),
                width, keyed);
}

/// Scales single rows along x, always into the scratch row.
class CRowScaler
{
  public:
    CRowScaler(CBlitAxis x, BlitScratch& scratch)
        : m_Scratch(scratch), m_nCount(static_cast<std::size_t>(x.Count())), m_nFirstColumn(x.Source()),
          m_bWider(x.IsWider())
    {
        scratch.m_Row.resize(m_nCount + SPREAD_SLACK);
        scratch.m_aColumns.clear();
        int last = -1;
        for (std::size_t i = 0; i < m_nCount; ++i) {
            const int column = x.Source() - m_nFirstColumn;
            if (!m_bWider)
                scratch.m_aColumns.push_back(static_cast<std::uint32_t>(column));
            else if (column != last)
                scratch.m_aColumns.push_back(static_cast<std::uint32_t>(i));
            last = column;
            if (i + 1 < m_nCount)
                x.Step();
        }
        if (m_bWider)
            scratch.m_aColumns.push_back(static_cast<std::uint32_t>(m_nCount));
    }

    /// The scaled row, valid until the next call.
    const std::uint16_t* Scale(const PixelView& source, int row)
    {
        const std::uint16_t* const from = PixelAt(source, m_nFirstColumn, row);
        std::uint16_t* const into = m_Scratch.m_Row.data();
        const std::vector<std::uint32_t>& columns = m_Scratch.m_aColumns;
        if (m_bWider)
            SpreadRow(into, from, columns.data(), columns.size() - 1);
        else
            GatherRow(into, from, columns.data(), m_nCount);
        return into;
    }

  private:
    BlitScratch& m_Scratch;
    std::size_t m_nCount;
    int m_nFirstColumn;
    bool m_bWider;
};

/// Each source row is scaled once, however many target rows show it.
void CopyScaled(const PixelView& target, const PixelView& source, const CBlitAxis& x, CBlitAxis y, bool keyed,
                BlitScratch& scratch)
{
    CRowScaler scaler(x, scratch);
    const std::uint16_t* scaled = nullptr;
    int scaledFrom = -1;
    for (int row = 0; row < y.Count(); ++row) {
        if (y.Source() != scaledFrom) {
            scaledFrom = y.Source();
            scaled = scaler.Scale(source, scaledFrom);
        }
        CopyRow(PixelAt(target, x.Target(), y.Target() + row), scaled, static_cast<std::size_t>(x.Count()),
                keyed);
        if (row + 1 < y.Count())
            y.Step();
    }
}

/// Equal widths, different heights.
void CopyRepeated(const PixelView& target, const PixelView& source, const CBlitAxis& x, CBlitAxis y,
                  bool keyed)
{
    for (int row = 0; row < y.Count(); ++row) {
        CopyRow(PixelAt(target, x.Target(), y.Target() + row), PixelAt(source, x.Source(), y.Source()),
                static_cast<std::size_t>(x.Count()), keyed);
        if (row + 1 < y.Count())
            y.Step();
    }
}

} // namespace

void BlitPixels(const PixelView& target, const RECT& targetRect, const PixelView& source,
                const RECT& sourceRect, bool keyed, BlitScratch& scratch)
{
    CBlitAxis x(targetRect.left, targetRect.right, target.m_nWidth, sourceRect.left, sourceRect.right,
                source.m_nWidth);
    CBlitAxis y(targetRect.top, targetRect.bottom, target.m_nHeight, sourceRect.top, sourceRect.bottom,
                source.m_nHeight);
    if (x.Count() == 0 || y.Count() == 0)
        return;
    PixelView from = source;
    if (target.m_pPixels == source.m_pPixels && SourceIsDrawnOver(x, y))
        from = CopyAside(source, x, y, scratch.m_Source);

    if (!x.IsPlain())
        CopyScaled(target, from, x, y, keyed, scratch);
    else if (!y.IsPlain())
        CopyRepeated(target, from, x, y, keyed);
    else
        CopyPlain(target, from, x, y, keyed);
}
