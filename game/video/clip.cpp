#include "video/clip.h"

#include "engine/names.h"
#include "keelworks/text_parser.h"
#include "platform/files.h"

namespace
{

/// Reads one clip's records; a helper of CClip::Load that stops at the first error.
class CClipReader
{
  public:
    explicit CClipReader(ds_file_buffered& file) : m_Parser(&file, false), m_strPath(file.get_name()) {}

    bool Begin() { return m_Parser.SeekToToken("clip") && m_Parser.SkipTillChar('{'); }

    bool Keyword(std::string& out)
    {
        char keyword[32];
        if (!m_Parser.ReadFileName(keyword, sizeof(keyword)) || !m_Parser.SkipTillChar(','))
            return false;
        out = LowerCase(keyword);
        return true;
    }

    bool Text(std::string& out)
    {
        char text[MAX_PATH];
        if (!m_Parser.ReadFileName(text, sizeof(text)) || !m_Parser.SkipTillChar(','))
            return false;
        out = text;
        return true;
    }

    /// The last number of a record may end the clip.
    bool Number(int low, int high, bool last, int& out)
    {
        const bool read =
            last ? m_Parser.ReadIntElem(',', '}', out, m_bEnded) : m_Parser.ReadIntElem(',', out);
        if (!read)
            return false;
        return (out >= low && out <= high) ||
               Fail("expected a number from " + std::to_string(low) + " to " + std::to_string(high));
    }

    bool Fail(const std::string& reason)
    {
        m_strError = m_strPath + "(" + std::to_string(m_Parser.GetLine()) + "): " + reason;
        return false;
    }

    bool Ended() const { return m_bEnded; }
    std::string Error() const { return m_strError.empty() ? m_Parser.DescribeError() : m_strError; }

  private:
    CTextParser m_Parser;
    std::string m_strPath;
    std::string m_strError;
    bool m_bEnded = false;
};

bool ReadStill(CClipReader& reader, std::vector<ClipStill>& stills)
{
    ClipStill& still = stills.emplace_back();
    if (stills.size() > CClip::MAX_STILLS)
        return reader.Fail("expected at most " + std::to_string(CClip::MAX_STILLS) + " stills");
    return reader.Text(still.file) && reader.Number(0, CClip::MAX_TIME, false, still.nHold) &&
           reader.Number(0, CClip::MAX_TIME, true, still.nFade);
}

bool ReadSound(CClipReader& reader, std::vector<ClipSound>& sounds)
{
    ClipSound& sound = sounds.emplace_back();
    if (sounds.size() > CClip::MAX_SOUNDS)
        return reader.Fail("expected at most " + std::to_string(CClip::MAX_SOUNDS) + " sounds");
    return reader.Text(sound.name) && reader.Number(0, CClip::MAX_TIME, true, sound.nTime);
}

} // namespace

bool CClip::Load(const std::string& path, std::string& error)
{
    ds_file_buffered file;
    try {
        file.open(path.c_str(), false);
    } catch (const fopen_exception& exception) {
        error = exception.what();
        return false;
    }
    CClipReader reader(file);
    bool good = reader.Begin();
    while (good && !reader.Ended()) {
        std::string keyword;
        good = reader.Keyword(keyword);
        if (!good)
            break;
        if (keyword == "size")
            good = reader.Number(1, MAX_SIDE, false, m_nWidth) && reader.Number(1, MAX_SIDE, true, m_nHeight);
        else if (keyword == "still")
            good = ReadStill(reader, m_Stills);
        else if (keyword == "sound")
            good = ReadSound(reader, m_Sounds);
        else
            good = reader.Fail("expected size, still or sound, found \"" + keyword + "\"");
    }
    if (good && (m_nWidth == 0 || Duration() == 0))
        good = reader.Fail("expected a size and a still that is shown for some time");
    if (!good)
        error = reader.Error();
    return good;
}

int CClip::Duration() const
{
    int duration = 0;
    for (const ClipStill& still : m_Stills)
        duration += still.nHold + still.nFade;
    return duration;
}

ClipMoment CClip::At(int time, bool loop) const
{
    const int last = static_cast<int>(m_Stills.size()) - 1;
    for (int i = 0; i <= last; ++i) {
        const ClipStill& still = m_Stills[static_cast<std::size_t>(i)];
        const int next = i < last ? i + 1 : loop ? 0 : -1;
        if (time < still.nHold)
            return {i, next, 0};
        time -= still.nHold;
        if (time < still.nFade)
            return {i, next, static_cast<int>(std::int64_t{time} * FULL_WEIGHT / still.nFade)};
        time -= still.nFade;
    }
    const int fade = m_Stills[static_cast<std::size_t>(last)].nFade;
    return {last, loop ? 0 : -1, fade > 0 ? FULL_WEIGHT : 0};
}
