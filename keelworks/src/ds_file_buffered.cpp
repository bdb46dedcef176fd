#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

#include "keelworks/ds_file.h"
#include "platform/files.h"

namespace
{

constexpr std::size_t READ_BLOCK = std::size_t{64} << 10;

/// All that is left of a file, read in blocks, since a size that is asked for may be stale. False when
/// reading fails or there is more than `limit`.
bool ReadAll(std::FILE* file, std::size_t limit, std::vector<char>& out)
{
    std::size_t used = 0;
    for (;;) {
        out.resize(used + READ_BLOCK);
        const std::size_t got = std::fread(out.data() + used, 1, READ_BLOCK, file);
        used += got;
        if (used > limit || std::ferror(file)) {
            return false;
        }
        if (got < READ_BLOCK) {
            out.resize(used);
            return true;
        }
    }
}

} // namespace

ds_file_buffered::ds_file_buffered() = default;

ds_file_buffered::ds_file_buffered(const char* path, bool)
{
    ds_file_buffered::open(path, MODE_READ);
}

ds_file_buffered::~ds_file_buffered() = default;

void ds_file_buffered::open(const char* path, bool)
{
    open(path, MODE_READ);
}

void ds_file_buffered::open(const char* path, unsigned mode)
{
    // The path may be this file's own name, which closing clears.
    const std::string name = path ? path : "";
    ds_file_buffered::close();
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(
        mode == MODE_READ ? PlatformOpenFile(name.c_str(), "rb") : nullptr, &std::fclose);
    std::vector<char> bytes;
    if (!file || !ReadAll(file.get(), MAX_SIZE, bytes)) {
        throw fopen_exception(name);
    }
    open_memory(name, std::move(bytes));
    m_strRealPath = PlatformResolveRead(name.c_str());
}

void ds_file_buffered::open_memory(std::string name, std::vector<char> bytes)
{
    ds_file_buffered::close();
    if (bytes.size() > MAX_SIZE) {
        throw fopen_exception(name);
    }
    m_strName = std::move(name);
    m_Data = std::move(bytes);
    m_nPos = 0;
    m_bOpen = true;
    ++m_nGeneration;
}

std::size_t ds_file_buffered::read(void* buffer, std::size_t size)
{
    const std::size_t got = std::min(size, m_Data.size() - m_nPos);
    if (got > 0) {
        std::memcpy(buffer, m_Data.data() + m_nPos, got);
        m_nPos += got;
    }
    return got;
}

std::size_t ds_file_buffered::write(const void*, std::size_t)
{
    return 0;
}

std::size_t ds_file_buffered::get_size() const
{
    return m_Data.size();
}

std::size_t ds_file_buffered::get_cur_pos() const
{
    return m_nPos;
}

bool ds_file_buffered::set_pos(std::size_t pos)
{
    if (!m_bOpen || pos > m_Data.size()) {
        return false;
    }
    m_nPos = pos;
    return true;
}

bool ds_file_buffered::is_open() const
{
    return m_bOpen;
}

bool ds_file_buffered::close()
{
    if (m_bOpen) {
        ++m_nGeneration;
    }
    m_bOpen = false;
    m_nPos = 0;
    m_Data = {};
    return ds_file::close();
}
