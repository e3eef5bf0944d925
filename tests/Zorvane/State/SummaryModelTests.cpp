#include "Zorvane/State/Models/SummaryModel.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QAbstractItemModelTester>
#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

using CleanCore::RuleTier;
using Zorvane::AppState;
using Zorvane::SummaryModel;

TEST(SummaryModelTest, GroupsAreasByTheirIdsInArcsThatFollowOneAnother)
{
    ScriptedApplication application;
    application.addArea("whatsapp-media", RuleTier::reviewRequired, {10});
    application.addArea("cache-x", RuleTier::safe, {5});
    application.addArea("trash-user", RuleTier::reviewRequired, {1});
    application.addArea("dev-y", RuleTier::safe, {0});
    application.addArea("brew-cleanup", RuleTier::safe, {2});
    application.addArea("zz", RuleTier::safe, {3});
    application.addArea("logs-a", RuleTier::safe, {20});
    application.addArea("temp-a", RuleTier::safe, {40});
    application.addArea("whatsapp-media-2", RuleTier::safe, {100});
    AppState state(application.environment());
    SummaryModel model;
    const QAbstractItemModelTester tester(&model);
    model.setAppState(&state);
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_EQ(model.totalText(), QStringLiteral("Zero KB"));
    scan(state);
    EXPECT_EQ(model.totalText(), QStringLiteral("181 bytes"));
    const struct
    {
        const char* label;
        const char* color;
        const char* size;
        double end;
    } arcs[] = {
        {"WhatsApp", "catWhatsApp", "10 bytes", 10.0 / 181},
        {"Caches", "catCaches", "66 bytes", 76.0 / 181},
        {"Dev (npm, brew)", "catDev", "2 bytes", 78.0 / 181},
        {"Other", "catOther", "103 bytes", 1},
    };
    ASSERT_EQ(model.rowCount(), std::ssize(arcs));
    double start = 0;
    for (int row = 0; row < model.rowCount(); ++row) {
        const auto value = [&](SummaryModel::Role role) {
            return model.data(model.index(row), role);
        };
        EXPECT_EQ(value(SummaryModel::LabelRole), arcs[row].label);
        EXPECT_EQ(value(SummaryModel::ColorNameRole), arcs[row].color);
        EXPECT_EQ(value(SummaryModel::SizeTextRole), arcs[row].size);
        EXPECT_DOUBLE_EQ(value(SummaryModel::StartRole).toDouble(), start);
        start = arcs[row].end;
        EXPECT_DOUBLE_EQ(value(SummaryModel::EndRole).toDouble(), start);
    }
}

} // namespace
} // namespace ZorvaneTests
