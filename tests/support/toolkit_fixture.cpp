#include "support/toolkit_fixture.h"

#include <cstdlib>
#include <fstream>

#include "controls/itftextbox.h"
#include "itfrecords.h"
#include "keelworks/ds_file.h"
#include "kernel/nameloader.h"
#include "platform/files.h"
#include "render/picture.h"

namespace seawarden_test
{

namespace
{

constexpr int TEST_GLYPH_WIDTH = 8;
constexpr int TEST_GLYPH_HEIGHT = 10;

std::filesystem::path MakeTempFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "seawarden-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
        std::abort();
    return name;
}

std::int32_t Pack(int x, int y)
{
    const DWORD low = static_cast<std::uint16_t>(x);
    const DWORD high = static_cast<std::uint16_t>(y);
    return static_cast<std::int32_t>(low | (high << 16));
}

} // namespace

ToolkitTest::ToolkitTest() : userFolder(MakeTempFolder())
{
    Toolkit() = ToolkitState();
    PlatformSetRoots(userFolder.string(), std::string(SEAWARDEN_SOURCE_DIR) + "/data");
    engine.SetDisplaySize(SCREEN_WIDTH, SCREEN_HEIGHT);
}

ToolkitTest::~ToolkitTest()
{
    m_Ui.reset();
    Toolkit() = ToolkitState();
    std::error_code ignored;
    std::filesystem::remove_all(userFolder, ignored);
}

void ToolkitTest::TearDown()
{
    m_Ui.reset();
    EXPECT_TRUE(Toolkit().windows.empty()) << Toolkit().windows.size() << " windows are left over";
    EXPECT_EQ(TakeDebug(), std::vector<std::string>()) << "unexpected debug lines";
}

void ToolkitTest::WriteFile(const std::string& path, const std::string& content)
{
    const std::filesystem::path real = userFolder / path;
    std::filesystem::create_directories(real.parent_path());
    std::ofstream(real, std::ios::binary) << content;
}

void ToolkitTest::WriteDialogs(const std::string& text)
{
    WriteFile("resource/txt_res/itfdlg.ini", text);
}

void ToolkitTest::AddSprite(const std::string& name, int width, int height, std::uint16_t pixel)
{
    const std::string file = "test_" + name + ".png";
    const std::vector<std::uint16_t> pixels(
        static_cast<std::size_t>(width) * static_cast<std::size_t>(height), pixel);
    SavePng((userFolder / file).string(), pixels.data(), width, height);
    Toolkit().spriteMap.push_back({name, file});
}

void ToolkitTest::AddFont(const std::string& name)
{
    const std::vector<std::uint16_t> pixels(TEST_GLYPH_WIDTH * TEST_GLYPH_HEIGHT, 0xffff);
    SavePng((userFolder / "test_font.png").string(), pixels.data(), TEST_GLYPH_WIDTH, TEST_GLYPH_HEIGHT);
    std::string text = "texture = \"test_font.png\"\nsymbols\n{";
    for (char c = ' '; c <= '~'; ++c)
        text += std::string(c == ' ' ? "" : ",") + "\n\"" + c + "\", 0, 0, 8, 10, 0, 8";
    text += "}\n";
    WriteFile("resource/txt_res/test.fnt", text);
    Toolkit().fontMap.push_back({name, "test.fnt"});
}

void ToolkitTest::UseShippedNames()
{
    ds_file_buffered file(NAME_RESOURCE, false);
    NameMaps maps = ReadNameMaps(&file);
    Toolkit().spriteMap = std::move(maps.sprites);
    Toolkit().fontMap = std::move(maps.fonts);
}

CInterface& ToolkitTest::Ui()
{
    if (m_Ui == nullptr) {
        m_Ui = std::make_unique<CInterface>();
        std::fill(std::begin(m_Ui->m_HostWords), std::end(m_Ui->m_HostWords), 0);
        m_Ui->m_HostWords[Entity::HOSTWORD_ID] = engine.AddEntity("interface", "interface");
        EXPECT_NE(m_Ui->Init(&engine), 0);
    }
    return *m_Ui;
}

Word ToolkitTest::Send(int number, std::vector<Word> words)
{
    struct {
        MessageRecord record;
        Word words[8];
    } message = {{-1, number, Ui().GetEntityId(), 0}, {}};
    std::copy(words.begin(), words.end(), message.words);
    return Ui().OnMessage(&message.record);
}

Word ToolkitTest::SendEvent(ItfEvent event)
{
    return Send(MSG_ITF_EVENT, {reinterpret_cast<Word>(&event)});
}

void ToolkitTest::Start(int code)
{
    ItfEvent event;
    event.code = code;
    Send(MSG_ITF_START, {reinterpret_cast<Word>(&event)});
}

void ToolkitTest::Frame(int elapsed)
{
    host.now += static_cast<DWORD>(elapsed);
    Ui().OnFrame(elapsed, 0);
}

Word ToolkitTest::Mouse(UINT message, int x, int y, std::uint32_t wParam)
{
    host.cursor = {x, y};
    return Ui().OnWindowMessage(message, wParam, Pack(x, y));
}

