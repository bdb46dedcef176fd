#pragma once
// A clip that goes round within a dialog for as long as it is open.

#include "kernel/itfwnd.h"

class IVideo;

/// The host draws the clip into the screen surface, a step with each tick of the box. The box's rectangle is
/// meant on the screen, wherever its dialog stands. Takes no input, tells its parent nothing and has no
/// styles of its own. Owns the host's clip.
class CItfAnimationBox : public CItfWnd
{
  public:
    CItfAnimationBox() = default;
    ~CItfAnimationBox() override;

    using CItfWnd::Create;
    /// False when the window can't be created, and, with the window in the table, when the host can't open
    /// the clip. Of a host without clips the box stays empty.
    virtual bool Create(const char* caption, const RECT* rect, CItfWnd* parent, int ctrlId,
                        std::uint32_t style, IEngine* core, const char* clip);
    void OnTick(int elapsed) override;

  private:
    void Close();

    int m_nAnim = -1;           ///< the host's handle
    IVideo* m_pVideo = nullptr; ///< the host's; null when it plays no clips
};
