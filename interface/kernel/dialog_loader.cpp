#include "kernel/dialog_loader.h"

#include <new>
#include <strings.h>

#include "controls/itfanimationbox.h"
#include "controls/itfbutton.h"
#include "controls/itfeditbox.h"
#include "controls/itfflagbox.h"
#include "controls/itflistbox.h"
#include "controls/itfmenu.h"
#include "controls/itfpicturebox.h"
#include "controls/itfreportbox.h"
#include "controls/itfscrollbar.h"
#include "controls/itftextbox.h"
#include "controls/itfvideobox.h"
#include "platform/system.h"

namespace
{

// Sizes of the string fields, with their terminating zero.
constexpr std::size_t TEXT_FIELD = MAX_RESOURCE_TEXT + 1;
constexpr std::size_t NAME_FIELD = MAX_LOGICAL_NAME + 1;

// The floats behind the rectangle of a flag box.
constexpr std::size_t FLAG_FLOATS = 6;

constexpr std::uint32_t BUTTONS = StyleKind(KIND_BUTTON) | StyleKind(KIND_CHECKBOX);
constexpr std::uint32_t TEXTBOXES = StyleKind(KIND_TEXTBOX);
constexpr std::uint32_t EDITBOXES = StyleKind(KIND_EDITBOX);
constexpr std::uint32_t LISTBOXES = StyleKind(KIND_LISTBOX);
constexpr std::uint32_t TABLES = StyleKind(KIND_TABLE);
constexpr std::uint32_t COLUMNS = StyleKind(KIND_COLUMN);
constexpr std::uint32_t SCROLLED = TEXTBOXES | LISTBOXES | TABLES;
constexpr std::uint32_t WITH_SPRITE = BUTTONS | SCROLLED | EDITBOXES | StyleKind(KIND_SLIDER) |
                                      StyleKind(KIND_PICTUREBOX) | StyleKind(KIND_VIDEOBOX);
constexpr std::uint32_t NO_CONTROL = 0; // dialogs are shaded, and have no style in the resource

// The same bit means different things in different classes; a class reads only its own names.
constexpr ControlStyleName STYLE_NAMES[] = {
    {"ITFBTSTYLE_MANUAL", 0x100000, BUTTONS},
    {"TBSTYLE_CENTERED", 0x30000, TEXTBOXES},
    {"TBSTYLE_CENTER_VERT", 0x20000, TEXTBOXES},
    {"TBSTYLE_CENTER_HOR", 0x10000, TEXTBOXES},
    {"TBSTYLE_NOVSCROLL", 0x40000, TEXTBOXES | EDITBOXES},
    {"TBSTYLE_HASCAPTION", 0x80000, TEXTBOXES | EDITBOXES},
    {"TBSTYLE_CAPTIONRIGHT", 0x100000, TEXTBOXES},
    {"TBSTYLE_ALIGNRIGHT", 0x200000, TEXTBOXES},
    {"LBSTYLE_NOSELECT", 0x10000000, LISTBOXES},
    {"LBSTYLE_RIGHT", 0x80000000, LISTBOXES},
    {"LBSTYLE_CENTER", 0x40000000, LISTBOXES},
    {"RBSTYLE_NOSELECT", 0x1000000, TABLES},
    {"RBSTYLE_NOSORT", 0x4000000, TABLES},
    {"RBCOL_RIGHT", 0x80000000, COLUMNS},
    {"RBCOL_CENTER", 0x40000000, COLUMNS},
    {"RBCOL_NUMBER", 0x2000000, COLUMNS},
    {"RBCOL_FILEDIR", 0x8000000, COLUMNS},
    {"IWS_SHADE", IWS_SHADE, NO_CONTROL},
    {"IWS_BK_KEYCOLOR", IWS_BK_KEYCOLOR, WITH_SPRITE},
    {"VSTYLE_LOOP", 0x10000, StyleKind(KIND_VIDEOBOX)},
    {"IWS_VSCROLL", IWS_VSCROLL, SCROLLED},
    {"SBSTYLE_NOARROWS", 0x20000, StyleKind(KIND_SLIDER)},
    {"EDS_READONLY", 0x20000, EDITBOXES},
};

// A name that may be left out is an empty string in the resource and null in the code.
const char* OrNull(const std::string& name)
{
    return name.empty() ? nullptr : name.c_str();
}

bool HasName(const std::vector<NameRow>& map, const std::string& name)
{
    for (const NameRow& row : map) {
        if (strcasecmp(row.name.c_str(), name.c_str()) == 0)
            return true;
    }
    return false;
}

} // namespace

