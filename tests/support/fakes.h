#pragma once
// Stand-ins for everything that the module meets outside itself. They keep what they were asked, so that a
// test can look, and have public members that a test sets before it acts.

#include <cstring>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "entity.h"
#include "iengine.h"
#include "ientities.h"
#include "ilogic.h"
#include "isound.h"
#include "itfrecords.h"
#include "ivideo.h"
#include "platform/host.h"
#include "render/render2d.h"

namespace seawarden_test
{

/// Ids of the fake's subsystems, apart from every scene id.
constexpr int SUBSYSTEM_ID_BASE = 1000;

/// A call as a line: its name and its numbers.
inline std::string Call(const char* name, std::initializer_list<int> values)
{
    std::string line = name;
    for (const int value : values)
        line += " " + std::to_string(value);
    return line;
}

inline void ClearHostWords(Entity& entity)
{
    std::memset(entity.m_HostWords, 0, sizeof(entity.m_HostWords));
}

/// A message as it was handed to the engine.
struct Sent {
    bool post = false;
    int number = 0;
    int destination = 0;
    int extra = 0;
    std::string format;
    std::vector<Word> words;
    std::vector<std::string> texts; ///< one for each `s`, copied
};

/// Every text is "text NNN" unless the test gave another.
class FakeTextTable : public ITextTable
{
  public:
    const char* GetText(int number) override;
    std::map<int, std::string> texts;
};

class FakePlayList : public IPlayList
{
  public:
    void Play(int track) override;
    void Stop(int fade) override;
    void Skip() override { calls.push_back("Skip"); }
    void Select(int list, int on) override { calls.push_back(Call("Select", {list, on})); }
    int GetCurrent() override { return current; }

    std::vector<std::string> calls; ///< "Play 0", "Stop 500", "Skip", "Select 0 1"
    int current = -1;
};

/// Has the program's version alone.
class FakeProfile : public IProfileStore
{
  public:
    bool Write(const char*, const char*, const void*) override { return false; }
    bool Read(const char* key, const char*, void* out) override
    {
        if (section != "VERSION" || std::strcmp(key, "Version") != 0)
            return false;
        std::memcpy(out, &version, sizeof version);
        return true;
    }
    bool SelectSection(const char* name, int) override
    {
        section = name;
        return true;
    }

    std::string section;
    std::uint32_t version = 0;
};

class FakeSound : public ISound
{
  public:
    void Play(const char* name, int, int) override { played.push_back(name); }
    void Stop(int) override {}

    std::vector<std::string> played;
};

/// Gives handles from 1 on and notes each call as a line.
class FakeVideo : public IVideo
{
  public:
    int OpenVideo(const char* file, int flags) override
    {
        return Open("OpenVideo", file, " " + std::to_string(flags));
    }
    void SetVideoTarget(int video, int surface, const RECT* rect) override
    {
        Target("SetVideoTarget", video, surface, *rect);
    }
    void PlayVideo(int video, int background) override;
    bool IsVideoRunning(int video) override { return running.count(video) != 0; }
    void StopVideo(int video) override;
    void RewindVideo(int video, int position) override
    {
        calls.push_back(Call("RewindVideo", {video, position}));
    }
    void CloseVideo(int video) override;
    int OpenAnimation(const char* clip) override { return Open("OpenAnimation", clip, ""); }
    void SetAnimationTarget(int animation, int surface, const RECT* rect) override
    {
        Target("SetAnimationTarget", animation, surface, *rect);
    }
    void StartAnimation(int animation) override { calls.push_back(Call("StartAnimation", {animation})); }
    void TickAnimation(int animation, int elapsed) override
    {
        calls.push_back(Call("TickAnimation", {animation, elapsed}));
    }
    void CloseAnimation(int animation) override;

    std::vector<std::string> calls; ///< "OpenVideo video\x.ani 6", "SetVideoTarget 1 -1 0 0 800 600", ...
    std::set<std::string> missing;  ///< files and clips that can't be opened
    std::set<int> running;
    std::set<int> open;

