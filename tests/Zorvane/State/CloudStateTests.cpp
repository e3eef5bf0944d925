#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <gmock/gmock.h>

namespace ZorvaneTests {
namespace {

using testing::ElementsAre;
using Zorvane::AppState;
using Zorvane::CloudState;

std::string items(const CloudState& cloud)
{
    std::string text;
    for (const auto& item : cloud.icloudItems().value()) {
        text += item.path.substr(inCloud("").size()) + ' ' + std::to_string(item.localBytes) + ' ';
    }
    return text;
}

TEST(CloudState, EntriesOutOfTimeAreBusyAndCanBeMeasuredAgain)
{
    ScriptedApplication application;
    application.prepare("cloud Photos, 1, 10; cloud Videos, 1, 20, Tool.app=5; cloud none, 1, 0;"
                        "file at the top, 7; file in the cloud only, 0");
    // Every reading comes too late for the time limit of the one before.
    *application.clockStep = 91;
    AppState state(application.environment());
    CloudState& cloud = *state.cloud();
    EXPECT_FALSE(cloud.icloudItems());
    measureCloud(state);
    EXPECT_EQ(items(cloud), "at the top 7 ");
    EXPECT_THAT(
        cloud.icloudBusyFolders(),
        testing::UnorderedElementsAre(inCloud("Photos"), inCloud("Videos"), inCloud("none")));

    *application.clockStep = 0;
    SignalLog log;
    log.note(&cloud, &CloudState::icloudPendingChanged,
             [&] { return std::to_string(cloud.icloudPending()); });
    cloud.retryBusyICloudFolders();
    waitUntil([&] { return cloud.icloudPending() == 0; });
    EXPECT_EQ(log.take(), "3, 2, 1, 0");
    EXPECT_TRUE(cloud.icloudBusyFolders().empty());
    EXPECT_EQ(items(cloud), "Videos 25 Photos 10 at the top 7 ");
    EXPECT_EQ(cloud.icloudDownloadedBytes(), 42);
    // The last progress of every folder counts, also of an empty one.
    EXPECT_EQ(cloud.icloudMeasuredFiles(), 4);
    EXPECT_EQ(cloud.icloudMeasuredBytes(), 35);
}

TEST(CloudState, ReleasesTheSelectionLargestFirstAndReports)
{
    ScriptedApplication application;
    application.prepare("cloud a, 1, 10, Little.app=3; cloud b, 1, 20, Big.app=40; cloud c, 1, 5;"
                        "free 30");
    AppState state(application.environment());
    CloudState& cloud = *state.cloud();
    measureCloud(state);
    SignalLog log;
    log.note(&cloud, &CloudState::isEvictingChanged,
             [&] { return cloud.isEvicting() ? "releasing" : "done"; });
    log.note(&cloud, &CloudState::icloudEvictProgressChanged, [&] {
        const auto step = cloud.icloudEvictProgress().value_or(CloudState::EvictProgress());
        return std::to_string(step.index) + '/' + std::to_string(step.total) + ' ' + step.name;
    });
    cloud.requestEvict();
    EXPECT_EQ(log.take(), "");
    for (const char* name : {"a", "c", "b", "not-listed"}) {
        cloud.setICloudSelected(inCloud(name), true);
    }
    cloud.setICloudSelected(inCloud("c"), false);
    // Bundles stay, so they count for nothing.
    EXPECT_EQ(cloud.icloudSelectedBytes(), 30);
    EXPECT_EQ(cloud.icloudSelectedFileCount(), 2);
    EXPECT_EQ(cloud.icloudSelectedAppBytes(), 43);
    EXPECT_EQ(cloud.icloudSelectedApps().at(0).path, inCloud("b/Big.app"));
    cloud.requestEvict();
    cloud.requestEvict();
    waitUntil([&] { return !cloud.isEvicting(); });
    EXPECT_EQ(log.take(), "releasing, 1/2 b, 2/2 a, 0/0 , done");
    EXPECT_THAT(application.drive->released, ElementsAre(inCloud("b"), inCloud("a")));
    EXPECT_EQ(cloud.icloudEvictReport()->freedBytes, 30);
    EXPECT_TRUE(cloud.icloudSelection().empty());
    EXPECT_THAT(cloud.icloudReleasedPaths(), ElementsAre(inCloud("a"), inCloud("b")));
    EXPECT_EQ(items(cloud), "b 60 a 13 c 5 ");

    // Opening the sheet again clears the report and keeps the marks; measuring clears them.
    cloud.openICloud();
    EXPECT_TRUE(!cloud.icloudEvictReport() && cloud.icloudReleasedPaths().size() == 2);
    cloud.setICloudSelected(inCloud("a"), true);
    measureCloud(state);
    EXPECT_TRUE(cloud.icloudReleasedPaths().empty() && cloud.icloudSelection().empty());
}

} // namespace
} // namespace ZorvaneTests
