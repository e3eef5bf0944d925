#include "CleanCore/Support/Utf8.h"

#include <utf8proc.h>

namespace CleanCore {

void forEachCharacter(std::string_view text,
                      const std::function<void(std::int32_t, std::string_view)>& visit)
{
    while (!text.empty()) {
        utf8proc_int32_t character = notUtf8;
        const utf8proc_ssize_t length =
            utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                             static_cast<utf8proc_ssize_t>(text.size()), &character);
        const std::size_t taken = length > 0 ? static_cast<std::size_t>(length) : 1;
        visit(length > 0 ? character : notUtf8, text.substr(0, taken));
        text.remove_prefix(taken);
    }
}

bool isValidUtf8(std::string_view text)
{
    bool isValid = true;
    forEachCharacter(text, [&](std::int32_t character, std::string_view) {
        isValid = isValid && character != notUtf8;
    });
    return isValid;
}

} // namespace CleanCore
