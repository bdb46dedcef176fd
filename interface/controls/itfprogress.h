#pragma once
// The bar of the loading screen.

#include <cstdint>

#include "kernel/itfwnd.h"

/// An empty bar, covered from the left by a full one as far as the work has come. Tells its parent nothing.
/// Owns a reference to the full bar's sprite and to its font.
class CItfProgress : public CItfWnd
{
  public:
    CItfProgress() = default;
    ~CItfProgress() override;

    using CItfWnd::Create;
    /// False when the window can't be created or the full bar's sprite doesn't exist; the window is out of
    /// the table then. parent may be null.
    virtual bool Create(const RECT* rect, CItfWnd* parent, int ctrlId, std::uint32_t style, IEngine* core);
    void Draw() override;

    int GetPercent() const { return m_nPercent; }
    /// 0 to 100; any other value is ignored. Repaints in both cases.
    void SetPercent(int percent);

  private:
    int m_nFull = -1;
    int m_nFont = -1;
    int m_nPercent = 0;

    void ReleaseResources();
};
