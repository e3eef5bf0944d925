#include "CleanCore/Scanning/ItemEnumerator.h"

#include "tests/Support/CleanableHome.h"
#include "tests/Support/ScriptedDisk.h"

#include <gtest/gtest.h>
#include <system_error>

namespace CleanCoreTests {

using namespace CleanCore;
using namespace std::chrono_literals;
using Strings = std::vector<std::string>;

namespace {

constexpr std::chrono::hours day(24);
const Timestamp now = Timestamp(1'772'366'400s + 123'456'789ns);

Strings namesOf(const std::vector<ScannedItem>& items)
{
    Strings names;
    for (const ScannedItem& item : items) {
        names.push_back(item.path.substr(item.path.rfind('/') + 1));
    }
    return names;
}

} // namespace

TEST(ItemEnumerator, KeepsEntriesWhoseNewestChangeIsOldEnough)
{
    const std::tuple<std::int64_t, Timestamp, bool> rows[] = {
        {0, Timestamp::max(), true},
        {7, now - 7 * day, true},
        {7, now - 7 * day + 1ns, false},
        {-7, now + 7 * day, true},
        {-7, now + 7 * day + 1ns, false},
        // The cutoff still fits, though its distance from now does not.
        {115'740, now - 57'870 * day - 57'870 * day, true},
        {115'740, now - 57'870 * day - 57'870 * day + 1ns, false},
        {INT64_MAX, distantPast, true},
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

TEST(ItemEnumerator, SparesExactlyTheExcludedNamesAndSortsTheRestBySize)
{
    const auto disk = std::make_shared<ScriptedDisk>();
    const Strings names = {"Cache", "cache",  "Cache.db", " Cache",
                           "*",     "\u00E9", "A\u030A",  "\xFF"};
    for (const std::string& name : names) {
        disk->add("/base", name, name == "*" ? 9 : name == "cache" ? 1 : 5);
    }
    const std::pair<Strings, Strings> rows[] = {
        {{}, {"*", "Cache", "Cache.db", " Cache", "\u00E9", "A\u030A", "\xFF", "cache"}},
        {{"*", "Cache", "*"}, {"Cache.db", " Cache", "\u00E9", "A\u030A", "\xFF", "cache"}},
        {{"e\u0301", "\u00C5", "\xFF", "\xFE"}, {"*", "Cache", "Cache.db", " Cache", "cache"}},
        {{"", "not there", "\u00E9", "A"},
         {"*", "Cache", "Cache.db", " Cache", "A\u030A", "\xFF", "cache"}},
    };
    for (const auto& [exclusions, kept] : rows) {
        EXPECT_EQ(namesOf(ItemEnumerator(disk).items("/base", 0, exclusions, now)), kept);
    }
}

TEST(ItemEnumerator, ListsWhatIsOnDiskAndTellsAMissingBaseFromOneThatCannotBeListed)
{
    const CleanableHome home;
    home.make("base/.hidden:9k base/link->/@1d7ns base/dangling->nowhere@1d base/fifo|@2d "
              "base/touched/in/file@6d base/touched/in/@8d base/touched/@9d "
              "base/untouched/in/file:5k@8d base/untouched/in/@20d base/untouched/@30d "
              "linked->base file dangling->nowhere circle->circle sealed/=0300 sealed/inside "
              "behind/=0 behind/base/inside",
              now);
    const ItemEnumerator enumerator(home.files);
    const auto items = enumerator.items(home.path("base"), 0, {}, now);
    EXPECT_EQ(namesOf(items),
              (Strings{".hidden", "untouched", "touched", "dangling", "fifo", "link"}));
    EXPECT_EQ(items[5], (ScannedItem{home.path("base/link"), 0, now - 1 * day - 7ns}));
    EXPECT_EQ(items[1].modifiedAt, now - 8 * day);
    EXPECT_EQ(namesOf(enumerator.items(home.path("linked"), 7, {}, now)), Strings{"untouched"});
    const std::pair<const char*, int> rows[] = {{"missing", 0},    {"dangling", 0},
                                                {"circle", 0},     {"behind/base", 0},
                                                {"file", ENOTDIR}, {"sealed", EACCES}};
    for (const auto& [base, error] : rows) {
        try {
            EXPECT_TRUE(enumerator.items(home.path(base), 0, {}, now).empty());
            EXPECT_EQ(error, 0) << base;
        } catch (const std::system_error& failure) {
            EXPECT_EQ(failure.code().value(), error) << base;
        }
    }
}

} // namespace CleanCoreTests
