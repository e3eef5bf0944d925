#include "Zorvane/Desktop/ByteCountFormatter.h"

#include <gtest/gtest.h>
#include <limits>

namespace ZorvaneTests {
namespace {

using Zorvane::ByteCountFormatter;

TEST(ByteCountFormatterTest, WritesDecimalUnitsWithTheLocalesSeparator)
{
    const struct
    {
        std::int64_t bytes;
        const char* english;
        const char* german;
    } cases[] = {
        {0, "Zero KB", "Zero KB"},
        {1, "1 byte", "1 byte"},
        {999, "999 bytes", "999 bytes"},
        {1000, "1 KB", "1 KB"},
        {999'499, "999 KB", "999 KB"},
        {999'500, "1 MB", "1 MB"},
        {1'234'567, "1.2 MB", "1,2 MB"},
        {999'950'000, "1 GB", "1 GB"},
        {1'234'000'000, "1.23 GB", "1,23 GB"},
        {-1, "-1 byte", "-1 byte"},
        {-1'500'000, "-1.5 MB", "-1,5 MB"},
        {std::numeric_limits<std::int64_t>::min(), "-9.22 EB", "-9,22 EB"},
    };
    const ByteCountFormatter english(QLocale(QLocale::English, QLocale::UnitedStates));
    const ByteCountFormatter german(QLocale(QLocale::German, QLocale::Germany));
    for (const auto& [bytes, inEnglish, inGerman] : cases) {
        EXPECT_EQ(english.string(bytes).toStdString(), inEnglish) << bytes;
        EXPECT_EQ(german.string(bytes).toStdString(), inGerman) << bytes;
    }
    EXPECT_EQ(english.count(1'234'567).toStdString(), "1234567");
    EXPECT_EQ(german.count(1'234'567).toStdString(), "1234567");
}

} // namespace
} // namespace ZorvaneTests