std::span<const ControlStyleName> ControlStyleNames()
{
    return STYLE_NAMES;
}

std::uint32_t ParseControlStyle(const std::string& text)
{
    std::uint32_t style = 0;
    for (const ControlStyleName& name : STYLE_NAMES) {
        if (text.find(name.name) != std::string::npos)
            style |= name.value;
    }
    return style;
}

const CDialogLoader::Keyword CDialogLoader::s_Keywords[] = {
    {"TABLE", &CDialogLoader::ReadTable},
    {"COLUMN", &CDialogLoader::ReadColumn},
    {"LISTBOX", &CDialogLoader::ReadListBox},
    {"BUTTON", &CDialogLoader::ReadButton},
    {"TEXTBOX", &CDialogLoader::ReadTextBox},
    {"CHECKBOX", &CDialogLoader::ReadCheckBox},
    {"EDITBOX", &CDialogLoader::ReadEditBox},
    {"DIALOG", &CDialogLoader::ReadDialog},
    {"SLIDER", &CDialogLoader::ReadSlider},
    {"MENU", &CDialogLoader::ReadMenu},
    {"MENUITEM", &CDialogLoader::ReadMenuItem},
    {"FLAGBOX", &CDialogLoader::ReadFlagBox},
    {"PICTUREBOX", &CDialogLoader::ReadPictureBox},
    {"VIDEOBOX", &CDialogLoader::ReadVideoBox},
    {"ANIMATIONBOX", &CDialogLoader::ReadAnimationBox},
};

CDialogLoader::CDialogLoader(CItfDialog& dialog, ds_file& file) : m_Dialog(dialog), m_Parser(&file, false) {}

void CDialogLoader::Load(const char* section)
{
    m_szSection = section;
    if (!m_Parser.SeekToToken(section))
        Fail(RESERR_SYNTAX, std::string("there is no section ") + section);
    Check(m_Parser.SkipTillChar('{'));
    while (!m_bEnded)
        ReadRecord();
}

void CDialogLoader::ReadRecord()
{
    const std::string keyword = ReadString(TEXT_FIELD);
    for (const Keyword& known : s_Keywords) {
        if (strcasecmp(known.name, keyword.c_str()) == 0) {
            ReadComma();
            (this->*known.read)();
            return;
        }
    }
    Fail(RESERR_SYNTAX, "unknown keyword \"" + keyword.substr(0, 40) + "\"");
}

void CDialogLoader::ReadButton()
{
    ReadButtonRecord(KIND_BUTTON, 0);
}

// A check box is listed as a button.
void CDialogLoader::ReadCheckBox()
{
    ReadButtonRecord(KIND_BUTTON, BTSTYLE_CHECKBOX);
}

void CDialogLoader::ReadButtonRecord(int kind, std::uint32_t addedStyle)
{
    const std::string text = ReadString(TEXT_FIELD);
    const std::string font = ReadFontName();
    const std::string down = ReadSpriteName();
    const std::string up = ReadSpriteName();
    const std::uint32_t style = ReadStyle() | addedStyle;
    const int id = ReadInt();
    const Rects rects = ReadRects();

    std::unique_ptr<CItfButton> button =
        addedStyle != 0 ? std::unique_ptr<CItfButton>(Allocate<CItfCheckBox>()) : Allocate<CItfButton>();
    Require(button->Create(text.c_str(), &rects.window, &m_Dialog, id, style, m_Dialog.GetCore(),
                           OrNull(down), OrNull(up)),
            "button");
    button->SetInnerRect(rects.inner);
    if (!font.empty())
        button->SetFont(font.c_str());
    m_Dialog.AddControl(kind, id, std::move(button));
}

void CDialogLoader::ReadTable()
{
    const std::string sprite = ReadSpriteName();
    const std::string font = ReadFontName();
    const std::string headerFont = ReadFontName();
    const std::uint32_t style = ReadStyle();
    const int id = ReadInt();
    const Rects rects = ReadRects();

    std::unique_ptr<CItfReportBox> table = Allocate<CItfReportBox>();
    Require(table->Create("Report", OrNull(sprite), &rects.window, &m_Dialog, id, style, m_Dialog.GetCore()),
            "table");
    table->SetInnerRect(rects.inner);
    if (!font.empty())
        table->SetListFont(font.c_str());
    if (!headerFont.empty())
        table->SetHeaderFont(headerFont.c_str());
    m_Dialog.AddControl(KIND_TABLE, id, std::move(table));
}

