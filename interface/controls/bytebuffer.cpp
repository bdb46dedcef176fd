#include "controls/bytebuffer.h"

#include <cstring>

std::size_t CByteBuffer::CapacityFor(std::size_t size) const
{
    if (size <= m_nCapacity)
        return m_nCapacity;
    const std::size_t shortfall = size - m_nCapacity;
    return m_nCapacity == 0 || shortfall >= m_nStep ? size : m_nCapacity + m_nStep;
}

void CByteBuffer::Append(const char* bytes, std::size_t count)
{
    ReplaceTail(m_nSize, bytes, count);
}

void CByteBuffer::ReplaceTail(std::size_t position, const char* bytes, std::size_t count)
{
    const std::size_t capacity = CapacityFor(position + count);
    if (capacity != m_nCapacity) {
        auto grown = std::make_unique_for_overwrite<char[]>(capacity);
        if (position > 0)
            std::memcpy(grown.get(), m_pData.get(), position);
        if (count > 0)
            std::memcpy(grown.get() + position, bytes, count);
        m_pData = std::move(grown);
        m_nCapacity = capacity;
    } else if (count > 0) {
        std::memmove(m_pData.get() + position, bytes, count);
    }
    m_nSize = position + count;
}

void CByteBuffer::Clear()
{
    m_pData.reset();
    m_nCapacity = 0;
    m_nSize = 0;
}
