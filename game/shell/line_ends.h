#pragma once
// Line ends of a text that goes between the desktop and the game.

#include <string>
#include <string_view>

/// Every LF without a CR before it becomes CR LF.
std::string WithCrLf(std::string_view text);
/// Every CR LF becomes LF; a lone CR stays.
std::string WithLf(std::string_view text);
