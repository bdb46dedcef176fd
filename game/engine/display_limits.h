#pragma once

/// Sizes of the display that the program accepts, in pixels.
constexpr int DISPLAY_MIN_WIDTH = 320;
constexpr int DISPLAY_MIN_HEIGHT = 200;
constexpr int DISPLAY_MAX_SIDE = 4096;
