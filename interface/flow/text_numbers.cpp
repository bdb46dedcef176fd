#include "flow/text_numbers.h"

namespace
{

#define SEAWARDEN_TEXT_ROW(name, number) {number, #name},
constexpr TextNumberRow ROWS[] = {SEAWARDEN_TEXT_NUMBERS(SEAWARDEN_TEXT_ROW)};
#undef SEAWARDEN_TEXT_ROW

} // namespace

std::span<const TextNumberRow> TextNumbers()
{
    return ROWS;
}
