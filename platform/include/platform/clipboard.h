#pragma once
// The clipboard, text format only, and the global memory blocks that it takes.

#include <cstddef>

#include "platform/types.h"

constexpr UINT CF_TEXT = 1;
constexpr UINT GMEM_MOVEABLE = 0x0002;
constexpr UINT GMEM_ZEROINIT = 0x0040;
constexpr UINT GMEM_DDESHARE = 0x2000;

/// FALSE when it is open already.
BOOL OpenClipboard(void* owner);
BOOL CloseClipboard();
BOOL EmptyClipboard();
BOOL IsClipboardFormatAvailable(UINT format);
/// The clipboard owns the block that it gives; it is valid until CloseClipboard. Null when there is none.
HANDLE GetClipboardData(UINT format);
/// On success the clipboard owns the block; its text ends at the first zero or with the block. Null on
/// failure, and then the caller still owns it.
HANDLE SetClipboardData(UINT format, HANDLE block);

/// Null when the memory can't be had.
HGLOBAL GlobalAlloc(UINT flags, std::size_t bytes);
/// The block's bytes; null for a null block.
void* GlobalLock(HGLOBAL block);
/// FALSE when the last lock went, as well as for a block that isn't locked.
BOOL GlobalUnlock(HGLOBAL block);
std::size_t GlobalSize(HGLOBAL block);
/// Null on success and for null; the block itself while it is locked or the clipboard owns it.
HGLOBAL GlobalFree(HGLOBAL block);
