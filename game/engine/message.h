#pragma once
// A message on its way: the record that the receiver is handed, with the texts that it points to.

#include <deque>
#include <span>
#include <string>
#include <vector>

#include "entity.h"

/// Owns the record's memory and the copies of its texts, so that a message can wait.
class CMessage
{
  public:
    /// Builds the record from a format (null or empty: no values) and its values. A text's size counts its
    /// terminating zero; a size below 1 or a null address gives an empty text. Good() is false when format
    /// and values don't agree.
    CMessage(int sender, int number, int destination, int extra, const char* format,
             std::span<const Word> values);
    CMessage(const CMessage&) = delete;
    CMessage& operator=(const CMessage&) = delete;

    bool Good() const { return m_bGood; }
    const MessageRecord* Record() const { return reinterpret_cast<const MessageRecord*>(m_Block.data()); }
    const std::string& Format() const { return m_strFormat; }
    /// The record's words: one for each `l`, two (size with the zero, address) for each `s`.
    std::span<const Word> Words() const;

  private:
    void AddText(Word size, Word address);

    // A receiver that reads further than the sender wrote finds zeros.
    static constexpr std::size_t SPARE_WORDS = 8;
    static constexpr std::size_t HEAD_WORDS = sizeof(MessageRecord) / sizeof(Word);
    std::string m_strFormat;
    std::vector<Word> m_Block;
    std::deque<std::string> m_Texts; // a deque, so that a text never moves
    std::size_t m_nWords = 0;
    bool m_bGood = true;
};
