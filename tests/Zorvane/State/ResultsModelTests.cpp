#include "Zorvane/State/Models/ResultsModel.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

using CleanCore::RuleTier;
using Zorvane::AppState;
using Zorvane::ResultsModel;

QVariant value(const ResultsModel& model, int row, ResultsModel::Role role)
{
    return model.data(model.index(row), role);
}

bool isTicked(const ResultsModel& model, int row)
{
    return value(model, row, ResultsModel::IsSelectedRole).toBool();
}

/// The kinds of all rows by their first letters.
std::string kinds(const ResultsModel& model)
{
    std::string letters;
    for (int row = 0; row < model.rowCount(); ++row) {
        letters += value(model, row, ResultsModel::KindRole).toString().front().toLatin1();
    }
    // A card is no category.
    letters.back() = '.';
    return letters;
}

/// A scan with a safe area of three items, one to review of two, and one that cannot be read.
struct ScannedResults
{
    ScannedResults()
    {
        application.addArea("cache-a", RuleTier::safe, {300, 200, 100});
        application.addArea("dev-b", RuleTier::reviewRequired, {20, 10});
        application.addUnreadableArea("cache-locked");
        application.texts = {{"rule.cache-a.title", "Caches of A"},
                             {"category.explanation.cache-a", "What A keeps."}};
        state.emplace(application.environment());
        scan(*state);
        model.setAppState(&*state);
    }

