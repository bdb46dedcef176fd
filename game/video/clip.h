#pragma once
// A clip: stills that are held and faded into each other, with sounds. Its file format stands in
// docs/formats.md.

#include <string>
#include <vector>

struct ClipStill {
    std::string file; ///< as IRender2D::LoadSurface takes it
    int nHold = 0;    ///< milliseconds at full strength
    int nFade = 0;    ///< milliseconds into the next still, or into black behind the last
};

struct ClipSound {
    std::string name; ///< a logical name
    int nTime = 0;    ///< milliseconds from the start
};

/// What of a clip is seen at a moment.
struct ClipMoment {
    int nStill = 0;
    int nNext = -1;  ///< the still that comes in, -1 for black
    int nWeight = 0; ///< of what comes in, 0 to 256
};

class CClip
{
  public:
    static constexpr int MAX_SIDE = 2048;
    static constexpr int MAX_TIME = 600000; ///< milliseconds of one hold, fade or sound
    static constexpr std::size_t MAX_STILLS = 64;
    static constexpr std::size_t MAX_SOUNDS = 64;
    static constexpr int FULL_WEIGHT = 256;

    /// Reads the file through the file layer. False, with the reason (path and line in it) in `error`, when
    /// there is none or something in it is wrong.
    bool Load(const std::string& path, std::string& error);

    int Width() const { return m_nWidth; }
    int Height() const { return m_nHeight; }
    const std::vector<ClipStill>& Stills() const { return m_Stills; }
    const std::vector<ClipSound>& Sounds() const { return m_Sounds; }
    /// Milliseconds, above 0 for a clip that was loaded.
    int Duration() const;
    /// `time` is held to the clip's duration. With `loop` the last still fades into the first.
    ClipMoment At(int time, bool loop) const;

  private:
    int m_nWidth = 0;
    int m_nHeight = 0;
    std::vector<ClipStill> m_Stills;
    std::vector<ClipSound> m_Sounds;
};
