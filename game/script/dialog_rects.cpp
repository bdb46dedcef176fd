#include "script/dialog_rects.h"

#include <algorithm>

#include "engine/names.h"
#include "keelworks/text_parser.h"
#include "platform/files.h"

namespace
{

constexpr const char* DIALOG_FILE = "resource\\txt_res\\itfdlg.ini";
constexpr const char* NAMES_FILE = "resource\\txt_res\\itfnames.ini";
constexpr const char* FONT_FOLDER = "resource\\txt_res\\";
constexpr const char* DEFAULT_LIST_FONT = "itfListFont";
constexpr int ROW_WITHOUT_COLUMN_X = 10;

/// How the fields of a record follow each other: S a text, Y a style (a text and a comma), a comma itself,
/// I a number, F a number with a fraction. The ids and rectangles stand at the given places of the numbers.
struct RecordForm {
    const char* keyword;
    const char* fields;
    int id;    ///< index of the id among the numbers, -1 for none
    int rect;  ///< index of the left edge
    int inner; ///< index of the inner rectangle's left edge, -1 for none
    int font;  ///< index of the font among the texts, -1 for none
};
constexpr RecordForm FORMS[] = {
    {"BUTTON", "SSSSYIIIIIIIII", 0, 1, 5, -1},
    {"CHECKBOX", "SSSSYIIIIIIIII", 0, 1, 5, -1},
    {"TABLE", "SSSYIIIIIIIII", 0, 1, 5, 1},
    {"COLUMN", "SYIIIIIII", 0, 3, -1, -1},
    {"TEXTBOX", "SSSSYIIIIIIIII", 0, 1, 5, -1},
    {"EDITBOX", "SSSYIIIIIIIII", 0, 1, 5, -1},
    {"LISTBOX", "SSYIIIIIIIII", 0, 1, -1, 1},
    {"DIALOG", "S,IIII", -1, 0, -1, -1},
    {"FLAGBOX", "SYIIIIIFFFFFF", 0, 1, -1, -1},
    {"SLIDER", "SYIIIIIIIII", 0, 1, 5, -1},
    {"PICTUREBOX", "SSYIIIIIIIIIIIIII", 0, 6, 10, -1},
    {"VIDEOBOX", "SSYIIIIIIIII", 0, 1, 5, -1},
    {"ANIMATIONBOX", "SYIIIIIIIII", 0, 1, 5, -1},
    {"MENU", "SSS,S,IIIII", 0, 1, -1, -1},
    {"MENUITEM", "ISS,S,IIIII", 1, 2, -1, -1},
};
constexpr std::size_t COLUMN_WIDTH_INDEX = 2;

struct Fields {
    std::vector<std::string> texts;
    std::vector<int> numbers;
};

RECT RectAt(const std::vector<int>& numbers, int index)
{
    const auto first = static_cast<std::size_t>(index);
    return {numbers[first], numbers[first + 1], numbers[first + 2], numbers[first + 3]};
}

bool ReadField(CTextParser& parser, char field, Fields& out, bool& ended)
{
    char text[MAX_PATH];
    int number = 0;
    float fraction = 0.0F;
    switch (field) {
    case 'S':
    case 'Y':
        if (!parser.ReadFileName(text, sizeof(text)))
            return false;
        out.texts.emplace_back(text);
        return field == 'S' || parser.SkipTillChar(',');
    case 'F':
        return parser.ReadFloatElem(',', '}', fraction, ended);
    case 'I':
        if (!parser.ReadIntElem(',', '}', number, ended))
            return false;
        out.numbers.push_back(number);
        return true;
    default:
        return parser.SkipTillChar(field);
    }
}

POINT Middle(const RECT& rect, POINT origin)
{
    return {origin.x + (rect.left + rect.right) / 2, origin.y + (rect.top + rect.bottom) / 2};
}

} // namespace

bool CDialogRects::Read(const std::string& name, Section& out, std::string& error) const
{
    ds_file_buffered file;
    try {
        file.open(DIALOG_FILE, false);
    } catch (const fopen_exception& exception) {
        error = exception.what();
        return false;
    }
    CTextParser parser(&file, false);
    bool good = parser.SeekToToken(name.c_str()) && parser.SkipTillChar('{');
    for (bool ended = false; good && !ended;) {
        char keyword[MAX_PATH];
        good = parser.ReadFileName(keyword, sizeof(keyword)) && parser.SkipTillChar(',');
        if (!good)
            break;
        const auto form = std::ranges::find_if(
            FORMS, [&keyword](const RecordForm& known) { return SameName(known.keyword, keyword); });
        if (form == std::end(FORMS)) {
            error = std::string(DIALOG_FILE) + "(" + std::to_string(parser.GetLine()) +
                    "): there is no keyword \"" + keyword + "\"";
            return false;
        }
        Fields fields;
        for (const char* field = form->fields; good && *field != '\0'; ++field)
            good = !ended && ReadField(parser, *field, fields, ended);
        if (!good)
            break;
        Record record;
        record.keyword = form->keyword;
        record.rc = RectAt(fields.numbers, form->rect);
        record.rcInner = {0, 0, record.rc.right - record.rc.left, record.rc.bottom - record.rc.top};
        if (form->id >= 0)
            record.nId = fields.numbers[static_cast<std::size_t>(form->id)];
        if (form->font >= 0)
            record.font = fields.texts[static_cast<std::size_t>(form->font)];
        if (form->inner >= 0) {
            const RECT inner = RectAt(fields.numbers, form->inner);
            if (std::min({inner.left, inner.top, inner.right, inner.bottom}) >= 0)
                record.rcInner = inner;
        }
        record.nOwner = fields.numbers[0];
        if (record.keyword == "COLUMN")
            record.nWidth = fields.numbers[COLUMN_WIDTH_INDEX];
        out.push_back(record);
    }
    if (!good)
        error = parser.DescribeError();
    return good;
}

