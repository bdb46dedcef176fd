#pragma once
// The grammar of the dialog resource: reads one section and creates its controls in a dialog.

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "keelworks/text_parser.h"
#include "kernel/itfdialog.h"

/// Coordinates, sizes and other numbers of a rectangle in a resource lie within this, on both sides of 0.
constexpr int MAX_RESOURCE_COORDINATE = 16383;
/// Characters of a text.
constexpr std::size_t MAX_RESOURCE_TEXT = 259;

/// A kind as a bit of ControlStyleName's kinds.
constexpr std::uint32_t StyleKind(ItfControlKind kind)
{
    return 1U << kind;
}
struct ControlStyleName {
    const char* name;
    std::uint32_t value;
    std::uint32_t kinds; ///< that read it: the or of their StyleKind
};
/// Every style name of the resource but those of flag boxes and menu items.
std::span<const ControlStyleName> ControlStyleNames();
/// The only style name of a flag box.
inline constexpr char FLAG_ON_THE_RIGHT[] = "FB_RIGHT";
/// The or of the values of all style names that occur in the text, anywhere in it.
std::uint32_t ParseControlStyle(const std::string& text);

/// Reads one section for one dialog. Every fault goes to the debug output with file and line, and is then
/// thrown as an ItfResourceError.
class CDialogLoader
{
  public:
    CDialogLoader(CItfDialog& dialog, ds_file& file);
    /// Creates all that the section names. Throws.
    void Load(const char* section);

  private:
    struct Rects {
        RECT window; ///< in the dialog
        RECT inner;  ///< in the control
    };
    struct Keyword {
        const char* name;
        void (CDialogLoader::*read)();
    };
    static const Keyword s_Keywords[];

    void ReadRecord();
    void ReadButton();
    void ReadCheckBox();
    void ReadButtonRecord(int kind, std::uint32_t addedStyle);
    void ReadTable();
    void ReadColumn();
    void ReadListBox();
    void ReadTextBox();
    void ReadEditBox();
    void ReadDialog();
    void ReadSlider();
    void ReadFlagBox();
    void ReadPictureBox();
    void ReadVideoBox();
    void ReadAnimationBox();
    void ReadMenu();
    void ReadMenuItem();

    std::string ReadString(std::size_t size);
    std::string ReadSpriteName();
    std::string ReadFontName();
    std::uint32_t ReadStyle();
    void ReadComma();
    int ReadInt();
    /// An Int that is a size or a count.
    int ReadSize();
    void CheckSize(int size);
    float ReadFloat();
    RECT ReadRect();
    Rects ReadRects();

    template <class T>
    std::unique_ptr<T> Allocate();
    void Require(bool created, const char* what);
    void Check(bool read);
    void CheckNotEnded();
    void WarnMissing(const std::vector<NameRow>& map, const std::string& name, const char* kind);
    /// A line with file and line number to the debug output.
    void Tell(const std::string& text);
    [[noreturn]] void Fail(ItfResourceError code, const std::string& text);

    CItfDialog& m_Dialog;
    CTextParser m_Parser;
    const char* m_szSection = "";
    bool m_bEnded = false; ///< the closing brace has come behind a number
};
