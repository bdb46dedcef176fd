#pragma once
// A line of a list box, a cell of a report box.

#include <cstdint>
#include <string>
#include <utility>

/// A plain value. Mind the type of the third argument: a colour is unsigned, a sort group is an int, so that
/// 0xffffff without a suffix is a group.
struct ItfListItem {
    static constexpr std::uint32_t DEFAULT_COLOUR = 0xffffff;

    ItfListItem() = default;
    ItfListItem(int data, std::string text) : m_Text(std::move(text)), m_nData(data) {}
    ItfListItem(int data, std::string text, std::uint32_t colour)
        : m_Text(std::move(text)), m_nData(data), m_nColour(colour)
    {
    }
    ItfListItem(int data, std::string text, int order)
        : m_nOrder(order), m_Text(std::move(text)), m_nData(data)
    {
    }
    ItfListItem(int data, std::string text, int order, std::uint32_t colour)
        : m_nOrder(order), m_Text(std::move(text)), m_nData(data), m_nColour(colour)
    {
    }

    int m_nOrder = 0; ///< sort group; lower ones come first where a sort looks at it
    std::string m_Text;
    int m_nData = 0;                          ///< the caller's own
    std::uint32_t m_nColour = DEFAULT_COLOUR; ///< of the text, 0x00BBGGRR
};
