#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QSettings>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

using Zorvane::AppState;
using Zorvane::Phase;

constexpr const char* probe = "/home/me/.cache";

void store(const ScriptedApplication& application, const QVariant& version)
{
    QSettings settings(application.preferencesFile(), QSettings::IniFormat);
    settings.setValue(QStringLiteral("zorvane.acceptedTermsVersion"), version);
}

TEST(AppStateFirstRunTest, StartsByTheStoredTermsVersion)
{
    const struct
    {
        QVariant version;
        Phase phase;
    } cases[] = {
        {QStringLiteral("0.1"), Phase::needsPermission},
        {QVariant(), Phase::termsAcceptance},
        {QStringLiteral("0.1 "), Phase::termsAcceptance},
        {QStringLiteral("0.2"), Phase::termsAcceptance},
        {QStringList{QStringLiteral("0.1"), QStringLiteral("0.1")}, Phase::termsAcceptance},
    };
    for (const auto& [version, phase] : cases) {
        SCOPED_TRACE(version.toString().toStdString());
        ScriptedApplication application;
        application.disk->folders[probe] = {};
        store(application, version);
        const AppState state(application.environment());
        EXPECT_EQ(state.phase(), phase);
        EXPECT_FALSE(state.hasFullDiskAccess());
    }
}

TEST(AppStateFirstRunTest, AcceptingStoresVersionAndDateAndLooksForThePermissionAtOnce)
{
    for (const bool hasAccess : {false, true}) {
        ScriptedApplication application;
        store(application, QStringLiteral("1.0"));
        if (hasAccess) {
            application.disk->folders[probe] = {};
        }
        AppState state(application.environment());
        // The probe alone never leaves the terms.
        state.refreshPermissionState();
        EXPECT_EQ(state.hasFullDiskAccess(), hasAccess);
        EXPECT_EQ(state.phase(), Phase::termsAcceptance);
        QStringList phases;
        QObject::connect(&state, &AppState::phaseChanged,
                         [&] { phases.push_back(state.phaseName()); });
        state.acceptTerms();
        const QStringList expected =
            hasAccess ? QStringList{QStringLiteral("needsPermission"), QStringLiteral("ready")}
                      : QStringList{QStringLiteral("needsPermission")};
        EXPECT_EQ(phases, expected);
        const QSettings settings(application.preferencesFile(), QSettings::IniFormat);
        EXPECT_EQ(settings.value(QStringLiteral("zorvane.acceptedTermsVersion")).toString(),
                  QStringLiteral("0.1"));
        // A million hours after 1970.
        EXPECT_EQ(settings.value(QStringLiteral("zorvane.acceptedTermsDate")).toString(),
                  QStringLiteral("2084-01-29T16:00:00.000Z"));
        EXPECT_EQ(AppState(application.environment()).phase(), Phase::needsPermission);
        state.continueWithoutPermission();
        EXPECT_EQ(state.phase(), Phase::ready);
        EXPECT_EQ(state.hasFullDiskAccess(), hasAccess);
    }
}

TEST(AppStateFirstRunTest, TheProbeTellsEveryTimeAndMovesOnOnlyFromThePermissionScreen)
{
    ScriptedApplication application;
    application.addArea("cache-x", CleanCore::RuleTier::safe, {1});
    AppState state(application.environment());
    const QSignalSpy told(&state, &AppState::hasFullDiskAccessChanged);

    state.refreshPermissionState();
    EXPECT_FALSE(state.hasFullDiskAccess());
    EXPECT_EQ(state.phase(), Phase::needsPermission);
    state.refreshPermissionState();
    EXPECT_EQ(told.size(), 2);

    application.disk->folders[probe] = {};
    state.refreshPermissionState();
    EXPECT_TRUE(state.hasFullDiskAccess());
    EXPECT_EQ(state.phase(), Phase::ready);

    scan(state);
    application.disk->folders[probe].error = EACCES;
    state.refreshPermissionState();
    EXPECT_FALSE(state.hasFullDiskAccess());
    EXPECT_EQ(state.phase(), Phase::results);
}

} // namespace
} // namespace ZorvaneTests
