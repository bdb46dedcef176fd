#include "dialog_reader.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <sstream>

#include "engine/names.h"
#include "keelworks/text_number.h"
#include "kernel/dialog_loader.h"
#include "kernel/toolkit.h"

namespace
{

/// How the fields of a record follow each other:
///   T a text, N a name that nothing reads, P a sprite, F a font, H a header font, C a caption font,
///   Y a style with a comma behind it, M one that the form gives a comma,
///   o the table or menu, i the id, n a column's index, s a size or count,
///   W the window rectangle, I the inner one, f the six numbers of a flag, and a comma itself.
struct DialogForm {
    const char* keyword;
    ItfControlKind kind;
    const char* fields;
};

constexpr DialogForm FORMS[] = {
    {"BUTTON", KIND_BUTTON, "TFPPY,iWI"},
    {"CHECKBOX", KIND_CHECKBOX, "TFPPY,iWI"},
    {"TABLE", KIND_TABLE, "PFHY,iWI"},
    {"COLUMN", KIND_COLUMN, "TY,onsW"},
    {"LISTBOX", KIND_LISTBOX, "PFY,iWI"},
    {"TEXTBOX", KIND_TEXTBOX, "TPFCY,iWI"},
    {"EDITBOX", KIND_EDITBOX, "TPFY,iWI"},
    {"DIALOG", KIND_DIALOG, "P,W"},
    {"SLIDER", KIND_SLIDER, "PY,iWI"},
    {"FLAGBOX", KIND_FLAGBOX, "PM,iWf"},
    {"PICTUREBOX", KIND_PICTUREBOX, "PPY,isssssWI"},
    {"VIDEOBOX", KIND_VIDEOBOX, "TPY,iWI"},
    {"ANIMATIONBOX", KIND_ANIMATIONBOX, "TY,iWI"},
    {"MENU", KIND_MENU, "PNN,N,iW"},
    {"MENUITEM", KIND_MENUITEM, "oTM,N,iW"},
};

const DialogForm* FindForm(const std::string& keyword)
{
    const auto found = std::ranges::find_if(
        FORMS, [&keyword](const DialogForm& form) { return SameName(form.keyword, keyword); });
    return found != std::end(FORMS) ? &*found : nullptr;
}

// What may be a keyword and can't be a number.
bool StartsWithLetter(const ResourceToken& token)
{
    return std::isalpha(static_cast<unsigned char>(token.text[0])) != 0;
}

bool IsStyleName(ItfControlKind kind, const std::string& name)
{
    if (kind == KIND_FLAGBOX)
        return name == FLAG_ON_THE_RIGHT;
    if (kind == KIND_MENUITEM)
        return name == "DISABLED" || name == "POPUP";
    return std::ranges::any_of(ControlStyleNames(), [&](const ControlStyleName& known) {
        return name == known.name && (known.kinds & StyleKind(kind)) != 0;
    });
}

} // namespace

const ResourceToken& CDialogReader::Next() const
{
    return m_Tokens[std::min(m_nPos + 1, m_Tokens.size() - 1)];
}

void CDialogReader::Tell(int line, const std::string& text)
{
    m_Faults.Add(DIALOG_RESOURCE, line, text);
}

const char* CDialogReader::KeywordOf(ItfControlKind kind)
{
    return std::ranges::find(FORMS, kind, &DialogForm::kind)->keyword;
}

std::vector<DialogSection> CDialogReader::Read()
{
    m_Tokens = ReadTokens(DIALOG_RESOURCE, m_Faults);
    m_nPos = 0;
    std::vector<DialogSection> sections;
    bool lost = false; // told already
    while (Now().kind != ResourceToken::Kind::End) {
        if (Now().kind == ResourceToken::Kind::Word && Next().IsMark('{')) {
            sections.push_back(ReadSection());
            lost = false;
            continue;
        }
        if (!lost)
            Tell(Now().line, "expected a section's name and {, found " + Now().Describe());
        lost = true;
        ++m_nPos;
    }
    return sections;
}