Word ToolkitTest::Down(int x, int y)
{
    host.keysDown.insert(VK_LBUTTON);
    return Mouse(WM_LBUTTONDOWN, x, y);
}

Word ToolkitTest::Up(int x, int y)
{
    host.keysDown.erase(VK_LBUTTON);
    return Mouse(WM_LBUTTONUP, x, y);
}

void ToolkitTest::Click(int x, int y)
{
    Move(x, y);
    Down(x, y);
    Up(x, y);
}

Word ToolkitTest::Wheel(int x, int y, int notches)
{
    const auto high = static_cast<std::uint16_t>(notches * WHEEL_DELTA);
    return Mouse(WM_MOUSEWHEEL, x, y, static_cast<std::uint32_t>(high) << 16);
}

Word ToolkitTest::Key(int key)
{
    return Ui().OnWindowMessage(WM_KEYDOWN, static_cast<std::uint32_t>(key), 0);
}

Word ToolkitTest::Char(int character)
{
    return Ui().OnWindowMessage(WM_CHAR, static_cast<std::uint32_t>(character), 0);
}

void ToolkitTest::Type(const std::string& text)
{
    for (const char c : text)
        Char(static_cast<unsigned char>(c));
}

void ToolkitTest::Choose(int item)
{
    CItfWnd::PostTo(0, ITFM_COMMAND, DLG_MAIN, item);
    Frame();
}

void ToolkitTest::ClickControl(const CItfDialog* dialog, int id)
{
    ASSERT_TRUE(dialog != nullptr && dialog->GetControl(id) != nullptr) << id;
    const POINT at = Middle(*dialog->GetControl(id));
    Click(at.x, at.y);
}

POINT ToolkitTest::Middle(const CItfWnd& wnd)
{
    RECT rect;
    wnd.GetScreenRect(&rect);
    return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

std::string ToolkitTest::TextOf(const CItfDialog* dialog, int id)
{
    const auto* box = dialog != nullptr ? dialog->GetControlAs<CItfTextBox>(id) : nullptr;
    return box != nullptr ? box->GetText() : "none";
}

CItfReportBox& ToolkitTest::TableOf(const CItfDialog* dialog, int id)
{
    return *dialog->GetControlAs<CItfReportBox>(id);
}

std::vector<std::string> ToolkitTest::Cells(const CItfReportBox& table, int row)
{
    std::vector<std::string> cells;
    for (int column = 0; column < table.GetColumnCount(); ++column)
        cells.push_back(table.GetItem(row, column).m_Text);
    return cells;
}

POINT ToolkitTest::RowPoint(const CItfReportBox& table, int row)
{
    const CItfListBox* column = table.GetColumn(0);
    RECT rect;
    column->GetScreenRect(&rect);
    const int height = column->GetFontHeight(column->GetFontHandle());
    return {rect.left + 10, rect.top + row * height + height / 2};
}

std::uint16_t ToolkitTest::Pixel(int x, int y)
{
    const int surface = Toolkit().screenSurface;
    const std::uint16_t* pixels = engine.render.LockSurface(surface);
    const std::uint16_t pixel = pixels != nullptr ? pixels[y * SCREEN_WIDTH + x] : 0;
    engine.render.UnlockSurface(surface, 0);
    return pixel;
}

std::vector<std::string> ToolkitTest::TakeDebug()
{
    return std::exchange(host.debug, {});
}

std::vector<int> ToolkitTest::Commands() const
{
    std::vector<int> codes;
    for (const Sent& sent : engine.SentWith(MSG_ITF_COMMAND))
        codes.push_back(*reinterpret_cast<const std::int32_t*>(sent.words.at(0)));
    return codes;
}

const CItfWnd::Row* RecordingWnd::GetMessageTable() const
{
    static const Row rows[] = {
        On(WM_MOUSEMOVE, &RecordingWnd::OnMouseMoved),
        On(WM_LBUTTONDOWN, &RecordingWnd::OnDown),
        On(WM_LBUTTONUP, &RecordingWnd::OnUp),
        On(WM_LBUTTONDBLCLK, &RecordingWnd::OnDouble),
        On(WM_MOUSEWHEEL, &RecordingWnd::OnWheel),
        On(WM_KEYDOWN, &RecordingWnd::OnKey),
        On(WM_CHAR, &RecordingWnd::OnChar),
        On(ITFM_NOTIFY, &RecordingWnd::OnNotify),
        On(ITFM_COMMAND, &RecordingWnd::OnCommand),
        On(ITFM_LOSTFOCUS, &RecordingWnd::OnLostFocus),
        EndOfTable(),
    };
    return rows;
}

void RecordingWnd::Draw()
{
    draws.push_back(m_rcUpdate);
    CItfWnd::Draw();
    if (onDraw)
        onDraw();
}

void RecordingWnd::OnTick(int)
{
    ++ticks;
    if (onTick)
        onTick();
}

Word RecordingWnd::OnAny(std::uint32_t msg, std::uint32_t wParam, std::int32_t lParam)
{
    const Got now = {msg, wParam, lParam};
    got.push_back(now);
    const Word result = answer;
    if (onMessage) {
        const auto run = onMessage; // which may delete this window and its function
        run(now);
    }
    return result;
}

} // namespace seawarden_test
