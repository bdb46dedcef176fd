#include "kernel/nameloader.h"

#include "keelworks/text_parser.h"
#include "kernel/itfdialog.h"
#include "platform/files.h"
#include "platform/system.h"

namespace
{

// Lives through one file; its operations throw after they have told where.
class CNameReader
{
  public:
    explicit CNameReader(ds_file* file) : m_Parser(file, false) {}

    std::vector<NameRow> ReadSection(const char* name)
    {
        Check(m_Parser.SeekToToken(name));
        Check(m_Parser.SkipTillChar('{'));
        std::vector<NameRow> rows;
        do {
            NameRow row;
            row.name = ReadName().substr(0, MAX_LOGICAL_NAME);
            row.file = ReadName();
            rows.push_back(std::move(row));
        } while (!AtEnd());
        return rows;
    }

  private:
    std::string ReadName()
    {
        char buffer[MAX_PATH];
        Check(m_Parser.ReadFileName(buffer, sizeof buffer));
        return buffer;
    }

    // A comma between rows may stand there or not; the brace that ends the section is taken.
    bool AtEnd()
    {
        if (m_Parser.SkipSpace(false) == ',')
            m_Parser.SkipSpace(true);
        if (m_Parser.SkipSpace(false) != '}')
            return false;
        m_Parser.SkipSpace(true);
        return true;
    }

    void Check(bool read)
    {
        if (read)
            return;
        OutputDebugStringA((m_Parser.DescribeError() + "\r\n").c_str());
        throw static_cast<int>(RESERR_SYNTAX);
    }

    CTextParser m_Parser;
};

} // namespace

NameMaps ReadNameMaps(ds_file* file)
{
    CNameReader reader(file);
    NameMaps maps;
    maps.sprites = reader.ReadSection("SpriteMap");
    maps.fonts = reader.ReadSection("FontMap");
    return maps;
}
