#include "CleanCore/Support/TextEquality.h"

#include <gtest/gtest.h>

namespace {

TEST(TextEquality, HoldsForCanonicallyEquivalentTextsOnly)
{
    using namespace std::string_view_literals;
    const struct
    {
        std::string_view a;
        std::string_view b;
        bool areEquivalent;
    } cases[] = {
        {"Cache", "Cache", true},
        {"Cache", "cache", false},
        {"Cache", "Cache ", false},
        {"\u00E9", "e\u0301", true},
        {"q\u0307\u0323", "q\u0323\u0307", true},
        {"\u2126", "\u03A9", true},
        {"\uAC00", "\u1100\u1161", true},
        {"\uFB01", "fi", false},
        {"\u00DF", "ss", false},
        {"\u00AD", "", false},
        {"a\0b"sv, "a\0c"sv, false},
        {"\u00E9\0b"sv, "e\u0301\0b"sv, true},
        {"\u00E9\0b"sv, "e\u0301\0c"sv, false},
        {"\xFF\u00E9",
         "\xFF"
         "e\u0301",
         false},
        {"\xFF\u00E9", "\xFF\u00E9", true},
        {"\xC3", "\xC4", false},
    };
    for (const auto& [a, b, areEquivalent] : cases) {
        EXPECT_EQ(CleanCore::areEquivalent(a, b), areEquivalent) << a << " and " << b;
        EXPECT_EQ(CleanCore::canonicalForm(a) == CleanCore::canonicalForm(b), areEquivalent)
            << a << " and " << b;
    }
}

} // namespace