  private:
    int Open(const char* call, const char* file, const std::string& rest);
    void Target(const char* call, int id, int surface, const RECT& rect)
    {
        calls.push_back(Call(call, {id, surface, rect.left, rect.top, rect.right, rect.bottom}));
    }
    int m_nNext = 1;
};

class FakeNet : public INetCore
{
  public:
    bool IsNetworkGame() override { return networkGame; }
    bool IsServer() override { return false; }
    void EnterLobby() override { calls.push_back("EnterLobby"); }
    void Disconnect(int reason) override { calls.push_back("Disconnect " + std::to_string(reason)); }
    void AbortGame() override { calls.push_back("AbortGame"); }

    bool networkGame = false;
    std::vector<std::string> calls;
};

class FakeMarker : public IMarkerEntity
{
  public:
    FakeMarker() { ClearHostWords(*this); }
    void SetInterfaceMode(int on) override { modes.push_back(on); }
    std::vector<int> modes;
};

class FakeGraphics : public IGraphicsEntity
{
  public:
    FakeGraphics() { ClearHostWords(*this); }
    void GetOptions(ItfOptions* out) override { *out = options; }
    void SetOptions(const ItfOptions* record) override { options = *record; }
    ItfOptions options = {};
};

/// A battle's figures: those of player `index` are index + 1 times one to six, those of a side ten times side
/// + 1 times the same.
class FakeGame : public IGameEntity
{
  public:
    FakeGame() { ClearHostWords(*this); }
    int GetWinner() override { return winner; }
    void GetSideStats(int side, ItfSideStats* out) override;
    int GetSideCount() override { return static_cast<int>(players.size()); }
    int GetPlayerCount(int side) override;
    ItfPlayerStats* GetPlayer(int side, int index) override;
    void GetBattleTime(int* days, int* hours, int* minutes) override
    {
        *days = time[0];
        *hours = time[1];
        *minutes = time[2];
    }

    int winner = 0;
    int time[3] = {0, 0, 0};
    /// Names for each side; null for a player without a record.
    std::vector<std::vector<const char*>> players;

  private:
    ItfPlayerStats m_Player = {};
};

/// A running game, which a FakeEngine hands out as its gameState.
class FakeGameState : public IGameState
{
  public:
    ItfCharacter* GetCharacter() override { return nullptr; }
    IUnitList* GetUnits() override { return nullptr; }
    GameHeader* GetHeader() override { return hasHeader ? &header : nullptr; }
    ScenarioInfo* GetScenarioInfo() override { return hasScenario ? &scenario : nullptr; }

    GameHeader header = {};
    ScenarioInfo scenario = {};
    bool hasHeader = true;
    bool hasScenario = true;
};

/// An engine of one scene: the root, or a scene that another fake names as its current one. Messages are
/// kept, not delivered, unless the destination is an entity that AddEntity was given an object for.
class FakeEngine : public IEngine
{
  public:
    FakeEngine() { SetDisplaySize(800, 600); }

    // IEngine
    int GetSubsystemId(int number) override { return SUBSYSTEM_ID_BASE + number; }
    void* GetSubsystem(int id, int kind = 0) override;
    IEngine* GetScene(int id) override { return id == -1 ? this : nullptr; }
    int CreateScene(int flags) override;
    void DestroyScene(int id) override { calls.push_back(Call("DestroyScene", {id})); }
    void SetSceneActive(int id, int a, int b, int c) override
    {
        calls.push_back(Call("SetSceneActive", {id, a, b, c}));
    }
    int CreateEntity(const char* name, int kind, int flags) override;
    int CreateEntityFromModule(const char* name, const char* module, int a, int b, int c, int d) override;
    void DestroyEntity(int id) override;
    Entity* GetEntity(int id) override;
    int FindEntity(const char* name, const char* className) override;
    int FindNextEntity() override { return SearchFrom(m_nLastFound + 1); }
    void GetScreenSize(SIZE* out) override { *out = {displayInfo.nWidth, displayInfo.nHeight}; }
    DisplayInfo* GetDisplayInfo() override { return &displayInfo; }
    void SetDisplayInfo(DisplayInfo* record, int flags) override
    {
        calls.push_back(Call("SetDisplayInfo", {record->nChange, flags}));
    }
    void RegisterInput(int kind, int entity, int flags) override
    {
        calls.push_back(Call("RegisterInput", {kind, entity, flags}));
    }
    void SetTimerRate(int rate) override { calls.push_back(Call("SetTimerRate", {rate})); }
    void SetInputMode(int mode) override { calls.push_back(Call("SetInputMode", {mode})); }
    int AddViewport(const ViewportRecord* descriptor) override
    {
        viewport = *descriptor;
        return 0;
    }
    void SetCamera(int id, const float*, const float*) override { calls.push_back(Call("SetCamera", {id})); }
    ViewportRecord* GetViewport(int id) override { return id == 0 ? &viewport : nullptr; }
    Word DoMessage(bool post, int number, int destination, int extra, const char* format,
                   std::span<const Word> values) override;

