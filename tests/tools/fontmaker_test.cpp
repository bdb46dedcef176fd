// The font tool as its user runs it, and the shipped fonts that it made.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <strings.h>
#include <vector>

#include "controls/itffont.h"
#include "keelworks/ds_file.h"
#include "kernel/nameloader.h"
#include "platform/temp_roots.h"
#include "render/picture.h"
#include "render/render2d.h"
#include "run_tool.h"
#include "support/fakes.h"
#include "support/rows.h"

namespace
{

using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr char DATA[] = SEAWARDEN_SOURCE_DIR "/data";
constexpr char IMAGES[] = "/resource/images";
constexpr char TEXTS[] = "/resource/txt_res/";

/// Runs the tool in the player's folder, so that the game finds the fonts made there before the shipped ones.
class FontMakerTest : public ::testing::Test
{
  protected:
    FontMakerTest()
    {
        PlatformSetRoots(folder, DATA);
        std::filesystem::create_directories(folder + TEXTS);
        std::filesystem::copy_file(SEAWARDEN_SOURCE_DIR "/art/fonts/Cabin-Medium.otf", folder + "/face.otf");
    }

    std::pair<int, std::string> Run(const std::vector<std::string>& arguments) const
    {
        std::string command = "cd '" + folder + "' && '" SEAWARDEN_FONTMAKER "'";
        for (const std::string& argument : arguments)
            command += " '" + argument + "'";
        return RunTool(command);
    }

    /// Makes NAME.fnt from NAME.font, which is written first, and loads it as the game does.
    void MakeFont(CItfFont& font, const std::string& name, const std::string& description)
    {
        roots.Put("user/" + name + ".font", description);
        const auto [status, output] = Run({name + ".font", folder + TEXTS + name + ".fnt", folder + IMAGES});
        EXPECT_EQ(status, 0);
        EXPECT_EQ(output, "");
        EXPECT_TRUE(font.Load((name + ".fnt").c_str(), &render));
        EXPECT_EQ(host.debug, std::vector<std::string>());
    }

    /// A surface with nothing but the box's text.
    std::vector<std::uint16_t> Draw(const CItfFont& font, const RECT& area, const RECT& box, const char* text,
                                    unsigned flags = 0)
    {
        const int surface = render.CreateSurface(&area);
        font.DrawBox(surface, &box, text, flags, 0xffffff, nullptr);
        const std::uint16_t* pixels = render.LockSurface(surface);
        std::vector<std::uint16_t> drawn(pixels, pixels + area.right * area.bottom);
        render.UnlockSurface(surface, 0);
        render.FreeSurface(surface);
        return drawn;
    }

