#pragma once

#include <cstddef>
#include <memory>

/// Bytes in one block that grows in steps. Its pointer changes whenever it grows.
class CByteBuffer
{
  public:
    static constexpr std::size_t DEFAULT_STEP = 10;

    explicit CByteBuffer(std::size_t step = DEFAULT_STEP) : m_nStep(step) {}

    /// Null while nothing was ever stored.
    const char* GetData() const { return m_pData.get(); }
    std::size_t GetSize() const { return m_nSize; }
    std::size_t GetCapacity() const { return m_nCapacity; }
    bool IsEmpty() const { return m_nSize == 0; }

    /// Appends `count` bytes, which may be the buffer's own. Throws std::bad_alloc, with nothing changed.
    void Append(const char* bytes, std::size_t count);
    /// Writes `bytes` from `position` on, which isn't past the end; what stood there is gone.
    void ReplaceTail(std::size_t position, const char* bytes, std::size_t count);
    /// Drops the bytes and the block.
    void Clear();

  private:
    std::unique_ptr<char[]> m_pData;
    std::size_t m_nCapacity = 0;
    std::size_t m_nStep;
    std::size_t m_nSize = 0;

    std::size_t CapacityFor(std::size_t size) const;
};