    /// Registers an entity under a new id, which it gets in its host words unless `entity` is null. The
    /// caller keeps the object.
    int AddEntity(const char* name, const char* className, Entity* entity = nullptr);
    /// Sets the display's size here, in the 2-D layer and in the display record.
    void SetDisplaySize(int width, int height);
    /// The kept messages with this number.
    std::vector<Sent> SentWith(int number) const;

    std::vector<Sent> messages;
    /// Answers a message before anything else does; 0 leaves it to the default answers.
    std::function<Word(const Sent&)> onMessage;

    /// Every other call as a line, messages as "send 14 5" and "post 14 5".
    std::vector<std::string> calls;

    CRender2D render;
    FakeSound sound;
    FakeVideo video;
    FakeTextTable textTable;
    FakePlayList playList;
    FakeProfile profile;
    FakeNet net;
    IGameState* gameState = nullptr; ///< no game runs
    bool hasNet = true;
    bool hasRender = true;
    bool hasVideo = true;

    IEngine* currentScene = nullptr; ///< GetSubsystem(0, 0)
    DisplayInfo displayInfo = {};
    alignas(8) ViewportRecord viewport = {}; ///< viewport 0

    std::set<std::string> refused; ///< names for which CreateEntity fails
    std::vector<int> destroyed;

  private:
    struct Known {
        std::string name;
        std::string className;
        Entity* entity = nullptr;
    };
    int SearchFrom(int id);
    Word Deliver(const Sent& sent, std::span<const Word> values);
    Word DefaultAnswer(const Sent& sent);

    std::map<int, Known> m_Entities;
    std::string m_strSearchName;
    std::optional<std::string> m_SearchClass;
    int m_nLastFound = 0;
    int m_nNextId = 16;
    int m_nNextScene = 1;
};

/// Cursor, keys, clock and clipboard that a test sets. Installs itself and puts the old host back at the end.
class FakeHost : public PlatformHost
{
  public:
    FakeHost() : m_pOld(SetPlatformHost(this)) {}
    ~FakeHost() override { SetPlatformHost(m_pOld); }
    FakeHost(const FakeHost&) = delete;
    FakeHost& operator=(const FakeHost&) = delete;

    bool CursorPos(POINT& out) override
    {
        out = hasCursor ? cursor : POINT{};
        return hasCursor;
    }
    void SetCursorVisible(bool visible) override { cursorVisible = visible; }
    bool IsKeyDown(int key) override { return keysDown.count(key) != 0; }
    bool IsKeyDownNow(int key) override { return keysDown.count(key) != 0; }
    std::optional<std::string> ClipboardText() override { return clipboard; }
    void SetClipboardText(const std::string& text) override { clipboard = text; }
    DWORD Milliseconds() override { return now; }
    SYSTEMTIME LocalTime() override { return {2024, 5, 3, 1, 12, 0, 0, 0}; }
    void DebugOutput(const char* text) override { debug.push_back(text); }
    std::vector<std::string> MountPoints() override { return mountPoints; }
    std::string HomeFolder() override { return homeFolder; }

    POINT cursor;
    bool hasCursor = true;
    bool cursorVisible = true;
    std::set<int> keysDown;
    std::optional<std::string> clipboard;
    DWORD now = 1000;
    std::vector<std::string> debug; ///< each line as it was given, with its CR LF
    std::vector<std::string> mountPoints;
    std::string homeFolder;

  private:
    PlatformHost* m_pOld;
};

} // namespace seawarden_test
