#include "engine/message.h"

CMessage::CMessage(int sender, int number, int destination, int extra, const char* format,
                   std::span<const Word> values)
    : m_strFormat(format == nullptr ? "" : format), m_Block(HEAD_WORDS)
{
    std::size_t used = 0;
    for (const char letter : m_strFormat) {
        const std::size_t needed = letter == 's' ? 2 : 1;
        if ((letter != 'l' && letter != 's') || values.size() - used < needed) {
            m_bGood = false;
            break;
        }
        if (letter == 'l')
            m_Block.push_back(values[used]);
        else
            AddText(values[used], values[used + 1]);
        used += needed;
    }
    m_bGood = m_bGood && used == values.size();
    m_nWords = m_Block.size() - HEAD_WORDS;
    m_Block.resize(m_Block.size() + SPARE_WORDS);
    *reinterpret_cast<MessageRecord*>(m_Block.data()) = {sender, number, destination, extra};
}

void CMessage::AddText(Word size, Word address)
{
    const auto* text = reinterpret_cast<const char*>(address);
    std::string& copy = m_Texts.emplace_back();
    if (size > 0 && text != nullptr)
        copy.assign(text, static_cast<std::size_t>(size) - 1);
    m_Block.push_back(static_cast<Word>(copy.size()) + 1);
    m_Block.push_back(reinterpret_cast<Word>(copy.c_str()));
}

std::span<const Word> CMessage::Words() const
{
    return std::span(m_Block).subspan(HEAD_WORDS, m_nWords);
}
