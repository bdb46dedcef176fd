#include <algorithm>
#include <cstring>
#include <new>
#include <optional>
#include <vector>

#include "keelworks/ds_file.h"
#include "lib/bytes.h"
#include "lib/teximage.h"

namespace
{

constexpr std::size_t FILE_HEADER_BYTES = 14;
constexpr std::size_t INFO_BYTES = 40;
/// The first word of an info block is its size.
constexpr std::uint32_t SHORT_INFO_BYTES = 12;
constexpr unsigned BITS_TAKEN = 24;
constexpr std::size_t PIXEL_BYTES = 3;
constexpr std::size_t ROW_ALIGNMENT = 4;
/// Rows are read so many bytes at a time.
constexpr std::size_t CHUNK_BYTES = std::size_t{64} << 10;

struct BmpInfo {
    std::int32_t width;
    std::int32_t height;
    unsigned bits;
};

/// Leaves the file at the pixels.
std::optional<BmpInfo> ReadInfo(ds_file& file)
{
    std::uint8_t header[FILE_HEADER_BYTES];
    if (file.read(header, sizeof header) != sizeof header)
        return std::nullopt;
    if ((header[0] != 'B' || header[1] != 'M') && !file.set_pos(0))
        return std::nullopt;
    std::uint8_t info[INFO_BYTES];
    if (file.read(info, sizeof info) != sizeof info)
        return std::nullopt;
    switch (Get32(info)) {
    case SHORT_INFO_BYTES:
        if (!file.set_pos(file.get_cur_pos() - (INFO_BYTES - SHORT_INFO_BYTES)))
            return std::nullopt;
        return BmpInfo{Get16(info + 4), Get16(info + 6), Get16(info + 10)};
    case INFO_BYTES:
        return BmpInfo{static_cast<std::int32_t>(Get32(info + 4)), static_cast<std::int32_t>(Get32(info + 8)),
                       Get16(info + 14)};
    default:
        return std::nullopt;
    }
}

/// Rows of `rowBytes`, padded to `stride` in the file, the last one first. The file's last one, which is the
/// top, may lack its padding.
bool ReadRows(ds_file& file, std::size_t rows, std::size_t rowBytes, std::size_t stride, std::uint8_t* out)
{
    const std::size_t atOnce = std::max<std::size_t>(CHUNK_BYTES / stride, 1);
    std::vector<std::uint8_t> chunk(std::min(atOnce, rows) * stride);
    while (rows > 0) {
        const std::size_t count = std::min(atOnce, rows);
        const std::size_t bytes = count * stride - (count == rows ? stride - rowBytes : 0);
        if (file.read(chunk.data(), bytes) != bytes)
            return false;
        for (std::size_t i = 0; i < count; ++i)
            std::memcpy(out + --rows * rowBytes, chunk.data() + i * stride, rowBytes);
    }
    return true;
}

} // namespace

bool CTexImage::LoadBmp(const char* path)
{
    try {
        ds_file file(path, ds_file::MODE_READ);
        const std::optional<BmpInfo> info = ReadInfo(file);
        if (!info || info->bits != BITS_TAKEN || info->width <= 0 || info->height <= 0 ||
            info->width > MAX_FILE_SIDE || info->height > MAX_FILE_SIDE)
            return false;
        const std::size_t rows = static_cast<std::size_t>(info->height);
        const std::size_t rowBytes = PIXEL_BYTES * static_cast<std::size_t>(info->width);
        const std::size_t stride = (rowBytes + ROW_ALIGNMENT - 1) / ROW_ALIGNMENT * ROW_ALIGNMENT;
        // What the file can't hold isn't made room for.
        if (file.get_size() - file.get_cur_pos() < (rows - 1) * stride + rowBytes ||
            !Alloc(info->width, info->height, TEX_RGB888))
            return false;
        if (!ReadRows(file, rows, rowBytes, stride, GetPixelData())) {
            Free();
            return false;
        }
    } catch (const fopen_exception&) {
        return false;
    } catch (const std::bad_alloc&) {
        Free();
        return false;
    }
    SetValid();
    return true;
}
