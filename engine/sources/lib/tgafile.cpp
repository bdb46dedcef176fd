#include "lib/tgafile.h"

#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "assertion.h"
#include "lib/bmpfile.h"
#include "lib/bytes.h"
#include "platform/filehandle.h"

namespace
{

constexpr std::uint8_t TYPE_PALETTE = 1;
constexpr std::uint8_t TYPE_TRUE_COLOUR = 2;
constexpr std::uint8_t TYPE_PACKED = 8; ///< this bit is set in each type with packed runs
constexpr std::uint8_t OPAQUE = 0xff;
constexpr int TRUE_COLOUR_BITS = 24;
constexpr int ALPHA_BITS = 32;
constexpr char NO_FILE[] = "m_hFile != NULL";

/// Spreads blue, green, red to blue, green, red, alpha.
void AddAlpha(const std::vector<std::uint8_t>& row, std::uint8_t alpha, std::vector<std::uint8_t>& out)
{
    out.clear();
    for (std::size_t i = 0; i + 2 < row.size(); i += 3)
        out.insert(out.end(), {row[i], row[i + 1], row[i + 2], alpha});
}

/// The BMP's own path with another extension, unless a path is given.
std::string PathOrBeside(const char* outPath, const CFileIO& bmp)
{
    if (outPath != nullptr && *outPath != '\0')
        return outPath;
    std::string path = bmp.GetName();
    const std::size_t dot = path.rfind('.');
    const std::size_t slash = path.find_last_of("/\\");
    if (dot != std::string::npos && (slash == std::string::npos || dot > slash))
        path.resize(dot);
    return path + ".tga";
}

/// A file beside another one, removed if it is still there in the end.
struct Temporary {
    explicit Temporary(const char* beside) : path(PlatformMakeTemporary(beside)) {}
    ~Temporary()
    {
        const int reason = errno; // of a failure that is on its way
        CFileIO::DeleteFile(path.c_str());
        errno = reason;
    }
    Temporary(const Temporary&) = delete;
    Temporary& operator=(const Temporary&) = delete;

