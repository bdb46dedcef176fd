#include "keelworks/ds_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <limits>

#include "platform/files.h"
#include "platform/system.h"

fopen_exception::fopen_exception(const std::string& path) : std::runtime_error("can't open " + path) {}

ds_file::ds_file() = default;

ds_file::ds_file(const char* path, unsigned mode)
{
    ds_file::open(path, mode);
}

ds_file::~ds_file()
{
    ds_file::close();
}

void ds_file::open(const char* path, unsigned mode)
{
    // The path may be this file's own name, which closing clears.
    const std::string name = path ? path : "";
    ds_file::close();
    const bool writing = mode == MODE_WRITE;
    if (!writing && mode != MODE_READ) {
        throw fopen_exception(name);
    }
    m_pFile = PlatformOpenFile(name.c_str(), writing ? "wb" : "rb");
    if (!m_pFile) {
        throw fopen_exception(name);
    }
    m_strName = name;
    m_bWriting = writing;
    m_bWriteFailed = false;
    ++m_nGeneration;
}

std::size_t ds_file::read(void* buffer, std::size_t size)
{
    if (!m_pFile || m_bWriting || size == 0) {
        return 0;
    }
    return std::fread(buffer, 1, size, m_pFile);
}

std::size_t ds_file::write(const void* buffer, std::size_t size)
{
    if (!m_pFile || !m_bWriting || size == 0) {
        return 0;
    }
    const std::size_t written = std::fwrite(buffer, 1, size, m_pFile);
    m_bWriteFailed = m_bWriteFailed || written != size;
    return written;
}

std::size_t ds_file::get_size() const
{
    struct stat info {
    };
    if (!m_pFile || (m_bWriting && std::fflush(m_pFile) != 0) || fstat(fileno(m_pFile), &info) != 0) {
        return 0;
    }
    return static_cast<std::size_t>(info.st_size);
}

std::size_t ds_file::get_cur_pos() const
{
    const off_t pos = m_pFile ? ftello(m_pFile) : 0;
    return pos > 0 ? static_cast<std::size_t>(pos) : 0;
}

bool ds_file::set_pos(std::size_t pos)
{
    if (!m_pFile || pos > static_cast<std::size_t>(std::numeric_limits<off_t>::max()) ||
        (!m_bWriting && pos > get_size())) {
        return false;
    }
    const bool moved = fseeko(m_pFile, static_cast<off_t>(pos), SEEK_SET) == 0;
    m_bWriteFailed = m_bWriteFailed || (m_bWriting && !moved);
    return moved;
}

const char* ds_file::get_name() const
{
    return m_strName.c_str();
}

std::int64_t ds_file::get_time() const
{
    struct stat info {
    };
    const bool known = m_pFile ? fstat(fileno(m_pFile), &info) == 0
                               : !m_strRealPath.empty() && stat(m_strRealPath.c_str(), &info) == 0;
    return known ? std::int64_t{info.st_mtim.tv_sec} : 0;
}

bool ds_file::set_time(std::int64_t seconds)
{
    if (!m_pFile || !m_bWriting || std::fflush(m_pFile) != 0) {
        return false;
    }
    const timespec times[2] = {{seconds, 0}, {seconds, 0}};
    return futimens(fileno(m_pFile), times) == 0;
}

bool ds_file::get_sys_time(sys_time& out) const
{
    const std::int64_t seconds = get_time();
    return seconds != 0 && PlatformLocalTimeOf(seconds, &out);
}

bool ds_file::is_open() const
{
    return m_pFile != nullptr;
}

bool ds_file::close()
{
    m_strName.clear();
    m_strRealPath.clear();
    if (!m_pFile) {
        return true;
    }
    bool kept = true;
    if (m_bWriting) {
        kept = !m_bWriteFailed && std::fflush(m_pFile) == 0 && !std::ferror(m_pFile);
        // A pipe or a device has nothing to bring to a disk.
        kept = kept && (fsync(fileno(m_pFile)) == 0 || errno == EINVAL || errno == ENOTSUP);
    }
    const bool closed = std::fclose(m_pFile) == 0;
    m_pFile = nullptr;
    m_bWriting = false;
    ++m_nGeneration;
    return kept && closed;
}
