#include "controls/itftextbox.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string>
#include <utility>

#include "controls/itffont.h"
#include "controls/itfscrollbar.h"
#include "kernel/own_names.h"

namespace
{

constexpr std::size_t TEXT_GROWTH_STEP = 1000;
constexpr std::uint32_t TEXT_COLOUR = 0xffffff;
/// The bar stands beside the inner rectangle and yet takes this much from the text.
constexpr int SCROLLBAR_WIDTH = 18;
constexpr int SCROLLBAR_TEXT_MARGIN = 16;
constexpr int FLOAT_DIGITS = 5;

} // namespace

CItfTextBox::CItfTextBox() : m_Text(TEXT_GROWTH_STEP) {}

CItfTextBox::~CItfTextBox()
{
    for (int* font : {&m_nFont, &m_nCaptionFont, &m_nDisabledFont})
        ReplaceFont(*font, -1);
}

bool CItfTextBox::Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent,
                         int ctrlId, std::uint32_t style, IEngine* core)
{
    if (!CItfWnd::Create(caption, sprite, rect, parent, ctrlId, style, core))
        return false;
    m_pScrollBar.reset();
    for (int* font : {&m_nFont, &m_nCaptionFont, &m_nDisabledFont})
        ReplaceFont(*font, AcquireFont(FONT_LIST));
    m_rcText = m_rcClient;
    return true;
}

bool CItfTextBox::SetText(const char* text)
{
    CByteBuffer fresh(TEXT_GROWTH_STEP); // text may be this box's own
    if (text != nullptr)
        fresh.Append(text, std::strlen(text) + 1);
    m_Text = std::move(fresh);
    m_Colours.clear();
    m_nTopLine = 0;
    Layout();
    return true;
}

bool CItfTextBox::AddText(const char* text, const std::uint32_t* colour)
{
    if (text == nullptr)
        return false;
    const std::size_t end = m_Text.IsEmpty() ? 0 : m_Text.GetSize() - 1;
    m_Text.ReplaceTail(end, text, std::strlen(text) + 1);
    if (colour != nullptr)
        m_Colours.push_back({end, *colour});
    Layout();
    return true;
}

bool CItfTextBox::SetInt(int value)
{
    return SetText(std::to_string(value).c_str());
}

bool CItfTextBox::SetFloat(float value)
{
    char digits[32] = {};
    std::to_chars(digits, digits + sizeof digits - 1, value, std::chars_format::general, FLOAT_DIGITS);
    return SetText(digits);
}

bool CItfTextBox::SetFont(const char* name)
{
    if (!ReplaceFontByName(m_nFont, name))
        return false;
    ReplaceFontByName(m_nDisabledFont, (std::string(name) + FONT_SUFFIX_DISABLED).c_str());
    return true;
}

bool CItfTextBox::SetCaptionFont(const char* name)
{
    return ReplaceFontByName(m_nCaptionFont, name);
}

int CItfTextBox::CountLines(const RECT& rect) const
{
    return std::max(0, CountTextLines(m_nFont, &rect, m_Text.GetData()));
}

int CItfTextBox::LinesThatFit(const RECT& rect) const
{
    const int height = GetFontHeight(m_nFont);
    return height > 0 ? (rect.bottom - rect.top) / height : m_nLines;
}

void CItfTextBox::Layout()
{
    if (m_Text.IsEmpty()) {
        m_pScrollBar.reset();
        m_nLines = 0;
        return;
    }
    m_rcText = m_rcInner;
    m_nLines = CountLines(m_rcInner);
    const int page = LinesThatFit(m_rcInner);
    const bool wanted =
        (m_dwStyle & TBSTYLE_NOVSCROLL) == 0 && (page < m_nLines || (m_dwStyle & IWS_VSCROLL) != 0);
    if (!wanted) {
        m_pScrollBar.reset();
        return;
    }
    if (!MakeScrollBar())
        return;
    m_nLines = CountLines(m_rcText);
    m_pScrollBar->SetRange(0, m_nLines - page, page);
    m_pScrollBar->SetPos(0);
    m_pScrollBar->Show(true);
    Invalidate(nullptr);
}

bool CItfTextBox::MakeScrollBar()
{
    if (m_pScrollBar != nullptr)
        return true;
    if (m_nId < 0)
        return false; // without a place in the table there is no parent for it to stand behind
    const RECT rect = {m_rcInner.right, m_rcInner.top, m_rcInner.right + SCROLLBAR_WIDTH, m_rcInner.bottom};
    auto bar = std::make_unique<CItfScrollBar>();
    if (!bar->Create(nullptr, nullptr, &rect, this, SCROLLBAR_CTRL_ID, 0, m_pCore))
        return false;
    m_pScrollBar = std::move(bar);
    m_rcText.right -= SCROLLBAR_TEXT_MARGIN;
    return true;
}

