#pragma once
// The innermost loops of the 2-D layer, one row of pixels at a time. Rows may lie at any address that suits a
// 16-bit pixel; target and source never overlap.

#include <cstddef>
#include <cstdint>

/// Copies every pixel but those of value 0, without a branch for each pixel: the time doesn't depend on where
/// the zeros lie.
void KeyedRow(std::uint16_t* target, const std::uint16_t* source, std::size_t count);

/// The same in plain C++, for processors without SSE2; KeyedRow is this one there.
void KeyedRowPlain(std::uint16_t* target, const std::uint16_t* source, std::size_t count);

/// target[i] = source[columns[i]]: a row made narrower.
void GatherRow(std::uint16_t* target, const std::uint16_t* source, const std::uint32_t* columns,
               std::size_t count);

/// So many pixels behind the end of its target SpreadRow may overwrite with anything.
constexpr std::size_t SPREAD_SLACK = 8;

/// A row made wider: source[i] fills target[starts[i]] up to target[starts[i + 1]], for i below `count`.
/// `starts` has count + 1 entries, each larger than the one before.
void SpreadRow(std::uint16_t* target, const std::uint16_t* source, const std::uint32_t* starts,
               std::size_t count);

/// The same in plain C++, for processors without SSE2; SpreadRow is this one there.
void SpreadRowPlain(std::uint16_t* target, const std::uint16_t* source, const std::uint32_t* starts,
                    std::size_t count);
