#include "dialog_check.h"

#include <algorithm>
#include <set>

#include "engine/names.h"
#include "text_check.h"

namespace
{

// Those that a dialog looks up by their ids; the others belong to one of these.
bool IsControl(const DialogRecord& record)
{
    return record.kind != KIND_DIALOG && record.kind != KIND_COLUMN && record.kind != KIND_MENUITEM;
}

// Of a column or an item: its table or menu above it. Null when there is none, and for other kinds.
const DialogRecord* OwnerOf(const DialogSection& section, const DialogRecord& record)
{
    if (record.kind != KIND_COLUMN && record.kind != KIND_MENUITEM)
        return nullptr;
    const ItfControlKind wanted = record.kind == KIND_COLUMN ? KIND_TABLE : KIND_MENU;
    for (const DialogRecord& owner : section.records) {
        if (&owner == &record)
            return nullptr;
        if (owner.kind == wanted && owner.id == record.owner)
            return &owner;
    }
    return nullptr;
}

// Null for a control that the class doesn't know.
const ControlRule* FindRule(const DialogRule& rule, const DialogRecord& record)
{
    const bool item = record.kind == KIND_MENUITEM;
    const auto found = std::ranges::find_if(rule.controls, [&](const ControlRule& control) {
        return control.id == record.id && (control.kind == KIND_MENUITEM) == item;
    });
    return found != rule.controls.end() ? &*found : nullptr;
}

} // namespace

void CDialogCheck::Tell(int line, const std::string& text)
{
    m_Faults.Add(DIALOG_RESOURCE, line, text);
}

void CDialogCheck::Run()
{
    {
        const CDebugCapture untold; // the check of the texts tells what is wrong with them
        m_Texts.Load(TEXT_RESOURCE);
    }
    CDialogReader reader(m_Names, m_Faults);
    const std::vector<DialogSection> sections = reader.Read();
    std::set<std::string> seen;
    for (const DialogSection& section : sections) {
        const DialogRule* rule = FindDialogRule(section.name.c_str());
        if (!seen.insert(LowerCase(section.name)).second)
            Tell(section.line, "there is a section " + section.name + " above already, which hides this one");
        else if (rule == nullptr)
            Tell(section.line, "no dialog reads the section " + section.name);
        else
            CheckSection(section, *rule);
    }
    for (const DialogRule& rule : DialogContract()) {
        if (!seen.contains(LowerCase(rule.section)))
            Tell(reader.LastLine(), std::string("there is no section ") + rule.section);
    }
}

void CDialogCheck::CheckSection(const DialogSection& section, const DialogRule& rule)
{
    std::set<std::pair<bool, int>> ids;
    for (const DialogRecord& record : section.records) {
        CheckRects(section, record);
        m_Captions.Check(record, OwnerOf(section, record));
        const bool item = record.kind == KIND_MENUITEM;
        if (!item && !IsControl(record))
            continue;
        if (record.kind == KIND_TEXTBOX && record.id == CONTROL_ID_NONE)
            continue;
        if (!ids.emplace(item, record.id).second)
            Tell(record.line, "the id " + std::to_string(record.id) + " stands in this section already");
        else
            CheckRule(section, record, rule);
    }
    CheckLacking(section, rule);
}

void CDialogCheck::CheckRule(const DialogSection& section, const DialogRecord& record, const DialogRule& rule)
{
    const std::string id = std::to_string(record.id);
    const ControlRule* known = FindRule(rule, record);
    if (known == nullptr) {
        Tell(record.line,
             section.name + " knows no " + (record.kind == KIND_MENUITEM ? "menu item " : "control ") + id);
        return;
    }
    if (known->kind != KIND_ANY && known->kind != record.kind) {
        Tell(record.line, "control " + id + " of " + section.name + " has to be of the kind " +
                              CDialogReader::KeywordOf(known->kind));
        return;
    }
    for (const int number : known->texts)
        m_Captions.CheckText(record, number, m_Texts.GetText(number));
    if (record.kind == KIND_TABLE)
        CheckTable(section, record, known->columns);
}

