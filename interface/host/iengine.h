#pragma once
// What the module expects of the engine that loads it.

#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

#include "entity.h"
#include "platform/types.h"

class IRender2D;
class ISound;
class IVideo;

/// Message destinations below the first entity id.
enum MessageDestination : int {
    DEST_HOST = 2,
    DEST_LOGIC = 5,
};

/// Numbers of IEngine::GetSubsystemId.
enum SubsystemNumber : int {
    SUBSYSTEM_RENDER2D = 1,
    SUBSYSTEM_SOUND = 3,
    SUBSYSTEM_VIDEO = 4,
};

/// Values of IEngine::SetInputMode.
enum InputMode : int {
    INPUT_NORMAL = 1,
    INPUT_FULLSCREEN_PICTURE = 2, ///< a video or the closing picture is up
};

/// The engine's lasting record of the display; SetDisplayInfo tells it that a field was written.
struct DisplayInfo {
    std::int32_t nMode;
    std::int32_t nWidth;  ///< pixels
    std::int32_t nHeight; ///< lines
    std::int32_t nBits;
    std::int32_t reserved1[3];
    std::int32_t bMuteA; ///< 1 when the first sound group is off
    std::int32_t bMuteB;
    float fLevelB; ///< 0 to 1
    float fLevelA; ///< 0 to 1
    std::int32_t reserved2[16];
    std::int32_t nChange; ///< what SetDisplayInfo applies: 3 sound, 4 brightness
    float fBrightness;    ///< 0 to 2
};
static_assert(offsetof(DisplayInfo, nHeight) == 8);
static_assert(offsetof(DisplayInfo, bMuteA) == 0x1c && offsetof(DisplayInfo, bMuteB) == 0x20);
static_assert(offsetof(DisplayInfo, fLevelB) == 0x24 && offsetof(DisplayInfo, fLevelA) == 0x28);
static_assert(offsetof(DisplayInfo, nChange) == 0x6c && offsetof(DisplayInfo, fBrightness) == 0x70);

/// A view of a scene on the display. The engine decides what the float means.
#pragma pack(push, 1)
struct ViewportRecord {
    std::int32_t nKind;
    std::int32_t nReserved0;
    std::int32_t nScene;
    std::int32_t nTarget;
    float fFieldOfView;
    std::int32_t nFlags;
    std::uint8_t reserved1[0x18];
    RECT rc; ///< display coordinates
    std::uint8_t reserved2[0x1d];
    float fNear;
};
#pragma pack(pop)
static_assert(offsetof(ViewportRecord, fFieldOfView) == 0x10);
static_assert(offsetof(ViewportRecord, rc) == 0x30 && offsetof(ViewportRecord, fNear) == 0x5d);

/// The engine. The root object and every scene offer it; each call says whose entities it means. One thread.
class IEngine
{
  public:
    virtual ~IEngine() = default;

    /// The id under which GetSubsystem gives the subsystem of a SubsystemNumber; negative when unknown.
    virtual int GetSubsystemId(int number) = 0;
    /// A subsystem by its id; (0, 0) the current scene's IEngine or null, (-1, 0) the root's IEngine,
    /// (scene, 2) a scene's render object. Null when there is none. Not owned by the caller.
    virtual void* GetSubsystem(int id, int kind = 0) = 0;
    /// A scene's engine, null when there is none; -1 is the root, which is always there.
    virtual IEngine* GetScene(int id) = 0;
    virtual int CreateScene(int flags) = 0;
    virtual void DestroyScene(int id) = 0;
    virtual void SetSceneActive(int id, int a, int b, int c) = 0;

    /// An entity of a class the engine knows by name. Negative on failure.
    virtual int CreateEntity(const char* name, int kind, int flags) = 0;
    /// An entity from a library's CreateEntity. Negative on failure.
    virtual int CreateEntityFromModule(const char* name, const char* module, int a, int b, int c, int d) = 0;
    /// At once, or behind the call that runs in it.
    virtual void DestroyEntity(int id) = 0;
    virtual Entity* GetEntity(int id) = 0;
    /// The first entity of that name (and class, unless null), ignoring case; -1 when there is none.
    virtual int FindEntity(const char* name, const char* className) = 0;
    /// The next one of the same search; -1 at the end.
    virtual int FindNextEntity() = 0;

    /// Width and height of the display in pixels.
    virtual void GetScreenSize(SIZE* out) = 0;
    virtual DisplayInfo* GetDisplayInfo() = 0;
    virtual void SetDisplayInfo(DisplayInfo* record, int flags) = 0;
    /// The entity gets OnWindowMessage from now on.
    virtual void RegisterInput(int kind, int entity, int flags) = 0;
    virtual void SetTimerRate(int rate) = 0;
    virtual void SetInputMode(int mode) = 0;

    /// Copies the descriptor; gives the viewport's id, negative on failure.
    virtual int AddViewport(const ViewportRecord* descriptor) = 0;
    /// position and rotation are three floats each.
    virtual void SetCamera(int viewport, const float* position, const float* rotation) = 0;
    /// The record may be written to; null when there is no such viewport.
    virtual ViewportRecord* GetViewport(int id) = 0;

    /// Runs the receiver at once and gives its result, 0 when there is none. `format` is null, or has a
    /// letter for each value: `l` one word, `s` a size with the terminating zero and an address, whose text
    /// is copied.
    template <class... Values>
    Word SendMessage(int number, int destination, int extra, const char* format, Values... values)
    {
        const Word words[sizeof...(values) + 1] = {ToWord(values)..., 0};
        return DoMessage(false, number, destination, extra, format, {words, sizeof...(values)});
    }
    /// The same, delivered later. What an `l` points to must stay alive until then.
    template <class... Values>
    void PostMessage(int number, int destination, int extra, const char* format, Values... values)
    {
        const Word words[sizeof...(values) + 1] = {ToWord(values)..., 0};
        DoMessage(true, number, destination, extra, format, {words, sizeof...(values)});
    }

    /// What both templates come to. The span holds one word for each `l` and two for each `s`.
    virtual Word DoMessage(bool post, int number, int destination, int extra, const char* format,
                           std::span<const Word> values) = 0;

  private:
    template <class T>
    static Word ToWord(T value)
    {
        if constexpr (std::is_pointer_v<T>)
            return reinterpret_cast<Word>(value);
        else
            return static_cast<Word>(value);
    }
};

/// Typed forms of GetSubsystem; null when the engine has none.
inline IRender2D* GetRender2D(IEngine* core)
{
    return static_cast<IRender2D*>(core->GetSubsystem(core->GetSubsystemId(SUBSYSTEM_RENDER2D)));
}
inline ISound* GetSound(IEngine* core)
{
    return static_cast<ISound*>(core->GetSubsystem(core->GetSubsystemId(SUBSYSTEM_SOUND)));
}
inline IVideo* GetVideo(IEngine* core)
{
    return static_cast<IVideo*>(core->GetSubsystem(core->GetSubsystemId(SUBSYSTEM_VIDEO)));
}
inline IEngine* GetCurrentScene(IEngine* core)
{
    return static_cast<IEngine*>(core->GetSubsystem(0, 0));
}
inline IEngine* GetRootScene(IEngine* core)
{
    return static_cast<IEngine*>(core->GetSubsystem(-1, 0));
}
