#include "Zorvane/State/Models/ICloudModel.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

using Zorvane::AppState;
using Zorvane::ICloudModel;

TEST(ICloudModelTest, EstimatesTheTimeOfARelease)
{
    const struct
    {
        std::int64_t files;
        const char* text;
    } cases[] = {
        {89'999, "less than a minute"}, {90'000, "about a minute"},   {179'999, "about a minute"},
        {180'000, "about 2 minutes"},   {299'999, "about 2 minutes"}, {300'000, "about 3 minutes"},
    };
    for (const auto& [files, text] : cases) {
        EXPECT_EQ(ICloudModel::estimate(files).toStdString(), text) << files;
    }
}

/// A cloud drive with a folder that holds bundles, and one file. The clock stands at 0 at its first
/// reading and at `later` seconds from then on.
struct Drive
{
    explicit Drive(int later = 0)
    {
        application.addCloudFolder("Work", 1, 10'000,
                                   {{"App1.app", 1000},
                                    {"App2.app", 2000},
                                    {"App3.app", 3000},
                                    {"App4.app", 4000},
                                    {"App5.app", 5000}});
        application.addCloudFile("note.txt", 4000);
        application.steadyNow = [this, later] {
            return std::chrono::steady_clock::time_point() +
                   std::chrono::seconds(readings++ == 0 ? 0 : later);
        };
        state.emplace(application.environment());
        model.setAppState(&*state);
    }

    ScriptedApplication application;
    std::atomic<int> readings = 0;
    std::optional<AppState> state;
    ICloudModel model;
    QAbstractItemModelTester tester{&model};

    [[nodiscard]] std::string text(int row, ICloudModel::Role role) const
    {
        return model.data(model.index(row), role).toString().toStdString();
    }
};

TEST(ICloudModelTest, MeasuresWhenItIsOpenedForTheFirstTimeOnly)
{
    Drive drive;
    drive.model.open();
    EXPECT_TRUE(drive.state->cloud()->showICloud());
    EXPECT_TRUE(drive.model.isMeasured());
    waitUntil([&] { return drive.state->cloud()->icloudPending() == 0; });

    drive.state->cloud()->setShowICloud(false);
    drive.application.disk->folders[ScriptedApplication::cloud].names = {"note.txt"};
    drive.model.open();
    EXPECT_TRUE(drive.state->cloud()->showICloud());
    EXPECT_EQ(drive.state->cloud()->icloudPending(), 0);
    EXPECT_EQ(drive.model.rowCount(), 2);
}

TEST(ICloudModelTest, ShowsTheMeasuringAsItGoes)
{
    Drive drive;
    ICloudModel& model = drive.model;
    EXPECT_FALSE(model.isMeasured());
    EXPECT_TRUE(model.isEmpty());
    Strings texts;
    QObject::connect(&model, &ICloudModel::changed,
                     [&] { texts.push_back(model.measuringText().toStdString()); });
    measureCloud(*drive.state);
    EXPECT_NE(std::ranges::find(texts, "Measuring… 6 files seen · 25 KB on this Mac so far"),
              texts.end());
    EXPECT_EQ(model.downloadedText(), QStringLiteral("29 KB"));
    ASSERT_EQ(model.rowCount(), 2);
    EXPECT_EQ(drive.text(0, ICloudModel::NameRole), "Work");
    EXPECT_EQ(drive.text(0, ICloudModel::FilesTextRole), "6 files");
    EXPECT_EQ(drive.text(0, ICloudModel::SizeTextRole), "25 KB");
    EXPECT_EQ(drive.text(0, ICloudModel::AppsTextRole),
              "includes 5 apps (15 KB) that macOS keeps downloaded");
    EXPECT_EQ(drive.text(1, ICloudModel::AppsTextRole), "");
}

TEST(ICloudModelTest, TellsOfTheAppsBeforeAReleaseAndWhatCameOfItAfterwards)
{
    Drive drive;
    measureCloud(*drive.state);
    ICloudModel& model = drive.model;
    EXPECT_EQ(model.beforeFreeingText(), QString());
    EXPECT_EQ(model.appsTitle(), QString());
    model.setSelected(0, true);
    model.setSelected(7, true);
    EXPECT_EQ(model.appNames(), (QStringList{QStringLiteral("App5.app"), QStringLiteral("App4.app"),
                                             QStringLiteral("App3.app")}));
    EXPECT_EQ(model.appSizes().front(), QStringLiteral("5 KB"));
    EXPECT_EQ(model.moreAppsText(), QStringLiteral("and 2 more"));
    model.revealApps();
    ASSERT_EQ(drive.application.revealed.size(), 1U);
    EXPECT_EQ(drive.application.revealed[0].size(), 5U);

    Strings freeing;
    QObject::connect(&model, &ICloudModel::changed,
                     [&] { freeing.push_back(model.freeingText().toStdString()); });
    drive.state->cloud()->requestEvict();
    EXPECT_EQ(model.beforeFreeingText(), QString());
    waitUntil([&] { return !drive.state->cloud()->isEvicting(); });
    EXPECT_NE(std::ranges::find(freeing, "Freeing 1 of 1 — Work… iCloud is removing the downloads; "
                                         "large folders take a while."),
              freeing.end());
    EXPECT_FALSE(model.hasFreed());
    EXPECT_EQ(model.reportText(), QStringLiteral("Nothing was released this time."));
    EXPECT_EQ(model.appsTitle(), QStringLiteral("Still on this Mac: 15 KB in apps."));
}

TEST(ICloudModelTest, NamesBusyFolders)
{
    Drive drive(91);
    ICloudModel& model = drive.model;
    measureCloud(*drive.state);
    ASSERT_EQ(model.rowCount(), 2);
    EXPECT_FALSE(model.data(model.index(0), ICloudModel::IsBusyRole).toBool());
    EXPECT_TRUE(model.data(model.index(1), ICloudModel::IsBusyRole).toBool());
    EXPECT_EQ(drive.text(1, ICloudModel::NameRole), "Work");
    EXPECT_EQ(model.busyText(),
              QStringLiteral("“Work” went past 90 seconds and measuring was stopped. This usually "
                             "happens for a few minutes after a release — iCloud is still tidying "
                             "the folder. Try again in a bit."));
    model.setSelected(1, true);
    EXPECT_TRUE(drive.state->cloud()->icloudSelection().empty());
}

} // namespace
} // namespace ZorvaneTests