const CDialogRects::Section* CDialogRects::Find(const std::string& name, std::string& error)
{
    const std::string key = LowerCase(name);
    if (const auto found = m_Sections.find(key); found != m_Sections.end())
        return &found->second;
    Section section;
    if (!Read(name, section, error))
        return nullptr;
    return &(m_Sections[key] = section);
}

POINT CDialogRects::DialogOrigin(const Section& section)
{
    const auto dialog = std::ranges::find(section, "DIALOG", &Record::keyword);
    return dialog == section.end() ? POINT{} : POINT{dialog->rc.left, dialog->rc.top};
}

const CDialogRects::Record* CDialogRects::FindRecord(const std::string& name, int id, std::string& error,
                                                     const Section*& section)
{
    section = Find(name, error);
    if (section == nullptr)
        return nullptr;
    const auto record = std::ranges::find_if(*section, [id](const Record& known) {
        return known.nId == id && known.keyword != "DIALOG" && known.keyword != "COLUMN" &&
               known.keyword != "MENUITEM";
    });
    if (record != section->end())
        return &*record;
    error = "section " + name + " has no control " + std::to_string(id);
    return nullptr;
}

bool CDialogRects::Control(const std::string& name, int id, POINT& out, std::string& error)
{
    const Section* section = nullptr;
    const Record* record = FindRecord(name, id, error, section);
    if (record == nullptr)
        return false;
    out = Middle(record->rc, DialogOrigin(*section));
    return true;
}

bool CDialogRects::Row(const std::string& name, int id, int row, POINT& out, std::string& error)
{
    const Section* section = nullptr;
    const Record* table = FindRecord(name, id, error, section);
    if (table == nullptr)
        return false;
    if (table->keyword != "TABLE" && table->keyword != "LISTBOX") {
        error = "control " + std::to_string(id) + " of section " + name + " is no table";
        return false;
    }
    const int height = FontLineHeight(table->font.empty() ? DEFAULT_LIST_FONT : table->font, error);
    if (height <= 0)
        return false;
    const int lines = (table->rcInner.bottom - table->rcInner.top) / height;
    if (row < 0 || row >= lines) {
        error = "the table shows " + std::to_string(lines) + " lines";
        return false;
    }
    const auto column = std::ranges::find_if(*section, [id](const Record& known) {
        return known.keyword == "COLUMN" && known.nOwner == id && known.nWidth > 0;
    });
    const int x = column == section->end() ? ROW_WITHOUT_COLUMN_X : column->nWidth / 2;
    const POINT origin = DialogOrigin(*section);
    out = {origin.x + table->rc.left + table->rcInner.left + x,
           origin.y + table->rc.top + table->rcInner.top + row * height + height / 2};
    return true;
}

bool CDialogRects::Item(const std::string& name, int menu, int item, POINT& out, std::string& error)
{
    const Section* section = nullptr;
    const Record* owner = FindRecord(name, menu, error, section);
    if (owner == nullptr)
        return false;
    const auto found = std::ranges::find_if(*section, [=](const Record& known) {
        return known.keyword == "MENUITEM" && known.nOwner == menu && known.nId == item;
    });
    if (found == section->end()) {
        error =
            "menu " + std::to_string(menu) + " of section " + name + " has no item " + std::to_string(item);
        return false;
    }
    const POINT origin = DialogOrigin(*section);
    out = Middle(found->rc, {origin.x + owner->rc.left, origin.y + owner->rc.top});
    return true;
}

namespace
{

/// The file of a logical font name, empty when it has none.
std::string FontFile(const std::string& font)
{
    ds_file_buffered file(NAMES_FILE, false);
    CTextParser parser(&file, false);
    bool good = parser.SeekToToken("FontMap") && parser.SkipTillChar('{');
    while (good && parser.SkipSpace(false) != '}') {
        char name[MAX_PATH];
        char path[MAX_PATH];
        good = parser.ReadFileName(name, sizeof(name)) && parser.ReadFileName(path, sizeof(path));
        if (good && SameName(name, font))
            return path;
        if (good && parser.SkipSpace(false) == ',')
            parser.SkipSpace(true);
    }
    return {};
}

/// The height of the blank in a font file, 0 when it has none.
int BlankHeight(const std::string& path)
{
    ds_file_buffered file(path.c_str(), false);
    CTextParser parser(&file, false);
    bool good = parser.SeekToToken("symbols") && parser.SkipTillChar('{');
    for (bool ended = false; good && !ended;) {
        char c = '\0';
        int numbers[6] = {};
        good = parser.SkipTillChar('"') && file.read(&c, 1) == 1 && parser.SkipTillChar('"') &&
               parser.SkipTillChar(',');
        for (int i = 0; good && i < 5; ++i)
            good = parser.ReadIntElem(',', numbers[i]);
        good = good && parser.ReadIntElem(',', '}', numbers[5], ended);
        if (good && c == ' ')
            return numbers[3] - numbers[1];
    }
    return 0;
}

} // namespace

int FontLineHeight(const std::string& font, std::string& error)
{
    try {
        const std::string file = FontFile(font);
        const int height = file.empty() ? 0 : BlankHeight(FONT_FOLDER + file);
        if (height <= 0)
            error = "font " + font + " has no name in the names file or no blank";
        return height;
    } catch (const fopen_exception& exception) {
        error = exception.what();
        return 0;
    }
}
