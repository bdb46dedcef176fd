#pragma once
// The credits: a text file that scrolls.

#include <memory>

#include "kernel/itfdialog.h"

/// The text is drawn ahead on a sprite of its own, a block of lines at a time; each block then scrolls in by
/// moving the part of the sprite that shows. From its end the text begins again. Section "CreditsDlg", all
/// controls optional.
///
/// Create throws fopen_exception when there is no file; false without the font or the sprite's memory.
/// Reports RESULT_CLOSE.
class CCreditsDlg : public CItfDialog
{
  public:
    enum Control : int {
        IDC_CLOSE = 10,
        IDC_TEXT = 20, ///< any window: its place is the text's, its style adds to the text's flags
    };
    /// The further bytes of a larger file aren't read.
    static constexpr std::size_t MAX_TEXT = std::size_t{16} << 20;

    ~CCreditsDlg() override;
    bool Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent, int ctrlId,
                std::uint32_t style, IEngine* core) override;
    void Draw() override;
    void OnTick(int elapsed) override;
    const Row* GetMessageTable() const override;

    int GetFirstLine() const { return m_nFirstLine; }
    int GetLineCount() const { return m_nLines; }
    /// Pixels that the block has been scrolled by.
    int GetOffset() const { return m_nOffset; }

  private:
    Word OnNotify(std::uint32_t code, std::int32_t id);
    void PlaceText();
    void ReadText();
    void Render();

    int m_nFirstLine = 0; ///< of the text, on the sprite
    int m_nLines = 0;
    int m_nOffset = 0;
    int m_nCanvas = -1; ///< sprite, a block higher than what shows
    int m_nFont = -1;
    int m_nBlock = 0; ///< a block's height in pixels
    int m_nTime = 0;  ///< since the last step
    std::uint32_t m_nTextFlags = 0;
    RECT m_rcText;                   ///< where the text shows
    std::unique_ptr<char[]> m_pText; ///< null for an empty file
};
