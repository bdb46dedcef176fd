#include "controls/itfeditbox.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "kernel/own_names.h"
#include "platform/clipboard.h"

namespace
{

// The clipboard, open as long as the object lives.
class CClipboardSession
{
  public:
    CClipboardSession() : m_bOpen(OpenClipboard(nullptr) != FALSE) {}
    ~CClipboardSession()
    {
        if (m_bOpen)
            CloseClipboard();
    }
    CClipboardSession(const CClipboardSession&) = delete;
    CClipboardSession& operator=(const CClipboardSession&) = delete;
    bool IsOpen() const { return m_bOpen; }

  private:
    bool m_bOpen;
};

// A locked block. Null bytes when there is no block or no memory.
class CBlockLock
{
  public:
    explicit CBlockLock(HGLOBAL block) : m_Block(block), m_pBytes(static_cast<char*>(GlobalLock(block))) {}
    ~CBlockLock()
    {
        if (m_pBytes != nullptr)
            GlobalUnlock(m_Block);
    }
    CBlockLock(const CBlockLock&) = delete;
    CBlockLock& operator=(const CBlockLock&) = delete;
    char* GetBytes() const { return m_pBytes; }
    /// Up to the terminating zero, but never behind the block.
    std::string_view GetText() const { return {m_pBytes, strnlen(m_pBytes, GlobalSize(m_Block))}; }

  private:
    HGLOBAL m_Block;
    char* m_pBytes;
};

// Puts a text into the clipboard. False when a block can't be had or isn't taken.
bool GiveToClipboard(const std::string& text)
{
    HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_DDESHARE, text.size() + 1);
    if (block == nullptr)
        return false;
    if (const CBlockLock lock(block); lock.GetBytes() != nullptr)
        std::memcpy(lock.GetBytes(), text.c_str(), text.size() + 1);
    EmptyClipboard();
    if (SetClipboardData(CF_TEXT, block) != nullptr)
        return true;
    GlobalFree(block);
    return false;
}

} // namespace

CItfEditBox::~CItfEditBox()
{
    ReleaseFont(m_nFont);
    ReleaseSprite(m_nSelSprite);
}

bool CItfEditBox::Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent,
                         int ctrlId, std::uint32_t style, IEngine* core)
{
    if (m_nId == -1)
        ClearText();
    if (!CItfWnd::Create(caption, sprite, rect, parent, ctrlId, style, core))
        return false;
    SetFont(FONT_MENU);
    ReleaseSprite(m_nSelSprite);
    m_nSelSprite = AcquireSprite(SPRITE_HIGHLIGHT);
    SetModified(false);
    return true;
}

void CItfEditBox::SetText(const char* text)
{
    ClearText();
    if (text != nullptr)
        InsertText({0, 0}, text);
    ShowChange();
}

const char* CItfEditBox::GetText()
{
    m_Scratch.clear();
    const int last = m_Lines.GetCount() - 1;
    m_Lines.AppendTo(&m_Scratch, {0, 0}, {last, m_Lines.GetLength(last)});
    return m_Scratch.c_str();
}

int CItfEditBox::GetTextLength() const
{
    return static_cast<int>(m_Lines.GetTextSize());
}

const char* CItfEditBox::GetLine(int line)
{
    if (line < 0 || line >= m_Lines.GetCount())
        return nullptr;
    m_Scratch = m_Lines.GetLine(line);
    return m_Scratch.c_str();
}

void CItfEditBox::SetCaret(int line, int col)
{
    m_Caret = {std::clamp(line, 0, m_Lines.GetCount() - 1), std::max(col, 0)};
}

void CItfEditBox::GetCaret(int& line, int& col) const
{
    line = m_Caret.line;
    col = m_Caret.col;
}

void CItfEditBox::SetMaxLength(int bytes)
{
    if (bytes < 1) {
        m_nFlags &= ~FLAG_LIMIT;
        return;
    }
    m_nMaxLen = bytes;
    m_nFlags |= FLAG_LIMIT;
}

void CItfEditBox::SetModified(bool modified)
{
    m_nFlags = modified ? m_nFlags | FLAG_MODIFIED : m_nFlags & ~FLAG_MODIFIED;
}

