// CItfWnd: sprites and fonts by index, and all drawing that goes through them.

#include <cstring>
#include <strings.h>
#include <type_traits>
#include <utility>

#include "irender2d.h"
#include "kernel/itfwnd.h"
#include "platform/rect.h"

namespace
{

template <class Entry>
bool IsUsed(const std::vector<Entry>& table, int index)
{
    return index >= 0 && static_cast<std::size_t>(index) < table.size() &&
           (table[static_cast<std::size_t>(index)].flags & Entry::FLAG_USED) != 0;
}

SpriteEntry* UsedSprite(int index)
{
    std::vector<SpriteEntry>& table = Toolkit().sprites;
    return IsUsed(table, index) ? &table[static_cast<std::size_t>(index)] : nullptr;
}

FontEntry* UsedFont(int index)
{
    std::vector<FontEntry>& table = Toolkit().fonts;
    return IsUsed(table, index) ? &table[static_cast<std::size_t>(index)] : nullptr;
}

bool SameName(const char* a, const char* b)
{
    return strcasecmp(a, b) == 0;
}

bool IsFree(const auto& entry)
{
    return (entry.flags & std::remove_cvref_t<decltype(entry)>::FLAG_USED) == 0;
}

template <class Entry>
int AppendEntry(std::vector<Entry>& table)
{
    table.emplace_back();
    return static_cast<int>(table.size() - 1);
}

// The last free entry, else a new one at the end: for what is looked up by name.
template <class Entry>
int LastFreeEntry(std::vector<Entry>& table)
{
    for (std::size_t i = table.size(); i-- > 0;) {
        if (IsFree(table[i]))
            return static_cast<int>(i);
    }
    return AppendEntry(table);
}

// The first free entry, else a new one at the end: for nameless ones.
template <class Entry>
int FirstFreeEntry(std::vector<Entry>& table)
{
    for (std::size_t i = 0; i < table.size(); ++i) {
        if (IsFree(table[i]))
            return static_cast<int>(i);
    }
    return AppendEntry(table);
}

// The file of a logical name, null when the map lacks it; the first row with the name wins.
const char* MappedFile(const std::vector<NameRow>& map, const char* name)
{
    for (const NameRow& row : map) {
        if (SameName(row.name.c_str(), name))
            return row.file.c_str();
    }
    return nullptr;
}

template <class Entry>
void StoreName(Entry& entry, const char* name)
{
    std::strncpy(entry.name, name, MAX_LOGICAL_NAME);
    entry.name[MAX_LOGICAL_NAME] = '\0';
}

} // namespace

bool CItfWnd::SetSprite(const char* name)
{
    if (name != nullptr && *name != '\0') {
        ReleaseSprite(m_nSprite);
        m_nSprite = AcquireSprite(name);
    }
    return m_nSprite >= 0;
}

bool CItfWnd::SetSpriteIndex(int index)
{
    if (UsedSprite(index) == nullptr)
        return false;
    AddSpriteRef(index); // first, in case it is the one that is released
    ReleaseSprite(m_nSprite);
    m_nSprite = index;
    return true;
}

int CItfWnd::AcquireSprite(const char* name)
{
    if (m_pRender2D == nullptr || name == nullptr)
        return -1;
    std::vector<SpriteEntry>& table = Toolkit().sprites;
    for (std::size_t i = 0; i < table.size(); ++i) {
        SpriteEntry& entry = table[i];
        if (entry.flags == SpriteEntry::FLAG_USED && SameName(entry.name, name)) {
            ++entry.refs;
            return static_cast<int>(i);
        }
    }
    const int index = LastFreeEntry(table);
    const char* file = MappedFile(Toolkit().spriteMap, name);
    if (file == nullptr)
        return -1;
    const int surface = m_pRender2D->LoadSurface(file);
    if (surface < 0)
        return -1;
    SpriteEntry& entry = table[static_cast<std::size_t>(index)];
    entry.surface = surface;
    entry.refs = 1;
    entry.flags = SpriteEntry::FLAG_USED;
    StoreName(entry, name);
    return index;
}

