#pragma once
// The list of single scenarios.

#include <memory>
#include <string>
#include <vector>

#include "kernel/itfdialog.h"

class CFileDlg;
class CItfReportBox;
struct ScenarioHead;
class ICustomResources;

/// Lists every `*.sc` of the folder `scenarios\` by its head, shows title and description of the selected
/// one, and brings in exported files. Section "ScenSelDlg", all controls optional.
///
/// Reports RESULT_CLOSE and RESULT_SCENARIO; then GetSelectedFile tells which.
class CScenSelDlg : public CItfDialog
{
  public:
    enum Control : int {
        IDC_LIST = 10,        ///< table with the columns below
        IDC_TAKE = 40,        ///< button
        IDC_CLOSE = 50,       ///< button
        IDC_DESCRIPTION = 70, ///< text box
        IDC_TITLE = 80,       ///< text box
        IDC_IMPORT = 90,      ///< button
    };
    enum Column : int {
        COLUMN_TITLE,
        COLUMN_FLAG_EXTRA,
        COLUMN_SIDE_A,
        COLUMN_COUNT_A,
        COLUMN_EXTRA_A,
        COLUMN_SIDE_B,
        COLUMN_COUNT_B,
        COLUMN_EXTRA_B,
        COLUMN_WATERS,
        COLUMN_TIME,
        COLUMN_COUNT,
    };
    /// Ids of the windows that it opens.
    enum Child : int {
        CHILD_FILE_DIALOG = 100,
        CHILD_IMPORT_ERROR = 110,
    };

    CScenSelDlg();
    ~CScenSelDlg() override;
    bool Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent, int ctrlId,
                std::uint32_t style, IEngine* core) override;
    const Row* GetMessageTable() const override;

    /// Without folder; null when no row is selected. Valid until the list is filled anew.
    const char* GetSelectedFile() const;

  private:
    Word OnNotify(std::uint32_t code, std::int32_t id);
    void OnListNotify(int code);
    void OnFileDialog(int result);

    void FillList();
    void AddScenario(const std::string& name, const ScenarioHead& head, ICustomResources* resources);
    void ShowDetails(int file);
    void OpenImport();
    void Import(const char* path);
    CItfReportBox* List() const;

    std::vector<std::string> m_Files; ///< a row's data is an index into this
    std::unique_ptr<CFileDlg> m_pFileDlg;
};