// A column takes the next place in its table, whatever index the record gives; a negative index makes a
// header cell alone.
void CDialogLoader::ReadColumn()
{
    const std::string caption = ReadString(TEXT_FIELD);
    const std::uint32_t style = ReadStyle();
    const int tableId = ReadInt();
    const int column = ReadInt();
    const int width = ReadInt();
    const RECT rect = ReadRect();

    CItfReportBox* table = m_Dialog.FindTable(tableId);
    if (table == nullptr)
        Fail(RESERR_NO_PARENT, "there is no table " + std::to_string(tableId) + " above this column");
    if (column >= 0) { // a cell without a column has no use for its width
        CheckSize(width);
        Require(table->AddColumn(width, style), "column");
    }
    table->AddHeader(caption.c_str(), column, style, rect);
}

void CDialogLoader::ReadListBox()
{
    const std::string sprite = ReadSpriteName();
    const std::string font = ReadFontName();
    const std::uint32_t style = ReadStyle();
    const int id = ReadInt();
    const Rects rects = ReadRects();

    std::unique_ptr<CItfListBox> box = Allocate<CItfListBox>();
    Require(box->Create("ListBox", OrNull(sprite), &rects.window, &m_Dialog, id, style, m_Dialog.GetCore()),
            "list box");
    box->SetInnerRect(rects.inner);
    if (!font.empty())
        box->SetFont(font.c_str());
    m_Dialog.AddControl(KIND_LISTBOX, id, std::move(box));
}

void CDialogLoader::ReadTextBox()
{
    const std::string text = ReadString(TEXT_FIELD);
    const std::string sprite = ReadSpriteName();
    const std::string font = ReadFontName();
    const std::string captionFont = ReadFontName();
    const std::uint32_t style = ReadStyle();
    const int id = ReadInt();
    const Rects rects = ReadRects();

    std::unique_ptr<CItfTextBox> box = Allocate<CItfTextBox>();
    Require(box->Create("TextBox", OrNull(sprite), &rects.window, &m_Dialog, id, style, m_Dialog.GetCore()),
            "text box");
    box->SetInnerRect(rects.inner);
    if (!font.empty())
        box->SetFont(font.c_str());
    if (!captionFont.empty())
        box->SetCaptionFont(captionFont.c_str());
    if ((style & TBSTYLE_HASCAPTION) != 0)
        box->SetCaption(text.c_str());
    else
        box->SetText(text.c_str());
    m_Dialog.AddControl(KIND_TEXTBOX, id, std::move(box));
}

void CDialogLoader::ReadEditBox()
{
    const std::string text = ReadString(TEXT_FIELD);
    const std::string sprite = ReadSpriteName();
    const std::string font = ReadFontName();
    const std::uint32_t style = ReadStyle();
    const int id = ReadInt();
    const Rects rects = ReadRects();

    std::unique_ptr<CItfEditBox> box = Allocate<CItfEditBox>();
    Require(box->Create("EditBox", OrNull(sprite), &rects.window, &m_Dialog, id, style, m_Dialog.GetCore()),
            "edit box");
    box->SetInnerRect(rects.inner);
    if (!font.empty())
        box->SetFont(font.c_str());
    box->SetText(text.c_str());
    m_Dialog.AddControl(KIND_EDITBOX, id, std::move(box));
}

void CDialogLoader::ReadDialog()
{
    const std::string sprite = ReadSpriteName();
    ReadComma();
    const RECT rect = ReadRect();
    const POINT pos = {rect.left, rect.top};
    const SIZE size = {rect.right - rect.left, rect.bottom - rect.top};
    m_Dialog.SetSprite(sprite.c_str());
    m_Dialog.SetPos(&pos, false);
    m_Dialog.SetSize(&size, false);
}

void CDialogLoader::ReadSlider()
{
    const std::string sprite = ReadSpriteName();
    const std::uint32_t style = ReadStyle() | SBSTYLE_HORIZONTAL;
    const int id = ReadInt();
    const Rects rects = ReadRects();

    std::unique_ptr<CItfSlider> slider = Allocate<CItfSlider>();
    Require(slider->Create("Slider", OrNull(sprite), &rects.window, &m_Dialog, id, style, m_Dialog.GetCore()),
            "slider");
    slider->SetInnerRect(rects.inner);
    m_Dialog.AddControl(KIND_SLIDER, id, std::move(slider));
}