bool CItfEditBox::SetFont(const char* name)
{
    if (!ReplaceFontByName(m_nFont, name))
        return false;
    m_Widths.Measure(GetFont(m_nFont));
    // A font without a height would be divided by.
    if (const int height = GetFontHeight(m_nFont); height > 0)
        m_nLineHeight = height;
    return true;
}

void CItfEditBox::ClearText()
{
    m_Lines.Clear();
    m_Caret = m_Anchor = m_End = {};
    m_nLeftCol = 0;
    m_nTopLine = 0;
    m_nFlags &= ~FLAG_SELECTION;
}

void CItfEditBox::InsertText(EditPos at, std::string_view text)
{
    const bool limited = (m_nFlags & FLAG_LIMIT) != 0;
    m_Lines.InsertText(at, text, limited ? static_cast<std::size_t>(m_nMaxLen) : std::string_view::npos,
                       HasStyle(EDS_MULTILINE));
}

void CItfEditBox::CutCaretToLine()
{
    m_Caret.col = std::min(m_Caret.col, m_Lines.GetLength(m_Caret.line));
}

void CItfEditBox::SwapToCaretLine()
{
    if (HasStyle(EDS_MULTILINE))
        m_Lines.MakeCurrent(m_Caret.line);
}

void CItfEditBox::UpdateSelection()
{
    if (m_Anchor != m_End)
        m_nFlags |= FLAG_SELECTION;
    if ((m_nFlags & FLAG_SELECTION) == 0)
        m_Anchor = m_End = m_Caret;
}

void CItfEditBox::CollapseSelection()
{
    m_Anchor = m_End = m_Caret;
    m_nFlags &= ~FLAG_SELECTION;
}

// In the order of the text, within the lines that exist and their lengths.
CItfEditBox::Range CItfEditBox::GetSelection() const
{
    const auto hold = [this](EditPos pos) {
        const int line = std::clamp(pos.line, 0, m_Lines.GetCount() - 1);
        return EditPos{line, std::clamp(pos.col, 0, m_Lines.GetLength(line))};
    };
    return {hold(std::min(m_Anchor, m_End)), hold(std::max(m_Anchor, m_End))};
}

void CItfEditBox::DeleteSelection()
{
    UpdateSelection();
    if ((m_nFlags & FLAG_SELECTION) == 0)
        return;
    const Range range = GetSelection();
    m_Lines.Erase(range.first, range.last);
    m_Caret = range.first;
    SwapToCaretLine();
    CollapseSelection();
    m_nTopLine = std::min(m_nTopLine, m_Lines.GetCount() - 1);
}

// False when the clipboard didn't take the selection; without a selection there is nothing to fail.
bool CItfEditBox::Copy()
try {
    if ((m_nFlags & FLAG_SELECTION) == 0)
        return true;
    const Range range = GetSelection();
    m_Scratch.clear();
    m_Lines.AppendTo(&m_Scratch, range.first, range.last);
    const CClipboardSession session;
    return session.IsOpen() && GiveToClipboard(m_Scratch);
} catch (const std::bad_alloc&) {
    return false;
}

void CItfEditBox::Paste()
{
    if (PasteText())
        ShowChange();
}

// False when nothing has changed. Paints nothing: the clipboard is open.
bool CItfEditBox::PasteText()
{
    if (HasStyle(EDS_READONLY))
        return false;
    const CClipboardSession session;
    if (!session.IsOpen())
        return false;
    if (!IsClipboardFormatAvailable(CF_TEXT)) {
        // There is nothing to put in the selection's place, but it goes all the same.
        const bool selected = (m_nFlags & FLAG_SELECTION) != 0;
        DeleteSelection();
        return selected;
    }
    const CBlockLock lock(GetClipboardData(CF_TEXT));
    if (lock.GetBytes() == nullptr)
        return false;
    DeleteSelection();
    CutCaretToLine();
    try {
        InsertText(m_Caret, lock.GetText());
    } catch (const std::bad_alloc&) {
        // Too large a text: nothing of it has gone in.
    }
    ScrollToCaret();
    return true;
}

// Last in every handler: what is painted on the way may delete the box.
void CItfEditBox::ShowChange()
{
    SetModified(true);
    Repaint(nullptr);
}

void CItfEditBox::Cut()
{
    if (HasStyle(EDS_READONLY) || !Copy())
        return;
    DeleteSelection();
    ShowChange();
}
