#pragma once
// Whether captions have room, measured with the fonts that draw them.

#include <string>

#include "dialog_reader.h"

class CCaptionCheck
{
  public:
    /// Both must outlive the check.
    CCaptionCheck(const CNameCheck& names, CFaults& faults) : m_Names(names), m_Faults(faults) {}

    /// Nothing for a kind without captions. table: the record of a column's table, else null.
    void Check(const DialogRecord& record, const DialogRecord* table);
    /// The same for a text, of that number, that the code puts into the control.
    void CheckText(const DialogRecord& record, int number, const char* text);

  private:
    void CheckTextBox(const DialogRecord& record);
    void CheckLabel(const DialogRecord& record);
    void CheckWidth(const DialogRecord& record, const std::string& font, int room);

    const CNameCheck& m_Names;
    CFaults& m_Faults;
    std::string m_strSource; ///< before the text in a fault: where it comes from, if not from the record
};
