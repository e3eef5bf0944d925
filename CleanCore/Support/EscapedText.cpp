#include "CleanCore/Support/EscapedText.h"

#include "CleanCore/Support/Utf8.h"

#include <cstdio>

#include <utf8proc.h>

namespace CleanCore {

namespace {

std::string format(const char* pattern, unsigned value)
{
    char text[32];
    const int length = std::snprintf(text, sizeof text, pattern, value);
    return {text, static_cast<std::size_t>(length)};
}

bool isNeededByScripts(std::int32_t character)
{
    const auto isIn = [&](std::int32_t first, std::int32_t last) {
        return character >= first && character <= last;
    };
    // The zero-width joiners; selectors of emoji, of Mongolian and of Han variants.
    return isIn(0x200C, 0x200D) || isIn(0xFE00, 0xFE0F) || isIn(0x180B, 0x180D) ||
           character == 0x180F || isIn(0xE0100, 0xE01EF);
}

bool isUnsafe(std::int32_t character)
{
    switch (utf8proc_category(character)) {
    case UTF8PROC_CATEGORY_CC:
    case UTF8PROC_CATEGORY_CF:
    case UTF8PROC_CATEGORY_CN:
    case UTF8PROC_CATEGORY_CS:
    case UTF8PROC_CATEGORY_CO:
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP:
        return !isNeededByScripts(character);
    default:
        // Letters and marks that take no place, such as fillers.
        return utf8proc_get_property(character)->ignorable != 0 && !isNeededByScripts(character);
    }
}

std::string inBackslashes(std::int32_t character)
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

} // namespace

std::string escaped(std::string_view text, EscapeNotation notation)
{
    const bool hasBackslashes = notation == EscapeNotation::backslashes;
    std::string result;
    forEachCharacter(text, [&](std::int32_t character, std::string_view bytes) {
        if (character == notUtf8) {
            result += hasBackslashes ? format("\\x%02X", static_cast<unsigned char>(bytes.front()))
                                     : "\uFFFD";
        } else if (!isUnsafe(character)) {
            result += bytes;
        } else {
            result += hasBackslashes ? inBackslashes(character)
                                     : format("⟨U+%04X⟩", static_cast<unsigned>(character));
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

} // namespace CleanCore
