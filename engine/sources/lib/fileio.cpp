#include "lib/fileio.h"

#include <algorithm>

#include "assertion.h"
#include "platform/filehandle.h"

namespace
{

constexpr std::uint32_t COPY_BLOCK = 1024;
constexpr char NO_FILE[] = "m_hFile != NULL";

DWORD AccessOf(std::uint32_t flags)
{
    switch (flags & CFileIO::ACCESS_MASK) {
    case CFileIO::ACCESS_READ:
        return GENERIC_READ;
    case CFileIO::ACCESS_WRITE:
        return GENERIC_WRITE;
    default:
        return GENERIC_READ | GENERIC_WRITE;
    }
}

DWORD SharingOf(std::uint32_t flags)
{
    switch (flags & CFileIO::SHARE_MASK) {
    case CFileIO::SHARE_READ:
        return FILE_SHARE_READ;
    case CFileIO::SHARE_WRITE:
        return FILE_SHARE_WRITE;
    case CFileIO::SHARE_BOTH:
        return FILE_SHARE_READ | FILE_SHARE_WRITE;
    default:
        return 0;
    }
}

DWORD CreationOf(std::uint32_t flags)
{
    switch (flags & CFileIO::CREATE_MASK) {
    case CFileIO::CREATE_OR_EMPTY:
        return CREATE_ALWAYS;
    case CFileIO::OPEN_EXISTING_FILE:
        return OPEN_EXISTING;
    case CFileIO::OPEN_OR_CREATE:
        return OPEN_ALWAYS;
    default:
        return CREATE_NEW;
    }
}

template <class Value>
void WriteNumber(CFileIO& file, Value value)
{
    std::uint8_t bytes[sizeof value];
    for (unsigned i = 0; i < sizeof value; ++i)
        bytes[i] = static_cast<std::uint8_t>(value >> (8 * i));
    file.Write(bytes, sizeof bytes);
}

template <class Value>
void ReadNumber(CFileIO& file, Value& value)
{
    std::uint8_t bytes[sizeof value];
    if (file.Read(bytes, sizeof bytes) != sizeof bytes)
        return;
    value = 0;
    for (unsigned i = 0; i < sizeof value; ++i)
        value = static_cast<Value>(value | static_cast<Value>(bytes[i]) << (8 * i));
}

} // namespace

CFileIO::CFileIO(const char* path, std::uint32_t flags)
{
    Open(path, flags);
}

CFileIO::~CFileIO()
{
    Close();
}

