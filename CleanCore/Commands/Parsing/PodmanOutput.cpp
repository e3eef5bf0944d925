#include "CleanCore/Commands/Parsing/PodmanOutput.h"

#include "CleanCore/Commands/Parsing/ToolText.h"

#include <algorithm>
#include <map>
#include <optional>

namespace CleanCore::PodmanOutput {

namespace {

constexpr std::string_view labelPrefix = "Podman — image ";

/// The usual short form of an image's id, which the table of sizes uses too.
constexpr std::size_t idLength = 12;

struct Usage
{
    std::int64_t ownBytes = 0;
    bool isUsed = false;
};

/// The cells of a line of a table; at least two spaces separate them.
std::vector<std::string_view> cells(std::string_view line)
{
    std::vector<std::string_view> cells;
    while (!line.empty()) {
        const std::string_view cell = line.substr(0, line.find("  "));
        if (!cell.empty()) {
            cells.push_back(cell);
        }
        line.remove_prefix(cell.size());
        line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    }
    return cells;
}

/// The images of the tables by short id. Their columns: repository, tag, id, age, size, shared
/// size, unique size, number of containers.
std::map<std::string_view, Usage> imageUsage(std::string_view output)
{
    constexpr std::size_t columns = 8;
    std::map<std::string_view, Usage> usage;
    for (const std::string_view line : ToolText::lines(output)) {
        if (line.starts_with("Containers space usage")) {
            break;
        }
        const std::vector<std::string_view> row = cells(line);
        if (row.size() == columns) {
            usage[row[2].substr(0, idLength)] = {ToolText::parseSize(row[columns - 2]),
                                                 row[columns - 1] != "0"};
        }
    }
    return usage;
}

/// The short id in a line of ids; nothing if the line holds none.
std::optional<std::string_view> shortId(std::string_view line)
{
    constexpr std::string_view algorithm = "sha256:";
    if (line.starts_with(algorithm)) {
        line.remove_prefix(algorithm.size());
    }
    const bool isId = line.size() >= idLength &&
                      line.find_first_not_of("0123456789abcdef") == std::string_view::npos;
    return isId ? std::optional(line.substr(0, idLength)) : std::nullopt;
}

} // namespace

std::vector<ScannedItem> danglingImages(std::span<const std::string> outputs)
{
    const std::map<std::string_view, Usage> usage = imageUsage(outputs[1]);
    std::vector<ScannedItem> items;
    for (const std::string_view line : ToolText::lines(outputs[0])) {
        const std::optional<std::string_view> id = shortId(line);
        if (!id) {
            continue;
        }
        const auto known = usage.find(*id);
        if (known == usage.end()) {
            items.push_back({.path = std::string(labelPrefix).append(*id)});
        } else if (!known->second.isUsed) {
            items.push_back({.path = std::string(labelPrefix).append(*id),
                             .sizeBytes = known->second.ownBytes});
        }
    }
    return items;
}

std::string imageId(std::string_view path)
{
    if (path.starts_with(labelPrefix)) {
        path.remove_prefix(labelPrefix.size());
    }
    return std::string(path);
}

} // namespace CleanCore::PodmanOutput
