#pragma once
// Everything that the host runs is an entity: an object behind a fixed order of virtual operations, to which
// the host delivers messages. A derived class declares what it handles in static tables.

#include <cstdint>

class IEngine;

/// What a format letter `l` carries: an integer or an address.
using Word = std::intptr_t;

/// A message as the host hands it to Entity::OnMessage. The words of the message follow the record directly:
/// one for each `l`, two (size with the terminating zero, address of the copy) for each `s`.
struct alignas(Word) MessageRecord {
    std::int32_t sender;
    std::int32_t message;
    std::int32_t destination;
    std::int32_t extra;

    const Word* Data() const { return reinterpret_cast<const Word*>(this + 1); }
};
static_assert(sizeof(MessageRecord) == 16);

/// The root of the hierarchy. The host calls the operations by position: their order is a contract.
class EntityBase
{
  public:
    virtual ~EntityBase();
    /// Non-zero on success. The engine outlives the entity.
    virtual Word Init(IEngine* core);
    virtual Word Op3(Word);
    virtual Word Op4(Word);
    /// Time since the last frame in milliseconds; the second word isn't read here.
    virtual Word OnFrame(Word elapsed, Word second);
    virtual Word OnWindowMessage(std::uint32_t msg, std::uint32_t wParam, std::int32_t lParam);
    virtual Word OnMessage(const MessageRecord* record);
    virtual Word Op8(Word);
    virtual Word Op9(Word, Word);
    /// These two must not be called on a class that doesn't override them: the assertion ends the program.
    virtual void Op10(Word);
    virtual void Op11(Word, Word);
};

class Entity : public EntityBase
{
  public:
    /// data points to the record's words; the result goes back to the sender.
    using MessageHandler = Word (Entity::*)(const void* data, int extra, int sender);
    using WindowHandler = Word (Entity::*)(std::uint32_t wParam, std::int32_t lParam);

    /// A row array ends in a row with a null handler; the first row with the number wins.
    template <class Handler>
    struct Row {
        std::uint32_t id;
        Handler handler;
    };
    /// rows may be null. A record whose next is null is the end mark, its rows are never searched.
    template <class Handler>
    struct Map {
        const Map* next;
        const Row<Handler>* rows;
    };
    using MessageRow = Row<MessageHandler>;
    using MessageMap = Map<MessageHandler>;
    using WindowRow = Row<WindowHandler>;
    using WindowMap = Map<WindowHandler>;

    /// Words of m_HostWords that this project uses; the rest is the host's own.
    enum HostWord { HOSTWORD_ID = 0, HOSTWORD_FLAGS = 2 };

    ~Entity() override;
    /// 1 for a message that a row handles, whatever its handler gives; 0 otherwise.
    Word OnWindowMessage(std::uint32_t msg, std::uint32_t wParam, std::int32_t lParam) override;
    /// What the handler gives; 0 without one.
    Word OnMessage(const MessageRecord* record) override;
    virtual const MessageMap* GetMessageMap() const;
    virtual const WindowMap* GetWindowMessageMap() const;

    int GetEntityId() const { return static_cast<int>(m_HostWords[HOSTWORD_ID]); }

    /// A block that belongs to the host, which fills it between construction and Init; no constructor here
    /// touches it.
    Word m_HostWords[32];

  protected:
    /// The ends of every chain of maps.
    static const MessageMap s_MessageMap;
    static const WindowMap s_WindowMap;
    Entity();
};