void CDialogLoader::ReadFlagBox()
{
    const std::string sprite = ReadSpriteName();
    const bool right = ReadString(TEXT_FIELD).find(FLAG_ON_THE_RIGHT) != std::string::npos;
    ReadComma();
    const int id = ReadInt();
    const RECT rect = ReadRect();
    float floats[FLAG_FLOATS];
    for (float& number : floats)
        number = ReadFloat();

    std::unique_ptr<CItfFlagBox> box = Allocate<CItfFlagBox>();
    Require(box->Create("FlagBox", OrNull(sprite), &rect, &m_Dialog, id, 0, m_Dialog.GetCore()), "flag box");
    box->SetParams(floats, right);
    m_Dialog.AddControl(KIND_FLAGBOX, id, std::move(box));
}

void CDialogLoader::ReadPictureBox()
{
    const std::string picture = ReadString(TEXT_FIELD);
    WarnMissing(Toolkit().spriteMap, picture, "picture");
    const std::string sprite = ReadSpriteName();
    const std::uint32_t style = ReadStyle();
    const int id = ReadInt();
    const int cellW = ReadSize();
    const int cellH = ReadSize();
    const int cols = ReadSize();
    const int rows = ReadSize();
    const int lastRowCells = ReadSize();
    const Rects rects = ReadRects();

    std::unique_ptr<CItfPictureBox> box = Allocate<CItfPictureBox>();
    Require(box->Create("Picture", OrNull(sprite), &rects.window, &m_Dialog, id, style, m_Dialog.GetCore(),
                        OrNull(picture)),
            "picture box");
    box->SetInnerRect(rects.inner);
    box->SetGrid(cellW, cellH, cols, rows, lastRowCells);
    box->SetCell(0, 0);
    m_Dialog.AddControl(KIND_PICTUREBOX, id, std::move(box));
}

void CDialogLoader::ReadVideoBox()
{
    const std::string file = ReadString(TEXT_FIELD);
    const std::string sprite = ReadSpriteName();
    const std::uint32_t style = ReadStyle();
    const int id = ReadInt();
    const Rects rects = ReadRects();

    std::unique_ptr<CItfVideoBox> box = Allocate<CItfVideoBox>();
    Require(box->Create("Video", OrNull(sprite), &rects.window, &m_Dialog, id, style, m_Dialog.GetCore()),
            "video box");
    box->SetInnerRect(rects.inner);
    box->OpenFile(file.c_str()); // an empty box is a box
    m_Dialog.AddControl(KIND_VIDEOBOX, id, std::move(box));
}

void CDialogLoader::ReadAnimationBox()
{
    const std::string clip = ReadString(TEXT_FIELD);
    const std::uint32_t style = ReadStyle();
    const int id = ReadInt();
    const Rects rects = ReadRects();

    std::unique_ptr<CItfAnimationBox> box = Allocate<CItfAnimationBox>();
    Require(box->Create("Animation", &rects.window, &m_Dialog, id, style, m_Dialog.GetCore(), clip.c_str()),
            "animation box");
    box->SetInnerRect(rects.inner);
    m_Dialog.AddControl(KIND_ANIMATIONBOX, id, std::move(box));
}

void CDialogLoader::ReadMenu()
{
    const std::string sprite = ReadSpriteName();
    ReadString(NAME_FIELD); // two fonts and a style that menus of this kind don't use
    ReadString(NAME_FIELD);
    ReadComma();
    ReadString(NAME_FIELD);
    ReadComma();
    const int id = ReadInt();
    const RECT rect = ReadRect();

    std::unique_ptr<CItfMenu> menu = Allocate<CItfMenu>();
    Require(menu->Create("Menu", OrNull(sprite), &rect, &m_Dialog, id, 0, m_Dialog.GetCore()), "menu");
    m_Dialog.AddControl(KIND_MENU, id, std::move(menu));
}

void CDialogLoader::ReadMenuItem()
{
    const int menuId = ReadInt();
    const std::string text = ReadString(TEXT_FIELD);
    const std::string style = ReadString(TEXT_FIELD);
    ReadComma();
    const std::string extra = ReadString(NAME_FIELD);
    ReadComma();
    const int id = ReadInt();
    const RECT rect = ReadRect();

    CItfMenu* menu = m_Dialog.FindMenu(menuId);
    if (menu == nullptr)
        Fail(RESERR_NO_PARENT, "there is no menu " + std::to_string(menuId) + " above this item");
    menu->AddItem(text.c_str(), id, style.c_str(), rect, extra.c_str());
}

