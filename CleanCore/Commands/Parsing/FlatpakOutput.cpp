#include "CleanCore/Commands/Parsing/FlatpakOutput.h"

#include "CleanCore/Commands/Parsing/ToolText.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string_view>

namespace CleanCore::FlatpakOutput {

namespace {

using References = std::set<std::string, std::less<>>;

std::vector<std::string_view> split(std::string_view text, char separator)
{
    std::vector<std::string_view> parts;
    while (true) {
        const std::size_t end = text.find(separator);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            return parts;
        }
        text.remove_prefix(end + 1);
    }
}

/// Whether `text` is "ID/ARCH/BRANCH" with no characters other than the ones allowed there.
bool isReference(std::string_view text)
{
    const std::vector<std::string_view> parts = split(text, '/');
    const auto isPart = [](std::string_view part) {
        return !part.empty() && part.front() != '-' &&
               std::all_of(part.begin(), part.end(), [](char c) {
                   return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                          (c >= '0' && c <= '9') || c == '.' || c == '_' || c == '-';
               });
    };
    return parts.size() == 3 && std::all_of(parts.begin(), parts.end(), isPart);
}

/// The platform that `reference` names or translates; nothing for any other reference.
std::optional<std::string> platformOf(std::string_view reference)
{
    constexpr std::string_view translations = ".Locale";
    const std::size_t endOfId = reference.find('/');
    std::string_view id = reference.substr(0, endOfId);
    if (id.ends_with(translations)) {
        id.remove_suffix(translations.size());
    }
    if (!id.ends_with(".Platform")) {
        return std::nullopt;
    }
    return std::string(id).append(reference.substr(endOfId));
}

/// Whether `id` matches `pattern`, in which "*" stands for any text.
bool matches(std::string_view pattern, std::string_view id)
{
    constexpr std::size_t none = std::string_view::npos;
    std::size_t next = 0;
    std::size_t afterStar = none;
    std::size_t retryAt = 0;
    for (std::size_t at = 0; at < id.size();) {
        if (next < pattern.size() && pattern[next] == '*') {
            afterStar = ++next;
            retryAt = at;
        } else if (next < pattern.size() && pattern[next] == id[at]) {
            ++next;
            ++at;
        } else if (afterStar != none) {
            next = afterStar;
            at = ++retryAt;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', next) == none;
}

/// The patterns of pinned ids; headings match no id.
std::vector<std::string_view> pinnedIds(std::string_view output)
{
    constexpr std::string_view kind = "runtime/";
    std::vector<std::string_view> ids;
    for (std::string_view line : ToolText::lines(output)) {
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
        if (line.starts_with(kind)) {
            line.remove_prefix(kind.size());
        }
        ids.push_back(line.substr(0, line.find_first_of("/ \t")));
    }
    return ids;
}

/// Adds the runtimes that the listed apps need; false if one cannot be read.
bool addRuntimesOfApps(std::string_view output, References& used)
{
    for (const std::string_view line : ToolText::lines(output)) {
        const std::vector<std::string_view> cells = split(line, '\t');
        if (cells.size() < 2 || !isReference(cells[1])) {
            return false;
        }
        used.emplace(cells[1]);
    }
    return true;
}

struct Runtime
{
    std::string_view reference;
    std::string_view size;
};

/// The listed runtimes; adds to `used` the runtimes that other listed ones need.
std::vector<Runtime> readRuntimes(std::string_view output, References& used)
{
    std::vector<Runtime> runtimes;
    for (const std::string_view line : ToolText::lines(output)) {
        const std::vector<std::string_view> cells = split(line, '\t');
        if (cells.size() < 2 || !isReference(cells[0])) {
            continue;
        }
        runtimes.push_back({cells[0], cells[1]});
        if (cells.size() > 2 && cells[2] != cells[0]) {
            used.emplace(cells[2]);
        }
    }
    return runtimes;
}

std::int64_t parseSize(std::string_view cell)
{
    // The no-break space before the unit comes out as a question mark in the C locale.
    std::string text(cell);
    std::replace(text.begin(), text.end(), '?', ' ');
    return ToolText::parseSize(text);
}

} // namespace

std::vector<ScannedItem> unusedRuntimes(std::span<const std::string> outputs)
{
    References used;
    if (!addRuntimesOfApps(outputs[0], used)) {
        return {};
    }
    const std::vector<Runtime> runtimes = readRuntimes(outputs[1], used);
    const std::vector<std::string_view> pins = pinnedIds(outputs[2]);
    const auto isPinned = [&](std::string_view reference) {
        const std::string_view id = reference.substr(0, reference.find('/'));
        return std::any_of(pins.begin(), pins.end(),
                           [&](std::string_view pin) { return matches(pin, id); });
    };
    std::vector<ScannedItem> items;
    for (const Runtime& runtime : runtimes) {
        const std::optional<std::string> platform = platformOf(runtime.reference);
        if (platform && !used.contains(*platform) && !used.contains(runtime.reference) &&
            !isPinned(*platform) && !isPinned(runtime.reference)) {
            items.push_back(
                {.path = std::string(runtime.reference), .sizeBytes = parseSize(runtime.size)});
        }
    }
    return items;
}

} // namespace CleanCore::FlatpakOutput
