#pragma once

#include <tuple>
#include <vector>

/// The rows of a test's table; the loop over them names the columns.
template <typename... Columns>
using Rows = std::vector<std::tuple<Columns...>>;
