#include "CleanCore/Support/ByteCount.h"
#include "CleanCore/Support/TextEquality.h"

#include <gtest/gtest.h>

namespace CleanCoreTests {

using namespace CleanCore;
using namespace std::string_view_literals;

TEST(ByteCount, IsRoundedToWhatEachUnitShows)
{
    const std::pair<std::int64_t, const char*> rows[] = {
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
        {999'995'000'000, "1 TB"},
        {2'050'000'000'000'000, "2.05 PB"},
        {INT64_MAX, "9.22 EB"},
        {-1, "-1 byte"},
        {INT64_MIN, "-9.22 EB"},
    };
    for (const auto& [bytes, text] : rows) {
        EXPECT_EQ(formatByteCount(bytes), text) << bytes;
    }
    EXPECT_EQ(formatByteCount(1'000'000, ","), "1 MB");
    EXPECT_EQ(formatByteCount(-12'340'000'000, "\u066B"), "-12\u066B34 GB");
}

TEST(TextEquality, HoldsForCanonicallyEquivalentTextsOnly)
{
    const std::tuple<std::string_view, std::string_view, bool> rows[] = {
        {"Cache", "Cache", true},
        {"Cache", "cache", false},
        {"Cache", "Cache ", false},
        {"\u00E9", "e\u0301", true},
        {"q\u0307\u0323", "q\u0323\u0307", true},
        {"\u2126", "\u03A9", true},
        {"\uAC00", "\u1100\u1161", true},
        {"\uFB01", "fi", false},
        {"\u00AD", "", false},
        {"\u00E9\0b"sv, "e\u0301\0b"sv, true},
        {"\u00E9\0b"sv, "e\u0301\0c"sv, false},
        {"\xFF\u00E9", "\xFF\x65\u0301", false},
        {"\xFF\u00E9", "\xFF\u00E9", true},
        {"\xC3", "\xC4", false},
    };
    for (const auto& [a, b, isEqual] : rows) {
        EXPECT_EQ(areEquivalent(a, b), isEqual) << a << " and " << b;
        EXPECT_EQ(canonicalForm(a) == canonicalForm(b), isEqual) << a << " and " << b;
    }
}

} // namespace CleanCoreTests
