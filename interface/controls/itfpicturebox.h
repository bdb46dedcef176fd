#pragma once
// One cell of a picture that holds many, or a picture of its own.

#include "kernel/itfwnd.h"

/// Shows the current cell of its picture, stretched to the inner rectangle, over its background sprite. Takes
/// no input, tells its parent nothing and has no styles of its own. Owns a reference to the picture.
class CItfPictureBox : public CItfWnd
{
  public:
    CItfPictureBox() = default;
    ~CItfPictureBox() override;

    using CItfWnd::Create;
    /// The base's Create, then the picture of that logical name; the box is empty when there is none. picture
    /// may be null.
    virtual bool Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent,
                        int ctrlId, std::uint32_t style, IEngine* core, const char* picture);
    void Draw() override;

    /// Cells in pixels, columns, rows, and how many cells of the last row are in use. All are 0 to 16383.
    void SetGrid(int cellW, int cellH, int cols, int rows, int lastRowCells);
    /// Makes a cell the current one, counted from 0, without a look at the grid's size. Doesn't repaint.
    void SetCell(int col, int row);
    /// The number of the current cell, counted row by row.
    int GetIndex() const { return m_nRow * m_nCols + m_nCol; }
    /// An index that the grid lacks is ignored. Repaints.
    void SetIndex(int index);
    /// One cell on or back, round the ends of the cells in use. Repaints.
    void Next();
    void Previous();

    /// Another picture, from a file or by its logical name; the box is empty when it can't be had. Grid and
    /// cell stay. Doesn't repaint.
    void LoadPicture(const char* file);
    void SetPicture(const char* name);

  private:
    int CellCount() const { return m_nCols * (m_nRows - 1) + m_nLastRowCells; }

    int m_nCellW = 0;
    int m_nCellH = 0;
    int m_nPicture = -1; ///< sprite
    int m_nCols = 0;
    int m_nRows = 0;
    int m_nLastRowCells = 0;
    int m_nCol = 0;
    int m_nRow = 0;
    RECT m_rcSource; ///< of the current cell in the picture
};