int CItfWnd::NewSprite(int surface)
{
    const int index = FirstFreeEntry(Toolkit().sprites);
    if (surface < 0)
        return -1;
    SpriteEntry& entry = Toolkit().sprites[static_cast<std::size_t>(index)];
    entry.surface = surface;
    entry.refs = 1;
    entry.flags = SpriteEntry::FLAG_USED | SpriteEntry::FLAG_ANONYMOUS;
    return index;
}

int CItfWnd::LoadSpriteFile(const char* path)
{
    return m_pRender2D != nullptr ? NewSprite(m_pRender2D->LoadSurface(path)) : -1;
}

int CItfWnd::CreateSprite(const RECT* rect)
{
    return m_pRender2D != nullptr ? NewSprite(m_pRender2D->CreateSurface(rect)) : -1;
}

void CItfWnd::ReleaseSprite(int index)
{
    SpriteEntry* entry = UsedSprite(index);
    if (entry == nullptr || --entry->refs > 0)
        return;
    if (m_pRender2D != nullptr)
        m_pRender2D->FreeSurface(entry->surface);
    *entry = SpriteEntry();
}

void CItfWnd::AddSpriteRef(int index)
{
    if (SpriteEntry* entry = UsedSprite(index))
        ++entry->refs;
}

int CItfWnd::GetSpriteSurface(int index) const
{
    const SpriteEntry* entry = UsedSprite(index);
    return entry != nullptr ? entry->surface : -1;
}

void CItfWnd::GetSpriteRect(int index, RECT* out) const
{
    *out = RECT();
    if (const SpriteEntry* entry = UsedSprite(index); entry != nullptr && m_pRender2D != nullptr)
        m_pRender2D->GetSurfaceRect(entry->surface, out);
}

void CItfWnd::FillSprite(int index, COLORREF colour)
{
    if (const SpriteEntry* entry = UsedSprite(index); entry != nullptr && m_pRender2D != nullptr)
        m_pRender2D->FillSurface(entry->surface, colour);
}

// What of `rect` (own coordinates) lies in the window, in screen coordinates. False when nothing does.
bool CItfWnd::ClipToScreen(const RECT* rect, RECT* screen) const
{
    if (!IntersectRect(screen, rect, &m_rcClient))
        return false;
    POINT origin;
    GetScreenOrigin(&origin);
    OffsetRect(screen, origin.x, origin.y);
    return true;
}

void CItfWnd::BlitToScreen(int index, const RECT& destination, const RECT* source, bool keyed)
{
    const SpriteEntry* entry = UsedSprite(index);
    if (entry != nullptr && m_pRender2D != nullptr)
        m_pRender2D->Blit(0, Toolkit().screenSurface, entry->surface, &destination, source, keyed);
}

void CItfWnd::DrawSprite(int index, const RECT* rect, bool keyed)
{
    DrawSpritePart(index, rect, nullptr, keyed);
}

void CItfWnd::DrawSpriteStretched(int index, const RECT* screenRect, bool keyed)
{
    BlitToScreen(index, *screenRect, nullptr, keyed);
}

void CItfWnd::DrawSpritePart(int index, const RECT* rect, const RECT* source, bool keyed)
{
    RECT screen;
    if (ClipToScreen(rect, &screen))
        BlitToScreen(index, screen, source, keyed);
}

int CItfWnd::AcquireFont(const char* name)
{
    if (m_pRender2D == nullptr || name == nullptr)
        return -1;
    std::vector<FontEntry>& table = Toolkit().fonts;
    for (std::size_t i = 0; i < table.size(); ++i) {
        if ((table[i].flags & FontEntry::FLAG_USED) != 0 && SameName(table[i].name, name)) {
            ++table[i].refs;
            return static_cast<int>(i);
        }
    }
    const int index = LastFreeEntry(table);
    const char* file = MappedFile(Toolkit().fontMap, name);
    if (file == nullptr)
        return -1;
    auto font = std::make_unique<CItfFont>();
    if (!font->Load(file, m_pRender2D))
        return -1;
    FontEntry& entry = table[static_cast<std::size_t>(index)];
    entry.font = std::move(font);
    entry.refs = 1;
    entry.flags = FontEntry::FLAG_USED;
    StoreName(entry, name);
    return index;
}

void CItfWnd::ReleaseFont(int index)
{
    FontEntry* entry = UsedFont(index);
    if (entry != nullptr && --entry->refs <= 0)
        *entry = FontEntry();
}

