#pragma once
// Where the display stands in the window.

#include "platform/types.h"

enum class ViewScale { Smooth, Whole };

/// The largest rectangle of the display's shape in the middle of the window; with Whole the largest whole
/// multiple of the display, or as with Smooth where the window is smaller than the display. Sizes above 0.
RECT FitView(SIZE display, SIZE window, ViewScale scale);
/// The display pixel under the middle of a window pixel; outside the view the nearest one of its edge.
POINT WindowToDisplay(POINT window, const RECT& view, SIZE display);
