#pragma once

/// The host's sounds, by logical name. The host may have none.
class ISound
{
  public:
    virtual ~ISound() = default;
    /// Plays a sound from its start beside those that play; an unknown name is passed over. The two numbers
    /// are 0.
    virtual void Play(const char* name, int channel, int flags) = 0;
    /// Stops every sound within `fade` milliseconds, 0 for at once.
    virtual void Stop(int fade) = 0;
};
