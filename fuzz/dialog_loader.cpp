// A dialog section from unknown hands: loaded, then shown, ticked, pointed at and typed into. The section is
// called TestDlg. A control with the id 13 closes the dialog when it reports something.

#include <algorithm>
#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "fake_host.h"
#include "keelworks/ds_file.h"
#include "kernel/dialog_loader.h"
#include "kernel/interface_entity.h"
#include "kernel/itfdialog.h"

namespace
{

using fuzz::Require;

constexpr char SECTION[] = "TestDlg";
constexpr char NO_PICTURE[] = "itfNoPicture"; ///< a sprite whose file can't be loaded
constexpr int ID_CLOSE = 13;
constexpr int FRAME = 20;
/// Windows that the player tries: a section may have as many as there is room for.
constexpr std::size_t MOST_TRIED = 24;

// The platform, the engine and the logical names: made once.
struct World {
    World()
    {
        Toolkit() = ToolkitState();
        fuzz::KeepFont(engine,
                       {"itfBtnFont", "itfBtnFontA", "itfBtnFontDis", "itfMenuFont", "itfMenuFontA",
                        "itfMenuFontDis", "itfListFont", "itfListFont1", "itfHeadFont", "itfPaperFont"});
        for (const char* name :
             {"itfMainMenu", "itfBtUp", "itfBtDown", "itfScArrUp", "itfScArrUpA", "itfScArrDown",
              "itfScArrDownA", "itfScBar", "itfScHorArrUp", "itfScHorArrUpA", "itfScHorArrDown",
              "itfScHorArrDownA", "itfScHorBar", "itfTrans137", "itfMessage", "itfMessagePaper", "itfEdit",
              "itfEditPaper", "itfEditField"})
            Toolkit().spriteMap.push_back({name, "fuzz.png"});
        Toolkit().spriteMap.push_back({NO_PICTURE, ""});
        Require(ui.Init(&engine) != 0, "the module's entity");
    }
    fuzz::FakeHost host;
    fuzz::FakeEngine engine;
    CInterface ui;
};

/// Lets its owner close it from within a report of a control.
class TestDialog : public CItfDialog
{
  public:
    explicit TestDialog(std::unique_ptr<TestDialog>& owner) : m_Owner(owner) {}
    const Row* GetMessageTable() const override
    {
        static const Row rows[] = {
            On(ITFM_NOTIFY, &TestDialog::OnNotify),
            On(ITFM_COMMAND, &TestDialog::OnMenu),
            EndOfTable(),
        };
        return rows;
    }

  private:
    Word OnNotify(std::uint32_t, std::int32_t control)
    {
        if (control == ID_CLOSE)
            m_Owner.reset(); // this object, too
        return 0;
    }
    Word OnMenu(std::uint32_t, std::int32_t item) { return OnNotify(0, item); }

    std::unique_ptr<TestDialog>& m_Owner;
};

class Player
{
  public:
    explicit Player(World& world) : m_World(world) {}

    /// False when the section can't be loaded; its end is then already checked.
    bool Load(std::vector<char> bytes)
    {
        m_World.host.debug.clear();
        m_pDialog = std::make_unique<TestDialog>(m_pDialog);
        const RECT rect = {100, 80, 700, 520};
        Require(m_pDialog->Create("", "", &rect, nullptr, 1, 0, &m_World.engine), "the dialog's window");
        ds_file_buffered file;
        file.open_memory("itfdlg.ini", std::move(bytes));
        try {
            CDialogLoader(*m_pDialog, file).Load(SECTION);
            return true;
        } catch (int code) {
            Require(code >= RESERR_SYNTAX && code <= RESERR_NO_PARENT, "the code of a mistake");
            const std::vector<std::string>& lines = m_World.host.debug;
            const std::string place = std::string(DIALOG_RESOURCE) + "(";
            Require(!lines.empty() && lines.back().rfind(place, 0) == 0, "a mistake is told");
        } catch (const std::exception&) {
        }
        m_pDialog->Destroy();
        Require(Toolkit().windows.empty(), "no control outlives its dialog");
        return false;
    }

    void Play()
    {
        CItfWnd::SetDrawing(true);
        m_pDialog->Show(true);
        m_pDialog->SetModal();
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
        if (m_pDialog != nullptr)
            Redraw();
    }

    void Close()
    {
        m_pDialog.reset();
        Require(Toolkit().windows.empty(), "no control outlives its dialog");
        // What was on its way to the dialog.
        Frame();
        m_World.host.keysDown.clear();
        Toolkit().posted.clear();
        Toolkit().focusId = -1;
        CItfWnd::ReleaseCapture();
        CItfWnd::SetModalId(-1);
        CItfWnd::SetDrawing(false);
    }

  private:
    void Frame()
    {
        m_World.host.now += FRAME;
        m_World.ui.OnFrame(FRAME, 0);
    }

    void Redraw()
    {
        for (const RECT part : {RECT{3, 5, 200, 90}, RECT{-50, -50, 2000, 2000}, RECT{9, 9, 9, 9}})
            m_pDialog->Invalidate(&part);
        m_pDialog->Hide(true);
        m_pDialog->Hide(false);
        const POINT pos = {-31, 17};
        m_pDialog->SetPos(&pos, true);
    }

    void Mouse(std::uint32_t message, int x, int y, int wheel = 0)
    {
        m_World.host.cursor = {x, y};
        const auto point = static_cast<std::uint32_t>(static_cast<std::uint16_t>(x)) |
                           static_cast<std::uint32_t>(static_cast<std::uint16_t>(y)) << 16;
        const auto turned = static_cast<std::uint32_t>(static_cast<std::uint16_t>(wheel)) << 16;
        m_World.ui.OnWindowMessage(message, turned, static_cast<std::int32_t>(point));
    }

    /// Presses at one place, drags to the other, lets go.
    void Drag(int x, int y, int toX, int toY)
    {
        Mouse(WM_MOUSEMOVE, x, y);
        m_World.host.keysDown.insert(VK_LBUTTON);
        Mouse(WM_LBUTTONDOWN, x, y);
        Frame();
        Mouse(WM_MOUSEMOVE, toX, toY);
        Frame();
        m_World.host.keysDown.erase(VK_LBUTTON);
        Mouse(WM_LBUTTONUP, toX, toY);
    }

    void Type()
    {
        for (const int key : {VK_HOME, VK_DELETE, VK_END, VK_UP, VK_DOWN, VK_PRIOR, VK_NEXT, VK_LEFT})
            m_World.ui.OnWindowMessage(WM_KEYDOWN, static_cast<std::uint32_t>(key), 0);
        for (const unsigned character : {0x61u, 0x20u, 0x0du, 0x08u, 0xe4u, 0x07u})
            m_World.ui.OnWindowMessage(WM_CHAR, character, 0);
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
        Type();
        Drag(rect.left + 1, rect.top + 1, rect.right + 10, rect.bottom - 1);
        Mouse(WM_LBUTTONDBLCLK, rect.right - 3, rect.bottom - 3);
        Mouse(WM_MOUSEWHEEL, x, y, -3 * WHEEL_DELTA);
        Frame();
        wnd = CItfWnd::FindWindow(id);
        if (wnd == nullptr)
            return;
        wnd->Enable(false);
        wnd->Invalidate(nullptr);
        Drag(x, y, x, y - 40);
    }

    World& m_World;
    std::unique_ptr<TestDialog> m_pDialog;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static World world;
    Player player(world);
    if (player.Load(std::vector<char>(data, data + size)))
        player.Play();
    player.Close();
    return 0;
}
