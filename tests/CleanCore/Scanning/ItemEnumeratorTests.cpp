#include "CleanCore/Scanning/ItemEnumerator.h"

#include "CleanCore/FileSystem/LinuxFileManager.h"
#include "CleanCore/Support/TaskPool.h"
#include "tests/Support/ScriptedFileManager.h"
#include "tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <system_error>

namespace {

using namespace CleanCore;
using namespace std::chrono_literals;
using CleanCoreTests::ScriptedFileManager;
using CleanCoreTests::TemporaryFolder;
using Strings = std::vector<std::string>;

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

ItemEnumerator realEnumerator()
{
    return ItemEnumerator(std::make_shared<LinuxFileManager>(UserFolders(), std::nullopt,
                                                             std::make_shared<TaskPool>(2)));
}

TEST(ItemEnumerator, KeepsEntriesWhoseNewestChangeIsOldEnough)
{
    constexpr auto tick = 1ns;
    const struct
    {
        std::int64_t minAgeDays;
        Timestamp newestChange;
        bool isItem;
    } cases[] = {
        {0, Timestamp::max(), true},
        {7, now - 7 * day, true},
        {7, now - 7 * day + tick, false},
        {-7, now + 7 * day, true},
        {-7, now + 7 * day + tick, false},
        // The cutoff still fits, though its distance from now does not.
        {115'740, now - 57'870 * day - 57'870 * day, true},
        {115'740, now - 57'870 * day - 57'870 * day + tick, false},
        {INT64_MAX, distantPast, true},
        {INT64_MAX, distantPast + tick, false},
        {INT64_MIN, Timestamp::max(), true},
    };
    for (const auto& [minAgeDays, newestChange, isItem] : cases) {
        const auto files = std::make_shared<ScriptedFileManager>();
        files->folders["/base"] = {{"entry"}, 0};
        files->measures["/base/entry"] = {10, newestChange, std::nullopt};
        const auto items = ItemEnumerator(files).items("/base", minAgeDays, {}, now);
        EXPECT_EQ(items.size(), isItem ? 1U : 0U)
            << minAgeDays << " days, changed " << (newestChange - now).count() << " ns from now";
    }
}

TEST(ItemEnumerator, SortsBySizeAndKeepsTheListingOrderOfEqualSizes)
{
    const auto files = std::make_shared<ScriptedFileManager>();
    files->folders["/base"] = {{"m", "small", "z", "a", "large", "k"}, 0};
    for (const auto& [name, size] :
         {std::pair("m", 5), {"z", 5}, {"a", 5}, {"k", 5}, {"small", 1}, {"large", 9}}) {
        files->measures["/base/" + std::string(name)] = {size, now, std::nullopt};
    }
    EXPECT_EQ(namesOf(ItemEnumerator(files).items("/base", 0, {}, now)),
              (Strings{"large", "m", "z", "a", "k", "small"}));
}

TEST(ItemEnumerator, SparesExactlyTheExcludedNames)
{
    const Strings names = {"Cache",     "cache", "Cache.db", " Cache", "*",
                           "caf\u00E9", "x",     "\xFF",     ".keep"};
    const struct
    {
        Strings exclusions;
        Strings spared;
    } cases[] = {
        {{}, {}},
        {{"Cache"}, {"Cache"}},
        {{"*"}, {"*"}},
        {{"cafe\u0301"}, {"caf\u00E9"}},
        {{"\xFF", "\xFE"}, {"\xFF"}},
        {{".keep", ".keep", "not there", ""}, {".keep"}},
    };
    const auto files = std::make_shared<ScriptedFileManager>();
    files->folders["/base"] = {names, 0};
    for (const auto& [exclusions, spared] : cases) {
        Strings expected = names;
        for (const std::string& name : spared) {
            std::erase(expected, name);
        }
        EXPECT_EQ(namesOf(ItemEnumerator(files).items("/base", 0, exclusions, now)), expected);
    }
}

TEST(ItemEnumerator, ListsHiddenEntriesAndLinksAsItems)
{
    const TemporaryFolder base;
    base.makeFile(".hidden");
    base.makeLink("link", "/");
    base.makeLink("dangling", "nowhere");
    base.setTime("link", 1000, 7);
    base.setTime("dangling", -5);
    const auto items = realEnumerator().items(base.path(), 0, {}, now);
    ASSERT_EQ(namesOf(items), (Strings{".hidden", "dangling", "link"}));
    EXPECT_EQ(items[1], (ScannedItem{base.path("dangling"), 0, Timestamp(-5s)}));
    EXPECT_EQ(items[2], (ScannedItem{base.path("link"), 0, Timestamp(1000s + 7ns)}));
}

TEST(ItemEnumerator, LooksAtTheNewestChangeInsideAnOldFolder)
{
    const TemporaryFolder base;
    const auto seconds = [](std::chrono::nanoseconds age) {
        return std::chrono::floor<std::chrono::seconds>(now - age).time_since_epoch().count();
    };
    for (const char* const folder : {"touched", "untouched"}) {
        const std::string name = folder;
        base.makeFile(name + "/inner/file");
        base.setTime(name + "/inner/file", seconds(name == "touched" ? 1 * day : 20 * day));
        base.setTime(name + "/inner", seconds(30 * day));
        base.setTime(name, seconds(40 * day));
    }
    const auto items = realEnumerator().items(base.path(), 7, {}, now);
    ASSERT_EQ(namesOf(items), Strings{"untouched"});
    EXPECT_EQ(items[0].modifiedAt, Timestamp(std::chrono::seconds(seconds(20 * day))));
}

TEST(ItemEnumerator, TellsAMissingBaseFromOneThatCannotBeListed)
{
    const TemporaryFolder folder;
    folder.makeFile("file");
    folder.makeLink("dangling", "nowhere");
    folder.makeLink("circle", "circle");
    folder.makeFile("sealed/inside");
    folder.makeFile("behind/sealed/base/inside");
    folder.makeLink("linked", "sealed-not");
    folder.makeFile("sealed-not/inside");
    folder.setMode("sealed", 0300);
    folder.setMode("behind/sealed", 0);

    const struct
    {
        const char* base;
        int error;
        std::size_t items;
    } cases[] = {
        {"missing", 0, 0},    {"dangling", 0, 0},    {"circle", 0, 0}, {"behind/sealed/base", 0, 0},
        {"file", ENOTDIR, 0}, {"sealed", EACCES, 0}, {"linked", 0, 1}};
    for (const auto& [base, error, count] : cases) {
        int thrown = 0;
        std::vector<ScannedItem> items;
        try {
            items = realEnumerator().items(folder.path(base), 0, {}, now);
        } catch (const std::system_error& failure) {
            thrown = failure.code().value();
        }
        EXPECT_EQ(thrown, error) << base;
        EXPECT_EQ(items.size(), count) << base;
    }
}

} // namespace
