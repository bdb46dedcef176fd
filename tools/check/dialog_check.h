#pragma once
// The dialog resource against what the dialogs' classes look for, and every rectangle against what it lies
// in.

#include "caption_check.h"
#include "dialog_reader.h"
#include "flow/dialog_contract.h"
#include "logic/text_table.h"

class CDialogCheck
{
  public:
    /// Both must outlive the check.
    CDialogCheck(const CNameCheck& names, CFaults& faults)
        : m_Names(names), m_Faults(faults), m_Captions(names, faults)
    {
    }

    void Run();

  private:
    void CheckSection(const DialogSection& section, const DialogRule& rule);
    void CheckRule(const DialogSection& section, const DialogRecord& record, const DialogRule& rule);
    void CheckLacking(const DialogSection& section, const DialogRule& rule);
    void CheckRects(const DialogSection& section, const DialogRecord& record);
    void CheckInside(int line, const RECT& rect, int width, int height, const char* what, const char* of);
    void CheckTable(const DialogSection& section, const DialogRecord& record, int wanted);
    void Tell(int line, const std::string& text);

    const CNameCheck& m_Names;
    CFaults& m_Faults;
    CCaptionCheck m_Captions;
    CTextTable m_Texts; ///< for the captions that the code sets
};
