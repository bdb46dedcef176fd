#pragma once

#include "platform/types.h"

/// The program's time. A fixed clock moves by the frame and begins at a time of day that a seed picks, so
/// that two runs are the same; a real one is the system's.
class CClock
{
  public:
    static constexpr int FIXED_FRAME = 20; ///< milliseconds
    /// A frame that took longer counts as this long, in milliseconds.
    static constexpr int LONGEST_FRAME = 250;

    CClock(bool fixed, unsigned seed) : m_bFixed(fixed), m_nSeed(seed) {}
    bool IsFixed() const { return m_bFixed; }
    /// Milliseconds since the last frame.
    int NextFrame();
    DWORD Milliseconds() const;
    /// Only for a fixed clock; the same during the whole run.
    SYSTEMTIME SeededTime() const;

  private:
    bool m_bFixed;
    unsigned m_nSeed;
    DWORD m_nNow = 0;  // of a fixed clock
    DWORD m_nLast = 0; // of a real one, 0 before the first frame
};
