#pragma once
// A flag that an entity of the host draws.

#include "itfflag.h"
#include "kernel/itfwnd.h"

/// The flag shows while the dialog is painted. Takes no input and tells its parent nothing. Its style text is
/// searched for FB_RIGHT alone, so the window's style is 0. Owns the host's entity, which it makes with the
/// first flag; without one it is a box with a background.
class CItfFlagBox : public CItfWnd
{
  public:
    CItfFlagBox() = default;
    ~CItfFlagBox() override;

    bool Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent, int ctrlId,
                std::uint32_t style, IEngine* core) override;
    void Show(bool on) override;
    void Draw() override;

    /// floats: the six of the resource, x, y, z and three further ones. For the flags that are set from now
    /// on.
    void SetParams(const float* floats, bool right);
    /// A nation's flag in a new entity, hidden until the box is painted. `second` isn't read; an `extra` of 0
    /// leaves the one before. False when there is no such entity.
    bool SetFlag(int flag, int second, int extra);
    /// The same with a texture file instead of a nation; null is an empty name.
    bool SetFlagFile(const char* file);
    /// Another flag on the entity that is there; nothing without one.
    void ChangeFlag(int flag, int value);
    void ChangeTexture(const char* file);

  private:
    bool MakeEntity();
    void DestroyFlag();
    void Tell(int message);
    void TellTexture(const char* file);

    ItfFlagBlock m_Block;
    int m_nEntity = -1;
    bool m_bShown = false; ///< as the entity was told by Draw
};
