#include "fontfile.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace
{
constexpr int TEXTURE_WIDTH = 512;
constexpr int GAP = 1; ///< pixels between cells

std::string FindTexture(const std::string& imageRoot, std::string name)
{
    std::replace(name.begin(), name.end(), '\\', '/');
    return (std::filesystem::path(imageRoot) / name).string();
}

std::uint8_t Tint(std::uint8_t texel, std::uint8_t colour)
{
    return static_cast<std::uint8_t>(texel * colour / 255);
}
} // namespace

CFontFile::CFontFile(const std::vector<SGlyph>& glyphs, int lineHeight) : m_nHeight(lineHeight)
{
    int x = 0;
    int y = 0;
    for (const SGlyph& glyph : glyphs) {
        const int width = glyph.cell.GetWidth();
        if (x > 0 && x + width > TEXTURE_WIDTH) {
            x = 0;
            y += lineHeight + GAP;
        }
        m_Letters[static_cast<std::size_t>(glyph.code)] = {
            x, y, x + width, y + lineHeight, glyph.overlap, glyph.advance};
        x += width + GAP;
    }
    m_Texture = CPicture(TEXTURE_WIDTH, y + lineHeight);
    for (const SGlyph& glyph : glyphs) {
        const SLetter& place = m_Letters[static_cast<std::size_t>(glyph.code)];
        for (int row = 0; row < lineHeight; ++row) {
            for (int column = 0; column < glyph.cell.GetWidth(); ++column) {
                if (glyph.cell.IsOpaque(column, row)) {
                    m_Texture.Set(place.left + column, place.top + row, glyph.cell.Get(column, row));
                }
            }
        }
    }
}

CFontFile::CFontFile(const std::string& fontFile, const std::string& imageRoot)
{
    std::ifstream in(fontFile, std::ios::binary);
    std::stringstream content;
    content << in.rdbuf();
    const std::string all = content.str();
    const std::size_t name = all.find('"');
    const std::size_t nameEnd = all.find('"', name == std::string::npos ? name : name + 1);
    std::size_t at = all.find('{');
    if (!in || nameEnd == std::string::npos || at == std::string::npos) {
        throw std::runtime_error(fontFile + ": not a font file");
    }
    m_Texture = CPicture::Read(FindTexture(imageRoot, all.substr(name + 1, nameEnd - name - 1)));
    for (at = all.find('"', at); at != std::string::npos && at + 4 < all.size(); at = all.find('"', at)) {
        SLetter& letter = m_Letters[static_cast<unsigned char>(all[at + 1])];
        std::istringstream numbers(all.substr(at + 4));
        char comma = 0;
        if (!(numbers >> letter.left >> comma >> letter.top >> comma >> letter.right >> comma >>
              letter.bottom >> comma >> letter.overlap >> comma >> letter.advance)) {
            throw std::runtime_error(fontFile + ": a letter's numbers are wrong");
        }
        at += 4;
    }
    m_nHeight = m_Letters[' '].bottom - m_Letters[' '].top;
    if (m_nHeight <= 0) {
        throw std::runtime_error(fontFile + ": there is no blank");
    }
}

void CFontFile::Write(const std::string& fontFile, const std::string& texture,
                      const std::string& imageRoot) const
{
    const std::string picture = FindTexture(imageRoot, texture);
    std::filesystem::create_directories(std::filesystem::path(picture).parent_path());
    m_Texture.Write(picture);
    std::ofstream out(fontFile, std::ios::binary);
    out << "texture \"" << texture << "\"\r\n\r\nsymbols {\r\n";
    const char* separator = "";
    for (std::size_t code = 0; code < m_Letters.size(); ++code) {
        const SLetter& letter = m_Letters[code];
        if (letter.right == letter.left) {
            continue;
        }
        out << separator << '"' << static_cast<char>(code) << "\", " << letter.left << ", " << letter.top
            << ", " << letter.right << ", " << letter.bottom << ", " << letter.overlap << ", "
            << letter.advance;
        separator = ",\r\n";
    }
    out << "}\r\n";
    if (!out.flush()) {
        throw std::runtime_error(fontFile + ": can't be written");
    }
}

int CFontFile::GetWidth(const std::string& text) const
{
    int width = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const SLetter& letter = m_Letters[static_cast<unsigned char>(text[i])];
        width += letter.advance - (i > 0 ? letter.overlap : 0);
    }
    return width;
}

std::vector<std::string> CFontFile::Wrap(const std::string& text, int width) const
{
    std::vector<std::string> lines;
    std::string line;
    std::size_t at = 0;
    while (at < text.size()) {
        std::size_t end = at;
        while (end < text.size() && text[end] != ' ' && text.compare(end, 2, "\r\n") != 0) {
            ++end;
        }
        while (end < text.size() && text[end] == ' ') {
            ++end;
        }
        const std::string word = text.substr(at, end - at);
        if (!line.empty() && GetWidth(line) + GetWidth(word) > width) {
            lines.push_back(line);
            line.clear();
        }
        line += word;
        at = end;
        if (text.compare(at, 2, "\r\n") == 0) {
            lines.push_back(line);
            line.clear();
            at += 2;
        }
    }
    if (!line.empty()) {
        lines.push_back(line);
    }
    return lines;
}

void CFontFile::Draw(CPicture& target, const SBox& box, const std::string& text, unsigned flags,
                     SColour colour) const
{
    std::vector<std::string> lines = Wrap(text, box.width);
    if ((flags & BOX_LINES) == 0 && lines.size() > 1) {
        lines.resize(1);
    }
    int top = box.top;
    if ((flags & BOX_MIDDLE) != 0) {
        top += std::max(0, (box.height - m_nHeight * static_cast<int>(lines.size())) / 2);
    }
    for (const std::string& line : lines) {
        if (top + m_nHeight > box.top + box.height && (flags & BOX_LINES) != 0) {
            break;
        }
        DrawLine(target, box, top, line, flags, colour);
        top += m_nHeight;
    }
}

void CFontFile::DrawLine(CPicture& target, const SBox& box, int top, const std::string& text, unsigned flags,
                         SColour colour) const
{
    const int right = box.left + box.width;
    int pen = box.left;
    if ((flags & BOX_CENTRE) != 0) {
        pen = std::max(pen, box.left + (box.width - GetWidth(text)) / 2);
    } else if ((flags & BOX_RIGHT) != 0) {
        pen = std::max(pen, right - GetWidth(text));
    }
    bool first = true;
    for (const char byte : text) {
        const SLetter& letter = m_Letters[static_cast<unsigned char>(byte)];
        pen -= first ? 0 : letter.overlap;
        first = false;
        if (pen > right) {
            return;
        }
        const int width = std::min(letter.right - letter.left, right - pen);
        for (int y = letter.top; y < letter.bottom; ++y) {
            for (int x = letter.left; x < letter.left + width; ++x) {
                if (m_Texture.Contains(x, y) && m_Texture.IsOpaque(x, y)) {
                    const SColour texel = m_Texture.Get(x, y);
                    target.Set(pen + x - letter.left, top + y - letter.top,
                               {Tint(texel.r, colour.r), Tint(texel.g, colour.g), Tint(texel.b, colour.b)});
                }
            }
        }
        pen += letter.advance;
    }
}