void CItfWnd::AddFontRef(int index)
{
    if (FontEntry* entry = UsedFont(index))
        ++entry->refs;
}

void CItfWnd::ReplaceFont(int& slot, int font)
{
    ReleaseFont(std::exchange(slot, font));
}

bool CItfWnd::ReplaceFontByName(int& slot, const char* name)
{
    const int font = AcquireFont(name);
    if (font >= 0)
        ReplaceFont(slot, font);
    return font >= 0;
}

CItfFont* CItfWnd::GetFont(int index) const
{
    const FontEntry* entry = UsedFont(index);
    return entry != nullptr ? entry->font.get() : nullptr;
}

int CItfWnd::GetFontHeight(int index) const
{
    const CItfFont* font = GetFont(index);
    return font != nullptr ? font->GetHeight() : 0;
}

int CItfWnd::GetTextWidth(int index, const char* text) const
{
    const CItfFont* font = GetFont(index);
    return font != nullptr ? font->GetWidth(text) : 0;
}

int CItfWnd::TargetSurface(int sprite) const
{
    return sprite < 0 ? Toolkit().screenSurface : GetSpriteSurface(sprite);
}

void CItfWnd::DrawTextLine(int font, int x, int y, const char* text, int sprite, std::uint32_t colour)
{
    CItfFont* object = GetFont(font);
    const int surface = TargetSurface(sprite);
    if (object == nullptr || surface < 0)
        return;
    POINT origin;
    GetScreenOrigin(&origin);
    object->DrawLine(surface, origin.x + x, origin.y + y, origin.x + m_rcClient.right, text, 0, colour);
}

void CItfWnd::DrawTextBox(int font, const RECT* rect, const char* text, std::uint32_t flags, int sprite,
                          std::uint32_t colour, const std::vector<ColourMark>* marks)
{
    CItfFont* object = GetFont(font);
    const int surface = TargetSurface(sprite);
    RECT screen;
    if (object == nullptr || surface < 0 || !ClipToScreen(rect, &screen))
        return;
    object->DrawBox(surface, &screen, text, flags, colour, marks);
}

int CItfWnd::CountTextLines(int font, const RECT* rect, const char* text) const
{
    CItfFont* object = GetFont(font);
    return object != nullptr ? object->CountLines(rect, text) : -1;
}

const char* CItfWnd::FindTextLine(int font, const RECT* rect, const char* text, int line, int offset) const
{
    CItfFont* object = GetFont(font);
    return object != nullptr ? object->FindLine(rect, text, line, offset) : nullptr;
}

void CItfWnd::FillRectGdi(const RECT* rect, COLORREF colour)
{
    RECT screen;
    if (m_pRender2D == nullptr || !ClipToScreen(rect, &screen))
        return;
    HDC dc = m_pRender2D->GetSurfaceDC(Toolkit().screenSurface);
    if (dc == nullptr)
        return;
    if (HBRUSH brush = CreateSolidBrush(colour)) {
        FillRect(dc, &screen, brush);
        DeleteObject(brush);
    }
    m_pRender2D->ReleaseSurfaceDC(Toolkit().screenSurface, dc);
}

void CItfWnd::FrameRectGdi(const RECT* rect, int penWidth, COLORREF fill, COLORREF pen)
{
    if (m_pRender2D == nullptr)
        return;
    POINT origin;
    GetScreenOrigin(&origin);
    RECT screen = *rect;
    OffsetRect(&screen, origin.x, origin.y);
    HDC dc = m_pRender2D->GetSurfaceDC(Toolkit().screenSurface);
    if (dc == nullptr)
        return;
    HBRUSH brush = CreateSolidBrush(fill);
    HPEN edge = CreatePen(PS_SOLID, penWidth, pen);
    if (brush != nullptr && edge != nullptr) {
        HGDIOBJ oldBrush = SelectObject(dc, brush);
        HGDIOBJ oldPen = SelectObject(dc, edge);
        Rectangle(dc, screen.left, screen.top, screen.right, screen.bottom);
        SelectObject(dc, oldPen);
        SelectObject(dc, oldBrush);
    }
    if (edge != nullptr)
        DeleteObject(edge);
    if (brush != nullptr)
        DeleteObject(brush);
    m_pRender2D->ReleaseSurfaceDC(Toolkit().screenSurface, dc);
}
