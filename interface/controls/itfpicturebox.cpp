#include "controls/itfpicturebox.h"

CItfPictureBox::~CItfPictureBox()
{
    ReleaseSprite(m_nPicture);
}

bool CItfPictureBox::Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent,
                            int ctrlId, std::uint32_t style, IEngine* core, const char* picture)
{
    if (!CItfWnd::Create(caption, sprite, rect, parent, ctrlId, style, core))
        return false;
    SetPicture(picture);
    return true;
}

void CItfPictureBox::SetGrid(int cellW, int cellH, int cols, int rows, int lastRowCells)
{
    m_nCellW = cellW;
    m_nCellH = cellH;
    m_nCols = cols;
    m_nRows = rows;
    m_nLastRowCells = lastRowCells;
}

void CItfPictureBox::SetCell(int col, int row)
{
    m_nCol = col;
    m_nRow = row;
    m_rcSource.left = m_nCol * m_nCellW;
    m_rcSource.top = m_nRow * m_nCellH;
    m_rcSource.right = m_rcSource.left + m_nCellW;
    m_rcSource.bottom = m_rcSource.top + m_nCellH;
}

void CItfPictureBox::SetIndex(int index)
{
    if (index < 0 || m_nCols <= 0 || index >= CellCount())
        return;
    SetCell(index % m_nCols, index / m_nCols);
    Invalidate(nullptr);
}

void CItfPictureBox::Next()
{
    const int next = GetIndex() + 1;
    SetIndex(next < CellCount() ? next : 0);
}

void CItfPictureBox::Previous()
{
    const int index = GetIndex();
    SetIndex(index > 0 ? index - 1 : CellCount() - 1);
}

void CItfPictureBox::LoadPicture(const char* file)
{
    ReleaseSprite(m_nPicture);
    m_nPicture = LoadSpriteFile(file);
}

void CItfPictureBox::SetPicture(const char* name)
{
    ReleaseSprite(m_nPicture);
    m_nPicture = AcquireSprite(name);
}

void CItfPictureBox::Draw()
{
    CItfWnd::Draw();
    DrawSpritePart(m_nPicture, &m_rcInner, &m_rcSource, false);
}
