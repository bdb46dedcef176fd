#include "engine/trace.h"

#include <algorithm>
#include <utility>

#include "platform/codepage.h"

CTrace::~CTrace()
{
    if (m_pFile != nullptr)
        std::fclose(m_pFile);
}

bool CTrace::OpenFile(const std::string& path)
{
    if (m_pFile != nullptr)
        std::fclose(m_pFile);
    m_pFile = std::fopen(path.c_str(), "w");
    return m_pFile != nullptr;
}

void CTrace::Add(std::string line)
{
    std::replace_if(
        line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    if (m_pFile != nullptr) {
        std::fprintf(m_pFile, "%s\n", PlatformToUtf8(line).c_str());
        // A run that dies must leave the lines that led there.
        std::fflush(m_pFile);
    }
    m_Lines.push_back(std::move(line));
    if (m_Lines.size() > LINES_KEPT) {
        m_Lines.pop_front();
        ++m_nDropped;
    }
}

std::optional<std::size_t> CTrace::Find(std::size_t from, const std::string& text) const
{
    for (std::size_t i = std::max(from, m_nDropped); i < Count(); ++i) {
        if (m_Lines[i - m_nDropped].find(text) != std::string::npos)
            return i;
    }
    return std::nullopt;
}

std::vector<std::string> CTrace::Last(std::size_t count) const
{
    const std::size_t taken = std::min(count, m_Lines.size());
    return {m_Lines.end() - static_cast<std::ptrdiff_t>(taken), m_Lines.end()};
}
