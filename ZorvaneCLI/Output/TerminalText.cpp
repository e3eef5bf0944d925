#include "ZorvaneCLI/Output/TerminalText.h"

#include "CleanCore/Support/ByteCount.h"
#include "CleanCore/Support/Utf8.h"
#include "Words/LeftInPlaceText.h"

#include <algorithm>
#include <langinfo.h>
#include <locale.h>
#include <utf8proc.h>

namespace ZorvaneCLI {

namespace {

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

std::size_t displayWidth(std::string_view text)
{
    std::size_t width = 0;
    CleanCore::forEachCharacter(text, [&](std::int32_t character, std::string_view) {
        width += static_cast<std::size_t>(std::max(0, utf8proc_charwidth(character)));
    });
    return width;
}

std::string byteCount(std::int64_t bytes)
{
    return CleanCore::formatByteCount(bytes, decimalSeparator());
}

std::string itemText(const CleanCore::ScannedItem& item)
{
    const std::string remark = Words::obstacleText(item.obstacle);
    return escaped(item.path) + (remark.empty() ? "" : "  (" + remark + ')');
}

std::string counted(std::size_t count, std::string_view singular)
{
    std::string text = std::to_string(count) + ' ' + std::string(singular);
    return count == 1 ? text : text + 's';
}

} // namespace ZorvaneCLI
