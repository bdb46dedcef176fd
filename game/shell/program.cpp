#include "shell/program.h"

#include <SDL.h>
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>

#include "entities/camera.h"
#include "entities/flag.h"
#include "entities/graphics.h"
#include "entities/logo.h"
#include "entities/marker.h"
#include "entities/shader.h"
#include "platform/codepage.h"
#include "platform/types.h"
#include "render/picture.h"
#include "shell/folders.h"

namespace
{

constexpr const char* SOUNDS_FILE = "resource\\txt_res\\sounds.ini";
constexpr const char* OPTIONS_FILE = "options.ini";
constexpr int REAL_FRAME = 16; // milliseconds, about sixty frames a second
constexpr std::size_t TRACE_LINES_TOLD = 20;

ItfEvent ToEvent(const ScriptEvent& script)
{
    ItfEvent event;
    event.code = script.nCode;
    event.value1 = script.nValue1;
    event.value2 = script.nValue2;
    std::snprintf(event.text, sizeof(event.text), "%s", script.text.c_str());
    return event;
}

} // namespace

CProgram::CProgram(const Options& options)
    : m_Options(options), m_Clock(options.headless || !options.record.empty(), options.seed),
      m_Host(m_Input, m_Clock, m_Trace), m_Render(options.size.cx, options.size.cy),
      m_Video(m_Render, m_Sound, *this), m_World(m_Trace, m_Factory)
{
    m_Render.SetOnPresentNow([this] { ShowDisplay(); });
    m_Sound.onPlay = [this](const std::string& name) { m_Trace.Add("sound " + name); };
    m_Input.surfaceOrigin = [this] { return SurfaceOrigin(); };
    m_Input.onRecord = [this](const std::string& command) { m_Recorder.Note(command); };
    m_Host.onCursorVisible = [this](bool visible) {
        m_bCursorVisible = visible;
        UpdateCursor();
    };
    RegisterEntities();
    ConnectWorld();
}

CProgram::~CProgram()
{
    m_World.Clear();
}

bool CProgram::Tell(const std::string& line) const
{
    std::fprintf(stderr, "seawarden: %s\n", line.c_str());
    return false;
}

// Start

void CProgram::RegisterEntities()
{
    m_Factory.Register("camera", [](CScene&) { return std::make_unique<CCameraEntity>(); });
    m_Factory.Register("marker", [](CScene&) { return std::make_unique<CMarkerEntity>(); });
    m_Factory.Register("logo", [](CScene&) { return std::make_unique<CLogoEntity>(); });
    m_Factory.Register("graphics", [](CScene&) { return std::make_unique<CGraphicsEntity>(OPTIONS_FILE); });
    m_Factory.Register(FLAG_ENTITY, [this](CScene&) {
        return std::make_unique<CFlagEntity>(m_Presenter, m_Render, m_Flags);
    });
    m_Factory.Register("shader", [this](CScene&) { return std::make_unique<CShaderEntity>(m_Presenter); });
}

void CProgram::ConnectWorld()
{
    m_World.SetSubsystems({&m_Render, &m_Sound, &m_Video});
    m_World.onDisplaySize = [this](int width, int height) { m_Render.SetDisplaySize(width, height); };
    m_World.onDisplayInfo = [this](const DisplayInfo& record) {
        m_Presenter.SetBrightness(record.fBrightness);
        m_Sound.SetLevels(record.bMuteA != 0, record.fLevelA, record.bMuteB != 0, record.fLevelB);
    };
    m_World.onInputMode = [this](int) { UpdateCursor(); };
    m_World.SetDisplaySize(m_Options.size.cx, m_Options.size.cy);
}

bool CProgram::OpenFiles()
{
    if (!m_Options.trace.empty() && !m_Trace.OpenFile(m_Options.trace))
        return Tell("the trace " + m_Options.trace + " can't be written");
    if (!m_Options.shots.empty() && !MakeFolder(m_Options.shots))
        return Tell("the folder " + m_Options.shots + " can't be made");
    const std::string remark = "seawarden --size " + std::to_string(m_Options.size.cx) + "x" +
                               std::to_string(m_Options.size.cy) + " --seed " +
                               std::to_string(m_Options.seed);
    if (!m_Options.record.empty() && !m_Recorder.Open(m_Options.record, remark))
        return Tell("the record " + m_Options.record + " can't be written");
    return true;
}

