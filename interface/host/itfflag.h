#pragma once
// The host's entity "itf_flag", which draws a flag over the front end's screen.

#include <cstddef>
#include <cstdint>

inline constexpr char FLAG_ENTITY[] = "itf_flag";

/// What the entity is told. It begins hidden, and ends when it is destroyed.
enum ItfFlagMessage : int {
    MSG_FLAG_ATTACH = 0x0e,    ///< "l" ItfFlagBlock*, valid during the call
    MSG_FLAG_HIDE = 0x8000,    ///< no values
    MSG_FLAG_SHOW = 0x8001,    ///< no values
    MSG_FLAG_CHANGE = 0x8002,  ///< "ll" flag number, a second value
    MSG_FLAG_TEXTURE = 0x8003, ///< "s" file name
};

/// A flag of the resource, as it goes to the entity: nine 32-bit words. What the floats mean is the host's
/// affair.
struct ItfFlagBlock {
    float fX = 0.0F;
    float fY = 0.0F;
    float fZ = 0.0F;
    float fFurther[3] = {};
    std::int32_t nFlag = 0;  ///< also the text number of the nation's name
    std::int32_t nExtra = 0; ///< chooses among the flags of that number
    std::uint8_t bRight = 0; ///< 1 when the flag flies to the left of its pole
    std::uint8_t reserved[3] = {};
};
static_assert(sizeof(ItfFlagBlock) == 36 && offsetof(ItfFlagBlock, nFlag) == 24);
static_assert(offsetof(ItfFlagBlock, nExtra) == 28 && offsetof(ItfFlagBlock, bRight) == 32);
