#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

using CleanCore::EntryAttributes;
using CleanCore::EntryKind;
using Zorvane::AppState;

const std::string container = "/home/me/Library/Mobile Documents/com~apple~CloudDocs";

std::string entry(const std::string& name)
{
    return container + '/' + name;
}

/// Adds a folder with one file of `bytes`, or one that takes too long to measure.
void addEntry(ScriptedApplication& application, const std::string& name, std::int64_t bytes)
{
    application.disk->folders[container].names.push_back(name);
    application.disk->trees[entry(name)] = {{"file", EntryAttributes{EntryKind::file, bytes}}};
}

void addApp(ScriptedApplication& application, const std::string& name, const std::string& app,
            std::int64_t bytes)
{
    auto& tree = application.disk->trees[entry(name)];
    tree.push_back({app, EntryAttributes{EntryKind::folder, 0}});
    tree.push_back({app + "/binary", EntryAttributes{EntryKind::file, bytes}});
}

void measure(AppState& state)
{
    state.reloadICloud();
    waitUntil([&] { return state.icloudPending() == 0; });
}

Strings itemTexts(const AppState& state)
{
    Strings texts;
    for (const auto& item : state.icloudItems().value()) {
        texts.push_back(item.path.substr(container.size() + 1) + ':' +
                        std::to_string(item.localBytes));
    }
    return texts;
}

TEST(AppStateICloudTest, ListsWhatIsDownloadedLargestFirst)
{
    ScriptedApplication application;
    addEntry(application, "small", 10);
    addEntry(application, "none", 0);
    addEntry(application, "large", 30);
    addEntry(application, "same", 10);
    addApp(application, "large", "Tool.app", 5);
    AppState state(application.environment());
    EXPECT_FALSE(state.icloudItems());
    measure(state);
    Strings texts = itemTexts(state);
    ASSERT_EQ(texts.size(), 3U);
    EXPECT_EQ(texts[0], "large:35");
    EXPECT_EQ(state.icloudDownloadedBytes(), 55);
    // Every folder's last progress counts, also one's that holds nothing.
    EXPECT_EQ(state.icloudMeasuredFiles(), 5);
    EXPECT_EQ(state.icloudMeasuredBytes(), 55);
}

TEST(AppStateICloudTest, CountsOfTheSelectionLeaveBundlesOut)
{
    ScriptedApplication application;
    addEntry(application, "a", 7);
    addApp(application, "a", "Little.app", 3);
    addEntry(application, "b", 1);
    addApp(application, "b", "Big.app", 40);
    AppState state(application.environment());
    measure(state);
    EXPECT_EQ(state.icloudSelectedBytes(), 0);
    state.setICloudSelected(entry("a"), true);
    EXPECT_EQ(state.icloudSelectedBytes(), 7);
    EXPECT_EQ(state.icloudSelectedFileCount(), 1);
    state.setICloudSelected(entry("b"), true);
    state.setICloudSelected("/not/listed", true);
    EXPECT_EQ(state.icloudSelectedBytes(), 8);
    EXPECT_EQ(state.icloudSelectedAppBytes(), 43);
    const auto apps = state.icloudSelectedApps();
    ASSERT_EQ(apps.size(), 2U);
    EXPECT_EQ(apps[0].path, entry("b/Big.app"));
    state.setICloudSelected(entry("b"), false);
    EXPECT_EQ(state.icloudSelectedBytes(), 7);
}

TEST(AppStateICloudTest, EntriesOutOfTimeAreBusyAndCanBeTriedAgain)
{
    ScriptedApplication application;
    addEntry(application, "Photos", 10);
    addEntry(application, "Videos", 20);
    // Files at the top are measured without a look at the clock.
    application.disk->folders[container].names.insert(
        application.disk->folders[container].names.end(), {"file", "cloud-only"});
    application.disk->trees[container] = {{"file", EntryAttributes{EntryKind::file, 7}},
                                          {"cloud-only", EntryAttributes{EntryKind::file, 0}}};
    // The first reading of a batch is for its deadline; all others come too late, or just in time.
    std::atomic<int> readings = 0;
    std::atomic<int> later = 91;
    application.steadyNow = [&] {
        return std::chrono::steady_clock::time_point() +
               std::chrono::seconds(readings++ == 0 ? 0 : later.load());
    };
    AppState state(application.environment());
    measure(state);
    EXPECT_EQ(itemTexts(state), (Strings{"file:7"}));
    Strings busy = state.icloudBusyFolders();
    std::ranges::sort(busy);
    EXPECT_EQ(busy, (Strings{entry("Photos"), entry("Videos")}));

    readings = 0;
    later = 90;
    const QSignalSpy pending(&state, &AppState::icloudPendingChanged);
    state.retryBusyICloudFolders();
    EXPECT_EQ(state.icloudPending(), 2);
    EXPECT_TRUE(state.icloudBusyFolders().empty());
    waitUntil([&] { return state.icloudPending() == 0; });
    EXPECT_EQ(pending.size(), 3);
    EXPECT_EQ(itemTexts(state), (Strings{"Videos:20", "Photos:10", "file:7"}));
    EXPECT_TRUE(state.icloudBusyFolders().empty());
}

