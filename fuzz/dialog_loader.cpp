// A dialog section from unknown hands: loaded, then shown, ticked, pointed at and typed into. The section is
// called TestDlg. A control with the id 13 closes the dialog when it reports something.

#include <algorithm>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "keelworks/ds_file.h"
#include "kernel/dialog_loader.h"
#include "kernel/interface_entity.h"
#include "kernel/itfdialog.h"
#include "toolkit_frame.h"

namespace
{

constexpr int ID_CLOSE = 13;
/// Windows that the player tries: a section may have as many as there is room for.
constexpr std::size_t MOST_TRIED = 24;

/// Lets its owner close it from within a report of a control.
class TestDialog : public CItfDialog
{
  public:
    explicit TestDialog(std::unique_ptr<TestDialog>& owner) : m_Owner(owner) {}
    const Row* GetMessageTable() const override
    {
        static const Row rows[] = {On(ITFM_NOTIFY, &TestDialog::OnReport),
                                   On(ITFM_COMMAND, &TestDialog::OnReport), EndOfTable()};
        return rows;
    }

  private:
    Word OnReport(std::uint32_t, std::int32_t control)
    {
        if (control == ID_CLOSE)
            m_Owner.reset(); // this object, too
        return 0;
    }

    std::unique_ptr<TestDialog>& m_Owner;
};

struct Player : ToolkitWorld {
    Player() { Require(ui.Init(&engine) != 0, "the module's entity"); }

    /// False when the section can't be loaded; its end is then already checked.
    bool Load(std::vector<char> bytes)
    {
        dialog = std::make_unique<TestDialog>(dialog);
        const RECT rect = {100, 80, 700, 520};
        Require(dialog->Create("", "", &rect, nullptr, 1, 0, &engine), "the dialog's window");
        ds_file_buffered file;
        file.open_memory("itfdlg.ini", std::move(bytes));
        try {
            CDialogLoader(*dialog, file).Load("TestDlg");
            return true;
        } catch (int code) {
            Require(code >= RESERR_SYNTAX && code <= RESERR_NO_PARENT, "the code of a mistake");
            const std::string place = std::string(DIALOG_RESOURCE) + "(";
            Require(!host.debug.empty() && host.debug.back().rfind(place, 0) == 0, "a mistake is told");
        } catch (const std::exception&) {
        }
        dialog->Destroy();
        Require(Toolkit().windows.empty(), "no control outlives its dialog");
        return false;
    }

    void Play()
    {
        CItfWnd::SetDrawing(true);
        dialog->Show(true);
        dialog->SetModal();
        CItfWnd::RedrawAll();
        Frame();
        // From the last one on, as the mouse finds them. Ids, because a window may be gone when its turn
        // comes.
        std::vector<int> ids;
        for (const WindowEntry& entry : Toolkit().windows)
            ids.insert(ids.begin(), entry.id);
        ids.resize(std::min(ids.size(), MOST_TRIED));
        for (const int id : ids)
            TryWindow(id);
        if (dialog == nullptr)
            return;
        for (const RECT part : {RECT{3, 5, 200, 90}, RECT{-50, -50, 2000, 2000}, RECT{9, 9, 9, 9}})
            dialog->Invalidate(&part);
        dialog->Hide(true);
        dialog->Hide(false);
        const POINT pos = {-31, 17};
        dialog->SetPos(&pos, true);
    }

    void Close()
    {
        dialog.reset();
        Require(Toolkit().windows.empty(), "no control outlives its dialog");
        // What was on its way to the dialog.
        Frame();
        Toolkit().posted.clear();
        Toolkit().focusId = -1;
        CItfWnd::ReleaseCapture();
        CItfWnd::SetModalId(-1);
        CItfWnd::SetDrawing(false);
        Forget();
    }

    void Frame()
    {
        constexpr int ELAPSED = 20;
        host.now += ELAPSED;
        ui.OnFrame(ELAPSED, 0);
    }

    void Mouse(std::uint32_t message, int x, int y, std::uint32_t wParam = 0)
    {
        host.cursor = {x, y};
        ui.OnWindowMessage(message, wParam, PackPoint(x, y));
    }

    /// Presses at one place, drags to the other, lets go.
    void Drag(int x, int y, int toX, int toY)
    {
        Mouse(WM_MOUSEMOVE, x, y);
        host.keysDown.insert(VK_LBUTTON);
        Mouse(WM_LBUTTONDOWN, x, y);
        Frame();
        Mouse(WM_MOUSEMOVE, toX, toY);
        Frame();
        host.keysDown.erase(VK_LBUTTON);
        Mouse(WM_LBUTTONUP, toX, toY);
    }

    void TryWindow(int id)
    {
        CItfWnd* wnd = CItfWnd::FindWindow(id);
        if (wnd == nullptr)
            return;
        RECT rect;
        wnd->GetScreenRect(&rect);
        const int x = (rect.left + rect.right) / 2;
        const int y = (rect.top + rect.bottom) / 2;
        Drag(x, y, x, y);
        for (const int key : {VK_HOME, VK_DELETE, VK_END, VK_UP, VK_DOWN, VK_PRIOR, VK_NEXT, VK_LEFT})
            ui.OnWindowMessage(WM_KEYDOWN, static_cast<std::uint32_t>(key), 0);
        for (const unsigned character : {0x61u, 0x20u, 0x0du, 0x08u, 0xe4u, 0x07u})
            ui.OnWindowMessage(WM_CHAR, character, 0);
        Drag(rect.left + 1, rect.top + 1, rect.right + 10, rect.bottom - 1);
        Mouse(WM_LBUTTONDBLCLK, rect.right - 3, rect.bottom - 3);
        Mouse(WM_MOUSEWHEEL, x, y, static_cast<std::uint32_t>(-3 * WHEEL_DELTA) << 16);
        Frame();
        wnd = CItfWnd::FindWindow(id);
        if (wnd == nullptr)
            return;
        wnd->Enable(false);
        wnd->Invalidate(nullptr);
        Drag(x, y, x, y - 40);
    }

    CInterface ui;
    std::unique_ptr<TestDialog> dialog;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Player player;
    if (player.Load(std::vector<char>(data, data + size)))
        player.Play();
    player.Close();
    return 0;
}