bool CFileIO::Open(const char* path, std::uint32_t flags)
{
    // The path may be this file's own name, which closing clears.
    const std::string name = path ? path : "";
    Close();
    const HANDLE file = CreateFileA(name.c_str(), AccessOf(flags), SharingOf(flags), nullptr,
                                    CreationOf(flags), FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    m_hFile = file;
    m_strName = name;
    return true;
}

void CFileIO::Close()
{
    if (m_hFile != nullptr)
        CloseHandle(m_hFile);
    m_hFile = nullptr;
    m_strName.clear();
}

void CFileIO::Flush()
{
    Assert(m_hFile != nullptr, NO_FILE);
    if (!FlushFileBuffers(m_hFile))
        throw FileException("CFileIO::Flush");
}

std::uint32_t CFileIO::Read(void* buffer, std::uint32_t bytes)
{
    Assert(m_hFile != nullptr, NO_FILE);
    DWORD done = 0;
    if (!ReadFile(m_hFile, buffer, bytes, &done, nullptr))
        throw FileException("CFileIO::Read");
    return done;
}

std::uint32_t CFileIO::Write(const void* buffer, std::uint32_t bytes)
{
    Assert(m_hFile != nullptr, NO_FILE);
    DWORD done = 0;
    if (!WriteFile(m_hFile, buffer, bytes, &done, nullptr))
        throw FileException("CFileIO::Write");
    return done;
}

CFileIO& CFileIO::operator<<(std::uint32_t value)
{
    WriteNumber(*this, value);
    return *this;
}

CFileIO& CFileIO::operator<<(std::uint16_t value)
{
    WriteNumber(*this, value);
    return *this;
}

CFileIO& CFileIO::operator<<(std::uint8_t value)
{
    WriteNumber(*this, value);
    return *this;
}

CFileIO& CFileIO::operator<<(const char* text)
{
    return *this << std::string(text ? text : "");
}

CFileIO& CFileIO::operator<<(const std::string& text)
{
    Write(text.c_str(), static_cast<std::uint32_t>(text.size() + 1));
    return *this;
}

CFileIO& CFileIO::operator>>(std::uint32_t& value)
{
    ReadNumber(*this, value);
    return *this;
}

CFileIO& CFileIO::operator>>(std::uint16_t& value)
{
    ReadNumber(*this, value);
    return *this;
}

CFileIO& CFileIO::operator>>(std::uint8_t& value)
{
    ReadNumber(*this, value);
    return *this;
}

std::uint32_t CFileIO::Seek(std::int32_t offset, int origin)
{
    Assert(m_hFile != nullptr, NO_FILE);
    Assert(origin == begin || origin == end || origin == current,
           "seek==begin || seek==end || seek==current");
    const DWORD position = SetFilePointer(m_hFile, offset, nullptr, static_cast<DWORD>(origin));
    if (position == INVALID_SET_FILE_POINTER)
        throw FileException("CFileIO::Seek");
    return position;
}

std::uint32_t CFileIO::SeekTo(std::uint32_t position)
{
    Assert(m_hFile != nullptr, NO_FILE);
    LONG high = 0;
    // The last position can't be told from a failure, so it is refused before anything moves.
    if (position == INVALID_SET_FILE_POINTER ||
        SetFilePointer(m_hFile, static_cast<LONG>(position), &high, FILE_BEGIN) == INVALID_SET_FILE_POINTER)
        throw FileException("CFileIO::Seek");
    return position;
}

std::uint32_t CFileIO::SeekToEnd()
{
    Assert(m_hFile != nullptr, NO_FILE);
    const DWORD position = SetFilePointer(m_hFile, 0, nullptr, FILE_END);
    if (position == INVALID_SET_FILE_POINTER)
        throw FileException("CFileIO::SeekToEnd");
    return position;
}

std::uint32_t CFileIO::SeekToBegin()
{
    Assert(m_hFile != nullptr, NO_FILE);
    const DWORD position = SetFilePointer(m_hFile, 0, nullptr, FILE_BEGIN);
    if (position == INVALID_SET_FILE_POINTER)
        throw FileException("CFileIO::SeekToBegin");
    return position;
}

std::uint32_t CFileIO::GetPosition()
{
    Assert(m_hFile != nullptr, NO_FILE);
    const DWORD position = SetFilePointer(m_hFile, 0, nullptr, FILE_CURRENT);
    if (position == INVALID_SET_FILE_POINTER)
        throw FileException("CFileIO::GetPosition");
    return position;
}

void CFileIO::SetLength(std::uint32_t length)
{
    const std::uint32_t position = GetPosition();
    SeekTo(length);
    const bool set = SetEndOfFile(m_hFile);
    SeekTo(position);
    if (!set)
        throw FileException("CFileIO::Write");
}

std::uint32_t CFileIO::GetLength()
{
    const std::uint32_t position = GetPosition();
    const std::uint32_t length = SeekToEnd();
    SeekTo(position);
    return length;
}

void CFileIO::Copy(CFileIO& source, std::uint32_t bytes)
{
    Assert(m_hFile != nullptr, NO_FILE);
    char block[COPY_BLOCK];
    for (; bytes >= COPY_BLOCK; bytes -= COPY_BLOCK) {
        if (source.Read(block, COPY_BLOCK) != COPY_BLOCK)
            throw FileException("CFileIO::Copy");
        Write(block, COPY_BLOCK);
    }
    if (bytes == 0)
        return;
    if (source.Read(block, bytes) != bytes)
        throw FileException("CFileIO::Copy, 2");
    Write(block, bytes);
}

void CFileIO::CopyAll(CFileIO& source)
{
    char block[COPY_BLOCK];
    std::uint32_t count = COPY_BLOCK;
    while (count == COPY_BLOCK) {
        count = source.Read(block, COPY_BLOCK);
        Write(block, count);
    }
}

bool CFileIO::CopyFile(const char* from, const char* to, bool overwrite)
{
    return CopyFileA(from, to, !overwrite);
}

bool CFileIO::MoveFile(const char* from, const char* to)
{
    return MoveFileA(from, to);
}

bool CFileIO::DeleteFile(const char* path)
{
    return DeleteFileA(path);
}
