#include "platform/clipboard.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include "platform/host.h"

namespace
{

/// A global memory block; the handle is its address.
struct GlobalBlock {
    std::size_t size = 0;
    char* bytes = nullptr;
    int locks = 0;
    bool ownedByClipboard = false;
};

struct ClipboardState {
    bool open = false;
    GlobalBlock* text = nullptr; ///< the block that was given or taken since the clipboard was opened
};

ClipboardState& Clipboard()
{
    static ClipboardState state;
    return state;
}

GlobalBlock* ToBlock(HGLOBAL handle)
{
    return static_cast<GlobalBlock*>(handle);
}

void FreeBlock(GlobalBlock* block)
{
    if (block) {
        std::free(block->bytes);
        delete block;
    }
}

void DropText()
{
    FreeBlock(Clipboard().text);
    Clipboard().text = nullptr;
}

} // namespace

BOOL OpenClipboard(void*)
{
    if (Clipboard().open) {
        return FALSE;
    }
    Clipboard().open = true;
    return TRUE;
}

BOOL CloseClipboard()
{
    if (!Clipboard().open) {
        return FALSE;
    }
    DropText();
    Clipboard().open = false;
    return TRUE;
}

BOOL EmptyClipboard()
{
    if (!Clipboard().open) {
        return FALSE;
    }
    DropText();
    GetPlatformHost().ClearClipboard();
    return TRUE;
}

BOOL IsClipboardFormatAvailable(UINT format)
{
    return format == CF_TEXT && GetPlatformHost().ClipboardText().has_value();
}

HANDLE GetClipboardData(UINT format)
{
    if (!Clipboard().open || format != CF_TEXT) {
        return nullptr;
    }
    if (!Clipboard().text) {
        const auto text = GetPlatformHost().ClipboardText();
        if (!text) {
            return nullptr;
        }
        GlobalBlock* block = ToBlock(GlobalAlloc(GMEM_MOVEABLE, text->size() + 1));
        if (!block) {
            return nullptr;
        }
        std::memcpy(block->bytes, text->c_str(), text->size() + 1);
        block->ownedByClipboard = true;
        Clipboard().text = block;
    }
    return Clipboard().text;
}

HANDLE SetClipboardData(UINT format, HANDLE handle)
{
    GlobalBlock* block = ToBlock(handle);
    if (!Clipboard().open || format != CF_TEXT || !block || block->ownedByClipboard) {
        return nullptr;
    }
    // The text ends at its zero, but never behind the block.
    const char* begin = block->bytes;
    const char* end = std::find(begin, begin + block->size, '\0');
    GetPlatformHost().SetClipboardText(std::string(begin, end));
    DropText();
    block->ownedByClipboard = true;
    Clipboard().text = block;
    return handle;
}

HGLOBAL GlobalAlloc(UINT flags, std::size_t bytes)
{
    // An empty block still has an address.
    const std::size_t allocated = std::max<std::size_t>(bytes, 1);
    void* memory = (flags & GMEM_ZEROINIT) ? std::calloc(allocated, 1) : std::malloc(allocated);
    if (!memory) {
        return nullptr;
    }
    GlobalBlock* block = new (std::nothrow) GlobalBlock{bytes, static_cast<char*>(memory)};
    if (!block) {
        std::free(memory);
    }
    return block;
}

void* GlobalLock(HGLOBAL handle)
{
    GlobalBlock* block = ToBlock(handle);
    if (!block) {
        return nullptr;
    }
    ++block->locks;
    return block->bytes;
}

BOOL GlobalUnlock(HGLOBAL handle)
{
    GlobalBlock* block = ToBlock(handle);
    if (!block || block->locks == 0) {
        return FALSE;
    }
    return --block->locks > 0;
}

std::size_t GlobalSize(HGLOBAL handle)
{
    return handle ? ToBlock(handle)->size : 0;
}

HGLOBAL GlobalFree(HGLOBAL handle)
{
    GlobalBlock* block = ToBlock(handle);
    if (block && (block->ownedByClipboard || block->locks > 0)) {
        return handle;
    }
    FreeBlock(block);
    return nullptr;
}
