#pragma once
// Files of the sibling library.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/types.h"

/// A file can't be opened; what() names it.
class fopen_exception : public std::runtime_error
{
  public:
    explicit fopen_exception(const std::string& path);
};

/// A binary file. Relative paths are looked up in the two roots of the file layer.
class ds_file
{
  public:
    static constexpr unsigned MODE_READ = 0x21;
    static constexpr unsigned MODE_WRITE = 0x42; ///< creates or truncates

    /// 16-bit words in the order year, month, day of week, day, hour, minute, second, millisecond.
    using sys_time = SYSTEMTIME;

    ds_file();
    /// Opens; throws fopen_exception.
    ds_file(const char* path, unsigned mode);
    virtual ~ds_file();
    ds_file(const ds_file&) = delete;
    ds_file& operator=(const ds_file&) = delete;

    /// Closes what is open first. Throws fopen_exception when the file can't be opened or `mode` is neither
    /// of the two; the file is closed then.
    virtual void open(const char* path, unsigned mode);
    /// The bytes read, fewer than asked at the end of the file, 0 when none is open.
    virtual std::size_t read(void* buffer, std::size_t size);
    /// The bytes written, fewer than asked on failure.
    virtual std::size_t write(const void* buffer, std::size_t size);
    /// In bytes; 0 when none is open.
    virtual std::size_t get_size() const;
    virtual std::size_t get_cur_pos() const;
    /// False beyond the end of a file that is read; the position then stays.
    virtual bool set_pos(std::size_t pos);
    /// The path it was opened with, empty when closed.
    const char* get_name() const;
    /// Last modification, seconds since 1970; 0 when unknown.
    std::int64_t get_time() const;
    /// For a file that is written; a later write sets the time anew. False on failure.
    bool set_time(std::int64_t seconds);
    /// Last modification as local time. False when unknown.
    bool get_sys_time(sys_time& out) const;
    virtual bool is_open() const;
    /// False when something that was written since the opening did not reach the disk.
    virtual bool close();
    /// Changes whenever a file is opened or closed, so that a reader that keeps something of it can tell.
    unsigned get_generation() const { return m_nGeneration; }

  protected:
    std::string m_strName;
    std::string m_strRealPath; ///< of a file that is told its time by path, not by its handle
    unsigned m_nGeneration = 0;

  private:
    std::FILE* m_pFile = nullptr;
    bool m_bWriting = false;
    bool m_bWriteFailed = false;
};

/// A file for reading that is held in memory as a whole (up to MAX_SIZE; a larger one throws
/// fopen_exception).
class ds_file_buffered : public ds_file
{
  public:
    static constexpr std::size_t MAX_SIZE = std::size_t{64} << 20;

    ds_file_buffered();
    /// Opens; throws fopen_exception.
    ds_file_buffered(const char* path, bool);
    ~ds_file_buffered() override;

    /// Reads the whole file. Throws fopen_exception; the file is closed then.
    void open(const char* path, bool);
    /// The same; any mode but MODE_READ throws.
    void open(const char* path, unsigned mode) override;
    /// Takes `bytes` as the content of a file of that name.
    void open_memory(std::string name, std::vector<char> bytes);
    std::size_t read(void* buffer, std::size_t size) override;
    std::size_t write(const void* buffer, std::size_t size) override; ///< always 0
    std::size_t get_size() const override;
    std::size_t get_cur_pos() const override;
    bool set_pos(std::size_t pos) override;
    bool is_open() const override;
    bool close() override;

    /// All bytes of the file, for a parser that shares this file's position; not ended by a zero.
    const char* data() const { return m_Data.data(); }

  private:
    std::vector<char> m_Data;
    std::size_t m_nPos = 0;
    bool m_bOpen = false;
};
