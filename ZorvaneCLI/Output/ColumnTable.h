#pragma once

#include <string>
#include <utility>
#include <vector>

namespace ZorvaneCLI {

/// Rows of escaped cells, printed in columns as wide as their widest cell.
class ColumnTable
{
public:
    enum class Alignment { left, right };

    explicit ColumnTable(std::vector<Alignment> columns) : m_columns(std::move(columns)) {}

    /// Adds a row of at most as many cells as there are columns.
    void add(std::vector<std::string> cells) { m_rows.push_back(std::move(cells)); }

    /// The rows as lines, each with its line end.
    [[nodiscard]] std::string text() const;

private:
    std::vector<Alignment> m_columns;
    std::vector<std::vector<std::string>> m_rows;
};

} // namespace ZorvaneCLI
