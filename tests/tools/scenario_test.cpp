// The scenario compiler: its text form, the program as its user runs it, and the shipped scenarios.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>

#include "keelworks/scenario_parser.h"
#include "keelworks/scenario_samples.h"
#include "platform/temp_roots.h"
#include "run_tool.h"
#include "scenario_text.h"
#include "support/rows.h"

namespace
{

using ::testing::HasSubstr;
using ::testing::StartsWith;

const std::filesystem::path SOURCES = SEAWARDEN_SOURCE_DIR;

Scenario Compiled(const std::string& text)
{
    ds_file_buffered file;
    file.open_memory("a.txt", {text.begin(), text.end()});
    return ReadScenarioText(file);
}

std::string ReadFile(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::string Bytes(const Scenario& scenario)
{
    const std::vector<char> bytes = CScenarioWriter(scenario).GetBytes();
    return {bytes.begin(), bytes.end()};
}

/// What is told of a text that isn't taken.
std::string Mistake(const std::string& text)
{
    try {
        Compiled(text);
        return "";
    } catch (const scenario_exception& error) {
        return error.what();
    }
}

const std::string HEAD = "scenario { title \"T\" description \"D\" scene \"S\" time 5 40 am }\n";
const std::string GOOD = HEAD + "side { nation 1 } side { nation 2 }\n";

TEST(ScenarioText, AWrittenTextMakesTheSameScenario)
{
    Scenario sample = SampleScenario();
    for (int c = 1; c < 256; ++c)
        sample.description += static_cast<char>(c);
    sample.description += "\r\n\n\r" + std::string(5000, 'x') + " \\q\"";
    EXPECT_EQ(Bytes(Compiled(WriteScenarioText(sample))), Bytes(sample));
    sample.custom = {};
    sample.header.nVersion = SCENARIO_VERSION_OLDEST;
    sample.header.nTimeFlags = 0;
    EXPECT_EQ(Bytes(Compiled(WriteScenarioText(sample))), Bytes(sample)) << "an old version";
}

TEST(ScenarioText, AUnitBeginsAsItsClass)
{
    const Scenario scenario =
        Compiled(GOOD + "class ship \"Heron\" { side 1 speed 30 main_guns 3, 102 model \"h.ini\" }\n"
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
    const Rows<std::string, const char*> cases = {
        {"", "a.txt(1): expected scenario"},
        {"scenario {\ntitle \"T\"\ntitle \"T\" }", "a.txt(3): \"title\" stands twice"},
        {"scenario {\ntitle T }", "a.txt(2): expected a text in quotes"},
        {"scenario {\ntitle \"T\" }", "a.txt(1): \"description\" is missing"},
        {"scenario {\ntitle \"" + std::string(151, 'x') + "\" }", "a.txt(2): expected a text of at most 150"},
        {"scenario {\ntitle \"a\\z\" }", "a.txt(2): expected \\n"},
        {"scenario {\ntitle \"a\\x00\" }", "a.txt(2): expected \\x"},
        {"scenario {\ntitle \"open\n}", "a.txt(2): expected a text"},
        {"scenario {\ntime 13 00 am }", "a.txt(2): expected a number from 0 to 12, found \"13\""},
        {"scenario {\nwind 5 }", "a.txt(2): unknown field \"wind\""},
        {"scenario {\n\n", "a.txt(3): expected a field or }"},
        {HEAD, "a.txt(2): expected two sides"},
        {GOOD + "side { nation 3 }", "a.txt(3): a third side"},
        {HEAD + "side { nation 1 custom 0, 0x0, 0, 0 }", "a.txt(2): expected a guid that isn't"},
        {GOOD + "tank { }", "a.txt(3): expected side, class"},
        {GOOD + "ship \"Heron\" { }", "a.txt(3): no class of that type is named \"Heron\""},
        {GOOD + "class ship \"A\" { }\nclass ship \"A\" { }", "a.txt(4): class \"A\" stands twice"},
        {GOOD + "ship {\nname \"A\"\n}", "a.txt(3): \"side\" is missing"},
        {GOOD + "ship {\nside 3 }", "a.txt(4): expected a number from 0 to 2, found \"3\""},
        {GOOD + "balloon {\nside 2 }", "a.txt(4): expected a number from 0 to 1"},
        {GOOD + "balloon {\narmour 1 2 3 }", "a.txt(4): a balloon has no field \"armour\""},
        {GOOD + "ship {\nspeed 99999999999999999999 }", "a.txt(4): expected a number from 0 to 1000000"},
    };
    for (const auto& [text, told] : cases)
        EXPECT_THAT(Mistake(text), StartsWith(told)) << text;
    const std::string text = WriteScenarioText(SampleScenario());
    for (std::size_t size = 0; size + 2 < text.size(); ++size)
        EXPECT_TRUE(Mistake(text.substr(0, size)) != "" || text[text.find_last_not_of('\n', size - 1)] == '}')
            << "only whole units may be left out: " << size;
}

TEST(ScenarioTool, CompilesAndDumps)
{
    const TempRoots roots;
    const auto run = [&roots](const std::string& arguments) {
        return RunTool("cd '" + roots.folder.string() + "' && '" SEAWARDEN_SCENARIO "' " + arguments);
    };
    const std::pair<int, std::string> done = {0, ""};
    roots.Put("user/a.txt", GOOD);
    EXPECT_EQ(run("compile user/../user/a.txt game/a.sc"), done);
    EXPECT_EQ(run("dump game/a.sc b.txt"), done);
    EXPECT_EQ(run("compile b.txt b.sc"), done);
    EXPECT_EQ(run("compile b.txt b.sc"), done) << "over the file before";
    EXPECT_EQ(roots.Get("b.sc"), roots.Get("game/a.sc"));
    EXPECT_EQ(run("compile user c.sc").first, 1) << "a folder";
    EXPECT_EQ(run("compile b.txt b.txt").first, 1) << "its own source";
    roots.Put("utf8.txt", "// \xc3\x89tat\n" + GOOD);
    EXPECT_THAT(run("compile utf8.txt c.sc").second, HasSubstr("UTF-8"));
    roots.Put("bad.txt", "\nship");
    EXPECT_EQ(run("compile bad.txt b.sc"),
              std::pair(1, std::string("seawarden-scenario: bad.txt(2): expected scenario\n")));
    EXPECT_EQ(roots.Get("b.sc"), roots.Get("game/a.sc")) << "a mistake leaves the file before";
    EXPECT_EQ(run("dump bad.txt c.txt").first, 1);
    EXPECT_EQ(roots.Get("c.txt"), "(none)");
    roots.Put("h.sc", "another file");
    roots.Put("back\\slash.txt", GOOD);
    EXPECT_EQ(run("compile 'back\\slash.txt' H.SC"), done) << "names are the disk's own";
    EXPECT_EQ(roots.Get("H.SC"), roots.Get("b.sc"));
    EXPECT_EQ(roots.Get("h.sc"), "another file");
    EXPECT_EQ(run("dump H.SC /dev/stdout | grep -q scenario"), done) << "a pipe";
    EXPECT_EQ(run("compile b.txt user").first, 1) << "a folder";
    EXPECT_EQ(roots.Get("user.tmp"), "(none)");
    EXPECT_EQ(run("compile a.txt").first, 2);
}

TEST(ShippedScenarios, AreWhatTheirSourcesSay)
{
    const Rows<const char*, const char*, const char*> folders = {
        {"data/scenarios", "art/scenarios", ".sc"}, {"data/exports", "art/scenarios/exports", ".exp"}};
    std::map<std::filesystem::path, std::filesystem::path> sourceOf;
    for (const auto& [files, sources, extension] : folders) {
        for (const char* folder : {files, sources}) {
            for (const auto& entry : std::filesystem::directory_iterator(SOURCES / folder)) {
                const std::string name = entry.path().stem();
                if (entry.is_regular_file())
                    sourceOf[SOURCES / files / (name + extension)] = SOURCES / sources / (name + ".txt");
            }
        }
    }
    for (const auto& [compiled, source] : sourceOf) {
        SCOPED_TRACE(source);
        const Scenario scenario = Compiled(ReadFile(source));
        EXPECT_EQ(ReadFile(compiled), Bytes(scenario)) << "compile it anew";
        std::set<std::string> names;
        for (const ScenarioItem& item : scenario.items)
            names.insert(std::visit([](const auto& unit) { return unit.unit.szFullName; }, item));
        EXPECT_EQ(names.size(), scenario.items.size()) << "no two units have the same name";
    }
}

} // namespace
