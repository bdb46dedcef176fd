#include "flow/creditsdlg.h"

#include <algorithm>

#include "controls/itfbutton.h"
#include "flow/dialog_contract.h"
#include "flow/flow.h"
#include "keelworks/ds_file.h"
#include "kernel/own_names.h"
#include "platform/rect.h"

namespace
{

constexpr char CREDITS_FILE[] = "resource\\txt_res\\itfCredits.txt";
constexpr std::uint32_t TEXT_COLOUR = 0xffffff;
/// Several lines, each of them centred; the lowest bit means nothing to a font.
constexpr std::uint32_t TEXT_FLAGS = 0x2 | FONT_MULTILINE | FONT_CENTER_HOR;
constexpr RECT DEFAULT_PLACE = {75, 93, 725, 533};
constexpr int BLOCK_LINES = 8;
/// Time that has to be exceeded before the text moves by a pixel.
constexpr int STEP_TIME = 20;

} // namespace

CCreditsDlg::~CCreditsDlg()
{
    ReleaseSprite(m_nCanvas);
    ReleaseFont(m_nFont);
}

bool CCreditsDlg::Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent,
                         int ctrlId, std::uint32_t style, IEngine* core)
{
    if (!CreateFromResource(caption, sprite, rect, parent, ctrlId, style, core, SECTION_CREDITS))
        return false;
    PlaceText();
    m_nFont = AcquireFont(FONT_MAIN);
    if (m_nFont < 0)
        return false;
    m_nBlock = GetFontHeight(m_nFont) * BLOCK_LINES;
    const RECT canvas = {0, 0, m_rcText.right - m_rcText.left, m_rcText.bottom - m_rcText.top + m_nBlock};
    m_nCanvas = CreateSprite(&canvas);
    if (m_nCanvas < 0)
        return false;
    ReadText();
    m_nLines = CountTextLines(m_nFont, &m_rcText, m_pText.get());
    Render();
    return true;
}

const CItfWnd::Row* CCreditsDlg::GetMessageTable() const
{
    static const Row rows[] = {
        On(ITFM_NOTIFY, &CCreditsDlg::OnNotify),
        EndOfTable(),
    };
    return rows;
}

void CCreditsDlg::PlaceText()
{
    m_rcText = DEFAULT_PLACE;
    m_nTextFlags = TEXT_FLAGS;
    if (const CItfWnd* area = GetControl(IDC_TEXT)) {
        m_rcText = area->GetClientRect();
        OffsetRect(&m_rcText, area->GetPos().x, area->GetPos().y);
        m_nTextFlags |= area->GetStyle();
    }
}

void CCreditsDlg::ReadText()
{
    ds_file file(CREDITS_FILE, ds_file::MODE_READ);
    const std::size_t size = std::min(file.get_size(), MAX_TEXT);
    if (size == 0)
        return;
    m_pText = std::make_unique<char[]>(size + 1);
    m_pText[file.read(m_pText.get(), size)] = '\0';
}

// Straight to the font: the whole sprite counts, wherever the dialog stands and however small it is.
void CCreditsDlg::Render()
{
    FillSprite(m_nCanvas, 0);
    RECT canvas;
    GetSpriteRect(m_nCanvas, &canvas);
    const char* text = FindTextLine(m_nFont, &m_rcText, m_pText.get(), m_nFirstLine, 0);
    GetFont(m_nFont)->DrawBox(GetSpriteSurface(m_nCanvas), &canvas, text, m_nTextFlags, TEXT_COLOUR, nullptr);
}

void CCreditsDlg::Draw()
{
    CItfDialog::Draw();
    DrawSprite(m_nCanvas, &m_rcText, true);
}

// What is left of the time is dropped with each step.
void CCreditsDlg::OnTick(int elapsed)
{
    if (elapsed <= STEP_TIME - m_nTime) {
        m_nTime += elapsed;
        return;
    }
    m_nTime = 0;
    if (++m_nOffset > m_nBlock) {
        m_nOffset = 0;
        m_nFirstLine += BLOCK_LINES;
        if (m_nFirstLine > m_nLines - 1)
            m_nFirstLine = 0;
        Render();
    }
    m_rcUpdate = m_rcText;
    CItfDialog::Draw();
    RECT source;
    GetSpriteRect(m_nCanvas, &source);
    source.top += m_nOffset;
    source.bottom += m_nOffset - m_nBlock;
    DrawSpritePart(m_nCanvas, &m_rcText, &source, true);
}

Word CCreditsDlg::OnNotify(std::uint32_t code, std::int32_t id)
{
    if (code == NOTIFY_CLICKED && id == IDC_CLOSE)
        Notify(RESULT_CLOSE);
    return 0;
}
