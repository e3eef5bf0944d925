#include "tests/Zorvane/Support/ScriptedApplication.h"
#include "tests/Zorvane/Support/SignalLog.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

using Zorvane::AppState;
using Zorvane::CloudState;

std::string entry(const std::string& name)
{
    return ScriptedApplication::cloudPath(name);
}

std::string items(const CloudState& cloud)
{
    std::string text;
    for (const auto& item : cloud.icloudItems().value()) {
        text +=
            item.path.substr(entry("").size() + 1) + ' ' + std::to_string(item.localBytes) + ' ';
    }
    return text;
}

TEST(CloudState, EntriesOutOfTimeAreBusyAndCanBeMeasuredAgain)
{
    ScriptedApplication application;
    application.addCloudFolder("Photos", 1, 10);
    application.addCloudFolder("Videos", 1, 20, {{"Tool.app", 5}});
    application.addCloudFolder("none", 1, 0);
    // Files at the top are measured without a look at the clock.
    application.addCloudFile("file", 7);
    application.addCloudFile("cloud-only", 0);
    // Every reading comes too late for the deadline of the one before.
    std::atomic<int> seconds = 0;
    std::atomic<int> step = 91;
    application.steadyNow = [&] {
        return std::chrono::steady_clock::time_point() + std::chrono::seconds(seconds += step);
    };
    AppState state(application.environment());
    CloudState& cloud = *state.cloud();
    EXPECT_FALSE(cloud.icloudItems());
    measureCloud(state);
    EXPECT_EQ(items(cloud), "file 7 ");
    Strings busy = cloud.icloudBusyFolders();
    std::ranges::sort(busy);
    EXPECT_EQ(busy, (Strings{entry("Photos"), entry("Videos"), entry("none")}));

    step = 0;
    SignalLog log;
    log.note(&cloud, &CloudState::icloudPendingChanged,
             [&] { return std::to_string(cloud.icloudPending()); });
    cloud.retryBusyICloudFolders();
    EXPECT_TRUE(cloud.icloudBusyFolders().empty());
    waitUntil([&] { return cloud.icloudPending() == 0; });
    EXPECT_EQ(log.take(), "3, 2, 1, 0");
    EXPECT_EQ(items(cloud), "Videos 25 Photos 10 file 7 ");
    EXPECT_EQ(cloud.icloudDownloadedBytes(), 42);
    // The last progress of every folder counts, also of an empty one.
    EXPECT_EQ(cloud.icloudMeasuredFiles(), 4);
    EXPECT_EQ(cloud.icloudMeasuredBytes(), 35);
    EXPECT_TRUE(cloud.icloudBusyFolders().empty());
}

TEST(CloudState, ReleasesTheSelectionLargestFirstAndReports)
{
    ScriptedApplication application;
    application.addCloudFolder("a", 1, 10, {{"Little.app", 3}});
    application.addCloudFolder("b", 1, 20, {{"Big.app", 40}});
    application.addCloudFolder("c", 1, 5);
    application.disk->capacities = {100, 130};
    AppState state(application.environment());
    CloudState& cloud = *state.cloud();
    measureCloud(state);
    SignalLog log;
    log.note(&cloud, &CloudState::isEvictingChanged,
             [&] { return cloud.isEvicting() ? "releasing" : "done"; });
    log.note(&cloud, &CloudState::icloudEvictProgressChanged, [&] {
        const auto& step = cloud.icloudEvictProgress();
        return step ? std::to_string(step->index) + '/' + std::to_string(step->total) + ' ' +
                          step->name
                    : "no progress";
    });
    log.note(&cloud, &CloudState::icloudEvictReportChanged,
             [&] { return cloud.icloudEvictReport() ? "report" : "no report"; });
    cloud.requestEvict();
    EXPECT_EQ(log.take(), "");

    for (const char* name : {"a", "c", "b", "not-listed"}) {
        cloud.setICloudSelected(entry(name), true);
    }
    cloud.setICloudSelected(entry("c"), false);
    // Bundles stay, so they count for nothing.
    EXPECT_EQ(cloud.icloudSelectedBytes(), 30);
    EXPECT_EQ(cloud.icloudSelectedFileCount(), 2);
    EXPECT_EQ(cloud.icloudSelectedAppBytes(), 43);
    EXPECT_EQ(cloud.icloudSelectedApps().at(0).path, entry("b/Big.app"));
    cloud.requestEvict();
    cloud.requestEvict();
    waitUntil([&] { return !cloud.isEvicting(); });
    EXPECT_EQ(log.take(), "releasing, 1/2 b, 2/2 a, no progress, report, done");
    EXPECT_EQ(application.drive->released, (Strings{entry("b"), entry("a")}));
    EXPECT_EQ(cloud.icloudEvictReport()->freedBytes, 30);
    EXPECT_TRUE(cloud.icloudSelection().empty());
    EXPECT_EQ(cloud.icloudReleasedPaths(), (std::set<std::string>{entry("a"), entry("b")}));
    EXPECT_EQ(items(cloud), "b 60 a 13 c 5 ");

    // Opening the sheet again clears the report and keeps the marks.
    cloud.openICloud();
    EXPECT_TRUE(cloud.showICloud());
    EXPECT_EQ(log.take(), "no report");
    EXPECT_EQ(cloud.icloudReleasedPaths().size(), 2U);
    cloud.setICloudSelected(entry("a"), true);
    measureCloud(state);
    EXPECT_TRUE(cloud.icloudReleasedPaths().empty());
    EXPECT_TRUE(cloud.icloudSelection().empty());
}

} // namespace
} // namespace ZorvaneTests
