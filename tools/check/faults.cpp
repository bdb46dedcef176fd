#include "faults.h"

#include <algorithm>
#include <charconv>
#include <tuple>

void CFaults::AddDebugLine(const std::string& debugLine, const std::string& file, int line)
{
    const std::string told = debugLine.substr(0, debugLine.find_last_not_of("\r\n") + 1);
    const std::size_t end = told.find("): ");
    const std::size_t begin = end != std::string::npos ? told.rfind('(', end) : std::string::npos;
    int number = 0;
    if (begin != std::string::npos) {
        const auto [stop, error] = std::from_chars(told.data() + begin + 1, told.data() + end, number);
        if (error == std::errc() && stop == told.data() + end) {
            Add(told.substr(0, begin), number, told.substr(end + 3));
            return;
        }
    }
    Add(file, line, told);
}

std::vector<std::string> CFaults::Sorted() const
{
    std::vector<Fault> faults = m_Faults;
    std::ranges::stable_sort(faults, [](const Fault& a, const Fault& b) {
        return std::tie(a.file, a.line) < std::tie(b.file, b.line);
    });
    std::vector<std::string> lines;
    for (const Fault& fault : faults) {
        const std::string place = fault.line > 0 ? "(" + std::to_string(fault.line) + ")" : "";
        lines.push_back(fault.file + place + ": " + fault.text);
    }
    return lines;
}
