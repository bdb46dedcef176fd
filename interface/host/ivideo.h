#pragma once

#include "platform/types.h"

/// Bits of IVideo::OpenVideo's flags.
enum VideoFlags : int {
    VIDEO_FULLSCREEN = 6,   ///< as the logic's videos are played
    VIDEO_IN_DIALOG = 0x16, ///< as a video box plays its clip, which asks in each frame whether it runs
    VIDEO_LOOP = 8,
};

/// The host's clips. Handles are negative on failure; a call with a handle that isn't open does nothing.
class IVideo
{
  public:
    virtual ~IVideo() = default;

    virtual int OpenVideo(const char* file, int flags) = 0;
    /// Where it is shown: a surface (or the display) and a rectangle on it.
    virtual void SetVideoTarget(int video, int surface, const RECT* rect) = 0;
    /// With `background` 0 returns when the clip has ended or a key or button ended it; with 1 it plays on
    /// from frame to frame.
    virtual void PlayVideo(int video, int background) = 0;
    virtual bool IsVideoRunning(int video) = 0;
    virtual void StopVideo(int video) = 0;
    virtual void RewindVideo(int video, int position) = 0;
    virtual void CloseVideo(int video) = 0;

    virtual int OpenAnimation(const char* clip) = 0;
    virtual void SetAnimationTarget(int animation, int surface, const RECT* rect) = 0;
    /// From its first moment; it is seen from the next tick on.
    virtual void StartAnimation(int animation) = 0;
    virtual void TickAnimation(int animation, int elapsed) = 0;
    virtual void CloseAnimation(int animation) = 0;
};
