#pragma once
// The toolkit's whole state: one struct with one instance, which outlives the entity. Windows are its only
// writers; tests reset it.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "controls/itffont.h"
#include "platform/types.h"

class CItfWnd;
class ITextTable;

/// Size of the screen surface, the one surface that all windows draw into.
constexpr int SCREEN_WIDTH = 800;
constexpr int SCREEN_HEIGHT = 600;

constexpr std::size_t MAX_WINDOWS = 200;
constexpr std::size_t MAX_POSTED = 256;
/// Characters of a logical sprite or font name that count.
constexpr std::size_t MAX_LOGICAL_NAME = 31;

struct WindowEntry {
    int id;
    CItfWnd* wnd;
};

struct PostedMessage {
    int wnd;
    std::uint32_t msg;
    std::uint32_t wParam;
    std::int32_t lParam;
};

/// A row of itfnames.ini.
struct NameRow {
    std::string name; ///< at most MAX_LOGICAL_NAME characters
    std::string file;
};

/// A free entry has flags 0. Invariant: refs is above 0 exactly while FLAG_USED is set.
struct SpriteEntry {
    static constexpr std::uint32_t FLAG_USED = 1;
    static constexpr std::uint32_t FLAG_ANONYMOUS = 2; ///< not found by name

    int refs = 0;
    int surface = 0;
    std::uint32_t flags = 0;
    char name[MAX_LOGICAL_NAME + 1] = {};
};

struct FontEntry {
    static constexpr std::uint32_t FLAG_USED = 1;

    int refs = 0;
    std::unique_ptr<CItfFont> font;
    std::uint32_t flags = 0;
    char name[MAX_LOGICAL_NAME + 1] = {};
};

struct ToolkitState {
    /// In creation order, and so in ascending order of id: drawing order, and backwards hit-test order.
    std::vector<WindowEntry> windows;
    int nextWindowId = 0;
    int focusId = -1;
    int captureId = -1;
    int modalId = -1;
    int screenSurface = -1;
    /// Where the screen surface stands on the display.
    RECT virtualScreen = {0, 0, SCREEN_WIDTH, SCREEN_HEIGHT};
    /// While off, nothing paints and the mouse is ignored.
    bool drawing = false;
    std::vector<PostedMessage> posted;
    std::size_t delivered = 0; ///< how many of them have had their turn in this delivery
    int deliveryDepth = 0;     ///< above 1 when a handler runs frames itself

    std::vector<NameRow> spriteMap;
    std::vector<NameRow> fontMap;
    std::vector<SpriteEntry> sprites;
    std::vector<FontEntry> fonts;

    ITextTable* textTable = nullptr; ///< not owned; null until the first start
    std::uint32_t randomSeed = 1;
};

ToolkitState& Toolkit();

/// The next number of the module's own generator, 0 to ITF_RAND_MAX.
constexpr int ITF_RAND_MAX = 32767;
int ItfRand();
