#include "CleanCore/Support/TextEquality.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <utf8proc.h>

namespace CleanCore {

namespace {

bool isAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

} // namespace

std::string canonicalForm(std::string_view text)
{
    if (isAscii(text)) {
        return std::string(text);
    }
    utf8proc_uint8_t* mapped = nullptr;
    const utf8proc_ssize_t length =
        utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                     static_cast<utf8proc_ssize_t>(text.size()), &mapped,
                     static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE));
    const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner(mapped, &std::free);
    if (length < 0) {
        return std::string(text);
    }
    return {reinterpret_cast<const char*>(mapped), static_cast<std::size_t>(length)};
}

bool areEquivalent(std::string_view a, std::string_view b)
{
    return a == b || canonicalForm(a) == canonicalForm(b);
}

} // namespace CleanCore