void CItfTextBox::ScrollToEnd()
{
    m_nTopLine = std::max(0, m_nLines - LinesThatFit(m_rcText));
    if (m_pScrollBar != nullptr)
        m_pScrollBar->SetPos(m_nTopLine);
}

void CItfTextBox::Redraw()
{
    const RECT inner = m_rcInner;
    Repaint(&inner);
}

void CItfTextBox::Draw()
{
    CItfWnd::Draw();
    if ((m_dwStyle & TBSTYLE_HASCAPTION) != 0)
        DrawCaption();
    if (!m_Text.IsEmpty())
        DrawContent();
}

void CItfTextBox::DrawCaption()
{
    const char* caption = m_Caption.c_str();
    int x = CAPTION_GAP;
    if ((m_dwStyle & TBSTYLE_CAPTIONRIGHT) != 0)
        x = m_rcInner.right + CAPTION_GAP;
    else if ((m_dwStyle & TBSTYLE_ALIGNRIGHT) != 0)
        x = std::max(0, m_rcInner.left - GetTextWidth(m_nCaptionFont, caption));
    const int y = (m_rcClient.bottom - GetFontHeight(m_nCaptionFont)) / 2;
    DrawTextLine(m_nCaptionFont, x, y, caption, -1, TEXT_COLOUR);
}

void CItfTextBox::DrawContent()
{
    const char* text = m_Text.GetData();
    const char* first = FindTextLine(m_nFont, &m_rcText, text, m_nTopLine, 0);
    if (first == nullptr)
        return;
    std::uint32_t flags = FONT_MULTILINE;
    if ((m_dwStyle & TBSTYLE_CENTER_HOR) != 0)
        flags |= FONT_CENTER_HOR;
    if ((m_dwStyle & TBSTYLE_CENTER_VERT) != 0)
        flags |= FONT_CENTER_VERT;
    std::vector<ColourMark> marks;
    marks.reserve(m_Colours.size());
    for (const Mark& mark : m_Colours)
        marks.push_back({text + mark.offset, mark.colour});
    DrawTextBox(IsEnabled() ? m_nFont : m_nDisabledFont, &m_rcText, first, flags, -1, TEXT_COLOUR, &marks);
}

const CItfWnd::Row* CItfTextBox::GetMessageTable() const
{
    static const Row rows[] = {
        On(ITFM_NOTIFY, &CItfTextBox::OnNotify),
        On(WM_MOUSEWHEEL, &CItfTextBox::OnMouseWheel),
        On(WM_KEYDOWN, &CItfTextBox::OnKeyDown),
        EndOfTable(),
    };
    return rows;
}

Word CItfTextBox::OnNotify(std::uint32_t wParam, std::int32_t lParam)
{
    if (m_pScrollBar == nullptr || wParam != SB_CHANGED || lParam != SCROLLBAR_CTRL_ID)
        return 0;
    const int line = m_pScrollBar->GetPos();
    if (line >= 0 && line < m_nLines) {
        m_nTopLine = line;
        Redraw();
    }
    return 0;
}

Word CItfTextBox::OnMouseWheel(std::uint32_t wParam, std::int32_t lParam)
{
    const bool down = static_cast<SHORT>(HIWORD(wParam)) < 1;
    return OnKeyDown(static_cast<std::uint32_t>(down ? VK_DOWN : VK_UP), lParam);
}

Word CItfTextBox::OnKeyDown(std::uint32_t wParam, std::int32_t)
{
    if (m_pScrollBar == nullptr)
        return 0;
    if (wParam == static_cast<std::uint32_t>(VK_DOWN))
        ScrollTo(m_nTopLine + 1);
    else if (wParam == static_cast<std::uint32_t>(VK_UP))
        ScrollTo(m_nTopLine - 1);
    return 0;
}

void CItfTextBox::ScrollTo(int line)
{
    const int held = std::max(0, std::min(line, m_nLines - 1));
    m_nTopLine = held;
    if (held != line)
        return;
    const int self = m_nId;
    Redraw();
    if (IsStill(this, self) && m_pScrollBar != nullptr)
        m_pScrollBar->SetPos(m_nTopLine);
}
