#include "Zorvane/State/Models/ConfirmationModel.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QAbstractItemModelTester>
#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

using CleanCore::RuleTier;
using Zorvane::AppState;
using Zorvane::ConfirmationModel;

Strings rowTexts(const ConfirmationModel& model)
{
    Strings texts;
    for (int row = 0; row < model.rowCount(); ++row) {
        const auto value = [&](ConfirmationModel::Role role) {
            return model.data(model.index(row), role);
        };
        texts.push_back(
            value(ConfirmationModel::TitleRole).toString().toStdString() +
            (value(ConfirmationModel::IsReviewRequiredRole).toBool() ? " (review) " : " ") +
            value(ConfirmationModel::SizeTextRole).toString().toStdString());
    }
    return texts;
}

TEST(ConfirmationModelTest, ListsAreasWithChosenBytesAndFollowsTheSelection)
{
    ScriptedApplication application;
    application.addArea("cache-a", RuleTier::safe, {300, 200});
    application.addArea("dev-b", RuleTier::reviewRequired, {40});
    application.addArea("dev-c", RuleTier::reviewRequired, {0});
    application.addArea("dev-unchosen", RuleTier::reviewRequired, {1});
    application.texts = {{"rule.dev-b.title", "Builds <b>B</b> **%1**"},
                         {"category.warning.dev-b", "Takes long to build again."},
                         {"category.warning.dev-unchosen", "Never shown."},
                         {"category.warning.cache-a", "Never shown either."}};
    AppState state(application.environment());
    scan(state);
    ConfirmationModel model;
    model.setAppState(&state);
    const QAbstractItemModelTester tester(&model);
    EXPECT_EQ(rowTexts(model), (Strings{"cache-a 500 bytes"}));
    EXPECT_FALSE(model.needsAcknowledgement());
    EXPECT_TRUE(model.warnings().empty());

    // An area whose chosen items hold nothing has no row, and is acknowledged all the same.
    state.selectAll("dev-c");
    state.selectAll("dev-b");
    state.itemBinding("cache-a", ScriptedApplication::itemPath("cache-a", 1)).set(false);
    EXPECT_EQ(rowTexts(model),
              (Strings{"cache-a 300 bytes", "Builds <b>B</b> **%1** (review) 40 bytes"}));
    EXPECT_EQ(model.totalText(), QStringLiteral("340 bytes"));
    EXPECT_EQ(model.warnings(), (QStringList{QStringLiteral("Takes long to build again.")}));
    EXPECT_TRUE(model.needsAcknowledgement());
    EXPECT_EQ(model.plainAcknowledgementText(),
              QStringLiteral("I understand that the selected review required items (Builds "
                             "<b>B</b> **%1**, dev-c) may not be recoverable."));
    EXPECT_EQ(model.acknowledgementText(),
              QStringLiteral("I understand that the selected <b>review required</b> items (Builds "
                             "&lt;b&gt;B&lt;/b&gt; **%1**, dev-c) may <b>not be recoverable</b>."));

    state.deselectAll("cache-a");
    state.deselectAll("dev-b");
    EXPECT_TRUE(rowTexts(model).empty());
    EXPECT_TRUE(model.warnings().empty());
    EXPECT_EQ(model.totalText(), QStringLiteral("Zero KB"));
}

} // namespace
} // namespace ZorvaneTests
