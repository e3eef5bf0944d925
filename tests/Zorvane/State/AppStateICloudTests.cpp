#include "tests/Zorvane/Support/Gate.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

using Zorvane::AppState;

std::string entry(const std::string& name)
{
    return ScriptedApplication::cloudPath(name);
}

Strings itemTexts(AppState& state)
{
    Strings texts;
    for (const auto& item : state.cloud()->icloudItems().value()) {
        texts.push_back(item.path.substr(entry("").size() + 1) + ':' +
                        std::to_string(item.localBytes));
    }
    return texts;
}

TEST(AppStateICloudTest, CountsOfTheSelectionLeaveBundlesOut)
{
    ScriptedApplication application;
    application.addCloudFolder("a", 1, 7, {{"Little.app", 3}});
    application.addCloudFolder("b", 1, 1, {{"Big.app", 40}});
    AppState state(application.environment());
    measureCloud(state);
    EXPECT_EQ(state.cloud()->icloudSelectedBytes(), 0);
    for (const char* path : {"a", "b", "not-listed"}) {
        state.cloud()->setICloudSelected(entry(path), true);
    }
    EXPECT_EQ(state.cloud()->icloudSelectedBytes(), 8);
    EXPECT_EQ(state.cloud()->icloudSelectedFileCount(), 2);
    EXPECT_EQ(state.cloud()->icloudSelectedAppBytes(), 43);
    EXPECT_EQ(state.cloud()->icloudSelectedApps().at(0).path, entry("b/Big.app"));
    state.cloud()->setICloudSelected(entry("b"), false);
    EXPECT_EQ(state.cloud()->icloudSelectedBytes(), 7);
}

TEST(AppStateICloudTest, EntriesOutOfTimeAreBusyAndCanBeTriedAgain)
{
    ScriptedApplication application;
    application.addCloudFolder("Photos", 1, 10);
    application.addCloudFolder("Videos", 1, 20, {{"Tool.app", 5}});
    application.addCloudFolder("none", 1, 0);
    // Files at the top are measured without a look at the clock.
    application.addCloudFile("file", 7);
    application.addCloudFile("cloud-only", 0);
    // The first reading of a batch is for its deadline; all others come too late, or just in time.
    std::atomic<int> readings = 0;
    std::atomic<int> later = 91;
    application.steadyNow = [&] {
        return std::chrono::steady_clock::time_point() +
               std::chrono::seconds(readings++ == 0 ? 0 : later.load());
    };
    AppState state(application.environment());
    EXPECT_FALSE(state.cloud()->icloudItems());
    measureCloud(state);
    EXPECT_EQ(itemTexts(state), (Strings{"file:7"}));
    Strings busy = state.cloud()->icloudBusyFolders();
    std::ranges::sort(busy);
    EXPECT_EQ(busy, (Strings{entry("Photos"), entry("Videos"), entry("none")}));

    readings = 0;
    later = 90;
    const QSignalSpy pending(state.cloud(), &CloudState::icloudPendingChanged);
    state.cloud()->retryBusyICloudFolders();
    EXPECT_EQ(state.cloud()->icloudPending(), 3);
    EXPECT_TRUE(state.cloud()->icloudBusyFolders().empty());
    waitUntil([&] { return state.cloud()->icloudPending() == 0; });
    EXPECT_EQ(pending.size(), 4);
    EXPECT_EQ(itemTexts(state), (Strings{"Videos:25", "Photos:10", "file:7"}));
    EXPECT_EQ(state.cloud()->icloudDownloadedBytes(), 42);
    // Every folder's last progress counts, also one's that holds nothing.
    EXPECT_EQ(state.cloud()->icloudMeasuredFiles(), 4);
    EXPECT_EQ(state.cloud()->icloudMeasuredBytes(), 35);
    EXPECT_TRUE(state.cloud()->icloudBusyFolders().empty());
}

TEST(AppStateICloudTest, ReleasesInOrderAndReports)
{
    ScriptedApplication application;
    application.addCloudFolder("a", 1, 10);
    application.addCloudFolder("b", 1, 20);
    application.addCloudFolder("c", 1, 5);
    application.disk->capacities = {100, 130};
    AppState state(application.environment());
    measureCloud(state);
    const QSignalSpy evicting(state.cloud(), &CloudState::isEvictingChanged);
    state.cloud()->requestEvict();
    EXPECT_EQ(evicting.size(), 0);
    EXPECT_FALSE(state.cloud()->isEvicting());

    state.cloud()->setICloudSelected(entry("a"), true);
    state.cloud()->setICloudSelected(entry("b"), true);
    Strings progress;
    QObject::connect(state.cloud(), &CloudState::icloudEvictProgressChanged, [&] {
        const auto& step = state.cloud()->icloudEvictProgress();
        progress.push_back(step ? std::to_string(step->index) + '/' + std::to_string(step->total) +
                                      ' ' + step->name
                                : "none");
    });
    state.cloud()->requestEvict();
    EXPECT_TRUE(state.cloud()->isEvicting());
    state.cloud()->requestEvict();
    waitUntil([&] { return !state.cloud()->isEvicting(); });
    EXPECT_EQ(evicting.size(), 2);
    EXPECT_EQ(progress, (Strings{"1/2 b", "2/2 a", "none"}));
    EXPECT_EQ(application.drive->released(), (Strings{entry("b"), entry("a")}));
    EXPECT_EQ(state.cloud()->icloudEvictReport()->freedBytes, 30);
    EXPECT_TRUE(state.cloud()->icloudSelection().empty());
    EXPECT_EQ(state.cloud()->icloudReleasedPaths(),
              (std::set<std::string>{entry("a"), entry("b")}));
    EXPECT_EQ(itemTexts(state), (Strings{"b:20", "a:10", "c:5"}));

    // Opening the sheet again clears the report and keeps the marks.
    state.cloud()->openICloud();
    EXPECT_TRUE(state.cloud()->showICloud());
    EXPECT_FALSE(state.cloud()->icloudEvictReport());
    EXPECT_EQ(state.cloud()->icloudReleasedPaths().size(), 2U);

    measureCloud(state);
    EXPECT_TRUE(state.cloud()->icloudReleasedPaths().empty());
}

TEST(AppStateICloudTest, ClosingFinishesTheReleaseInHandAndNoMore)
{
    ScriptedApplication application;
    application.addCloudFolder("a", 1, 20);
    application.addCloudFolder("b", 1, 10);
    Gate gate;
    application.drive->onRelease = [&](const auto&) { gate.pass(); };
    AppState state(application.environment());
    measureCloud(state);
    state.cloud()->setICloudSelected(entry("a"), true);
    state.cloud()->setICloudSelected(entry("b"), true);
    const QSignalSpy ready(&state, &AppState::readyToClose);
    state.cloud()->requestEvict();
    gate.waitUntilReached();
    state.requestClose();
    EXPECT_EQ(ready.size(), 0);
    gate.open();
    waitUntil([&] { return ready.size() == 1; });
    EXPECT_EQ(application.drive->released(), (Strings{entry("a")}));
}

} // namespace
} // namespace ZorvaneTests
