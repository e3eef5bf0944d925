#include "tests/Zorvane/Support/SheetStage.h"

#include <gmock/gmock.h>

#include <atomic>
#include <latch>

namespace ZorvaneTests {
namespace {

using CleanCore::EntryAttributes;
using CleanCore::EntryKind;
using Zorvane::AppState;

const std::string container = "/home/me/Library/Mobile Documents/com~apple~CloudDocs";

/// A cloud drive with the folder "Work" of 10 bytes beside an application of 5, and "Home" of 3.
struct Drive
{
    ScriptedApplication application;
    std::unique_ptr<AppState> state;

    Drive()
    {
        application.disk->folders[container].names = {"Work", "Home"};
        application.disk->trees[container + "/Work"] = {
            {"file", EntryAttributes{EntryKind::file, 10}},
            {"Tool.app", EntryAttributes{EntryKind::folder, 0}},
            {"Tool.app/binary", EntryAttributes{EntryKind::file, 5}}};
        application.disk->trees[container + "/Home"] = {
            {"file", EntryAttributes{EntryKind::file, 3}}};
        state = std::make_unique<AppState>(application.environment());
    }

    void measure() const
    {
        state->reloadICloud();
        waitUntil([&] { return state->icloudPending() == 0; });
    }
};

TEST(ICloudSheetTest, ShowsWhatEachStateHas)
{
    const QString measuring = QStringLiteral("Measuring takes seconds to a few minutes.");
    const QString empty =
        QStringLiteral("Nothing downloaded — your iCloud Drive is already optimized.");
    const QString rescan = QStringLiteral("Rescan");
    const Drive drive;
    const SheetStage stage(*drive.state);

    drive.state->openICloud();
    EXPECT_TRUE(stage.shows(empty));
    EXPECT_TRUE(stage.hasControl(rescan));
    EXPECT_FALSE(stage.shows(measuring));

    drive.state->reloadICloud();
    EXPECT_TRUE(stage.shows(measuring));
    EXPECT_TRUE(stage.shows(QStringLiteral("Measuring… 2 folders left")));
    EXPECT_FALSE(stage.shows(empty));
    EXPECT_FALSE(stage.hasControl(rescan));

    waitUntil([&] { return drive.state->icloudPending() == 0; });
    (void)stage.window().grabWindow();
    EXPECT_FALSE(stage.shows(measuring));
    EXPECT_EQ(stage.checkBoxes(), QStringList({QStringLiteral("Work"), QStringLiteral("Home")}));
    EXPECT_FALSE(stage.hasControl(QStringLiteral("Try again")));
    EXPECT_FALSE(stage.hasControl(QStringLiteral("Show in Finder")));
}

TEST(ICloudSheetTest, ReleasesWhatIsTickedAndMarksIt)
{
    const Drive drive;
    const SheetStage stage(*drive.state);
    drive.state->openICloud();
    drive.measure();
    const QQuickItem& idle = stage.control(QStringLiteral("Free up Zero KB"));
    EXPECT_FALSE(idle.isEnabled());
    EXPECT_EQ(idle.opacity(), 0.5);

    stage.click(QStringLiteral("Work"));
    EXPECT_TRUE(stage.shows(QStringLiteral(
        "iCloud will release 10 bytes in 1 files — this usually takes less than a minute.")));
    EXPECT_TRUE(stage.shows(QStringLiteral("5 bytes are apps stored in iCloud Drive.")));
    stage.control(QStringLiteral("Show in Finder")).forceActiveFocus();
    stage.press(Qt::Key_Space);
    EXPECT_EQ(drive.application.revealed,
              std::vector<Strings>{Strings{container + "/Work/Tool.app"}});

    const QQuickItem& button = stage.control(QStringLiteral("Free up 10 bytes"));
    EXPECT_TRUE(button.isEnabled());
    EXPECT_EQ(button.opacity(), 1);
    std::latch mayRelease(1);
    drive.application.drive->onRelease = [&](const std::string&) { mayRelease.wait(); };
    stage.click(QStringLiteral("Free up"));
    EXPECT_TRUE(drive.state->isEvicting());
    EXPECT_FALSE(button.isEnabled());
    EXPECT_EQ(button.opacity(), 1);
    mayRelease.count_down();
    waitUntil([&] { return !drive.state->isEvicting(); });

    (void)stage.window().grabWindow();
    EXPECT_TRUE(stage.shows(QStringLiteral("released")));
    EXPECT_TRUE(stage.shows(QStringLiteral("Still on this Mac: 5 bytes in apps.")));
    EXPECT_EQ(stage.checkBoxes(), QStringList{QStringLiteral("Home")});
    EXPECT_FALSE(stage.hasControl(QStringLiteral("Free up 10 bytes")));
}

TEST(ICloudSheetTest, FoldersThatWereNotMeasuredCanBeTriedAgain)
{
    Drive drive;
    std::atomic<bool> isSlow = true;
    std::atomic<int> readings = 0;
    drive.application.steadyNow = [&] {
        return std::chrono::steady_clock::time_point() +
               std::chrono::seconds(isSlow && readings++ > 0 ? 91 : 0);
    };
    drive.application.disk->folders[container].names = {"Work"};
    drive.state = std::make_unique<AppState>(drive.application.environment());
    const SheetStage stage(*drive.state);
    drive.state->openICloud();
    drive.measure();
    (void)stage.window().grabWindow();
    EXPECT_TRUE(stage.shows(QStringLiteral("not measured")));
    EXPECT_TRUE(stage.checkBoxes().isEmpty());
    isSlow = false;
    stage.click(QStringLiteral("Try again"));
    EXPECT_FALSE(stage.hasControl(QStringLiteral("Try again")));
    waitUntil([&] { return drive.state->icloudPending() == 0; });
    (void)stage.window().grabWindow();
    EXPECT_EQ(stage.checkBoxes(), QStringList{QStringLiteral("Work")});
}

} // namespace
} // namespace ZorvaneTests
