#pragma once
// The textures that flags wave with: those of the flag table, of the nations that players add, and the white
// one.

#include <vector>

#include "faults.h"
#include "logic/custom_resources.h"
#include "resource_tokens.h"

class CFlagCheck
{
  public:
    explicit CFlagCheck(CFaults& faults) : m_Faults(faults) {}

    /// Once, before the questions below.
    void Run();
    /// The rows of the flag table; a row's number is also that of its nation's name.
    const std::vector<NumberedRow>& Rows() const { return m_Rows; }
    bool HasNation(const CObjGUID& guid) { return m_Nations.Find(&guid) >= 0; }

    static constexpr char FLAGS[] = "resource\\txt_res\\flags.ini";

  private:
    void CheckTable();
    void CheckNations();
    void CheckTexture(const std::string& texture, const std::string& file, int line);

    CFaults& m_Faults;
    std::vector<NumberedRow> m_Rows;
    CCustomResources m_Nations;
};
