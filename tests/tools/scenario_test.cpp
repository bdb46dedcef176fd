// The scenario compiler: its text form, the program as its user runs it, and the shipped scenarios.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <sys/wait.h>

#include "keelworks/scenario_parser.h"
#include "keelworks/scenario_samples.h"
#include "logic/custom_resources.h"
#include "logic/text_table.h"
#include "platform/files.h"
#include "platform/temp_roots.h"
#include "scenario_text.h"

namespace
{

namespace fs = std::filesystem;

const fs::path SOURCES = SEAWARDEN_SOURCE_DIR;

Scenario Compiled(const std::string& text)
{
    ds_file_buffered file;
    file.open_memory("a.txt", {text.begin(), text.end()});
    return ReadScenarioText(file);
}

std::string ReadFile(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<char> Bytes(const Scenario& scenario)
{
    return CScenarioWriter(scenario).GetBytes();
}

constexpr const char* HEAD = "scenario { title \"T\" description \"D\" scene \"S\" time 5 40 am }\n";
constexpr const char* SIDES = "side { nation 1 } side { nation 2 }\n";

TEST(ScenarioText, AWrittenTextMakesTheSameScenario)
{
    Scenario sample = SampleScenario();
    for (int c = 1; c < 256; ++c)
        sample.description += static_cast<char>(c);
    sample.description += "\r\n\n\r" + std::string(500, 'x') + " \\q\"";
    const std::string text = WriteScenarioText(sample);
    EXPECT_EQ(Bytes(Compiled(text)), Bytes(sample)) << text;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        EXPECT_LT(line.size(), 240U);
    sample.custom = {};
    sample.header.nVersion = SCENARIO_VERSION_OLDEST;
    sample.header.nTimeFlags = 0;
    EXPECT_EQ(Bytes(Compiled(WriteScenarioText(sample))), Bytes(sample)) << "an old version";
}

TEST(ScenarioText, AUnitBeginsAsItsClass)
{
    const Scenario scenario =
        Compiled(std::string(HEAD) + SIDES +
                 "class ship \"Heron\" { side 1 speed 30 main_guns 3, 102 model \"h.ini\" }\n"
                 "class balloon \"Heron\" { side 0 height 500 }\n"
                 "ship \"Heron\" { name \"One\" speed 28 }\n"
                 "BALLOON \"Heron\" { name \"Two\" position -5 6 }");
    const auto& ship = std::get<ScenarioShip>(scenario.items.at(0));
    EXPECT_EQ(ship.figures.nSpeed, 28);
    EXPECT_EQ(ship.figures.nMainCalibre, 102);
    EXPECT_EQ(ship.nSide, 1);
    EXPECT_STREQ(ship.unit.szModel, "h.ini");
    const auto& balloon = std::get<ScenarioBalloon>(scenario.items.at(1));
    EXPECT_EQ(balloon.place.nHeight, 500);
    EXPECT_EQ(balloon.place.nX, -5);
}

TEST(ScenarioText, AMistakeIsToldWithItsLine)
{
    const std::string good = std::string(HEAD) + SIDES;
    const struct {
        std::string text;
        const char* told;
    } cases[] = {
        {"", "a.txt(1): expected scenario"},
        {"ship { }", "a.txt(1): expected scenario"},
        {"scenario {\ntitle \"T\"\ntitle \"T\" }", "a.txt(3): \"title\" stands twice"},
        {"scenario {\ntitle T }", "a.txt(2): expected a text in quotes"},
        {"scenario {\ntitle \"T\" }", "a.txt(1): \"description\" is missing"},
        {"scenario {\ntitle \"" + std::string(151, 'x') + "\" }", "a.txt(2): expected a text of at most 150"},
        {"scenario {\ntitle \"a\\z\" }", "a.txt(2): expected \\n"},
        {"scenario {\ntitle \"a\\x0\" }", "a.txt(2): expected \\x"},
        {"scenario {\ntitle \"a\\x00\" }", "a.txt(2): expected \\x"},
        {"scenario {\ntitle \"open\n}", "a.txt(2): expected a text"},
        {"scenario {\ntime 13 00 am }", "a.txt(2): expected a number from 0 to 12, found \"13\""},
        {"scenario {\ntime 1 00 noon }", "a.txt(2): expected am or pm"},
        {"scenario {\nversion 0x10009 }", "a.txt(2): expected a number from 65536 to 65544"},
        {"scenario {\nwind 5 }", "a.txt(2): unknown field \"wind\""},
        {"scenario {\n\n", "a.txt(3): expected a field or }"},
        {HEAD, "a.txt(2): expected two sides"},
        {good + "side { nation 3 }", "a.txt(3): a third side"},
        {std::string(HEAD) + "side { nation 1 custom 0, 0x0, 0, 0 }", "a.txt(2): expected a guid that isn't"},
        {good + "tank { }", "a.txt(3): expected side, class"},
        {good + "ship \"Heron\" { }", "a.txt(3): no class of that type is named \"Heron\""},
        {good + "class ship \"A\" { }\nclass ship \"A\" { }", "a.txt(4): class \"A\" stands twice"},
        {good + "ship {\nname \"A\"\n}", "a.txt(3): \"side\" is missing"},
        {good + "ship {\nside 0 }", "a.txt(3): \"name\" is missing"},
        {good + "ship {\nside 3 }", "a.txt(4): expected a number from 0 to 2, found \"3\""},
        {good + "balloon {\nside 2 }", "a.txt(4): expected a number from 0 to 1"},
        {good + "balloon {\narmour 1 2 3 }", "a.txt(4): a balloon has no field \"armour\""},
        {good + "ship {\narmour 1 2 }", "a.txt(4): expected a number"},
        {good + "ship {\nspeed 99999999999999999999 }", "a.txt(4): expected a number from 0 to 1000000"},
        {good + "ship {\ncode \"12345678\" }", "a.txt(4): expected a text of at most 7 characters"},
    };
    for (const auto& c : cases) {
        try {
            Compiled(c.text);
            ADD_FAILURE() << "taken: " << c.text;
        } catch (const scenario_exception& error) {
            EXPECT_TRUE(std::string(error.what()).starts_with(c.told)) << c.text << "\n" << error.what();
        }
    }
    const std::string text = WriteScenarioText(SampleScenario());
    for (std::size_t size = 0; size + 2 < text.size(); ++size) {
        try {
            Bytes(Compiled(text.substr(0, size)));
        } catch (const scenario_exception&) {
            continue;
        }
        EXPECT_EQ(text[text.find_last_not_of('\n', size - 1)], '}')
            << "only whole units may be left out: " << size;
    }
}

class ScenarioToolTest : public ::testing::Test
{
  protected:
    int Run(const std::string& arguments) const
    {
        const int status = std::system(
            ("cd '" + roots.folder.string() + "' && '" SEAWARDEN_SCENARIO "' " + arguments + " 2>told")
                .c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    TempRoots roots;
};

TEST_F(ScenarioToolTest, CompilesAndDumps)
{
    roots.Put("user/a.txt", std::string(HEAD) + SIDES);
    EXPECT_EQ(Run("compile user/../user/a.txt game/a.sc"), 0);
    EXPECT_EQ(Run("dump game/a.sc b.txt && '" SEAWARDEN_SCENARIO "' compile b.txt b.sc"), 0);
    EXPECT_EQ(roots.Get("b.sc"), roots.Get("game/a.sc"));
    roots.Put("bad.txt", "\nship");
    EXPECT_EQ(Run("compile bad.txt bad.sc"), 1);
    EXPECT_EQ(roots.Get("told"), "seawarden-scenario: bad.txt(2): expected scenario\n");
    EXPECT_EQ(Run("dump bad.txt c.txt"), 1);
    EXPECT_FALSE(fs::exists(roots.folder / "bad.sc") || fs::exists(roots.folder / "c.txt"));
    EXPECT_EQ(Run("dump missing c.txt"), 1);
    EXPECT_EQ(Run("compile user c.sc"), 1) << "a folder";
    EXPECT_EQ(Run("compile b.txt b.txt"), 1) << "its own source";
    roots.Put("utf8.txt", std::string("// \xc3\x89tat\n") + HEAD + SIDES);
    EXPECT_EQ(Run("compile utf8.txt c.sc"), 1);
    EXPECT_NE(roots.Get("told").find("UTF-8"), std::string::npos);
    roots.Put("h.sc", "another file");
    roots.Put("back\\slash.txt", std::string(HEAD) + SIDES);
    EXPECT_EQ(Run("compile 'back\\slash.txt' H.SC"), 0);
    EXPECT_EQ(roots.Get("H.SC"), roots.Get("b.sc"));
    EXPECT_EQ(roots.Get("h.sc"), "another file");
    EXPECT_EQ(Run("dump H.SC /dev/stdout | grep -q scenario"), 0) << "a pipe";
    EXPECT_EQ(Run("compile b.txt back"), 0);
    EXPECT_EQ(Run("compile b.txt user"), 1) << "a folder";
    EXPECT_FALSE(fs::exists(roots.folder / "user.tmp"));
    EXPECT_EQ(Run("compile a.txt"), 2);
}

/// Each source and the committed file that is made of it.
std::vector<std::pair<fs::path, fs::path>> ShippedScenarios()
{
    const struct {
        const char* sources;
        const char* files;
        const char* extension;
    } folders[] = {{"art/scenarios", "data/scenarios", ".sc"},
                   {"art/scenarios/exports", "data/exports", ".exp"}};
    std::vector<std::pair<fs::path, fs::path>> shipped;
    for (const auto& folder : folders) {
        for (const auto& entry : fs::directory_iterator(SOURCES / folder.sources)) {
            if (entry.is_regular_file())
                shipped.emplace_back(entry.path(), SOURCES / folder.files /
                                                       (entry.path().stem().string() + folder.extension));
        }
        const auto files = fs::directory_iterator(SOURCES / folder.files);
        EXPECT_EQ(std::count_if(begin(files), end(files), [](const auto&) { return true; }),
                  std::count_if(
                      shipped.begin(), shipped.end(),
                      [&folder](const auto& pair) { return pair.second.extension() == folder.extension; }))
            << folder.files << ": each file has a source";
    }
    return shipped;
}

TEST(ShippedScenarios, AreWhatTheirSourcesSay)
{
    CTextTable texts;
    CCustomResources nations;
    const TempRoots roots;
    PlatformSetRoots(roots.folder.string(), (SOURCES / "data").string());
    ASSERT_TRUE(texts.Load("resource\\txt_res\\texts.ini"));
    nations.Load("resource\\custom\\");
    for (const auto& [source, file] : ShippedScenarios()) {
        SCOPED_TRACE(source.filename());
        const Scenario scenario = Compiled(ReadFile(source));
        const std::vector<char> bytes = Bytes(scenario);
        EXPECT_EQ(ReadFile(file), std::string(bytes.begin(), bytes.end())) << "compile it anew";
        const SCSETT_STRUCT& settings = scenario.header.settings;
        const CUSTOM_RESOURCE_DATA& custom = scenario.custom;
        EXPECT_TRUE(custom.bCustomA ? nations.Find(&custom.guidA) >= 0
                                    : texts.GetText(settings.nSideANation)[0] != '?');
        EXPECT_TRUE(custom.bCustomB ? nations.Find(&custom.guidB) >= 0
                                    : texts.GetText(settings.nSideBNation)[0] != '?');
        std::set<std::string> names;
        for (const ScenarioItem& item : scenario.items)
            names.insert(
                std::visit([](const auto& unit) { return std::string(unit.unit.szFullName); }, item));
        EXPECT_EQ(names.size(), scenario.items.size()) << "no two units have the same name";
    }
}

} // namespace
