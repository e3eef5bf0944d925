#include "ZorvaneCLI/TerminalText.h"

#include "CleanCore/Support/ByteCount.h"

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <langinfo.h>
#include <locale.h>
#include <utf8proc.h>

namespace ZorvaneCLI {

namespace {

std::string format(const char* pattern, unsigned value)
{
    char text[32];
    const int length = std::snprintf(text, sizeof text, pattern, value);
    return {text, static_cast<std::size_t>(length)};
}

bool isHarmless(utf8proc_int32_t character)
{
    switch (utf8proc_category(character)) {
    case UTF8PROC_CATEGORY_CC:
    case UTF8PROC_CATEGORY_CF:
    case UTF8PROC_CATEGORY_CN:
    case UTF8PROC_CATEGORY_CS:
    case UTF8PROC_CATEGORY_CO:
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP:
        break;
    default:
        return true;
    }
    // The joiner that holds family and flag emoji together.
    constexpr utf8proc_int32_t zeroWidthJoiner = 0x200D;
    return character == zeroWidthJoiner;
}

std::string escapedCharacter(utf8proc_int32_t character)
{
    switch (character) {
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    case 0x1B:
        return "\\e";
    default:
        return format("\\u{%04X}", static_cast<unsigned>(character));
    }
}

/// Calls visit(character, its bytes); the character is -1 for a byte that is not UTF-8.
template <typename Visit>
void forEachCharacter(std::string_view text, Visit visit)
{
    while (!text.empty()) {
        utf8proc_int32_t character = -1;
        const utf8proc_ssize_t length =
            utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                             static_cast<utf8proc_ssize_t>(text.size()), &character);
        const std::size_t taken = length > 0 ? static_cast<std::size_t>(length) : 1;
        visit(length > 0 ? character : -1, text.substr(0, taken));
        text.remove_prefix(taken);
    }
}

const std::string& decimalSeparator()
{
    static const std::string separator = [] {
        const locale_t locale = ::newlocale(LC_NUMERIC_MASK, "", nullptr);
        if (locale == nullptr) {
            return std::string(".");
        }
        std::string text = ::nl_langinfo_l(RADIXCHAR, locale);
        ::freelocale(locale);
        return text;
    }();
    return separator;
}

} // namespace

std::string escaped(std::string_view text)
{
    std::string result;
    forEachCharacter(text, [&](utf8proc_int32_t character, std::string_view bytes) {
        if (character < 0) {
            result += format("\\x%02X", static_cast<unsigned char>(bytes.front()));
        } else if (isHarmless(character)) {
            result += bytes;
        } else {
            result += escapedCharacter(character);
        }
    });
    return result;
}

std::string shortened(std::string text)
{
    constexpr std::size_t limit = 320;
    constexpr std::size_t endLength = 120;
    if (text.size() <= limit) {
        return text;
    }
    const auto isInsideCharacter = [&](std::size_t at) {
        return (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
    };
    std::size_t first = limit - endLength;
    while (first > 0 && isInsideCharacter(first)) {
        --first;
    }
    std::size_t last = text.size() - endLength;
    while (last < text.size() && isInsideCharacter(last)) {
        ++last;
    }
    return text.replace(first, last - first, "\u2026");
}

std::size_t displayWidth(std::string_view text)
{
    std::size_t width = 0;
    forEachCharacter(text, [&](utf8proc_int32_t character, std::string_view) {
        width += static_cast<std::size_t>(std::max(0, utf8proc_charwidth(character)));
    });
    return width;
}

std::string byteCount(std::int64_t bytes)
{
    return CleanCore::formatByteCount(bytes, decimalSeparator());
}

std::string counted(std::size_t count, std::string_view singular)
{
    std::string text = std::to_string(count) + ' ' + std::string(singular);
    return count == 1 ? text : text + 's';
}

} // namespace ZorvaneCLI
