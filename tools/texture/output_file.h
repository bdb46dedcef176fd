#pragma once
// A file that is either made wholly or not at all: it is written under another name beside its place and then
// put there.

#include <stdexcept>
#include <string>

/// A file can't be used; the text names it and tells why.
class file_fault : public std::runtime_error
{
  public:
    file_fault(const std::string& file, const std::string& fault)
        : std::runtime_error((file.empty() ? "\"\"" : file) + ": " + fault)
    {
    }
};

class COutputFile
{
  public:
    /// Makes the empty file to write to. Throws file_fault when there can be none, and when `path` is
    /// something else than a file or can't be told to the file layer.
    explicit COutputFile(const std::string& path);
    /// Removes what was written, unless it was kept.
    ~COutputFile();
    COutputFile(const COutputFile&) = delete;
    COutputFile& operator=(const COutputFile&) = delete;

    /// The absolute path to write to; the file is to be closed before Keep.
    const std::string& GetPath() const { return m_strTemporary; }
    /// Brings the content to the disk and replaces what is at the path. Throws file_fault; what was there
    /// stays then.
    void Keep();
    /// A file_fault with the system's reason of what failed last, if there is one.
    file_fault Fault() const;

  private:
    void SetRights() const;

    std::string m_strPath;      ///< as the user gave it
    std::string m_strTarget;    ///< absolute, links followed
    std::string m_strTemporary; ///< empty when kept
};
