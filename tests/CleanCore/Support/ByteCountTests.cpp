#include "CleanCore/Support/ByteCount.h"

#include <gtest/gtest.h>

namespace {

using CleanCore::formatByteCount;

TEST(ByteCount, IsRoundedToWhatEachUnitShows)
{
    const struct
    {
        std::int64_t bytes;
        const char* text;
    } cases[] = {
        {0, "Zero KB"},
        {1, "1 byte"},
        {999, "999 bytes"},
        {1'499, "1 KB"},
        {1'500, "2 KB"},
        {999'499, "999 KB"},
        {999'500, "1 MB"},
        {1'049'999, "1 MB"},
        {1'050'000, "1.1 MB"},
        {999'949'999, "999.9 MB"},
        {999'950'000, "1 GB"},
        {1'005'000'000, "1.01 GB"},
        {12'340'000'000, "12.34 GB"},
        {999'995'000'000, "1 TB"},
        {2'050'000'000'000'000, "2.05 PB"},
        {INT64_MAX, "9.22 EB"},
        {-1, "-1 byte"},
        {INT64_MIN, "-9.22 EB"},
    };
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(formatByteCount(bytes), text) << bytes;
    }
}

TEST(ByteCount, UsesTheSeparatorOfTheLocale)
{
    EXPECT_EQ(formatByteCount(1'234'567, ","), "1,2 MB");
    EXPECT_EQ(formatByteCount(1'000'000, ","), "1 MB");
    EXPECT_EQ(formatByteCount(-12'340'000'000, "\u066B"), "-12\u066B34 GB");
}

} // namespace
