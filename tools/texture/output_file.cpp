#include "output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "file_faults.h"

COutputFile::COutputFile(const std::string& path) : m_strPath(path)
{
    if (path.empty())
        throw file_fault(path, "can't be written: it is no name");
    m_strTarget = FullPath(path);
    CheckName(path);
    struct stat info {
    };
    const bool there = stat(m_strTarget.c_str(), &info) == 0;
    if (!there && errno != ENOENT)
        throw Fault();
    if (there && !S_ISREG(info.st_mode))
        throw file_fault(path, S_ISDIR(info.st_mode) ? "is a folder" : "isn't a file");
    std::string temporary = m_strTarget + ".XXXXXX";
    const int fd = mkstemp(temporary.data());
    if (fd < 0)
        throw Fault();
    close(fd);
    m_strTemporary = temporary;
}

COutputFile::~COutputFile()
{
    if (!m_strTemporary.empty())
        unlink(m_strTemporary.c_str());
}

file_fault COutputFile::Fault() const
{
    const std::string reason = errno != 0 ? std::string(": ") + std::strerror(errno) : std::string();
    return file_fault(m_strPath, "can't be written" + reason);
}

void COutputFile::SetRights() const
{
    // Those of the file that is replaced, or of any new file.
    struct stat info {
    };
    const mode_t mask = umask(0);
    umask(mask);
    const mode_t rights = stat(m_strTarget.c_str(), &info) == 0 ? info.st_mode & 0777U : 0666U & ~mask;
    if (chmod(m_strTemporary.c_str(), rights) != 0)
        throw Fault();
}

void COutputFile::Keep()
{
    errno = 0;
    const int fd = open(m_strTemporary.c_str(), O_RDONLY | O_CLOEXEC);
    const bool onDisk = fd >= 0 && fsync(fd) == 0;
    if (fd >= 0)
        close(fd);
    if (!onDisk)
        throw Fault();
    SetRights();
    if (std::rename(m_strTemporary.c_str(), m_strTarget.c_str()) != 0)
        throw Fault();
    m_strTemporary.clear();
}