DialogSection CDialogReader::ReadSection()
{
    DialogSection section;
    section.name = Now().text;
    section.line = Now().line;
    m_nPos += 2;
    m_bEnded = false;
    while (!m_bEnded && AtRecord(section)) {
        m_nRecordLine = Now().line;
        try {
            section.records.push_back(ReadRecord());
        } catch (const FormFault& fault) {
            Tell(fault.line, fault.text);
            if (!m_bEnded)
                GoToNextRecord();
        }
    }
    return section;
}

// Ends the section where no record can follow.
bool CDialogReader::AtRecord(const DialogSection& section)
{
    if (Now().IsMark('}')) {
        Tell(Now().line, "expected a record in front of the }");
        ++m_nPos;
        return false;
    }
    if (Now().kind == ResourceToken::Kind::End ||
        (Now().kind == ResourceToken::Kind::Word && Next().IsMark('{'))) {
        Tell(Now().line, "the section " + section.name + " isn't closed");
        return false;
    }
    return true;
}

// A section's end that comes on the way is taken.
void CDialogReader::GoToNextRecord()
{
    while (Now().kind != ResourceToken::Kind::End) {
        if (Now().IsMark('}')) {
            ++m_nPos;
            m_bEnded = true;
            return;
        }
        if (Now().kind == ResourceToken::Kind::Word && Now().firstOnLine && StartsWithLetter(Now()))
            return;
        ++m_nPos;
    }
}

DialogRecord CDialogReader::ReadRecord()
{
    const ResourceToken keyword = Now();
    const DialogForm* form = keyword.kind == ResourceToken::Kind::Word ? FindForm(keyword.text) : nullptr;
    ++m_nPos;
    if (form == nullptr)
        throw FormFault{keyword.line, "expected a keyword, found " + keyword.Describe()};
    DialogRecord record;
    record.kind = form->kind;
    record.line = keyword.line;
    ReadComma();
    for (const char* field = form->fields; *field != '\0'; ++field) {
        if (m_bEnded)
            throw FormFault{m_nRecordLine, std::string("the section ends within this ") + form->keyword};
        ReadField(*field, record);
    }
    return record;
}

void CDialogReader::ReadField(char field, DialogRecord& record)
{
    switch (field) {
    case 'T':
        record.text = ReadText(MAX_RESOURCE_TEXT);
        break;
    case 'N':
        ReadText(MAX_LOGICAL_NAME);
        break;
    case 'P':
        ReadName(false);
        break;
    case 'F':
        record.font = ReadName(true);
        break;
    case 'H':
        record.headerFont = ReadName(true);
        break;
    case 'C':
        record.captionFont = ReadName(true);
        break;
    case 'Y':
    case 'M':
        record.style = ReadStyle(record.kind);
        break;
    case 'o':
        record.owner = ReadInt();
        break;
    case 'i':
        record.id = ReadInt();
        break;
    case 'n':
        record.column = ReadInt();
        break;
    case 's': // a header cell without a column has no use for its width
        if (record.column >= 0)
            record.width = ReadSize();
        else
            ReadInt();
        break;
    case 'W':
        record.rc = ReadRect();
        record.rcInner = {0, 0, record.rc.right - record.rc.left, record.rc.bottom - record.rc.top};
        break;
    case 'I': {
        const RECT inner = ReadRect();
        if (std::min({inner.left, inner.top, inner.right, inner.bottom}) >= 0)
            record.rcInner = inner;
        break;
    }
    case 'f':
        record.rcFlag = ReadFlagRect();
        break;
    default:
        ReadComma();
        break;
    }
}

