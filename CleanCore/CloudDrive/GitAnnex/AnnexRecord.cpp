#include "CleanCore/CloudDrive/GitAnnex/AnnexRecord.h"

#include <charconv>
#include <nlohmann/json.hpp>

namespace CleanCore {

namespace {

using nlohmann::json;

std::string text(const json& object, const char* name)
{
    const auto member = object.find(name);
    return member != object.end() && member->is_string() ? member->get<std::string>()
                                                         : std::string();
}

/// A number, or the text of one; git-annex writes both.
std::int64_t number(const json& object, const char* name)
{
    const auto member = object.find(name);
    if (member == object.end()) {
        return 0;
    }
    if (member->is_number_unsigned()) {
        const auto value = member->get<std::uint64_t>();
        return value > INT64_MAX ? 0 : static_cast<std::int64_t>(value);
    }
    const std::string digits = text(object, name);
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return error == std::errc() && end == digits.data() + digits.size() && value > 0 ? value : 0;
}

/// Without the lines that tell how to drop it all the same.
std::string withoutAdvice(const std::string& note)
{
    std::string result;
    for (std::size_t begin = 0; begin < note.size();) {
        const std::size_t end = std::min(note.find('\n', begin), note.size());
        const std::string line = note.substr(begin, end - begin);
        if (line.find("--force") == std::string::npos && !line.empty()) {
            result += (result.empty() ? "" : "\n") + line;
        }
        begin = end + 1;
    }
    return result;
}

std::string reasonOf(const json& object)
{
    std::string all = text(object, "note");
    const auto messages = object.find("error-messages");
    if (messages != object.end() && messages->is_array()) {
        for (const json& message : *messages) {
            all += message.is_string() ? "\n" + message.get<std::string>() : "";
        }
    }
    return withoutAdvice(all);
}

} // namespace

std::optional<AnnexRecord> parseAnnexRecord(std::string_view line)
{
    const json object = json::parse(line, nullptr, false);
    if (!object.is_object()) {
        return std::nullopt;
    }
    AnnexRecord record;
    const auto action = object.find("action");
    if (object.contains("byte-progress")) {
        const bool hasAction = action != object.end() && action->is_object();
        record.file = hasAction ? text(*action, "file") : std::string();
        record.arrived = number(object, "byte-progress");
        record.bytes = number(object, "total-size");
        return record;
    }
    record.file = text(object, "file");
    record.key = text(object, "key");
    record.hashFolder = text(object, "hashdirmixed");
    record.bytes = number(object, "bytesize");
    if (const auto success = object.find("success");
        success != object.end() && success->is_boolean()) {
        record.success = success->get<bool>();
    }
    record.reason = reasonOf(object);
    return record;
}

} // namespace CleanCore
