#include "CleanCore/Commands/Parsing/ToolOutput.h"

#include "CleanCore/Commands/Parsing/ToolText.h"

#include <nlohmann/json.hpp>

namespace CleanCore::ToolOutput {

namespace {

using nlohmann::json;

constexpr std::string_view snapshotPrefix = "com.apple.TimeMachine.";

std::string withoutEvery(std::string_view part, std::string text)
{
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at)) {
        text.erase(at, part.size());
    }
    return text;
}

/// `text` as a JSON document; a discarded one if it is none.
json document(std::string_view text)
{
    return json::parse(text, nullptr, false);
}

/// A member of an object that is a text; null if there is none.
const std::string* textMember(const json& object, const char* key)
{
    const auto member = object.find(key);
    return member != object.end() ? member->get_ptr<const std::string*>() : nullptr;
}

/// The path at the start of a cleanup line: the text before " (". A line that starts with " ("
/// gives its first piece that is not empty.
std::string_view removalTarget(std::string_view rest)
{
    constexpr std::string_view separator = " (";
    std::string_view left = rest;
    while (left.starts_with(separator)) {
        left.remove_prefix(separator.size());
    }
    return left.empty() ? rest : left.substr(0, left.find(separator));
}

} // namespace

std::vector<ScannedItem> timeMachineSnapshots(std::span<const std::string> outputs)
{
    std::vector<ScannedItem> items;
    for (const std::string_view line : ToolText::lines(outputs.front())) {
        if (line.starts_with(snapshotPrefix)) {
            items.push_back({.path = std::string(line)});
        }
    }
    return items;
}

std::string snapshotStamp(std::string_view path)
{
    return withoutEvery(".local", withoutEvery(snapshotPrefix, std::string(path)));
}

std::vector<ScannedItem> unavailableSimulators(std::span<const std::string> outputs)
{
    const json list = document(outputs.front());
    const auto runtimes = list.find("devices");
    if (runtimes == list.end() || !runtimes->is_object()) {
        return {};
    }
    std::vector<ScannedItem> items;
    for (const json& devices : *runtimes) {
        if (!devices.is_array()) {
            return {};
        }
        for (const json& device : devices) {
            const std::string* const name = textMember(device, "name");
            const std::string* const udid = textMember(device, "udid");
            if (name == nullptr || udid == nullptr) {
                return {};
            }
            items.push_back({.path = *name + " (" + *udid + ")"});
        }
    }
    return items;
}

std::vector<ScannedItem> brewCleanup(std::span<const std::string> outputs)
{
    constexpr std::string_view prefix = "Would remove: ";
    std::vector<ScannedItem> items;
    for (std::string_view line : ToolText::lines(outputs.front())) {
        if (line.starts_with(prefix)) {
            line.remove_prefix(prefix.size());
            items.push_back(
                {.path = std::string(removalTarget(line)), .sizeBytes = ToolText::parseSize(line)});
        }
    }
    return items;
}

std::vector<ScannedItem> dockerReclaimable(std::span<const std::string> outputs)
{
    std::vector<ScannedItem> items;
    for (const std::string_view line : ToolText::lines(outputs.front())) {
        const json row = document(line);
        const std::string* const type = textMember(row, "Type");
        const std::string* const reclaimable = textMember(row, "Reclaimable");
        // A line that cannot be parsed does not affect the others.
        if (type != nullptr && reclaimable != nullptr) {
            items.push_back(
                {.path = "Docker — " + *type, .sizeBytes = ToolText::parseSize(*reclaimable)});
        }
    }
    return items;
}

} // namespace CleanCore::ToolOutput
