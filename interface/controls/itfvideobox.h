#pragma once
// A clip that the host plays within a dialog.

#include "kernel/itfwnd.h"

class IVideo;

enum ItfVideoBoxStyle : std::uint32_t {
    VSTYLE_LOOP = 0x10000, ///< the clip goes round
};

/// The host draws the clip into the inner rectangle of the screen surface. It starts with the first frame in
/// which the box ticks, and plays once unless VSTYLE_LOOP is set. Takes no input and tells its parent
/// nothing. Owns the host's clip.
class CItfVideoBox : public CItfWnd
{
  public:
    CItfVideoBox() = default;
    ~CItfVideoBox() override;

    bool Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent, int ctrlId,
                std::uint32_t style, IEngine* core) override;
    void OnTick(int elapsed) override;

    /// Opens a clip in the place of the one before, for the inner rectangle as it lies now. False, and the
    /// box stays empty, when the host has no clips or can't open this one.
    bool OpenFile(const char* file);

  private:
    void Close();

    int m_nVideo = -1; ///< the host's handle
    bool m_bStarted = false;
    IVideo* m_pVideo = nullptr; ///< the host's; null when it plays no clips
};
