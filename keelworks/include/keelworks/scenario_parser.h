#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "keelworks/scenario.h"

/// Reads a scenario file as a whole. A class that wants the items derives from it and overrides
/// OnScenarioItem.
///
/// Takes only what its writer could have made: a file that is cut short, goes on behind its last item, is
/// larger than MAX_FILE_SIZE, comes from a later version, or whose checksum, counts, texts or figures aren't
/// right, is broken. What the getters give stays valid and unchanged until the scenario is closed or another
/// is opened; they give null, and the CRC 0, while none is open.
class CScenarioParser
{
  public:
    /// Room for SCENARIO_MAX_ITEMS ships and all texts.
    static constexpr std::size_t MAX_FILE_SIZE = std::size_t{512} * 1024;

    CScenarioParser() = default;
    virtual ~CScenarioParser();
    CScenarioParser(const CScenarioParser&) = delete;
    CScenarioParser& operator=(const CScenarioParser&) = delete;

    /// Closes what is open first. Throws fopen_exception when the file can't be opened and scenario_exception
    /// when it is broken; nothing is open then.
    void OpenScenario(const char* path);
    /// The same for a file's bytes. `name` is for what an exception says.
    void OpenScenario(const std::string& name, const std::vector<char>& bytes);
    void CloseScenario();

    const SCENARIO_HEADER* GetHeader() const { return m_bOpen ? &m_Scenario.header : nullptr; }
    const SCSETT_STRUCT* GetScSettings() const { return m_bOpen ? &m_Scenario.header.settings : nullptr; }
    /// All zero when the file's version has no such block.
    const CUSTOM_RESOURCE_DATA* GetCustomResourceData() const
    {
        return m_bOpen ? &m_Scenario.custom : nullptr;
    }
    const char* GetTitle() const { return m_bOpen ? m_Scenario.title.c_str() : nullptr; }
    const char* GetDescription() const { return m_bOpen ? m_Scenario.description.c_str() : nullptr; }
    /// Of the whole file.
    std::uint32_t GetCRC32() const { return m_dwCRC32; }
    /// Everything at once; empty while none is open.
    const Scenario& GetScenario() const { return m_Scenario; }

    /// Calls OnScenarioItem for each item whose type is among the bits of `mask` (ScenarioItemType), in the
    /// file's order, until it gives 0. Nothing while none is open; a handler may close the scenario, which
    /// ends it.
    void EnumScenarioItems(int mask);
    /// category is a ScenarioCategory, type a ScenarioItemType, and item the ScenarioShip, ScenarioBalloon or
    /// ScenarioSubmarine of that type. 0 ends the enumeration; the base gives 1.
    virtual int OnScenarioItem(int category, int type, const void* item);

  private:
    Scenario m_Scenario;
    std::uint32_t m_dwCRC32 = 0;
    unsigned m_nGeneration = 0; ///< changes whenever a scenario is opened or closed
    bool m_bOpen = false;
};