    ScriptedApplication application;
    std::optional<AppState> state;
    ResultsModel model;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST(ResultsModelTest, ListsCollapsedCategoriesAndTheCard)
{
    const ScannedResults results;
    const ResultsModel& model = results.model;
    ASSERT_EQ(kinds(model), "ccc.");
    const auto text = [&](int row, ResultsModel::Role role) {
        return value(model, row, role).toString().toStdString();
    };
    EXPECT_EQ(text(0, ResultsModel::TitleRole), "Caches of A");
    EXPECT_EQ(text(0, ResultsModel::CountTextRole), "3 items");
    EXPECT_EQ(text(0, ResultsModel::SizeTextRole), "600 bytes");
    EXPECT_TRUE(isTicked(model, 0));
    EXPECT_TRUE(value(model, 0, ResultsModel::IsSelectableRole).toBool());
    EXPECT_TRUE(value(model, 0, ResultsModel::HasSelectedLookRole).toBool());
    EXPECT_TRUE(value(model, 0, ResultsModel::IsLastRole).toBool());

    EXPECT_EQ(text(1, ResultsModel::TitleRole), "dev-b");
    EXPECT_TRUE(value(model, 1, ResultsModel::IsReviewRequiredRole).toBool());
    EXPECT_FALSE(value(model, 1, ResultsModel::IsSelectableRole).toBool());
    EXPECT_FALSE(value(model, 1, ResultsModel::IsDiagnosticRole).toBool());

    EXPECT_TRUE(value(model, 2, ResultsModel::HadAccessErrorsRole).toBool());
    EXPECT_EQ(text(2, ResultsModel::CountTextRole), "0 items");
    EXPECT_FALSE(isTicked(model, 2));
}

TEST(ResultsModelTest, ExpandsAndCollapsesEachCategoryByItself)
{
    ScannedResults results;
    ResultsModel& model = results.model;
    model.toggleExpanded(1);
    EXPECT_EQ(kinds(model), "ccdiic.");
    model.toggleExpanded(0);
    EXPECT_EQ(kinds(model), "cdiiicdiic.");
    EXPECT_TRUE(value(model, 0, ResultsModel::IsExpandedRole).toBool());
    EXPECT_FALSE(value(model, 0, ResultsModel::IsLastRole).toBool());
    EXPECT_TRUE(value(model, 4, ResultsModel::IsLastRole).toBool());
    EXPECT_EQ(value(model, 1, ResultsModel::ExplanationRole).toString(),
              QStringLiteral("What A keeps."));
    EXPECT_EQ(value(model, 6, ResultsModel::ExplanationRole).toString(),
              QStringLiteral("category.explanation.dev-b"));
    EXPECT_TRUE(value(model, 1, ResultsModel::OffersSelectAllRole).toBool());
    EXPECT_EQ(value(model, 3, ResultsModel::PathRole).toString().toStdString(),
              ScriptedApplication::itemPath("cache-a", 1));
    EXPECT_EQ(value(model, 3, ResultsModel::SizeTextRole).toString(), QStringLiteral("200 bytes"));
    model.toggleExpanded(0);
    EXPECT_EQ(kinds(model), "ccdiic.");
    model.toggleExpanded(3);
    EXPECT_EQ(kinds(model), "ccdiic.");
    model.toggleExpanded(-1);
    model.toggleExpanded(99);

    // An area without items has nothing but its explanation.
    model.toggleExpanded(5);
    EXPECT_EQ(kinds(model), "ccdiicd.");
    scan(*results.state);
    EXPECT_EQ(kinds(model), "ccc.");
}

TEST(ResultsModelTest, OneTickIsOneNotificationAndReviewAreasNeverLookSelected)
{
    ScannedResults results;
    ResultsModel& model = results.model;
    const auto looksSelected = [&](int row) {
        return value(model, row, ResultsModel::HasSelectedLookRole).toBool();
    };
    model.toggleExpanded(1);
    model.toggleExpanded(0);
    const QSignalSpy told(&model, &ResultsModel::dataChanged);
    model.setSelected(3, false);
    EXPECT_FALSE(isTicked(model, 3));
    EXPECT_TRUE(isTicked(model, 2));
    EXPECT_FALSE(isTicked(model, 0));
    EXPECT_EQ(told.size(), 1);
    model.setSelected(0, true);
    EXPECT_TRUE(isTicked(model, 3));
    EXPECT_TRUE(looksSelected(4));
    model.setSelected(0, false);
    EXPECT_FALSE(looksSelected(0));
    EXPECT_FALSE(looksSelected(4));
    EXPECT_EQ(told.size(), 3);

    model.setSelected(7, true);
    EXPECT_TRUE(isTicked(model, 7));
    EXPECT_FALSE(looksSelected(7));
    model.selectAll(6);
    EXPECT_TRUE(isTicked(model, 8));
    model.clearSelection(6);
    EXPECT_FALSE(isTicked(model, 7));
    EXPECT_EQ(results.state->selection().selectedBytes(), 0);
}

TEST(ResultsModelTest, OffersTheLinksOnlyWhereItemsCanBeChosenOneByOne)
{
    ScriptedApplication application;
    application.addArea("cache-one", RuleTier::safe, {900});
    application.addArea("cache-two", RuleTier::safe, {100, 100});
    application.addSnapshots({"2026-01-01-000000", "2026-02-02-000000"});
    application.addToolArea("dev-unavailable-simulators", RuleTier::reviewRequired);
    application.script[{"/usr/bin/xcrun", "simctl", "list", "devices", "unavailable", "-j"}] =
        R"({"devices":{"iOS":[{"udid":"A","name":"Phone"},{"udid":"B","name":"Pad"}]}})";
    AppState state(application.environment());
    scan(state);
    ResultsModel model;
    model.setAppState(&state);
    std::map<std::string, bool> offers;
    for (int category = 3; category >= 0; --category) {
        model.toggleExpanded(category);
        offers[value(model, category, ResultsModel::TitleRole).toString().toStdString()] =
            value(model, category + 1, ResultsModel::OffersSelectAllRole).toBool();
        EXPECT_EQ(value(model, category, ResultsModel::IsDiagnosticRole).toBool(), category >= 2);
    }
    EXPECT_EQ(offers, (std::map<std::string, bool>{{"cache-one", false},
                                                   {"cache-two", true},
                                                   {"tm-local-snapshots", true},
                                                   {"dev-unavailable-simulators", false}}));
    // What a tool clears together is ticked together.
    const QModelIndex area =
        model.match(model.index(0), ResultsModel::TitleRole, "dev-unavailable-simulators").at(0);
    model.setSelected(area.row() + 2, true);
    EXPECT_TRUE(isTicked(model, area.row() + 3));
    model.setSelected(area.row() + 3, false);
    EXPECT_FALSE(isTicked(model, area.row() + 2));
}

TEST(ResultsModelTest, ShowsHostileNamesHarmlesslyAndStillRemovesThem)
{
    ScriptedApplication application;
    application.addArea("cache-a", RuleTier::safe, {});
    const std::string name = "evil\xE2\x80\xAEgpj\n\xFF<b>";
    application.disk->folders["/areas/cache-a"].names = {name, "evil\xE2\x80\xAEgpj\n\xFE<b>"};
    application.disk->measures["/areas/cache-a/" + name].sizeBytes = 10;
    AppState state(application.environment());
    scan(state);
    ResultsModel model;
    model.setAppState(&state);
    model.toggleExpanded(0);
    // Both rows show the same; only the one that was unticked stays.
    EXPECT_EQ(value(model, 2, ResultsModel::PathRole), value(model, 3, ResultsModel::PathRole));
    EXPECT_EQ(value(model, 2, ResultsModel::PathRole).toString(),
              QStringLiteral("/areas/cache-a/evil⟨U+202E⟩gpj⟨U+000A⟩\uFFFD<b>"));
    model.setSelected(3, false);
    runClean(state);
    EXPECT_EQ(application.disk->removed(), (Strings{"/areas/cache-a/" + name}));
}

} // namespace
} // namespace ZorvaneTests
