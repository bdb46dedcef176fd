#pragma once
// Keys and values in sections, kept in a text file of the player's folder.

#include <map>
#include <string>

#include "ilogic.h"

/// The file holds lines `[SECTION]` and `Key = value`; a value is a number (`-5`, `0x10000`) or a text in
/// double quotes with `\\`, `\"`, `\n` and `\r`. A line that begins with `;` is a comment. Names are compared
/// without regard to case. Each Write goes to the disk at once.
class CProfileStore : public IProfileStore
{
  public:
    static constexpr std::size_t TEXT_SIZE = 260; ///< of a value read with "s", its zero included
    static constexpr std::size_t MAX_NAME = 64;
    static constexpr std::size_t MAX_ENTRIES = 4096;

    /// In memory alone; refuses every Write of its users.
    CProfileStore() = default;
    /// Loads the file. A broken one is renamed to `path`.bad (or .bad2, ... when there is one), told in the
    /// debug output, and the store starts empty. One that can't be read is told and left alone: Write fails.
    explicit CProfileStore(std::string path);

    bool Write(const char* key, const char* format, const void* value) override;
    bool Read(const char* key, const char* format, void* out) override;
    bool SelectSection(const char* name, int create) override;

    /// The owner's own way to an entry, past the refusal of Write. Not written to a file.
    void Preset(const std::string& section, const std::string& key, std::uint32_t value);

  private:
    struct Entry {
        std::string name; ///< as it was first written
        std::string value;
        bool text = false;
    };
    struct Section {
        std::string name;
        std::map<std::string, Entry> entries;
    };

    void Load();
    bool ParseLine(const std::string& line);
    bool ParseEntry(const std::string& line);
    bool Save() const;
    std::size_t CountEntries() const;
    static bool IsName(const std::string& name);
    static bool IsNumber(const std::string& value);

    std::string m_strPath; // empty: no file
    std::map<std::string, Section> m_Sections;
    bool m_bLeftAlone = false; // the file can't be read or set aside, so it isn't written either
    std::string m_strSection;  // in lower case; empty while none is selected
};