std::string CDialogLoader::ReadString(std::size_t size)
{
    CheckNotEnded();
    char buffer[TEXT_FIELD];
    Check(m_Parser.ReadFileName(buffer, size));
    return buffer;
}

std::string CDialogLoader::ReadSpriteName()
{
    const std::string name = ReadString(NAME_FIELD);
    WarnMissing(Toolkit().spriteMap, name, "sprite");
    return name;
}

std::string CDialogLoader::ReadFontName()
{
    const std::string name = ReadString(NAME_FIELD);
    WarnMissing(Toolkit().fontMap, name, "font");
    return name;
}

std::uint32_t CDialogLoader::ReadStyle()
{
    const std::uint32_t style = ParseControlStyle(ReadString(TEXT_FIELD));
    ReadComma();
    return style;
}

void CDialogLoader::ReadComma()
{
    if (m_Parser.SkipSpace(false) != ',')
        Tell("expected a comma: what stands before the next one is passed over");
    Check(m_Parser.SkipTillChar(','));
}

int CDialogLoader::ReadInt()
{
    CheckNotEnded();
    int value = 0;
    Check(m_Parser.ReadIntElem(',', '}', value, m_bEnded));
    return value;
}

int CDialogLoader::ReadSize()
{
    const int size = ReadInt();
    CheckSize(size);
    return size;
}

void CDialogLoader::CheckSize(int size)
{
    if (size < 0 || size > MAX_RESOURCE_COORDINATE)
        Fail(RESERR_SYNTAX, std::to_string(size) + " is no size or count");
}

float CDialogLoader::ReadFloat()
{
    CheckNotEnded();
    float value = 0.0F;
    Check(m_Parser.ReadFloatElem(',', '}', value, m_bEnded));
    return value;
}

RECT CDialogLoader::ReadRect()
{
    LONG sides[4];
    for (LONG& side : sides) {
        side = ReadInt();
        if (side < -MAX_RESOURCE_COORDINATE || side > MAX_RESOURCE_COORDINATE)
            Fail(RESERR_SYNTAX, std::to_string(side) + " is no coordinate");
    }
    return {sides[0], sides[1], sides[2], sides[3]};
}

CDialogLoader::Rects CDialogLoader::ReadRects()
{
    Rects rects;
    rects.window = ReadRect();
    rects.inner = ReadRect();
    const RECT& inner = rects.inner;
    if (inner.left < 0 || inner.top < 0 || inner.right < 0 || inner.bottom < 0)
        rects.inner = {0, 0, rects.window.right - rects.window.left, rects.window.bottom - rects.window.top};
    return rects;
}

template <class T>
std::unique_ptr<T> CDialogLoader::Allocate()
{
    std::unique_ptr<T> control(new (std::nothrow) T);
    if (control == nullptr)
        Fail(RESERR_MEMORY, "out of memory");
    return control;
}

void CDialogLoader::Require(bool created, const char* what)
{
    if (!created)
        Fail(RESERR_CREATE,
             std::string("this ") + what + " can't be created: too many windows, or no sprite");
}

void CDialogLoader::CheckNotEnded()
{
    if (m_bEnded)
        Fail(RESERR_SYNTAX, "the section ends within a record");
}

void CDialogLoader::Check(bool read)
{
    if (!read)
        Fail(RESERR_SYNTAX, m_Parser.GetError());
}

// A control does without a name that no map row gives, but its modder wants to know.
void CDialogLoader::WarnMissing(const std::vector<NameRow>& map, const std::string& name, const char* kind)
{
    if (name.empty() || HasName(map, name))
        return;
    Tell(std::string("the ") + kind + " \"" + name + "\" isn't in itfnames.ini");
}

void CDialogLoader::Tell(const std::string& text)
{
    const std::string line = std::string(DIALOG_RESOURCE) + "(" + std::to_string(m_Parser.GetLine()) +
                             "): [" + m_szSection + "] " + text + "\r\n";
    OutputDebugStringA(line.c_str());
}

void CDialogLoader::Fail(ItfResourceError code, const std::string& text)
{
    Tell(text);
    throw static_cast<int>(code);
}
