#include "CleanCore/Support/ByteCount.h"

namespace CleanCore {

namespace {

struct Unit
{
    const char* name;
    std::uint64_t bytes;
    // The smallest step shown: one, a tenth or a hundredth of the unit.
    std::uint64_t parts;
};

constexpr Unit units[] = {
    {"KB", 1'000, 1},
    {"MB", 1'000'000, 10},
    {"GB", 1'000'000'000, 100},
    {"TB", 1'000'000'000'000, 100},
    {"PB", 1'000'000'000'000'000, 100},
    {"EB", 1'000'000'000'000'000'000, 100},
};
constexpr std::uint64_t unitStep = 1000;

/// `bytes` in steps of the unit's finest part, halves rounded up.
std::uint64_t roundedParts(std::uint64_t bytes, const Unit& unit)
{
    const std::uint64_t part = unit.bytes / unit.parts;
    return bytes / part + (bytes % part >= (part + 1) / 2 ? 1 : 0);
}

std::string inUnit(std::uint64_t parts, const Unit& unit, std::string_view separator)
{
    std::string text = std::to_string(parts / unit.parts);
    if (parts % unit.parts != 0) {
        std::string decimals = std::to_string(unit.parts + parts % unit.parts).substr(1);
        decimals.erase(decimals.find_last_not_of('0') + 1);
        text.append(separator).append(decimals);
    }
    return text + ' ' + unit.name;
}

std::string formatMagnitude(std::uint64_t bytes, std::string_view separator)
{
    if (bytes == 0) {
        return "Zero KB";
    }
    if (bytes < unitStep) {
        return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
    }
    for (const Unit& unit : units) {
        // A count that rounds up to a thousand is one of the next unit.
        const std::uint64_t parts = roundedParts(bytes, unit);
        if (parts < unitStep * unit.parts || &unit == std::end(units) - 1) {
            return inUnit(parts, unit, separator);
        }
    }
    return {};
}

} // namespace

std::string formatByteCount(std::int64_t bytes, std::string_view decimalSeparator)
{
    if (bytes < 0) {
        return "-" + formatMagnitude(-static_cast<std::uint64_t>(bytes), decimalSeparator);
    }
    return formatMagnitude(static_cast<std::uint64_t>(bytes), decimalSeparator);
}

} // namespace CleanCore
