#pragma once

#include <algorithm>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

/// Reads members of a JSON object without converting anything. All throw nlohmann::json::exception
/// when the member is missing or has another type.
namespace CleanCore::StrictJson {

/// nlohmann's own conversion would cut fractions off and wrap what does not fit.
[[nodiscard]] inline std::int64_t integer(const nlohmann::json& object, const char* key)
{
    const auto& value = object.at(key);
    if (!value.is_number_integer()) {
        throw nlohmann::json::type_error::create(
            302, std::string("\"") + key + "\" must be an integer", &object);
    }
    if (value.is_number_unsigned() && value.get<std::uint64_t>() > INT64_MAX) {
        throw nlohmann::json::out_of_range::create(
            406, std::string("\"") + key + "\" does not fit a 64-bit integer", &object);
    }
    return value.get<std::int64_t>();
}

/// nlohmann's own conversion would not name the member.
[[nodiscard]] inline std::string text(const nlohmann::json& object, const char* key)
{
    const auto& value = object.at(key);
    if (!value.is_string()) {
        throw nlohmann::json::type_error::create(302, std::string("\"") + key + "\" must be a text",
                                                 &object);
    }
    return value.get<std::string>();
}

/// nlohmann's own conversion would also accept the values of an object as a list.
[[nodiscard]] inline std::vector<std::string> strings(const nlohmann::json& object, const char* key)
{
    const auto& value = object.at(key);
    const auto isText = [](const nlohmann::json& element) { return element.is_string(); };
    if (!value.is_array() || !std::all_of(value.begin(), value.end(), isText)) {
        throw nlohmann::json::type_error::create(
            302, std::string("\"") + key + "\" must be an array of texts", &object);
    }
    return value.get<std::vector<std::string>>();
}

} // namespace CleanCore::StrictJson