    TempRoots roots;
    const std::string folder = (roots.folder / "user").string();
    seawarden_test::FakeHost host;
    CRender2D render;
};

TEST_F(FontMakerTest, MakesWhatTheDescriptionSays)
{
    constexpr RECT AREA = {0, 0, 200, 60};
    const auto isInk = [](std::uint16_t pixel) { return pixel != 0; };
    CItfFont font;
    MakeFont(font, "tiny",
             "# a comment\n"
             "face face.otf\n"
             "texture itf\\tiny.png\n"
             "size 20 # pixels\n"
             "height 31\n"
             "baseline 23\n"
             "fill #ff8242\n"
             "letters 32 32 48 57 65 67\n");
    EXPECT_EQ(font.GetHeight(), 31);
    EXPECT_EQ(font.GetWidth("D"), 0) << "a letter that wasn't asked for";
    EXPECT_GT(font.GetWidth(" "), 0);
    const int digit = font.GetWidth("00") - font.GetWidth("0");
    for (const char* pair : {"01", "07", "18", "99"})
        EXPECT_EQ(font.GetWidth(pair), 2 * digit) << pair << ": digits line up in columns";
    const std::vector<std::uint16_t> capital = Draw(font, AREA, AREA, "A");
    const auto top = std::find_if(capital.begin(), capital.end(), isInk) - capital.begin();
    const auto bottom = std::find_if(capital.rbegin(), capital.rend(), isInk).base() - capital.begin() - 1;
    EXPECT_EQ(bottom / AREA.right, 22) << "a capital stands on the baseline";
    EXPECT_NEAR(static_cast<int>(top) / AREA.right, 9, 1) << "capitals of this face have 0.7 of its size";
    EXPECT_EQ(*std::max_element(capital.begin(), capital.end()), 0xfc08);

    CItfFont wide;
    MakeFont(wide, "wide", "like tiny.font\ntexture itf\\wide.png\ntracking 5\ntabular 0\nfill #2182ff\n");
    EXPECT_EQ(wide.GetWidth("ABC"), font.GetWidth("ABC") + 3 * 5);
    EXPECT_LT(wide.GetWidth("1") - 5, digit) << "a narrow digit";
    const std::vector<std::uint16_t> blue = Draw(wide, AREA, AREA, "A");
    EXPECT_EQ(*std::max_element(blue.begin(), blue.end()), 0x241f);
}

TEST_F(FontMakerTest, TellsWhatIsWrong)
{
    const std::string good = "face face.otf\ntexture itf\\bad.png\nfill #ffffff\n";
    roots.Put("user/text.otf", "this isn't an outline font\n");
    roots.Put("user/good.font", good);
    const Rows<std::string, const char*> cases = {
        {good + "sise 12\n", "bad.font(4): unknown setting \"sise\""},
        {good + "\n# more\nsize 12px\n", "bad.font(6): \"12px\" isn't a number"},
        {good + "size nan\n", "bad.font(4): \"nan\" isn't a number"},
        {good + "height 20.5\n", "bad.font(4): \"20.5\" isn't a whole number"},
        {good + "outline 1\n", "bad.font(4): \"outline\" needs another value"},
        {good + "edge #12345g\n", "bad.font(4): \"#12345g\" isn't a colour"},
        {good + "letters 32 64 65\n", "bad.font(4): \"letters\" needs pairs"},
        {good + "letters 64 32\n", "bad.font(4): \"32\" isn't a number in the range of \"letters\""},
        {good + "like bad.font\n", "bad.font(4): too many descriptions"},
        {good + "like none.font\n", "none.font: can't be read"},
        {"face face.otf\nfill #ffffff\n", "bad.font: \"face\", \"texture\" and \"fill\" are needed"},
        {good + "fallback text.otf\n", "text.otf: not a usable outline font"},
    };
    for (const auto& [description, told] : cases) {
        roots.Put("user/bad.font", description);
        const auto [status, output] = Run({"bad.font", "bad.fnt", "images"});
        EXPECT_EQ(status, 1);
        EXPECT_THAT(output, StartsWith("seawarden-fontmaker: "));
        EXPECT_THAT(output, HasSubstr(told));
        EXPECT_EQ(output.find('\n'), output.size() - 1) << "one line";
        EXPECT_EQ(roots.Get("user/bad.fnt"), "(none)");
    }
    const Rows<std::vector<std::string>, int, const char*> arguments = {
        {{"bad.font"}, 2, "usage: "},
        {{"--preview", "bad.fnt", "images"}, 2, "usage: "},
        {{"good.font", "nowhere/out.fnt", "images"}, 1, "seawarden-fontmaker: "},
        {{"good.font", "out.fnt", "face.otf"}, 1, "seawarden-fontmaker: "},
    };
    for (const auto& [words, expected, told] : arguments) {
        const auto [status, output] = Run(words);
        EXPECT_EQ(status, expected);
        EXPECT_THAT(output, StartsWith(told));
    }
}

/// 1 for each pixel that a text changes.
std::vector<bool> ChangesOf(const std::vector<std::uint16_t>& pixels, std::uint16_t ground = 0)
{
    std::vector<bool> changed;
    for (const std::uint16_t pixel : pixels)
        changed.push_back(pixel != ground);
    return changed;
}

// The preview has its own drawing code; it is of use only as long as it shows what the game does.
TEST_F(FontMakerTest, PreviewsLikeTheGame)
{
    constexpr std::uint16_t GROUND = 0x001f;
    constexpr RECT AREA = {0, 0, 300, 160};
    const std::vector<std::uint16_t> blank(300 * 160, GROUND);
    ASSERT_TRUE(SavePng(folder + "/in.png", blank.data(), AREA.right, AREA.bottom));
    const Rows<std::string, RECT, unsigned, const char*> cases = {
        {"paper", {10, 5, 210, 150}, FONT_MULTILINE, "Signal from the flagship: all ships to harbour"},
        {"paper", {10, 5, 290, 150}, FONT_MULTILINE | FONT_CENTER_HOR | FONT_CENTER_VERT, "Fair\r\nwinds"},
        {"list", {15, 20, 120, 90}, FONT_MULTILINE | FONT_RIGHT, "12 guns, 4 torpedoes, 880 men, 27 knots"},
        {"button", {100, 0, 140, 40}, 0, "Splice the mainbrace"},
        {"small", {0, 0, 300, 20}, FONT_RIGHT, "Version: 0.01.0 \xa9 \x80 \xfc"},
    };
    for (const auto& [name, box, flags, text] : cases) {
        SCOPED_TRACE(text);
        CItfFont font;
        ASSERT_TRUE(font.Load((name + ".fnt").c_str(), &render));
        std::vector<std::string> arguments{"--preview", std::string(DATA) + TEXTS + name + ".fnt",
                                           std::string(DATA) + IMAGES, text};
        for (const int number :
             {box.left, box.top, box.right - box.left, box.bottom - box.top, static_cast<int>(flags)})
            arguments.push_back(std::to_string(number));
        arguments.insert(arguments.end(), {"ffffff", "in.png", "out.png"});
        const auto [status, output] = Run(arguments);
        ASSERT_EQ(status, 0) << output;
        const std::vector<bool> drawn = ChangesOf(Draw(font, AREA, box, text, flags));
        EXPECT_NE(std::count(drawn.begin(), drawn.end(), true), 0);
        EXPECT_EQ(ChangesOf(LoadPicture("out.png").m_aPixels, GROUND), drawn);
    }
}

/// A shipped font's texture, and its glyphs: all from the word "symbols" on.
std::pair<std::string, std::string> ReadFont(const std::string& file)
{
    std::ifstream in(std::string(DATA) + TEXTS + file, std::ios::binary);
    const std::string content(std::istreambuf_iterator<char>(in), {});
    const std::size_t open = content.find('"') + 1;
    return {content.substr(open, content.find('"', open) - open), content.substr(content.find("symbols"))};
}

// A menu or button draws its text in another form over the normal one: what the other form doesn't cover
// would stay.
TEST_F(FontMakerTest, ShippedFormsCoverTheirBase)
{
    ds_file_buffered names(NAME_RESOURCE, false);
    const std::vector<NameRow> fonts = ReadNameMaps(&names).fonts;
    std::vector<std::string> checked;
    for (const NameRow& row : fonts) {
        for (const NameRow& other : fonts) {
            if (strcasecmp(other.name.c_str(), (row.name + "A").c_str()) != 0 &&
                strcasecmp(other.name.c_str(), (row.name + "Dis").c_str()) != 0)
                continue;
            if (other.file == row.file)
                continue; // a name that never lights up
            SCOPED_TRACE(other.name);
            checked.push_back(other.name);
            const auto [texture, glyphs] = ReadFont(row.file);
            const auto [otherTexture, otherGlyphs] = ReadFont(other.file);
            EXPECT_EQ(glyphs, otherGlyphs);
            const std::vector<std::uint16_t> base = LoadPicture(texture).m_aPixels;
            const std::vector<std::uint16_t> form = LoadPicture(otherTexture).m_aPixels;
            EXPECT_EQ(ChangesOf(base), ChangesOf(form));
            EXPECT_NE(base, form) << "the form can't be told from its base";
        }
    }
    EXPECT_THAT(checked, ::testing::IsSupersetOf({"itfBtnFontA", "itfBtnFontDis", "itfMenuFontA",
                                                  "itfMenuFontDis", "itfListFontDis"}));
}

} // namespace
