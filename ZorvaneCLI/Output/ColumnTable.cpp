#include "ZorvaneCLI/Output/ColumnTable.h"

#include "ZorvaneCLI/Output/TerminalText.h"

#include <algorithm>

namespace ZorvaneCLI {

std::string ColumnTable::text() const
{
    std::vector<std::size_t> widths(m_columns.size(), 0);
    for (const auto& row : m_rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], displayWidth(row[i]));
        }
    }
    std::string result;
    for (const auto& row : m_rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string padding(widths[i] - displayWidth(row[i]), ' ');
            line += i > 0 ? "  " : "";
            line += m_columns[i] == Alignment::right ? padding + row[i] : row[i] + padding;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        result += line + '\n';
    }
    return result;
}

} // namespace ZorvaneCLI
