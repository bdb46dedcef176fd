#include "scenario/scenhead.h"

#include <array>

#include "controls/itfflagbox.h"
#include "iengine.h"
#include "itfrecords.h"
#include "keelworks/ds_file.h"
#include "keelworks/scenario_parser.h"
#include "kernel/itfwnd.h"
#include "kernel/own_names.h"

namespace
{

constexpr char UNKNOWN_NAME[] = "?";
constexpr int NAME_BUFFER = 260;
constexpr int FLAG_FILE_BUFFER = 260;

// Reads zero-terminated texts one behind the other, in pieces.
class CTextReader
{
  public:
    explicit CTextReader(ds_file& file) : m_File(file) {}

    // The next text, cut to `limit` characters.
    std::string Read(std::size_t limit)
    {
        std::string text;
        for (m_bEnded = false; text.size() < limit && !m_bEnded;) {
            const char c = Next();
            m_bEnded = c == '\0';
            if (!m_bEnded)
                text += c;
        }
        return text;
    }

    // Passes over what the last Read cut off, if the text ends within what a scenario file may hold.
    void SkipRest()
    {
        for (std::size_t n = 0; !m_bEnded && n < CScenarioParser::MAX_FILE_SIZE; ++n)
            m_bEnded = Next() == '\0';
    }

  private:
    // The next byte, 0 also at the end of the file.
    char Next()
    {
        if (m_nNext == m_nFilled) {
            m_nFilled = m_File.read(m_Buffer.data(), m_Buffer.size());
            m_nNext = 0;
            if (m_nFilled == 0)
                return '\0';
        }
        return m_Buffer[m_nNext++];
    }

    ds_file& m_File;
    std::array<char, 512> m_Buffer;
    std::size_t m_nNext = 0;
    std::size_t m_nFilled = 0;
    bool m_bEnded = false; ///< the text read last came to its zero
};

} // namespace

bool ReadScenarioHead(const char* path, bool withDescription, ScenarioHead& out)
try {
    out = ScenarioHead();
    ds_file file(path, ds_file::MODE_READ);
    if (file.read(&out.header, sizeof out.header) == 0)
        return false;
    if (out.header.nVersion >= SCENARIO_VERSION_CUSTOM &&
        file.read(&out.custom, sizeof out.custom) != sizeof out.custom)
        return false;
    CTextReader reader(file);
    out.title = reader.Read(SCENARIO_MAX_TITLE);
    if (withDescription) {
        reader.SkipRest();
        out.description = reader.Read(SCENARIO_MAX_DESCRIPTION);
    }
    return true;
} catch (const fopen_exception&) {
    return false;
}

bool HasWholeScenarioHead(const char* path)
try {
    SCENARIO_HEADER header;
    return ds_file(path, ds_file::MODE_READ).read(&header, sizeof header) == sizeof header;
} catch (const fopen_exception&) {
    return false;
}

std::string ScenarioSideName(int nation, bool custom, const CObjGUID& guid, ICustomResources* resources)
{
    if (!custom) {
        const char* name = CItfWnd::FindResString(nation);
        return name != nullptr ? name : UNKNOWN_NAME;
    }
    char name[NAME_BUFFER] = {};
    const int index = resources != nullptr ? resources->Find(&guid) : -1;
    return index >= 0 && resources->GetName(index, name, sizeof name) ? name : UNKNOWN_NAME;
}

void ShowScenarioFlag(CItfFlagBox& box, int nation, bool custom, const CObjGUID& guid, int extra,
                      ICustomResources* resources)
{
    if (!custom) {
        box.SetFlag(nation, 0, extra);
        return;
    }
    char file[FLAG_FILE_BUFFER] = {};
    const int index = resources != nullptr ? resources->Find(&guid) : -1;
    const bool known = index >= 0 && resources->GetFlagFile(index, 0, file, sizeof file);
    box.SetFlagFile(known ? file : TEXTURE_WHITE_FLAG);
}

ICustomResources* GetCustomResources(IEngine* core)
{
    return reinterpret_cast<ICustomResources*>(
        core->GetScene(-1)->SendMessage(MSG_GET_CUSTOM_RESOURCES, DEST_LOGIC, 0, ""));
}
