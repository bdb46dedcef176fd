#pragma once
// The texture file ".tf": a chain of 16-bit levels and a chain of 8-bit levels of one picture, each level
// half as large as the one before it. Alpha is stored inverted. docs/formats.md has the layout.

#include <cstdint>

#include "lib/texfile.h"

class CTfFile : public CTexFile
{
  public:
    /// The pixel format byte of the header.
    enum Format : std::uint8_t { TF_RGB565 = 0, TF_ARGB1555 = 1, TF_ARGB4444 = 2 };

    static constexpr std::size_t HEADER_BYTES = 16;
    static constexpr std::size_t PALETTE_BYTES = 1024; ///< 256 entries of red, green, blue, zero

    CTfFile() = default;
    CTfFile(CTfFile&&) = default;
    CTfFile& operator=(CTfFile&&) = default;

    /// Sets the sizes and counts, and `format` unless it is null, from the header of m_sName. False, with
    /// nothing set, when the file can't be read, its format is unknown, or a side is 0 or above
    /// CTexImage::MAX_FILE_SIDE.
    bool LoadHeader(std::uint8_t* format = nullptr);
    /// Reads level m_nLevel of the chain that m_b16Bit chooses into m_Image, by the sizes and counts that are
    /// set. False, with m_Image as it was, when the file can't be read or ends early, its format is unknown,
    /// there is no such level, or the sizes are out of range.
    bool Load() override;
    std::unique_ptr<CTexFile> Clone() const override;
    /// Writes m_sName. Level k of a chain should be of the first one's size shifted right by k. Counts are 0
    /// to 255 and not both 0; a chain of count 0 may be null. The alpha of the 16-bit levels is left
    /// inverted, as it was written, in whatever shares their pixels too. False without a file when a level
    /// has another format than its chain's, false with a partly written file when writing fails.
    bool Write(CTexImage* levels16, const CTexImage* levels8, int count16, int count8);

  private:
    CTfFile(const CTfFile&) = default;
};
