#include "Zorvane/State/SummaryModel.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QAbstractItemModelTester>
#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

using CleanCore::RuleTier;
using Zorvane::AppState;
using Zorvane::SummaryModel;

TEST(SummaryModelTest, ArcsFollowOneAnotherByTheirShareOfTheTotal)
{
    ScriptedApplication application;
    application.addArea("dev-b", RuleTier::safe, {25});
    application.addArea("cache-a", RuleTier::safe, {75});
    AppState state(application.environment());
    SummaryModel model;
    const QAbstractItemModelTester tester(&model);
    model.setAppState(&state);
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_EQ(model.totalText(), QStringLiteral("Zero KB"));
    scan(state);
    ASSERT_EQ(model.rowCount(), 2);
    const auto value = [&](int row, SummaryModel::Role role) {
        return model.data(model.index(row), role);
    };
    EXPECT_EQ(value(0, SummaryModel::LabelRole).toString(), QStringLiteral("Caches"));
    EXPECT_EQ(value(0, SummaryModel::ColorNameRole).toString(), QStringLiteral("catCaches"));
    EXPECT_EQ(value(0, SummaryModel::SizeTextRole).toString(), QStringLiteral("75 bytes"));
    EXPECT_EQ(value(0, SummaryModel::StartRole).toDouble(), 0);
    EXPECT_EQ(value(0, SummaryModel::EndRole).toDouble(), 0.75);
    EXPECT_EQ(value(1, SummaryModel::StartRole).toDouble(), 0.75);
    EXPECT_EQ(value(1, SummaryModel::EndRole).toDouble(), 1);
    EXPECT_EQ(model.totalText(), QStringLiteral("100 bytes"));
}

} // namespace
} // namespace ZorvaneTests
