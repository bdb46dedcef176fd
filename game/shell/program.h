#pragma once
// The program: owns every part of the game and runs the frames.

#include <memory>
#include <string>

#include "engine/entity_factory.h"
#include "engine/trace.h"
#include "engine/world.h"
#include "entities/flag_table.h"
#include "logic/logic.h"
#include "render/render2d.h"
#include "script/runner.h"
#include "shell/clock.h"
#include "shell/game_host.h"
#include "shell/input.h"
#include "shell/options.h"
#include "shell/presenter.h"
#include "shell/recorder.h"
#include "shell/window.h"
#include "sound/sound.h"
#include "video/frame_pump.h"
#include "video/video.h"

/// The order of a frame: input; posted messages; background clips; OnFrame of every entity; the display is
/// shown. Also destination DEST_HOST, what a script acts on, and what a clip that is played to its end runs
/// its frames with.
class CProgram : public IMessageTarget, public IFramePump, public IScriptHost
{
  public:
    enum ExitStatus { EXIT_GOOD = 0, EXIT_FAILED = 1, EXIT_USAGE = 2 };

    /// The folders of the file layer must be set. `options` is copied.
    explicit CProgram(const Options& options);
    ~CProgram() override;

    /// Runs to the end; what went wrong has been told on stderr.
    int Run();

    Word OnMessage(const MessageRecord* record) override;
    Frame PumpFrame() override;
    bool SaveShot(const std::string& name) override;
    void SendScriptEvent(const ScriptEvent& event) override;
    POINT SurfaceOrigin() override;

  private:
    bool Prepare();
    bool OpenFiles();
    bool LoadScript();
    bool OpenWindow();
    void RegisterEntities();
    void ConnectWorld();
    void ApplyStoredOptions();
    std::uint64_t BattleSeed() const;
    bool StartLogic();
    /// Everything up to the input of the next frame; false when the program is to end.
    bool BeginFrame();
    void RunFrame();
    void StepScript();
    void PumpWindow();
    void WaitForFrame();
    /// The picture as it is to be seen, valid until the next call.
    const std::uint16_t* ComposeDisplay();
    void ShowDisplay();
    void UpdateCursor();
    int Finish();
    bool Tell(const std::string& line) const;

    const Options m_Options;
    CTrace m_Trace;
    CClock m_Clock;
    CInput m_Input;
    CGameHost m_Host;
    CPresenter m_Presenter;
    CFlagTable m_Flags;
    CRender2D m_Render;
    CSound m_Sound;
    CVideo m_Video;
    CRecorder m_Recorder;
    CEntityFactory m_Factory;
    std::unique_ptr<CWindow> m_pWindow;
    std::unique_ptr<CScriptRunner> m_pScript;
    std::unique_ptr<CLogic> m_pLogic; // outlives the entities, which the world deletes
    CWorld m_World;

    bool m_bCursorVisible = true; // as the module asked
    bool m_bQuit = false;
    bool m_bClosedByPlayer = false;
    bool m_bScriptEnded = false;
    bool m_bScriptFailed = false;
    int m_nElapsed = 0;
    DWORD m_nFrameStart = 0;
};
