#include "CleanCore/Commands/Parsing/ToolText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <string>

namespace CleanCore::ToolText {

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

char upper(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// The end of the digits that begin at `from`.
std::size_t endOfDigits(std::string_view text, std::size_t from)
{
    while (from < text.size() && isDigit(text[from])) {
        ++from;
    }
    return from;
}

/// The length of the white-space character that `text` begins with, in bytes; 0 if it begins with
/// none.
std::size_t spaceLength(std::string_view text)
{
    static constexpr auto wideSpaces = std::to_array<std::string_view>(
        {"\u00A0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006",
         "\u2007", "\u2008", "\u2009", "\u200A", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000"});
    if (text.empty()) {
        return 0;
    }
    const char first = text.front();
    if (static_cast<unsigned char>(first) < 0x80) {
        return first == ' ' || (first >= '\t' && first <= '\r') ? 1 : 0;
    }
    const auto* const space =
        std::find_if(wideSpaces.begin(), wideSpaces.end(),
                     [&](std::string_view candidate) { return text.starts_with(candidate); });
    return space == wideSpaces.end() ? 0 : space->size();
}

/// The number of bytes of the unit that `text` begins with; nothing if it begins with none.
std::optional<double> unitFactor(std::string_view text)
{
    constexpr std::string_view prefixes = "KMGT";
    int exponent = 0;
    std::size_t next = 0;
    const auto at = [&](std::size_t index) {
        return index < text.size() ? upper(text[index]) : '\0';
    };
    if (const std::size_t prefix = prefixes.find(at(0)); prefix != std::string_view::npos) {
        exponent = static_cast<int>(prefix) + 1;
        ++next;
    }
    const bool isBinary = at(next) == 'I';
    next += isBinary ? 1 : 0;
    if (at(next) != 'B') {
        return std::nullopt;
    }
    constexpr double decimalBase = 1000;
    constexpr double binaryBase = 1024;
    return std::pow(isBinary ? binaryBase : decimalBase, exponent);
}

/// `number` times `factor`, rounded down.
std::int64_t product(std::string number, double factor)
{
    std::replace(number.begin(), number.end(), ',', '.');
    double value = 0;
    const char* const end = number.data() + number.size();
    if (std::from_chars(number.data(), end, value).ec == std::errc::result_out_of_range) {
        // The number is either far too large or almost 0; its whole part tells which.
        const std::string_view whole = std::string_view(number).substr(0, number.find('.'));
        value = whole.find_first_not_of('0') == std::string_view::npos
                    ? 0
                    : std::numeric_limits<double>::infinity();
    }
    value *= factor;
    constexpr double limit = 9'223'372'036'854'775'808.0;
    return value >= limit ? std::numeric_limits<std::int64_t>::max()
                          : static_cast<std::int64_t>(value);
}

} // namespace

std::vector<std::string_view> lines(std::string_view text)
{
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        if (!line.empty()) {
            lines.push_back(line);
        }
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
    return lines;
}

std::int64_t parseSize(std::string_view text)
{
    // A match begins where digits begin: one from within them would end at the same place.
    for (std::size_t start = 0; start < text.size();) {
        if (!isDigit(text[start])) {
            ++start;
            continue;
        }
        const std::size_t endOfWhole = endOfDigits(text, start);
        std::size_t end = endOfWhole;
        if (end < text.size() && (text[end] == '.' || text[end] == ',')) {
            const std::size_t endOfFraction = endOfDigits(text, end + 1);
            end = endOfFraction > end + 1 ? endOfFraction : end;
        }
        std::size_t unit = end;
        while (const std::size_t length = spaceLength(text.substr(unit))) {
            unit += length;
        }
        if (const std::optional<double> factor = unitFactor(text.substr(unit))) {
            return product(std::string(text.substr(start, end - start)), *factor);
        }
        start = endOfWhole;
    }
    return 0;
}

} // namespace CleanCore::ToolText
