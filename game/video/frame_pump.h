#pragma once

/// Runs frames of the program from inside a call that must wait, such as a clip that is played to its end.
class IFramePump
{
  public:
    virtual ~IFramePump() = default;
    struct Frame {
        int elapsed = 0;          ///< milliseconds
        bool interrupted = false; ///< a key or a button was pressed anew
        bool ended = false;       ///< the program is to end: the caller returns at once
    };
    /// Waits for the next frame and takes the player's input away.
    virtual Frame PumpFrame() = 0;
};
