#include "platform/filehandle.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <limits>
#include <memory>

#include "internal.h"

namespace
{

constexpr std::size_t COPY_BLOCK = 65536;

/// The system's file, closed behind its owner.
class Descriptor
{
  public:
    explicit Descriptor(int fd = -1) : m_nFd(fd) {}
    Descriptor(Descriptor&& other) noexcept : m_nFd(other.m_nFd) { other.m_nFd = -1; }
    Descriptor& operator=(Descriptor&&) = delete;
    ~Descriptor() { Close(); }
    bool Close()
    {
        const bool closed = m_nFd < 0 || close(m_nFd) == 0;
        m_nFd = -1;
        return closed;
    }
    int Get() const { return m_nFd; }

  private:
    int m_nFd;
};

struct File {
    Descriptor descriptor;
    DWORD access;
};

File* ToFile(HANDLE file)
{
    return file == INVALID_HANDLE_VALUE ? nullptr : static_cast<File*>(file);
}

/// The descriptor, or -1 when the handle lacks the access.
int With(HANDLE handle, DWORD access)
{
    const File* file = ToFile(handle);
    return file && (file->access & access) ? file->descriptor.Get() : -1;
}

// A handle tells what it does with a file, and what it lets nobody else do, by locks of four bytes far behind
// the content. All are shared locks, so that any number of handles may say the same.
constexpr off_t LOCKS_AT = std::numeric_limits<off_t>::max() - 16;
enum LockByte { LOCK_READS, LOCK_WRITES, LOCK_NO_READERS, LOCK_NO_WRITERS };

struct flock LockOf(LockByte byte, short type)
{
    struct flock lock = {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = LOCKS_AT + byte;
    lock.l_len = 1;
    return lock;
}

/// True when this and all other handles of the file bear each other. A file system without locks bears all.
bool Share(int fd, DWORD access, DWORD share)
{
    const struct {
        bool wanted;
        LockByte own;
        LockByte opposite;
    } rules[] = {
        {(access & GENERIC_READ) != 0, LOCK_READS, LOCK_NO_READERS},
        {(access & GENERIC_WRITE) != 0, LOCK_WRITES, LOCK_NO_WRITERS},
        {(share & FILE_SHARE_READ) == 0, LOCK_NO_READERS, LOCK_READS},
        {(share & FILE_SHARE_WRITE) == 0, LOCK_NO_WRITERS, LOCK_WRITES},
    };
    // First all are set, then looked at: of two that come at once at most one goes on.
    for (const auto& rule : rules) {
        struct flock lock = LockOf(rule.own, F_RDLCK);
        if (rule.wanted && fcntl(fd, F_OFD_SETLK, &lock) != 0) {
            return errno != EAGAIN && errno != EACCES;
        }
    }
    for (const auto& rule : rules) {
        struct flock lock = LockOf(rule.opposite, F_WRLCK);
        if (rule.wanted && fcntl(fd, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK) {
            return false;
        }
    }
    return true;
}

/// Opens without a look at other handles and without emptying the file. A pipe that nobody serves doesn't
/// hold the program up.
Descriptor OpenReal(const char* path, DWORD access, DWORD creation)
{
    const bool changes = (access & GENERIC_WRITE) != 0 || creation == CREATE_ALWAYS;
    const bool exists = !PlatformResolveRead(path).empty();
    int flags = (changes ? O_RDWR : O_RDONLY) | O_CLOEXEC | O_NONBLOCK;
    std::string real;
    if (creation == CREATE_ALWAYS || (creation == CREATE_NEW && !exists) ||
        (creation == OPEN_ALWAYS && !exists)) {
        real = PlatformResolveWrite(path);
        flags |= O_CREAT | (creation == CREATE_NEW ? O_EXCL : 0);
    } else if (creation == OPEN_EXISTING || creation == OPEN_ALWAYS) {
        real = changes ? PlatformResolveChange(path) : PlatformResolveRead(path);
    }
    return Descriptor(real.empty() ? -1 : open(real.c_str(), flags, PLATFORM_NEW_FILE_RIGHTS));
}

/// All of it, over interruptions and in as many steps as the system wants. False on failure.
template <class Step>
bool InSteps(DWORD bytes, DWORD& done, Step step)
{
    done = 0;
    while (done < bytes) {
        const ssize_t count = step(done, bytes - done);
        if (count == 0) {
            return true;
        }
        if (count < 0 && errno != EINTR) {
            return false;
        }
        done += count > 0 ? static_cast<DWORD>(count) : 0;
    }
    return true;
}

bool WriteAll(int fd, const void* buffer, DWORD bytes, DWORD& written)
{
    const bool good = InSteps(bytes, written, [fd, buffer](DWORD at, DWORD left) {
        return write(fd, static_cast<const char*>(buffer) + at, left);
    });
    return good && written == bytes;
}

bool CopyContent(int source, int target)
{
    const auto block = std::make_unique<char[]>(COPY_BLOCK);
    ssize_t count = 0;
    while ((count = read(source, block.get(), COPY_BLOCK)) > 0 || (count < 0 && errno == EINTR)) {
        DWORD written = 0;
        if (count > 0 && !WriteAll(target, block.get(), static_cast<DWORD>(count), written)) {
            return false;
        }
    }
    return count == 0 && PlatformFlushToDisk(target);
}

/// INVALID_HANDLE_VALUE when no file can be made; `name` is set otherwise.
HANDLE OpenTemporary(const char* path, std::string& name)
{
    std::string base = path ? path : "";
    base.erase(base.find_last_not_of("/\\") + 1);
    for (int number = 1; !base.empty() && number <= PLATFORM_MOST_TEMPORARIES; ++number) {
        name = PlatformTemporaryName(base, number);
        const HANDLE file =
            CreateFileA(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file != INVALID_HANDLE_VALUE) {
            return file;
        }
    }
    return INVALID_HANDLE_VALUE;
}

} // namespace

bool PlatformFlushToDisk(int fd)
{
    // A pipe or a device has nothing to bring to a disk.
    return fsync(fd) == 0 || errno == EINVAL || errno == ENOTSUP;
}

HANDLE CreateFileA(const char* path, DWORD access, DWORD share, void*, DWORD creation, DWORD, HANDLE)
{
    Descriptor descriptor = OpenReal(path, access, creation);
    const int fd = descriptor.Get();
    struct stat info {
    };
    if (fd < 0 || fstat(fd, &info) != 0 || S_ISDIR(info.st_mode) || !Share(fd, access, share)) {
        return INVALID_HANDLE_VALUE;
    }
    if (creation == CREATE_ALWAYS && S_ISREG(info.st_mode) && ftruncate(fd, 0) != 0) {
        return INVALID_HANDLE_VALUE;
    }
    return std::make_unique<File>(File{std::move(descriptor), access}).release();
}

BOOL CloseHandle(HANDLE file)
{
    const std::unique_ptr<File> owner(ToFile(file));
    return owner && owner->descriptor.Close();
}

BOOL ReadFile(HANDLE file, void* buffer, DWORD bytes, DWORD* done, void*)
{
    const int fd = With(file, GENERIC_READ);
    return fd >= 0 && InSteps(bytes, *done, [fd, buffer](DWORD at, DWORD left) {
               return read(fd, static_cast<char*>(buffer) + at, left);
           });
}

BOOL WriteFile(HANDLE file, const void* buffer, DWORD bytes, DWORD* written, void*)
{
    const int fd = With(file, GENERIC_WRITE);
    return fd >= 0 && WriteAll(fd, buffer, bytes, *written);
}

DWORD SetFilePointer(HANDLE file, LONG distance, LONG* high, DWORD origin)
{
    constexpr int ORIGINS[] = {SEEK_SET, SEEK_CUR, SEEK_END};
    const int fd = With(file, GENERIC_READ | GENERIC_WRITE);
    if (fd < 0 || origin > FILE_END) {
        return INVALID_SET_FILE_POINTER;
    }
    const off_t by =
        high ? static_cast<off_t>(static_cast<std::uint64_t>(*high) << 32 | static_cast<DWORD>(distance))
             : distance;
    const off_t old = lseek(fd, 0, SEEK_CUR);
    const off_t now = lseek(fd, by, ORIGINS[origin]);
    if (now < 0) {
        return INVALID_SET_FILE_POINTER;
    }
    if (high) {
        *high = static_cast<LONG>(now >> 32);
    } else if (now >= INVALID_SET_FILE_POINTER) {
        lseek(fd, old, SEEK_SET);
        return INVALID_SET_FILE_POINTER;
    }
    return static_cast<DWORD>(now);
}

BOOL SetEndOfFile(HANDLE file)
{
    const int fd = With(file, GENERIC_WRITE);
    const off_t now = lseek(fd, 0, SEEK_CUR);
    return now >= 0 && ftruncate(fd, now) == 0;
}

BOOL FlushFileBuffers(HANDLE file)
{
    return PlatformFlushToDisk(With(file, GENERIC_WRITE));
}

std::string PlatformMakeTemporary(const char* path)
{
    std::string name;
    return CloseHandle(OpenTemporary(path, name)) ? name : std::string();
}

BOOL CopyFileA(const char* from, const char* to, BOOL failIfExists)
{
    const std::string source = PlatformResolveRead(from);
    if (source.empty() || (failIfExists && !PlatformResolveRead(to).empty())) {
        return FALSE;
    }
    const std::unique_ptr<void, BOOL (*)(HANDLE)> in(CreateFileA(from, GENERIC_READ, FILE_SHARE_READ, nullptr,
                                                                 OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                                                                 nullptr),
                                                     &CloseHandle);
    const std::string target = PlatformResolveWrite(to);
    std::error_code error;
    const auto type = std::filesystem::status(target, error).type();
    const bool replaceable =
        type == std::filesystem::file_type::not_found ||
        (type == std::filesystem::file_type::regular && !std::filesystem::equivalent(source, target, error));
    if (in.get() == INVALID_HANDLE_VALUE || target.empty() || !replaceable) {
        return FALSE;
    }
    std::string temporary;
    const HANDLE out = OpenTemporary(to, temporary);
    if (out == INVALID_HANDLE_VALUE) {
        return FALSE;
    }
    const bool copied = CopyContent(With(in.get(), GENERIC_READ), With(out, GENERIC_WRITE));
    if (CloseHandle(out) && copied && PlatformRenameFile(temporary.c_str(), to, !failIfExists)) {
        return TRUE;
    }
    PlatformDeleteFile(temporary.c_str());
    return FALSE;
}

BOOL MoveFileA(const char* from, const char* to)
{
    return PlatformResolveRead(to).empty() && PlatformRenameFile(from, to, false);
}

BOOL DeleteFileA(const char* path)
{
    return PlatformDeleteFile(path);
}