TEST(AppStateICloudTest, ReleasesInOrderAndReports)
{
    ScriptedApplication application;
    addEntry(application, "a", 10);
    addEntry(application, "b", 20);
    addEntry(application, "c", 5);
    application.disk->capacities = {100, 130};
    AppState state(application.environment());
    measure(state);
    const QSignalSpy evicting(&state, &AppState::isEvictingChanged);
    state.requestEvict();
    EXPECT_EQ(evicting.size(), 0);
    EXPECT_FALSE(state.isEvicting());

    state.setICloudSelected(entry("a"), true);
    state.setICloudSelected(entry("b"), true);
    Strings progress;
    QObject::connect(&state, &AppState::icloudEvictProgressChanged, [&] {
        const auto& step = state.icloudEvictProgress();
        progress.push_back(step ? std::to_string(step->index) + '/' + std::to_string(step->total) +
                                      ' ' + step->name
                                : "none");
    });
    state.requestEvict();
    EXPECT_TRUE(state.isEvicting());
    state.requestEvict();
    waitUntil([&] { return !state.isEvicting(); });
    EXPECT_EQ(evicting.size(), 2);
    EXPECT_EQ(progress, (Strings{"1/2 b", "2/2 a", "none"}));
    EXPECT_EQ(application.disk->released(), (Strings{entry("b"), entry("a")}));
    EXPECT_EQ(state.icloudEvictReport()->freedBytes, 30);
    EXPECT_TRUE(state.icloudSelection().empty());
    EXPECT_EQ(state.icloudReleasedPaths(), (std::set<std::string>{entry("a"), entry("b")}));
    EXPECT_EQ(itemTexts(state), (Strings{"b:20", "a:10", "c:5"}));

    // Opening the sheet again clears the report and keeps the marks.
    state.openICloud();
    EXPECT_TRUE(state.showICloud());
    EXPECT_FALSE(state.icloudEvictReport());
    EXPECT_EQ(state.icloudReleasedPaths().size(), 2U);

    measure(state);
    EXPECT_TRUE(state.icloudReleasedPaths().empty());
}

TEST(AppStateICloudTest, ClosingFinishesTheReleaseInHandAndNoMore)
{
    ScriptedApplication application;
    addEntry(application, "a", 20);
    addEntry(application, "b", 10);
    std::atomic<bool> hasBegun = false;
    std::atomic<bool> isOpen = false;
    application.disk->onRelease = [&](const auto&) {
        hasBegun = true;
        hasBegun.notify_all();
        isOpen.wait(false);
    };
    AppState state(application.environment());
    measure(state);
    state.setICloudSelected(entry("a"), true);
    state.setICloudSelected(entry("b"), true);
    const QSignalSpy ready(&state, &AppState::readyToClose);
    state.requestEvict();
    hasBegun.wait(false);
    state.requestClose();
    EXPECT_EQ(ready.size(), 0);
    isOpen = true;
    isOpen.notify_all();
    waitUntil([&] { return ready.size() == 1; });
    EXPECT_EQ(application.disk->released(), (Strings{entry("a")}));
}

TEST(AppStateICloudTest, RevealsAllBundlesThatItIsGiven)
{
    ScriptedApplication application;
    const AppState state(application.environment());
    const std::vector<CleanCore::ICloudAppBundle> apps = {{"/x/One.app", 1, 1, ""},
                                                          {"/x/Two.app", 2, 2, ""}};
    state.revealICloudApps(apps);
    EXPECT_EQ(application.revealed, (std::vector<Strings>{{"/x/One.app", "/x/Two.app"}}));
}

} // namespace
} // namespace ZorvaneTests