    const std::string path; ///< empty when none could be made
};

void WriteAll(CFileIO& file, const std::vector<std::uint8_t>& bytes)
{
    file.Write(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
}

} // namespace

bool CTgaFile::Load(const char* path)
{
    m_Header = {};
    m_Palette = {};
    m_nColors = 0;
    if (!Open(path, READ_EXISTING))
        return false;
    try {
        if (ReadHeader() && ReadPalette())
            return true;
    } catch (...) {
        Close();
        throw;
    }
    Close();
    return false;
}

bool CTgaFile::ReadHeader()
{
    std::uint8_t bytes[HEADER_BYTES];
    if (Read(bytes, HEADER_BYTES) != HEADER_BYTES)
        return false;
    m_Header = {bytes[0],          bytes[1],          bytes[2],         Get16(bytes + 3),
                Get16(bytes + 5),  bytes[7],          Get16(bytes + 8), Get16(bytes + 10),
                Get16(bytes + 12), Get16(bytes + 14), bytes[16],        bytes[17]};
    return m_Header.width <= MAX_SIDE && m_Header.height <= MAX_SIDE;
}

bool CTgaFile::ReadPalette()
{
    if (m_Header.mapType == 0)
        return true;
    if (m_Header.mapType != 1)
        return false;
    if (m_Header.mapDepth != TRUE_COLOUR_BITS)
        throw std::runtime_error("глубина цвета в палитре != 24");
    if (m_Header.mapLength > PALETTE_SIZE)
        return false;
    if (m_Header.mapFirst != 0)
        Seek(m_Header.mapFirst, current);
    const std::uint32_t bytes = m_Header.mapLength * COLOUR_BYTES;
    m_nColors = m_Header.mapLength;
    return Read(m_Palette.data(), bytes) == bytes;
}

void CTgaFile::WriteHeader()
{
    *this << m_Header.idLength << m_Header.mapType << m_Header.imageType << m_Header.mapFirst
          << m_Header.mapLength << m_Header.mapDepth << m_Header.originX << m_Header.originY << m_Header.width
          << m_Header.height << m_Header.pixelDepth << m_Header.descriptor;
}

template <class Content>
bool CTgaFile::WriteFileOf(const std::string& path, Content content)
{
    if (!Open(path.c_str(), WRITE_ANEW))
        return false;
    try {
        WriteHeader();
        content();
        Flush();
    } catch (...) {
        Close();
        DeleteFile(path.c_str());
        throw;
    }
    Close();
    return true;
}

void CTgaFile::SetBmpHeader(const CBmpFile& bmp, bool palette)
{
    m_Header = {};
    m_Palette = {};
    m_nColors = palette ? bmp.GetColorCount() : 0;
    for (int i = 0; i < m_nColors; ++i) {
        const CBmpFile::Colour colour = bmp.GetPaletteEntry(i);
        std::uint8_t* entry = &m_Palette[static_cast<std::size_t>(i) * COLOUR_BYTES];
        entry[0] = colour.blue;
        entry[1] = colour.green;
        entry[2] = colour.red;
    }
    m_Header.mapType = palette ? 1 : 0;
    m_Header.imageType = palette ? TYPE_PALETTE : TYPE_TRUE_COLOUR;
    m_Header.mapLength = static_cast<std::uint16_t>(m_nColors);
    m_Header.mapDepth = TRUE_COLOUR_BITS;
    m_Header.pixelDepth = palette ? 8 : TRUE_COLOUR_BITS;
    m_Header.width = static_cast<std::uint16_t>(bmp.GetWidth());
    m_Header.height = static_cast<std::uint16_t>(bmp.GetHeight());
}

bool CTgaFile::FromBmp(CBmpFile& bmp, const char* outPath)
{
    if (!bmp.IsLoaded())
        return false;
    // Before a file is made that it would leave behind.
    Assert(bmp.IsOpen(), NO_FILE);
    const int bits = bmp.GetBits();
    SetBmpHeader(bmp, bmp.GetColorCount() != 0);
    return WriteFileOf(PathOrBeside(outPath, bmp), [this, &bmp, bits] {
        if (bits != 4 && bits != 8 && bits != TRUE_COLOUR_BITS)
            throw std::runtime_error("error bpp");
        Write(m_Palette.data(), static_cast<std::uint32_t>(m_nColors) * COLOUR_BYTES);
        std::vector<std::uint8_t> row(static_cast<std::size_t>(bmp.GetWidth()) *
                                      (bits == TRUE_COLOUR_BITS ? COLOUR_BYTES : 1));
        for (int y = 0; y < bmp.GetHeight(); ++y) {
            if (bits == 4)
                bmp.ReadRow4(y, row.data());
            else if (bits == 8)
                bmp.ReadRow8(y, row.data());
            else
                bmp.ReadRow24(y, row.data());
            WriteAll(*this, row);
        }
    });
}

bool CTgaFile::FromBmp32(CBmpFile& bmp, const char* outPath)
{
    if (!bmp.IsLoaded() || bmp.GetBits() != TRUE_COLOUR_BITS)
        return false;
    Assert(bmp.IsOpen(), NO_FILE);
    SetBmpHeader(bmp, false);
    m_Header.mapDepth = ALPHA_BITS;
    m_Header.pixelDepth = ALPHA_BITS;
    return WriteFileOf(PathOrBeside(outPath, bmp), [this, &bmp] {
        std::vector<std::uint8_t> row(static_cast<std::size_t>(bmp.GetWidth()) * COLOUR_BYTES);
        std::vector<std::uint8_t> wide;
        for (int y = 0; y < bmp.GetHeight(); ++y) {
            bmp.ReadRow24(y, row.data());
            AddAlpha(row, OPAQUE, wide);
            WriteAll(*this, wide);
        }
    });
}

bool CTgaFile::From24To32(CTgaFile& source, const char* outPath)
{
    const Header& header = source.m_Header;
    if (&source == this || !source.IsOpen() || header.pixelDepth != TRUE_COLOUR_BITS ||
        header.idLength != 0 || (header.imageType & TYPE_PACKED) != 0 || outPath == nullptr)
        return false;
    m_Header = header;
    m_Header.mapDepth = ALPHA_BITS;
    m_Header.pixelDepth = ALPHA_BITS;
    m_Palette = {};
    m_nColors = 0;
    return WriteFileOf(outPath, [this, &source] {
        std::vector<std::uint8_t> wide;
        std::vector<std::uint8_t> row(m_Header.width * std::size_t{COLOUR_BYTES});
        for (int y = 0; y < m_Header.height; ++y) {
            if (source.Read(row.data(), static_cast<std::uint32_t>(row.size())) != row.size())
                throw FileException("CFileIO::Read");
            AddAlpha(row, 0, wide);
            WriteAll(*this, wide);
        }
    });
}

bool CTgaFile::ImportPicture(const char* source, const char* target, int width, int height)
{
    if (source == nullptr || target == nullptr)
        return false;
    const std::string read = PlatformResolveRead(source);
    std::error_code error; // that there is no target yet
    if (read.empty() || std::filesystem::equivalent(read, PlatformResolveWrite(target), error))
        return false;
    // The new file is made beside the target, so that a failure leaves what was there.
    const Temporary made(target);
    return !made.path.empty() && Import(source, made.path.c_str(), width, height) &&
           PlatformRenameFile(made.path.c_str(), target);
}

bool CTgaFile::Import(const char* source, const char* target, int width, int height)
{
    CTgaFile out;
    CBmpFile bmp;
    if (bmp.Load(source)) {
        if (bmp.GetWidth() != width || bmp.GetHeight() != height)
            return false;
        switch (bmp.GetBits()) {
        case 4:
        case 8:
            return out.FromBmp(bmp, target);
        case TRUE_COLOUR_BITS:
            return out.FromBmp32(bmp, target);
        default:
            return false;
        }
    }
    CTgaFile tga;
    if (!tga.Load(source) || tga.GetWidth() != width || tga.GetHeight() != height)
        return false;
    switch (tga.GetPixelDepth()) {
    case 8:
    case ALPHA_BITS:
        return CopyFile(source, target, true);
    case TRUE_COLOUR_BITS:
        return out.From24To32(tga, target);
    default:
        return false;
    }
}
