#pragma once
// A file of bytes, opened with a word of flags: what the image files are read and written through. Paths are
// looked up as platform/files.h tells. Every operation but Open, Close, IsOpen, GetName and the static ones
// expects an open file; a closed one is a programming error.

#include <cstdint>
#include <exception>
#include <string>
#include <utility>

#include "platform/types.h"

class CFileIO
{
  public:
    /// Its text is the name of the operation that failed.
    class FileException : public std::exception
    {
      public:
        explicit FileException(std::string operation) : m_strOperation(std::move(operation)) {}
        const char* what() const noexcept override { return m_strOperation.c_str(); }

      private:
        std::string m_strOperation;
    };

    /// The flags of Open are one of each group, added up.
    enum Flags : std::uint32_t {
        ACCESS_MASK = 0x00f, ///< another value than the named ones is ACCESS_BOTH
        ACCESS_READ = 0x001,
        ACCESS_WRITE = 0x002,
        ACCESS_BOTH = 0x004,
        SHARE_MASK = 0x0f0, ///< what others may do meanwhile; another value is: nothing
        SHARE_READ = 0x010,
        SHARE_WRITE = 0x020,
        SHARE_BOTH = 0x040,
        CREATE_MASK = 0xf00, ///< another value is CREATE_NEW_FILE
        CREATE_NEW_FILE = 0x100,
        CREATE_OR_EMPTY = 0x200,
        OPEN_EXISTING_FILE = 0x400,
        OPEN_OR_CREATE = 0x800,
    };
    static constexpr std::uint32_t READ_EXISTING = OPEN_EXISTING_FILE | SHARE_READ | ACCESS_READ;
    static constexpr std::uint32_t WRITE_ANEW = CREATE_OR_EMPTY | SHARE_READ | ACCESS_WRITE;
    static_assert(READ_EXISTING == 0x411 && WRITE_ANEW == 0x212);

    enum Origin { begin, current, end };

    CFileIO() = default;
    /// Opens; IsOpen tells whether that worked.
    CFileIO(const char* path, std::uint32_t flags);
    ~CFileIO();
    CFileIO(const CFileIO&) = delete;
    CFileIO& operator=(const CFileIO&) = delete;

    /// Closes what is open first. False on failure; the file is closed then.
    bool Open(const char* path, std::uint32_t flags);
    void Close();
    bool IsOpen() const { return m_hFile != nullptr; }
    /// The path it was opened with, empty when closed.
    const char* GetName() const { return m_strName.c_str(); }

    /// Brings what was written to the disk.
    void Flush();
    /// The bytes read: fewer than asked at the end of the file. Throws FileException on failure.
    std::uint32_t Read(void* buffer, std::uint32_t bytes);
    /// The bytes written, which are all. Throws FileException on failure.
    std::uint32_t Write(const void* buffer, std::uint32_t bytes);

    // Numbers are little-endian, a text ends with its zero; a null text is an empty one.
    CFileIO& operator<<(std::uint32_t value);
    CFileIO& operator<<(std::uint16_t value);
    CFileIO& operator<<(std::uint8_t value);
    CFileIO& operator<<(const char* text);
    CFileIO& operator<<(const std::string& text);
    // The value stays as it is when the file ends before it.
    CFileIO& operator>>(std::uint32_t& value);
    CFileIO& operator>>(std::uint16_t& value);
    CFileIO& operator>>(std::uint8_t& value);

    /// The new position. Throws FileException before the begin and from 4 GiB on; the position stays then.
    /// `origin` is an Origin; any other is a programming error.
    std::uint32_t Seek(std::int32_t offset, int origin);
    std::uint32_t SeekToEnd();
    std::uint32_t SeekToBegin();
    std::uint32_t GetPosition();
    /// Cuts or lengthens the file; the position stays, also when it throws FileException.
    void SetLength(std::uint32_t length);
    std::uint32_t GetLength();

    /// Copies so many bytes from the position of `source`. Throws FileException when it ends before.
    void Copy(CFileIO& source, std::uint32_t bytes);
    /// Copies from the position of `source` to its end.
    void CopyAll(CFileIO& source);

    // These don't throw.
    static bool CopyFile(const char* from, const char* to, bool overwrite);
    /// False when `to` exists.
    static bool MoveFile(const char* from, const char* to);
    static bool DeleteFile(const char* path);

  protected:
    /// As Seek from the begin, for any position below 4 GiB.
    std::uint32_t SeekTo(std::uint32_t position);

  private:
    HANDLE m_hFile = nullptr; ///< null when no file is open
    std::string m_strName;
};