// One comma in front of a text may stand there or not.
std::string CDialogReader::ReadText(std::size_t maxLength)
{
    if (Now().IsMark(',') && Next().kind == ResourceToken::Kind::Text)
        ++m_nPos;
    const ResourceToken& token = Now();
    if (token.kind == ResourceToken::Kind::Broken)
        throw FormFault{token.line, token.text};
    if (token.kind != ResourceToken::Kind::Text)
        throw FormFault{m_nRecordLine, "expected a text in quotes, found " + token.Describe()};
    if (token.text.size() > maxLength)
        Tell(token.line, token.Describe() + " has more than " + std::to_string(maxLength) + " characters");
    ++m_nPos;
    return token.text;
}

std::string CDialogReader::ReadName(bool isFont)
{
    const std::string name = ReadText(MAX_LOGICAL_NAME);
    const bool known = isFont ? m_Names.HasFont(name) : m_Names.HasSprite(name);
    if (!name.empty() && !known)
        Tell(m_nRecordLine,
             std::string("the ") + (isFont ? "font" : "sprite") + " \"" + name + "\" isn't in itfnames.ini");
    return name;
}

std::string CDialogReader::ReadStyle(ItfControlKind kind)
{
    const std::string style = ReadText(MAX_RESOURCE_TEXT);
    std::string separated = style;
    std::ranges::replace_if(
        separated, [](unsigned char c) { return std::isalnum(c) == 0 && c != '_'; }, ' ');
    std::istringstream names(separated);
    for (std::string name; names >> name;) {
        if (!IsStyleName(kind, name))
            Tell(m_nRecordLine, "there is no style " + name + " for a " + KeywordOf(kind));
    }
    return style;
}

void CDialogReader::ReadComma()
{
    if (!Now().IsMark(','))
        throw FormFault{m_nRecordLine, "expected a comma, found " + Now().Describe()};
    ++m_nPos;
}

// With what stands behind it: a comma, or the section's end.
std::string CDialogReader::ReadNumberWord()
{
    if (m_bEnded)
        throw FormFault{m_nRecordLine, "the section ends within this record"};
    const ResourceToken number = Now();
    if (number.kind != ResourceToken::Kind::Word || StartsWithLetter(number))
        throw FormFault{m_nRecordLine, "expected a number, found " + number.Describe()};
    if (!Next().IsMark(',') && !Next().IsMark('}'))
        throw FormFault{number.line,
                        "expected a comma or } behind " + number.Describe() + ", found " + Next().Describe()};
    m_bEnded = Next().IsMark('}');
    m_nPos += 2;
    return number.text;
}

int CDialogReader::ReadInt()
{
    const std::string word = ReadNumberWord();
    const std::optional<int> number = ParseTextInt(word);
    if (!number)
        throw FormFault{m_nRecordLine, "expected a number, found " + word};
    return *number;
}

int CDialogReader::ReadSize()
{
    const int size = ReadInt();
    if (size < 0 || size > MAX_RESOURCE_COORDINATE)
        throw FormFault{m_nRecordLine, std::to_string(size) + " is no size or count"};
    return size;
}

RECT CDialogReader::ReadRect()
{
    std::array<int, 4> sides;
    for (int& side : sides) {
        side = ReadInt();
        if (side < -MAX_RESOURCE_COORDINATE || side > MAX_RESOURCE_COORDINATE)
            throw FormFault{m_nRecordLine, std::to_string(side) + " is no coordinate"};
    }
    return {sides[0], sides[1], sides[2], sides[3]};
}

// Left, top, a number without a meaning, width, height, speed.
RECT CDialogReader::ReadFlagRect()
{
    std::array<float, 6> numbers = {};
    for (float& number : numbers) {
        const std::string word = ReadNumberWord();
        const std::optional<float> read = ParseTextFloat(word);
        if (!read || std::abs(*read) > static_cast<float>(MAX_RESOURCE_COORDINATE))
            throw FormFault{m_nRecordLine, "expected a number, found " + word};
        number = *read;
    }
    return {static_cast<LONG>(numbers[0]), static_cast<LONG>(numbers[1]),
            static_cast<LONG>(numbers[0] + numbers[3]), static_cast<LONG>(numbers[1] + numbers[4])};
}
