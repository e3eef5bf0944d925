#include "Zorvane/State/ReportModel.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QAbstractItemModelTester>
#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

using CleanCore::RuleTier;
using Zorvane::AppState;
using Zorvane::ReportModel;

TEST(ReportModelTest, TellsWhatWasFreedAndWhyTheRestWasNot)
{
    ScriptedApplication application;
    application.addArea("cache-a", RuleTier::safe, {400, 300, 200, 100});
    application.disk->irremovable = {ScriptedApplication::itemPath("cache-a", 1)};
    // Where the item really lies is a protected folder.
    application.disk->links[ScriptedApplication::itemPath("cache-a", 2)] = "/home/me/Documents/x";
    application.disk->capacities = {0, 1'500'000};
    AppState state(application.environment());
    ReportModel model;
    model.setAppState(&state);
    const QAbstractItemModelTester tester(&model);
    EXPECT_EQ(model.visibleFreedText(), QString());
    scan(state);
    runClean(state);
    EXPECT_EQ(model.freedText(), QStringLiteral("500 bytes"));
    EXPECT_EQ(model.removedText(), QStringLiteral("freed — 2 items removed"));
    EXPECT_EQ(model.visibleFreedText(), QStringLiteral("Visible in Finder right now: 1.5 MB"));
    EXPECT_TRUE(model.hasSkipped());
    EXPECT_EQ(model.inUseTitle(), QStringLiteral("1 in use by an open app"));
    EXPECT_EQ(model.protectedTitle(), QStringLiteral("1 protected by Zorvane"));
    Strings paths;
    for (int row = 0; row < model.rowCount(); ++row) {
        paths.push_back(
            model.data(model.index(row), ReportModel::PathRole).toString().toStdString());
    }
    EXPECT_EQ(paths, (Strings{ScriptedApplication::itemPath("cache-a", 1),
                              ScriptedApplication::itemPath("cache-a", 2)}));
    state.closeReport();
    EXPECT_FALSE(state.hasCleaningReport());
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_FALSE(model.hasSkipped());
}

} // namespace
} // namespace ZorvaneTests
