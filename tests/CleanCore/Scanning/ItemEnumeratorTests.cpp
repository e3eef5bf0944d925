#include "CleanCore/Scanning/ItemEnumerator.h"

#include "tests/Support/ScriptedDisk.h"

#include <gtest/gtest.h>

namespace CleanCoreTests {
namespace {

using namespace CleanCore;
using namespace std::chrono_literals;

constexpr std::chrono::hours day(24);
const Timestamp now = Timestamp(1'772'366'400s + 123'456'789ns);

TEST(ItemEnumerator, KeepsEntriesWhoseNewestChangeIsOldEnough)
{
    const std::tuple<std::int64_t, Timestamp, bool> rows[] = {
        {0, Timestamp::max(), true},
        {7, now - 7 * day, true},
        {7, now - 7 * day + 1ns, false},
        {-7, now + 7 * day + 1ns, false},
        // The cutoff still fits, though its distance from now does not.
        {115'740, now - 57'870 * day - 57'870 * day, true},
        {115'740, now - 57'870 * day - 57'870 * day + 1ns, false},
        {INT64_MAX, distantPast + 1ns, false},
        {INT64_MIN, Timestamp::max(), true},
    };
    for (const auto& [minAgeDays, newestChange, isItem] : rows) {
        const auto disk = std::make_shared<ScriptedDisk>();
        disk->add("/base", "entry", 10, newestChange);
        EXPECT_EQ(ItemEnumerator(disk).items("/base", minAgeDays, {}, now).size(), isItem ? 1 : 0)
            << minAgeDays << " days, changed " << (newestChange - now).count() << " ns from now";
    }
}

} // namespace
} // namespace CleanCoreTests
