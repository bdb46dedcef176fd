#include "fontstyle.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <stdexcept>

namespace
{
constexpr int MAX_LIKE_DEPTH = 8; ///< a description that is `like` itself ends here

/// The words of one line, with complaints that name the file and the line.
class CLine
{
  public:
    CLine(std::string file, int number, const std::string& text)
        : m_strWhere(std::move(file) + "(" + std::to_string(number) + "): ")
    {
        std::istringstream words(text);
        for (std::string word; words >> word && word != "#";) {
            m_Words.push_back(word);
        }
    }

    bool IsEmpty() const { return m_Words.empty(); }
    std::size_t GetCount() const { return m_Words.size(); }

    [[noreturn]] void Fail(const std::string& why) const { throw std::runtime_error(m_strWhere + why); }

    const std::string& Word(std::size_t index) const
    {
        if (index >= m_Words.size()) {
            Fail("\"" + m_Words.front() + "\" needs another value");
        }
        return m_Words[index];
    }

    double Number(std::size_t index, double least, double most) const
    {
        const std::string& word = Word(index);
        std::size_t used = 0;
        double value = 0;
        try {
            value = std::stod(word, &used);
        } catch (const std::logic_error&) {
            used = 0;
        }
        if (used == 0 || used != word.size() || !(value >= least && value <= most)) {
            Fail("\"" + word + "\" isn't a number in the range of \"" + m_Words.front() + "\"");
        }
        return value;
    }

    int Whole(std::size_t index, int least, int most) const
    {
        const double value = Number(index, least, most);
        if (value != std::floor(value)) {
            Fail("\"" + Word(index) + "\" isn't a whole number");
        }
        return static_cast<int>(value);
    }

    /// `#rrggbb`
    SColour Colour(std::size_t index) const
    {
        const std::string& word = Word(index);
        std::size_t used = 0;
        unsigned long value = 0;
        try {
            value = std::stoul(word.substr(1), &used, 16);
        } catch (const std::logic_error&) {
            used = 0;
        }
        if (word.size() != 7 || word[0] != '#' || used != 6) {
            Fail("\"" + word + "\" isn't a colour like #c0a050");
        }
        return {static_cast<std::uint8_t>(value >> 16), static_cast<std::uint8_t>(value >> 8 & 0xff),
                static_cast<std::uint8_t>(value & 0xff)};
    }

  private:
    std::string m_strWhere;
    std::vector<std::string> m_Words;
};

using Setter = std::function<void(const CLine&, SFontStyle&)>;

void SetFill(const CLine& line, SFontStyle& style)
{
    style.fill.clear();
    for (std::size_t i = 1; i < line.GetCount(); ++i) {
        style.fill.push_back(line.Colour(i));
    }
}

void SetRanges(const CLine& line, SFontStyle& style)
{
    style.ranges.clear();
    if (line.GetCount() % 2 == 0) {
        line.Fail("\"letters\" needs pairs of a first and a last byte");
    }
    for (std::size_t i = 1; i + 1 < line.GetCount(); i += 2) {
        const int first = line.Whole(i, 1, 255);
        style.ranges.emplace_back(first, line.Whole(i + 1, first, 255));
    }
}

const std::map<std::string, Setter>& GetSetters()
{
    static const std::map<std::string, Setter> setters = {
        {"texture", [](const CLine& l, SFontStyle& s) { s.texture = l.Word(1); }},
        {"size", [](const CLine& l, SFontStyle& s) { s.size = l.Number(1, 4, 200); }},
        {"embolden", [](const CLine& l, SFontStyle& s) { s.embolden = l.Number(1, -2, 4); }},
        {"tracking", [](const CLine& l, SFontStyle& s) { s.tracking = l.Whole(1, -8, 32); }},
        {"height", [](const CLine& l, SFontStyle& s) { s.height = l.Whole(1, 0, 400); }},
        {"baseline", [](const CLine& l, SFontStyle& s) { s.baseline = l.Whole(1, 0, 400); }},
        {"tabular", [](const CLine& l, SFontStyle& s) { s.tabular = l.Whole(1, 0, 1) != 0; }},
        {"edge", [](const CLine& l, SFontStyle& s) { s.edge = l.Colour(1); }},
        {"outline",
         [](const CLine& l, SFontStyle& s) {
             s.outline = l.Number(1, 0, 4);
             s.outlineColour = l.Colour(2);
         }},
        {"shadow",
         [](const CLine& l, SFontStyle& s) {
             s.shadowX = l.Whole(1, -8, 8);
             s.shadowY = l.Whole(2, -8, 8);
             s.shadow = l.Number(3, 0, 1);
             s.shadowColour = l.Colour(4);
         }},
        {"threshold", [](const CLine& l, SFontStyle& s) { s.threshold = l.Number(1, 0.01, 1); }},
        {"fill", SetFill},
        {"letters", SetRanges},
    };
    return setters;
}

void ReadInto(SFontStyle& style, const std::filesystem::path& file, int depth)
{
    std::ifstream in(file);
    if (!in) {
        throw std::runtime_error(file.string() + ": can't be read");
    }
    int number = 0;
    for (std::string text; std::getline(in, text);) {
        const CLine line(file.string(), ++number, text);
        if (line.IsEmpty()) {
            continue;
        }
        const std::string& key = line.Word(0);
        if (key == "face") {
            style.face = (file.parent_path() / line.Word(1)).string();
        } else if (key == "fallback") {
            style.fallback = (file.parent_path() / line.Word(1)).string();
        } else if (key == "like") {
            if (depth == MAX_LIKE_DEPTH) {
                line.Fail("too many descriptions that are like each other");
            }
            ReadInto(style, file.parent_path() / line.Word(1), depth + 1);
        } else if (const auto found = GetSetters().find(key); found != GetSetters().end()) {
            found->second(line, style);
        } else {
            line.Fail("unknown setting \"" + key + "\"");
        }
    }
}
} // namespace

SFontStyle SFontStyle::Read(const std::string& file)
{
    SFontStyle style;
    style.ranges = {{0x20, 0x7e}, {0x80, 0xff}};
    ReadInto(style, file, 0);
    if (style.face.empty() || style.texture.empty() || style.fill.empty()) {
        throw std::runtime_error(file + ": \"face\", \"texture\" and \"fill\" are needed");
    }
    return style;
}
