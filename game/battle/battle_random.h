#pragma once
// The dice of a battle.

#include <cstdint>

/// The same numbers for the same seed on every machine.
class CBattleRandom
{
  public:
    explicit CBattleRandom(std::uint64_t seed = 0) : m_nState(seed) {}

    std::uint64_t Next()
    {
        m_nState += 0x9e3779b97f4a7c15ULL;
        std::uint64_t x = m_nState;
        x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9ULL;
        x = (x ^ (x >> 27)) * 0x94d049bb133111ebULL;
        return x ^ (x >> 31);
    }
    /// 0 to below 1, in steps that a double holds exactly.
    double Unit() { return static_cast<double>(Next() >> 11) * (1.0 / 9007199254740992.0); }
    /// -1 to below 1.
    double Signed() { return Unit() * 2 - 1; }
    std::uint64_t State() const { return m_nState; }

  private:
    std::uint64_t m_nState;
};