bool CProgram::LoadScript()
{
    if (m_Options.script.empty())
        return true;
    std::ifstream file(m_Options.script, std::ios::binary);
    std::ostringstream text;
    file.peek();
    if (file.eof())
        return Tell("the script " + m_Options.script + " is empty");
    if (!file || !(text << file.rdbuf()))
        return Tell("the script " + m_Options.script + " can't be read");
    std::vector<ScriptCommand> commands;
    std::string error;
    if (!ParseScript(m_Options.script, text.str(), commands, error))
        return Tell(error);
    if (commands.empty())
        return Tell("the script " + m_Options.script + " has no command");
    m_pScript = std::make_unique<CScriptRunner>(m_Options.script, commands, m_Input, m_Trace, *this);
    return true;
}

bool CProgram::OpenWindow()
{
    if (m_Options.headless)
        return true;
    std::string error;
    m_pWindow = CWindow::Open(m_Options.size, m_Options.fullscreen, m_Options.scale, error);
    if (m_pWindow == nullptr)
        return Tell("there is no display (" + error + "); --headless runs without one");
    if (!m_Options.mute && !m_Sound.OpenDevice())
        Tell("there is no sound device, so the game is silent");
    return true;
}

// Brightness and sound levels of the player's options hold from the first frame.
void CProgram::ApplyStoredOptions()
{
    CScene& scene = *m_World.CurrentScene();
    auto* graphics = static_cast<IGraphicsEntity*>(scene.GetEntity(scene.FindEntity("graphics", nullptr)));
    ItfOptions options;
    graphics->GetOptions(&options);
    DisplayInfo& info = m_World.GetDisplayInfo();
    info.fBrightness = options.fBrightness;
    info.fLevelA = options.fLevelA;
    info.fLevelB = options.fLevelB;
    m_World.ApplyDisplayInfo(info);
}

// A run that can be repeated throws the same dice; any other throws its own unless a seed was asked for.
std::uint64_t CProgram::BattleSeed() const
{
    return m_Clock.IsFixed() || m_Options.seed != 0 ? m_Options.seed : SDL_GetPerformanceCounter();
}

bool CProgram::StartLogic()
{
    m_Sound.LoadNames(SOUNDS_FILE);
    for (const char* name : {"camera", "marker", "graphics"})
        m_World.CurrentScene()->CreateEntity(name, 0, 0);
    ApplyStoredOptions();
    m_pLogic = std::make_unique<CLogic>(m_World, m_Sound, BattleSeed());
    m_World.SetTargets(this, m_pLogic.get());
    ItfEvent first;
    if (m_pScript != nullptr) {
        if (const auto event = m_pScript->TakeFirstEvent())
            first = ToEvent(*event);
    }
    if (!m_pLogic->Start(first) && !m_World.Failed())
        return Tell("the front end can't be started");
    return true;
}

bool CProgram::Prepare()
{
    return OpenFiles() && LoadScript() && OpenWindow() && StartLogic();
}

// Frames

void CProgram::StepScript()
{
    if (m_pScript == nullptr || m_bScriptEnded)
        return;
    const CScriptRunner::State state = m_pScript->Step();
    if (state == CScriptRunner::State::Running)
        return;
    m_bScriptEnded = true;
    m_bScriptFailed = state == CScriptRunner::State::Failed;
    m_bQuit = true;
    if (!m_bScriptFailed)
        m_Trace.Add("quit");
}

void CProgram::PumpWindow()
{
    if (m_bQuit || m_pWindow->Pump(m_Input))
        return;
    m_bQuit = true;
    m_bClosedByPlayer = true;
    m_Trace.Add("quit");
}

// The window is looked at as often as the module set the timer's rate, so that it stays responsive.
void CProgram::WaitForFrame()
{
    const DWORD length = m_Clock.IsFixed() ? CClock::FIXED_FRAME : REAL_FRAME;
    const DWORD step = static_cast<DWORD>(std::max(m_World.TimerRate(), 1));
    for (DWORD passed = SDL_GetTicks() - m_nFrameStart; passed < length;
         passed = SDL_GetTicks() - m_nFrameStart) {
        SDL_Delay(std::min(length - passed, step));
        PumpWindow();
    }
    m_nFrameStart = SDL_GetTicks();
    PumpWindow();
}