void CDialogCheck::CheckTable(const DialogSection& section, const DialogRecord& record, int wanted)
{
    const auto columns = std::ranges::count_if(section.records, [&record](const DialogRecord& column) {
        return column.kind == KIND_COLUMN && column.owner == record.id && column.column >= 0;
    });
    const std::string id = std::to_string(record.id);
    if (columns != wanted)
        Tell(record.line, "table " + id + " of " + section.name + " has to have " + std::to_string(wanted) +
                              " columns, not " + std::to_string(columns));
    int right = record.rcInner.left;
    for (const DialogRecord& column : section.records) {
        if (column.kind != KIND_COLUMN || column.owner != record.id || column.column < 0)
            continue;
        if (column.column >= columns)
            Tell(column.line, "there is no column " + std::to_string(column.column) + " in table " + id +
                                  " to sort by, they count from 0");
        right += column.width;
    }
    const int beyond = right - (record.rc.right - record.rc.left);
    if (beyond > 0)
        Tell(record.line,
             "the columns of table " + id + " end " + std::to_string(beyond) + " pixels right of it");
}

void CDialogCheck::CheckLacking(const DialogSection& section, const DialogRule& rule)
{
    for (const ControlRule& control : rule.controls) {
        const bool present = std::ranges::any_of(section.records, [&control](const DialogRecord& record) {
            return record.kind == control.kind && record.id == control.id;
        });
        if (control.required && !present)
            Tell(section.line, section.name + " lacks the " + CDialogReader::KeywordOf(control.kind) + " " +
                                   std::to_string(control.id));
    }
    if (std::ranges::none_of(section.records, [](const DialogRecord& r) { return r.kind == KIND_DIALOG; }))
        Tell(section.line, section.name + " has no DIALOG record, which gives it its place");
}

void CDialogCheck::CheckRects(const DialogSection& section, const DialogRecord& record)
{
    if (record.kind == KIND_DIALOG) {
        CheckInside(record.line, record.rc, SCREEN_WIDTH, SCREEN_HEIGHT, "the dialog", "the screen");
        return;
    }
    if (!IsControl(record)) {
        const DialogRecord* owner = OwnerOf(section, record);
        const char* what = record.kind == KIND_COLUMN ? "table" : "menu";
        const std::string place = std::string("the ") + what;
        if (owner == nullptr)
            Tell(record.line, std::string("there is no ") + what + " " + std::to_string(record.owner) +
                                  " above this record");
        else
            CheckInside(record.line, record.rc, owner->rc.right - owner->rc.left,
                        owner->rc.bottom - owner->rc.top, "the rectangle", place.c_str());
        return;
    }
    const auto dialog = std::ranges::find(section.records, KIND_DIALOG, &DialogRecord::kind);
    if (dialog == section.records.end())
        return;
    const RECT& rc = dialog->rc;
    CheckInside(record.line, record.rc, rc.right - rc.left, rc.bottom - rc.top, "the rectangle",
                "the dialog");
    CheckInside(record.line, record.rcInner, record.rc.right - record.rc.left,
                record.rc.bottom - record.rc.top, "the inner rectangle", "the control");
    if (record.kind == KIND_FLAGBOX)
        CheckInside(record.line, record.rcFlag, SCREEN_WIDTH, SCREEN_HEIGHT, "the flag", "the screen");
}

void CDialogCheck::CheckInside(int line, const RECT& rect, int width, int height, const char* what,
                               const char* of)
{
    const bool inside = rect.left >= 0 && rect.top >= 0 && rect.right <= width && rect.bottom <= height;
    const bool turned = rect.right < rect.left || rect.bottom < rect.top;
    if (inside && !turned)
        return;
    Tell(line, std::string(what) + " " + std::to_string(rect.left) + ", " + std::to_string(rect.top) + ", " +
                   std::to_string(rect.right) + ", " + std::to_string(rect.bottom) +
                   (turned ? " has a negative size" : std::string(" isn't within ") + of));
}
