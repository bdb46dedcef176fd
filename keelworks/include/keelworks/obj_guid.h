#pragma once

#include <cstdint>

/// Names a shared object: a nation that isn't one of the game's own, a flag, a portrait. The words are
/// compared as a whole; all zero names nothing.
struct CObjGUID {
    std::uint32_t words[4] = {};

    friend bool operator==(const CObjGUID&, const CObjGUID&) = default;
};
static_assert(sizeof(CObjGUID) == 16);
