#pragma once
// The logic's side of the front end's entity: it comes and goes, and is sent events.

#include <memory>
#include <vector>

#include "engine/world.h"
#include "itfrecords.h"

/// Events that are posted while the entity isn't there bring it back; it is made, or taken away, only in
/// Update, when no entity's code runs.
class CFrontEnd
{
  public:
    static constexpr const char* NAME = "interface";
    static constexpr const char* MODULE = "INTERFACE.so";

    /// The world must outlive this object.
    explicit CFrontEnd(CWorld& world) : m_World(world) {}

    /// Makes the entity and gives it its first event. False when it can't be made.
    bool Start(const ItfEvent& first);
    /// The event reaches the entity with the next frame's messages.
    void PostEvent(const ItfEvent& event);
    /// The same with the four words that the event's `object` then points to.
    void PostEvent(const ItfEvent& event, const Word (&words)[4]);
    /// The same with the status that the event's `object` then points to.
    void PostEvent(const ItfEvent& event, const ItfScenarioStatus& status);
    /// It is there, or an event waits that brings it back.
    bool IsWanted() const { return IsUp() || !m_Pending.empty(); }
    bool IsUp() const { return m_World.GetEntity(m_nEntity) != nullptr; }
    /// It has come through its first event and a frame since it was made.
    bool IsProven() const { return m_nUpdates > 1; }
    int Id() const { return m_nEntity; }

    /// Called each frame before the posted messages are delivered. What was posted before the frame's
    /// delivery stays until the next frame's.
    void Update();
    /// Takes the entity away at once, with all that it has posted; only where no entity's code runs.
    void TakeAway();
    /// The same when the entity has asked to leave, a frame ago: the screens that have reached it since
    /// then come back with the next one. What it was made with isn't sent again.
    void Leave();

  private:
    /// An event and what its `object` points to, kept until the front end has had it.
    struct Sent {
        ItfEvent event;
        Word words[4] = {};
        ItfScenarioStatus status = {};
    };
    using Events = std::vector<std::unique_ptr<Sent>>;
    void Post(std::unique_ptr<Sent> sent);
    void PostNow(std::unique_ptr<Sent> sent);

    CWorld& m_World;
    int m_nEntity = -1;
    int m_nUpdates = 0;             ///< since it was made
    std::unique_ptr<Sent> m_pFirst; ///< what it was made with
    Events m_Pending;               ///< posted while the entity isn't there
    Events m_Waiting;               ///< posted since the last Update
    Events m_Coming;                ///< posted before it: this frame's delivery brings them
    Events m_Seen;                  ///< brought by the last frame's
};
