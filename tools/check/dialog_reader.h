#pragma once
// The sections of the dialog resource, read record by record: what is wrong with one is told, and the next
// one is read all the same.

#include <string>
#include <vector>

#include "faults.h"
#include "kernel/itfdialog.h"
#include "name_check.h"
#include "platform/types.h"
#include "resource_tokens.h"

/// What a record gives; a field that its keyword doesn't have is empty.
struct DialogRecord {
    ItfControlKind kind = KIND_DIALOG;
    int line = 0;
    std::string text;
    std::string font;
    std::string headerFont;
    std::string captionFont;
    std::string style;
    int id = 0;
    int owner = 0;  ///< of an item or a column: the menu or table
    int column = 0; ///< its index
    int width = 0;  ///< its width in pixels
    RECT rc;
    RECT rcInner; ///< the whole control where the resource gives none
    RECT rcFlag;  ///< of a flag box: where the flag waves on the screen
};

struct DialogSection {
    std::string name;
    int line = 0;
    std::vector<DialogRecord> records; ///< those without a fault in their form
};

class CDialogReader
{
  public:
    /// Both must outlive the reader.
    CDialogReader(const CNameCheck& names, CFaults& faults) : m_Names(names), m_Faults(faults) {}

    std::vector<DialogSection> Read();
    /// The file's last line.
    int LastLine() const { return m_Tokens.back().line; }
    /// The keyword of a kind's records.
    static const char* KeywordOf(ItfControlKind kind);

  private:
    struct FormFault {
        int line;
        std::string text;
    };

    DialogSection ReadSection();
    bool AtRecord(const DialogSection& section);
    DialogRecord ReadRecord();
    void ReadField(char field, DialogRecord& record);
    std::string ReadText(std::size_t maxLength);
    std::string ReadName(bool isFont);
    std::string ReadStyle(ItfControlKind kind);
    void ReadComma();
    std::string ReadNumberWord();
    int ReadInt();
    int ReadSize();
    RECT ReadRect();
    RECT ReadFlagRect();
    void GoToNextRecord();
    const ResourceToken& Now() const { return m_Tokens[m_nPos]; }
    const ResourceToken& Next() const;
    void Tell(int line, const std::string& text);

    const CNameCheck& m_Names;
    CFaults& m_Faults;
    std::vector<ResourceToken> m_Tokens;
    std::size_t m_nPos = 0;
    int m_nRecordLine = 0;
    bool m_bEnded = false; ///< the section's brace has come
};
