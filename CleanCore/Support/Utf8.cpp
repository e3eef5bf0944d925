#include "CleanCore/Support/Utf8.h"

#include <utf8proc.h>

namespace CleanCore {

bool isValidUtf8(std::string_view text)
{
    const auto* next = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
    auto left = static_cast<utf8proc_ssize_t>(text.size());
    while (left > 0) {
        utf8proc_int32_t character = 0;
        const utf8proc_ssize_t length = utf8proc_iterate(next, left, &character);
        if (length <= 0) {
            return false;
        }
        next += length;
        left -= length;
    }
    return true;
}

} // namespace CleanCore
