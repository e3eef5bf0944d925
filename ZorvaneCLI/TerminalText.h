#pragma once

#include "CleanCore/Support/EscapedText.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Text for a terminal.
namespace ZorvaneCLI {

using CleanCore::escaped;

/// The columns that an escaped text takes on a terminal.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

/// A byte count in the file style with the locale's decimal separator.
[[nodiscard]] std::string byteCount(std::int64_t bytes);

/// "1 item", "2 items".
[[nodiscard]] std::string counted(std::size_t count, std::string_view singular);

/// Rows of cells as aligned text, each row with its own line end.
class TextTable
{
public:
    enum class Alignment { left, right };

    explicit TextTable(std::vector<Alignment> columns) : m_columns(std::move(columns)) {}

    void add(std::vector<std::string> cells) { m_rows.push_back(std::move(cells)); }
    [[nodiscard]] std::string text() const;

private:
    std::vector<Alignment> m_columns;
    std::vector<std::vector<std::string>> m_rows;
};

} // namespace ZorvaneCLI
