#pragma once

#include <sstream>
#include <string>
#include <vector>

namespace CleanCoreTests {

/// The rows of a table that is written as text, one a line, with " | " between cells. An indented
/// line goes on where the one before it ended; empty lines and those with "#" in front are none.
[[nodiscard]] inline std::vector<std::vector<std::string>> table(const std::string& text)
{
    const std::string separator = " | ";
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with(' ')) {
            lines.back() += ' ' + line.substr(line.find_first_not_of(' '));
        } else if (!line.empty() && line.front() != '#') {
            lines.push_back(line);
        }
    }
    std::vector<std::vector<std::string>> rows;
    for (std::string line : lines) {
        std::vector<std::string>& row = rows.emplace_back();
        line += line.ends_with(" |") ? " " + separator : separator;
        for (auto end = line.find(separator); end != std::string::npos;
             end = line.find(separator)) {
            row.push_back(line.substr(0, end));
            line.erase(0, end + separator.size());
        }
    }
    return rows;
}

/// The words of a cell.
[[nodiscard]] inline std::vector<std::string> words(const std::string& cell)
{
    std::istringstream stream(cell);
    std::vector<std::string> all;
    for (std::string word; stream >> word;) {
        all.push_back(word);
    }
    return all;
}

} // namespace CleanCoreTests