bool CProgram::BeginFrame()
{
    if (m_pWindow != nullptr)
        WaitForFrame();
    m_nElapsed = m_Clock.NextFrame();
    if (!m_bQuit)
        StepScript();
    m_Input.Flush();
    if (!m_bQuit)
        m_Recorder.NextFrame();
    return !m_bQuit;
}

void CProgram::RunFrame()
{
    InputMessage input;
    while (m_Input.Take(input))
        m_World.SendInput(input.message, input.wParam, input.lParam);
    m_pLogic->Update();
    m_World.DeliverPosted();
    m_Video.Update(m_nElapsed);
    m_World.RunFrame(m_nElapsed);
    ShowDisplay();
}

IFramePump::Frame CProgram::PumpFrame()
{
    m_Presenter.ClearFades(); // a shade that runs is for the picture that the clip has replaced
    Frame frame;
    frame.ended = m_bQuit || !BeginFrame();
    frame.elapsed = m_nElapsed;
    InputMessage input;
    while (m_Input.Take(input)) {
        if (IsFreshPress(input))
            frame.interrupted = true;
    }
    return frame;
}

const std::uint16_t* CProgram::ComposeDisplay()
{
    return m_Presenter.Compose(m_Render.DisplayPixels(), m_Render.DisplayWidth(), m_Render.DisplayHeight());
}

void CProgram::ShowDisplay()
{
    if (m_pWindow == nullptr)
        return;
    const std::uint16_t* picture = ComposeDisplay();
    const bool drawn = m_Render.TakeDisplayChanged();
    const bool changed = m_Presenter.TakeChanged() || drawn;
    m_pWindow->Show(picture, {m_Render.DisplayWidth(), m_Render.DisplayHeight()}, changed);
}

void CProgram::UpdateCursor()
{
    if (m_pWindow != nullptr)
        m_pWindow->SetCursorShown(m_bCursorVisible && m_World.InputModeNow() == INPUT_NORMAL);
}

// What others ask of the program

Word CProgram::OnMessage(const MessageRecord* record)
{
    if (record->message != MSG_QUIT)
        return 0;
    if (!m_bQuit)
        m_Trace.Add("quit");
    m_bQuit = true;
    return 1;
}

bool CProgram::SaveShot(const std::string& name)
{
    if (m_Options.shots.empty())
        return true;
    const std::uint16_t* picture = ComposeDisplay();
    return SavePng(m_Options.shots + "/" + name + ".png", picture, m_Render.DisplayWidth(),
                   m_Render.DisplayHeight());
}

void CProgram::SendScriptEvent(const ScriptEvent& event)
{
    if (event.nCode == EVENT_MESSAGE_BOX)
        m_pLogic->PostMessageBox(event.nValue2, event.nValue1, event.nStyle, event.nId);
    else
        m_pLogic->PostEvent(ToEvent(event));
}

POINT CProgram::SurfaceOrigin()
{
    const RECT shown = m_Render.FrameRect();
    return {shown.left, shown.top};
}

// The run

int CProgram::Finish()
{
    m_Recorder.Close(m_bClosedByPlayer);
    if (m_World.Failed()) {
        Tell(m_World.Failure());
        return EXIT_FAILED;
    }
    if (m_pScript == nullptr || m_bClosedByPlayer)
        return EXIT_GOOD;
    if (!m_bScriptEnded)
        m_bScriptFailed = m_pScript->Finish() == CScriptRunner::State::Failed;
    if (!m_bScriptFailed)
        return EXIT_GOOD;
    Tell(m_pScript->Error());
    for (const std::string& line : m_Trace.Last(TRACE_LINES_TOLD))
        std::fprintf(stderr, "  %s\n", PlatformToUtf8(line).c_str());
    return EXIT_FAILED;
}

int CProgram::Run()
{
    if (!Prepare())
        return EXIT_FAILED;
    while (!m_bQuit && !m_World.Failed() && BeginFrame())
        RunFrame();
    return Finish();
}
