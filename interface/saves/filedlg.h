#pragma once
// The file dialog.

#include <string>
#include <vector>

#include "kernel/itfdialog.h"
#include "saves/shellfolder.h"

class CItfEditBox;
class CItfReportBox;
class CValueBox;

/// Lets the player choose a file anywhere on the computer, existing or not. A child of the dialog that wants
/// the file, which adds the filters, shows it, reads the result and deletes it. Notifies its parent with
/// RESULT_ACCEPTED or RESULT_CLOSED, and stays until it is deleted.
///
/// When the parent's handler throws on RESULT_ACCEPTED without having deleted the dialog, a box says so.
///
/// Section "FileDlg", all controls optional.
class CFileDlg : public CItfDialog
{
  public:
    enum Control : int {
        IDC_CLOSE = 10,  ///< button
        IDC_LIST = 20,   ///< table of one column: the items of the folder
        IDC_FOLDER = 30, ///< edit box: the folder's path; Enter goes there
        IDC_FILE = 40,   ///< edit box: the file's name; Enter accepts
        IDC_ACCEPT = 50, ///< button
        IDC_TITLE = 60,  ///< text box
        IDC_UP = 70,     ///< button
    };
    enum Result : int {
        RESULT_ACCEPTED = 300,
        RESULT_CLOSED = 310,
    };

    CFileDlg();
    ~CFileDlg() override;
    using CItfWnd::Create;
    /// Begins in `startFolder`, a path for the file layer, but a relative one lies in the game's folder, or
    /// else in the player's. One that doesn't exist, null or an empty one begin in the game's folder itself;
    /// a path of MAX_PATH bytes or more, or a folder that can't be read, on the desktop. Throws what
    /// CreateFromResource throws, and 0 when there is no desktop.
    bool Create(const char* title, const char* sprite, const RECT* rect, CItfWnd* parent, int id,
                std::uint32_t style, IEngine* core, const char* startFolder);
    void OnDestroy() override;
    const Row* GetMessageTable() const override;

    /// `extension` without its dot, null for all files. Nothing shows `name`.
    void AddFilter(const char* name, const char* extension);
    /// Shows the files of that filter alone, counted from 0 as they were added. Nothing for another index.
    void SetFilter(int index);
    /// The folder's path, a backslash and the name in IDC_FILE, for the file layer; on the desktop the path
    /// is empty. Valid until the next choice. Empty before the first.
    const char* GetResult() const { return m_strResult.c_str(); }

  private:
    Word OnNotify(std::uint32_t code, std::int32_t id);
    void OnListNotify(std::uint32_t code);
    void EnterStart(const char* startFolder);
    void GoToTypedFolder();
    const ItemIdList* GetSelected() const;
    void Accept();
    void FillList();
    void ReadFolder();
    void ClearList();

    std::vector<std::string> m_Filters; ///< extensions, or NO_FILTER
    std::vector<ItemIdList> m_Items;    ///< relative to the folder; a row's data is its index here
    CShellFolder m_Shell;
    CItfReportBox* m_pList = nullptr; ///< the controls are null where the section lacks them
    CItfEditBox* m_pFolderEdit = nullptr;
    CItfEditBox* m_pFileEdit = nullptr;
    std::string m_strResult;
    int m_nErrorBox = -1; ///< window id of the open box, which deletes itself at the answer
};
