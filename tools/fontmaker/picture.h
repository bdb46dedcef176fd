#pragma once
// A picture in memory, as the font tool reads and writes it.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// A colour with 8 bits a channel.
struct SColour {
    std::uint8_t r = 0;
    std::uint8_t g = 0;
    std::uint8_t b = 0;
};

/// `amount` of `over` on `under`; 0 gives `under`, 1 gives `over`.
SColour Mix(SColour under, SColour over, double amount);

/// An RGBA picture. Owns its pixels.
class CPicture
{
  public:
    CPicture() = default;
    /// A wholly transparent picture; both sizes in pixels, at least 0.
    CPicture(int width, int height);

    /// Reads a PNG file; throws std::runtime_error when it can't be read.
    static CPicture Read(const std::string& file);
    /// Writes a PNG file with transparency; throws std::runtime_error when it can't be written.
    void Write(const std::string& file) const;

    int GetWidth() const { return m_nWidth; }
    int GetHeight() const { return m_nHeight; }
    bool Contains(int x, int y) const { return x >= 0 && y >= 0 && x < m_nWidth && y < m_nHeight; }
    /// The place must lie in the picture.
    bool IsOpaque(int x, int y) const { return m_Pixels[Place(x, y) + ALPHA] >= OPAQUE_FROM; }
    SColour Get(int x, int y) const;
    /// Makes the pixel opaque in that colour; a place outside is passed over.
    void Set(int x, int y, SColour colour);

  private:
    static constexpr std::size_t CHANNELS = 4;
    static constexpr std::size_t ALPHA = 3;
    static constexpr std::uint8_t OPAQUE_FROM = 128; ///< the game's loader draws the line here

    std::size_t Place(int x, int y) const
    {
        return (static_cast<std::size_t>(y) * static_cast<std::size_t>(m_nWidth) +
                static_cast<std::size_t>(x)) *
               CHANNELS;
    }

    int m_nWidth = 0;
    int m_nHeight = 0;
    std::vector<std::uint8_t> m_Pixels;
};
