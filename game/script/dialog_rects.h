#pragma once
// Where the controls of the dialogs stand, read from the dialog resource itself, so that a script names a
// control and not a place.

#include <map>
#include <string>
#include <vector>

#include "platform/types.h"

/// Reads a section of `resource\txt_res\itfdlg.ini` when it is asked for the first time. All places are on
/// the screen surface, with the dialog's own rectangle counted in. A failed call gives the reason in `error`.
class CDialogRects
{
  public:
    /// The middle of the control's rectangle; of two with the same id the earlier one's.
    bool Control(const std::string& section, int id, POINT& out, std::string& error);
    /// The middle of the visible line `row`, counted from 0, in the first column of a table or list box.
    bool Row(const std::string& section, int id, int row, POINT& out, std::string& error);
    bool Item(const std::string& section, int menu, int item, POINT& out, std::string& error);

  private:
    struct Record {
        std::string keyword; ///< in capitals
        int nId = 0;
        int nOwner = 0; ///< of an item or a column: the menu or table
        int nWidth = 0; ///< of a column
        std::string font;
        RECT rc;
        RECT rcInner; ///< the whole control where the resource gives none
    };
    using Section = std::vector<Record>;

    const Section* Find(const std::string& name, std::string& error);
    bool Read(const std::string& name, Section& out, std::string& error) const;
    static POINT DialogOrigin(const Section& section);
    const Record* FindRecord(const std::string& name, int id, std::string& error, const Section*& section);

    std::map<std::string, Section> m_Sections;
};

/// The line height of a font by its logical name: the height of its blank. 0, with the reason in `error`,
/// when names, font or blank are missing.
int FontLineHeight(const std::string& font, std::string& error);
