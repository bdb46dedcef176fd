// The list of single scenarios with many files, beside opening and reading the same files and nothing else.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "controls/itfreportbox.h"
#include "keelworks/ds_file.h"
#include "keelworks/scenario_writer.h"
#include "menu.h"
#include "ratio.h"
#include "scenario/scenseldlg.h"

namespace
{

namespace fs = std::filesystem;

constexpr int FILES = 1000;
constexpr double AIM_MICROSECONDS_A_FILE = 40.0;
/// Linear, but for the sorting of twice the rows.
constexpr double AIM_TWICE_THE_FILES = 1.2;
constexpr int DIALOG_ID = 100;
constexpr int UNITS = 12;

/// A game folder of its own: the shipped resources, and `files` scenarios.
class Folder
{
  public:
    explicit Folder(int files)
    {
        std::string name = (fs::temp_directory_path() / "seawarden-bench-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr)
            throw fs::filesystem_error("no temporary folder", std::make_error_code(std::errc::io_error));
        m_Path = name;
        fs::create_directories(m_Path / "scenarios");
        fs::create_directory_symlink(std::string(SEAWARDEN_SOURCE_DIR) + "/data/resource",
                                     m_Path / "resource");
        Scenario scenario;
        scenario.description = std::string(900, 'x');
        for (int unit = 0; unit < UNITS; ++unit)
            scenario.items.emplace_back(ScenarioShip());
        for (int file = 0; file < files; ++file) {
            // Not in the order of the files.
            scenario.title = "Battle of " + std::to_string(file * 7919 % files);
            const std::vector<char> bytes = CScenarioWriter(scenario).GetBytes();
            m_Files.push_back((m_Path / "scenarios" / (std::to_string(file) + ".sc")).string());
            std::ofstream(m_Files.back(), std::ios::binary)
                .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        }
    }
    ~Folder()
    {
        std::error_code ignored;
        fs::remove_all(m_Path, ignored);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    void Use() const { PlatformSetRoots(m_Path.string(), ""); }
    /// Each file from its beginning to its end.
    void ReadAll() const
    {
        char buffer[4096];
        for (const std::string& path : m_Files) {
            ds_file file(path.c_str(), ds_file::MODE_READ);
            while (file.read(buffer, sizeof buffer) == sizeof buffer)
                benchmark::DoNotOptimize(buffer);
        }
    }

  private:
    fs::path m_Path;
    std::vector<std::string> m_Files;
};

/// False when the dialog doesn't list all files.
bool OpenList(Menu& menu, int files)
{
    CScenSelDlg dialog;
    if (!dialog.Create("", nullptr, nullptr, menu.Top(), DIALOG_ID, 0, menu.Engine()))
        return false;
    const auto* list = dialog.GetControlAs<CItfReportBox>(CScenSelDlg::IDC_LIST);
    return list != nullptr && list->GetCount() == files;
}

/// "beyond_us" is what a file costs beyond opening and reading it, in microseconds.
void OpenScenarioList(benchmark::State& state)
{
    const Folder folder(FILES);
    Menu menu;
    folder.Use();
    if (!menu.IsOpen() || !OpenList(menu, FILES)) {
        state.SkipWithError("the list can't be opened");
        return;
    }
    double opening = 0.0;
    double reading = 0.0;
    ratio::Measure(
        state, 0.0, [&] { opening += ratio::SecondsOf([&] { OpenList(menu, FILES); }); },
        [&] { reading += ratio::SecondsOf([&] { folder.ReadAll(); }); });
    // Measure runs each once more than it counts.
    const auto runs = static_cast<double>(state.iterations() + 1);
    state.counters["beyond_us"] = (opening - reading) / runs / FILES * 1e6;
    state.counters["beyond_aim"] = AIM_MICROSECONDS_A_FILE;
    state.counters.erase("aim");
}

void OpenTwiceTheScenarios(benchmark::State& state)
{
    const Folder half(FILES);
    const Folder folder(2 * FILES);
    Menu menu;
    folder.Use();
    if (!menu.IsOpen() || !OpenList(menu, 2 * FILES)) {
        state.SkipWithError("the list can't be opened");
        return;
    }
    ratio::Measure(
        state, AIM_TWICE_THE_FILES,
        [&] {
            folder.Use();
            OpenList(menu, 2 * FILES);
        },
        [&] {
            half.Use();
            OpenList(menu, FILES);
            OpenList(menu, FILES);
        });
}

} // namespace

BENCHMARK(OpenScenarioList)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(OpenTwiceTheScenarios)->UseManualTime()->Unit(benchmark::kMicrosecond);
