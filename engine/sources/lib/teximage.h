#pragma once
// A picture in memory, in one of six pixel formats. Rows run from top to bottom without gaps. What is read
// and set are pixels of four bytes; a narrower format keeps the high bits of each channel and gives zeros for
// the low ones.

#include <cstddef>
#include <cstdint>
#include <memory>

/// One pixel, in the order in which a 32-bit picture keeps it.
struct TexPixel {
    std::uint8_t blue = 0;
    std::uint8_t green = 0;
    std::uint8_t red = 0;
    std::uint8_t alpha = 0;
    friend bool operator==(const TexPixel&, const TexPixel&) = default;
};

/// The format word of a picture: bits per pixel in the low byte, and flags.
enum TexFormat : std::uint32_t {
    TEX_BITS = 0xff,   ///< mask of the bits per pixel
    TEX_PALETTE8 = 8,  ///< an index into the palette; of a picture with alpha, index 0 is transparent
    TEX_ARGB4444 = 12, ///< AAAA RRRR GGGG BBBB, two bytes, the low one first
    TEX_ARGB1555 = 15, ///< A RRRRR GGGGG BBBBB
    TEX_RGB565 = 16,   ///< RRRRR GGGGGG BBBBB
    TEX_RGB888 = 24,   ///< blue, green, red
    TEX_ARGB8888 = 32, ///< blue, green, red, alpha
    TEX_ALPHA = 0x100,
    TEX_PADDED = 0x200, ///< rows in a file are padded to 4 bytes
    TEX_VALID = 0x400,  ///< the pixels have been set as a whole
};

class CTexImage
{
  public:
    /// Most pixels on a side that a reader of files takes.
    static constexpr int MAX_FILE_SIDE = 16384;
    /// Most bytes of pixels that a picture can have: sides and their ratios stay within an int.
    static constexpr std::size_t MAX_DATA_SIZE = 0x7f000000;
    static constexpr int PALETTE_ENTRIES = 256;
    static constexpr std::size_t PALETTE_BYTES = 768;

    /// Bits of CopyEdges, which work in this order.
    enum Edge : std::uint32_t {
        EDGE_FIRST_ROW_TO_LAST = 1,
        EDGE_LAST_ROW_TO_FIRST = 2,
        EDGE_FIRST_COLUMN_TO_LAST = 4,
        EDGE_LAST_COLUMN_TO_FIRST = 8,
    };

    CTexImage() = default;
    virtual ~CTexImage();
    /// What is moved from is empty; its palette stays. ConvertFrom makes a picture with pixels of its own.
    CTexImage(CTexImage&& other) noexcept;
    CTexImage& operator=(CTexImage&& other) noexcept;

    /// Frees what there was and takes room for `w` by `h` pixels, which aren't cleared. The palette stays, as
    /// it does with every operation but SetPalette. False, with the picture empty, when a size is not above
    /// 0, the bits aren't one of the six, or memory runs out.
    bool Alloc(int w, int h, std::uint32_t format);
    /// Back to empty; the palette stays.
    void Free();
    /// Says that the pixels have been set as a whole. Nothing on an empty picture.
    void SetValid() { m_nFormat |= IsEmpty() ? 0U : std::uint32_t{TEX_VALID}; }

    bool IsEmpty() const { return m_pPixels == nullptr; }
    /// 0 when empty.
    std::uint32_t GetFormat() const { return m_nFormat; }
    unsigned GetBits() const { return m_nFormat & TEX_BITS; }
    bool HasAlpha() const { return (m_nFormat & TEX_ALPHA) != 0; }
    int GetWidth() const { return m_nWidth; }
    int GetHeight() const { return m_nHeight; }
    /// Null when empty.
    std::uint8_t* GetPixelData() { return m_pPixels.get(); }
    const std::uint8_t* GetPixelData() const { return m_pPixels.get(); }
    /// 256 entries of blue, green, red.
    std::uint8_t* GetPaletteData() { return m_Palette; }
    const std::uint8_t* GetPaletteData() const { return m_Palette; }
    /// Bytes of all pixels; 0 when empty.
    std::size_t GetDataSize() const;

    /// All four channels are 0 outside the picture.
    void GetPixel(TexPixel& colour, int x, int y) const;
    /// Of a palette picture, the nearest entry. Nothing outside the picture.
    void SetPixel(int x, int y, const TexPixel& colour);
    /// All pixels, row by row, as words 0xAARRGGBB. `out` has room for width times height.
    void GetPixels(std::uint32_t* out) const;
    /// Copies PALETTE_BYTES bytes.
    void SetPalette(const std::uint8_t* data);
    /// Inverts the alpha of a picture that has it, in the formats of 12, 15 and 32 bits. Files keep it so.
    void ToggleAlpha();
    /// Copies edges over the opposite ones, by the bits of `Edge`.
    void CopyEdges(std::uint32_t mask);

    /// Takes `src` over into this picture's own size and format; an empty one takes those of `src`. Fewer
    /// bits are made with error diffusion, another size with StretchFrom. False when `src` is this picture or
    /// empty, or memory runs out.
    bool ConvertFrom(const CTexImage& src);
    /// Becomes `src` at the size of `w` by `h`, in its format. Each pixel is the sum of a block of whole
    /// pixels over the area that the block should have: a ratio that isn't whole darkens, one below 1 gives
    /// black. A palette is to be set beforehand. False when `src` is this picture or empty, a size isn't
    /// above 0, or memory runs out.
    bool StretchFrom(int w, int h, const CTexImage& src);
    /// Becomes `src` at its size shifted right by `shift`, each pixel the rounded mean of a block. Empty,
    /// with true, when nothing is left of a side. A palette is to be set beforehand. False when `src` is this
    /// picture, `shift` is negative or memory runs out.
    bool ShrinkFrom(const CTexImage& src, int shift);

    /// Reads a bitmap file of 24 bits, with or without its file header; the pixels follow the info block
    /// directly. False when it can't be read, is something else, ends early, is stored from the top, or is
    /// larger than MAX_FILE_SIDE on a side; the picture is empty or as it was then. The padding of the last
    /// row may be missing.
    bool LoadBmp(const char* path);

  private:
    friend class CTexFile;
    /// For CTexFile alone. A copy shares the pixels with its original, and sees what is done to them, until
    /// either is allocated anew; whichever goes last frees them.
    CTexImage(const CTexImage&) = default;
    CTexImage& operator=(const CTexImage&) = default;

    std::uint8_t* At(int x, int y) const;
    std::uint8_t NearestEntry(const TexPixel& colour) const;
    bool AllocUnlessLike(int w, int h, std::uint32_t format);
    void StoreRow(int y, const std::uint32_t* words);
    void CopyPixelsOf(const CTexImage& src);
    void ConvertSameSize(const CTexImage& src);
    bool ConvertOtherSize(const CTexImage& src);
    void DiffuseToPalette(const CTexImage& src);

    std::shared_ptr<std::uint8_t[]> m_pPixels;
    std::uint32_t m_nFormat = 0;
    std::uint8_t m_Palette[PALETTE_BYTES] = {};
    int m_nWidth = 0;
    int m_nHeight = 0;
    int m_nReserved = 0; ///< goes with the object; not read
};
