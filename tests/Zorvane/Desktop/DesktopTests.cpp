#include "Zorvane/Desktop/UpdateFeed.h"
#include "tests/Support/Table.h"

#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

using Zorvane::UpdateFeed;

TEST(Desktop, UpdateFeedsAreWholeSafeAndNewer)
{
    for (const auto& row : CleanCoreTests::table(R"(
"0.10.0" | https://example.org/get | 0.9.0 | newer
"0.1.0"  | https://example.org/get | 0.1   | no
"0.1"    | https://example.org/get | 0.1.0 | no
1.2      | https://example.org/get | 0     | no
"new"    | https://example.org/get | 0     | no
"1.2"    | http://example.org/get  | 0     | no
"1.2"    | file:///bin/sh          | 0     | no
"1.2"    | https:///nowhere        | 0     | no
)")) {
        const auto cell = [&](std::size_t i) { return QString::fromStdString(row[i]).trimmed(); };
        const auto feed =
            UpdateFeed::parse(QStringLiteral(R"({"notes": "", "version": %1, "link": "%2"})")
                                  .arg(cell(0), cell(1))
                                  .toUtf8());
        EXPECT_EQ(feed && feed->isNewerThan(cell(2)), row[3] == "newer") << row[0] << row[1];
    }
    for (const char* part : {"", "{", R"({"version": "1.2", "link": "https://example.org/"})"}) {
        EXPECT_FALSE(UpdateFeed::parse(part)) << part;
    }
}

} // namespace
} // namespace ZorvaneTests
