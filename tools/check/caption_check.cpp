#include "caption_check.h"

#include "controls/itfmenu.h"
#include "controls/itftextbox.h"
#include "kernel/dialog_loader.h"
#include "kernel/own_names.h"

namespace
{

// The fonts of all states of a control, where there are such.
constexpr const char* STATE_SUFFIXES[] = {"", FONT_SUFFIX_ACTIVE, FONT_SUFFIX_DISABLED};

std::string OrDefault(const std::string& font, const char* otherwise)
{
    return font.empty() ? otherwise : font;
}

int Width(const RECT& rect)
{
    return rect.right - rect.left;
}

} // namespace

void CCaptionCheck::Check(const DialogRecord& record, const DialogRecord* table)
{
    switch (record.kind) {
    case KIND_BUTTON:
    case KIND_CHECKBOX:
        CheckWidth(record, OrDefault(record.font, FONT_BUTTON), Width(record.rcInner));
        break;
    case KIND_TEXTBOX:
        CheckTextBox(record);
        break;
    case KIND_COLUMN:
        CheckWidth(record, OrDefault(table != nullptr ? table->headerFont : "", FONT_BUTTON),
                   Width(record.rc));
        break;
    case KIND_MENUITEM:
        CheckWidth(record, FONT_MENU, Width(record.rc));
        if (record.text.size() >= ItfMenuItem::NAME_SIZE)
            m_Faults.Add(DIALOG_RESOURCE, record.line,
                         "\"" + record.text + "\" has more than " +
                             std::to_string(ItfMenuItem::NAME_SIZE - 1) + " characters");
        break;
    default:
        break;
    }
}

void CCaptionCheck::CheckText(const DialogRecord& record, int number, const char* text)
{
    DialogRecord filled = record;
    filled.text = text;
    m_strSource = "text " + std::to_string(number) + " ";
    Check(filled, nullptr);
    m_strSource.clear();
}

void CCaptionCheck::CheckTextBox(const DialogRecord& record)
{
    const std::uint32_t style = ParseControlStyle(record.style);
    const std::string font = OrDefault(record.captionFont, FONT_LIST);
    if ((style & TBSTYLE_HASCAPTION) == 0) {
        if ((style & TBSTYLE_NOVSCROLL) != 0)
            CheckLabel(record);
    } else if ((style & TBSTYLE_CAPTIONRIGHT) != 0) {
        CheckWidth(record, font, Width(record.rc) - record.rcInner.right - CAPTION_GAP);
    } else if ((style & TBSTYLE_ALIGNRIGHT) != 0) {
        CheckWidth(record, font, record.rcInner.left);
    } else {
        CheckWidth(record, font, Width(record.rc) - CAPTION_GAP);
    }
}

// A label's text wraps; what stands below its last line isn't shown.
void CCaptionCheck::CheckLabel(const DialogRecord& record)
{
    const std::string name = OrDefault(record.font, FONT_LIST);
    const CItfFont* font = m_Names.Font(name);
    if (font == nullptr || record.text.empty())
        return;
    const int lines = font->CountLines(&record.rcInner, record.text.c_str());
    const int room = record.rcInner.bottom - record.rcInner.top;
    if (lines == 1)
        CheckWidth(record, name, Width(record.rcInner));
    if (lines * font->GetHeight() > room)
        m_Faults.Add(DIALOG_RESOURCE, record.line,
                     m_strSource + "\"" + record.text + "\" takes " +
                         std::to_string(lines * font->GetHeight()) + " pixels in height with " + name +
                         ", its place has " + std::to_string(room));
}

void CCaptionCheck::CheckWidth(const DialogRecord& record, const std::string& font, int room)
{
    for (const char* suffix : STATE_SUFFIXES) {
        const CItfFont* measured = m_Names.Font(font + suffix);
        const int width = measured != nullptr ? measured->GetWidth(record.text.c_str()) : 0;
        if (width <= room || record.text.empty())
            continue;
        m_Faults.Add(DIALOG_RESOURCE, record.line,
                     m_strSource + "\"" + record.text + "\" is " + std::to_string(width) +
                         " pixels wide with " + font + suffix + ", its place has " + std::to_string(room));
        return;
    }
}
