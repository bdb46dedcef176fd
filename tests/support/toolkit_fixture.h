#pragma once
// The fixture of the module's tests: a clean toolkit, a fake engine with a real memory display, a fake
// platform, the shipped data folder and an empty player's folder. A debug line that no test took, or a window
// left over, fails the test.

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "controls/itfreportbox.h"
#include "flow/flow.h"
#include "kernel/interface_entity.h"
#include "kernel/itfdialog.h"
#include "support/fakes.h"

namespace seawarden_test
{

class ToolkitTest : public ::testing::Test
{
  protected:
    ToolkitTest();
    ~ToolkitTest() override;
    void TearDown() override;

    // Files of the player's folder, which hide the shipped ones.
    void WriteFile(const std::string& path, const std::string& content);
    /// Makes `section` (name, braces and all) the whole dialog resource.
    void WriteDialogs(const std::string& text);
    /// A sprite of one colour under a logical name.
    void AddSprite(const std::string& name, int width, int height, std::uint16_t pixel = 0xffff);
    /// A font under a logical name: every printable character a white block of 8 by 10 with an advance of 8.
    void AddFont(const std::string& name);
    /// Whatever the shipped itfnames.ini gives.
    void UseShippedNames();

    // The module's entity, made when first asked for and given Init.
    CInterface& Ui();
    /// Sends MSG_ITF_START with the code, as the logic does.
    void Start(int code = 0);
    /// Sends the entity a message with these words.
    Word Send(int number, std::vector<Word> words = {});
    Word SendEvent(ItfEvent event);
    /// One frame: queue, ticks, present.
    void Frame(int elapsed = 20);
    /// Ends the shade effect as the shader entity does.
    void FinishShade() { Send(MSG_ITF_SHADE_DONE); }
    /// Destroys the entity.
    void DropUi() { m_Ui.reset(); }

    // Input through the entity, in display coordinates; the cursor follows.
    Word Mouse(UINT message, int x, int y, std::uint32_t wParam = 0);
    Word Move(int x, int y) { return Mouse(WM_MOUSEMOVE, x, y); }
    Word Down(int x, int y);
    Word Up(int x, int y);
    void Click(int x, int y);
    /// notches above 0 turn the wheel away from the user.
    Word Wheel(int x, int y, int notches);
    Word Key(int key);
    Word Char(int character);
    void Type(const std::string& text);

    /// What the main dialog posts when an item is chosen, and a frame.
    void Choose(int item);
    /// The middle of a control, which has to be there.
    void ClickControl(const CItfDialog* dialog, int id);
    static POINT Middle(const CItfWnd& wnd);

    /// The newest window of the class, null when there is none.
    template <class T>
    static T* Find()
    {
        for (auto entry = Toolkit().windows.rbegin(); entry != Toolkit().windows.rend(); ++entry) {
            if (auto* wnd = dynamic_cast<T*>(entry->wnd))
                return wnd;
        }
        return nullptr;
    }
    /// The text of a text box; "none" without the dialog or the box.
    static std::string TextOf(const CItfDialog* dialog, int id);
    /// The dialog has to have it.
    static CItfReportBox& TableOf(const CItfDialog* dialog, int id);
    static std::vector<std::string> Cells(const CItfReportBox& table, int row);
    /// A point of a row's first cell.
    static POINT RowPoint(const CItfReportBox& table, int row);
    /// The pixel of the screen surface.
    std::uint16_t Pixel(int x, int y);
    /// The debug lines so far, which are then forgotten.
    std::vector<std::string> TakeDebug();
    /// The commands posted to the logic so far, by code.
    std::vector<int> Commands() const;

    FakeHost host;
    FakeEngine engine;
    std::filesystem::path userFolder;

  private:
    std::unique_ptr<CInterface> m_Ui;
};

/// A window that keeps what happens to it, and runs a test's own code there.
class RecordingWnd : public CItfWnd
{
  public:
    const Row* GetMessageTable() const override;
    void Draw() override;
    void OnTick(int elapsed) override;

    struct Got {
        std::uint32_t msg;
        std::uint32_t wParam;
        std::int32_t lParam;
    };
    std::vector<Got> got;
    std::vector<RECT> draws; ///< the update rectangle of each
    int ticks = 0;
    Word answer = 0;
    std::function<void()> onDraw;
    std::function<void()> onTick;
    std::function<void(const Got&)> onMessage; ///< last, and may delete the window

  private:
    Word OnAny(std::uint32_t msg, std::uint32_t wParam, std::int32_t lParam);
    Word OnMouseMoved(std::uint32_t w, std::int32_t l) { return OnAny(WM_MOUSEMOVE, w, l); }
    Word OnDown(std::uint32_t w, std::int32_t l) { return OnAny(WM_LBUTTONDOWN, w, l); }
    Word OnUp(std::uint32_t w, std::int32_t l) { return OnAny(WM_LBUTTONUP, w, l); }
    Word OnDouble(std::uint32_t w, std::int32_t l) { return OnAny(WM_LBUTTONDBLCLK, w, l); }
    Word OnWheel(std::uint32_t w, std::int32_t l) { return OnAny(WM_MOUSEWHEEL, w, l); }
    Word OnKey(std::uint32_t w, std::int32_t l) { return OnAny(WM_KEYDOWN, w, l); }
    Word OnChar(std::uint32_t w, std::int32_t l) { return OnAny(WM_CHAR, w, l); }
    Word OnNotify(std::uint32_t w, std::int32_t l) { return OnAny(ITFM_NOTIFY, w, l); }
    Word OnCommand(std::uint32_t w, std::int32_t l) { return OnAny(ITFM_COMMAND, w, l); }
    Word OnLostFocus(std::uint32_t w, std::int32_t l) { return OnAny(ITFM_LOSTFOCUS, w, l); }
};

} // namespace seawarden_test
