#include "tests/Zorvane/Support/ScriptedApplication.h"
#include "tests/Zorvane/Support/SignalLog.h"

#include <QSettings>
#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

using Zorvane::AppState;
using Zorvane::Phase;

constexpr const char* probe = "/home/me/.cache";

TEST(AppStateFirstRun, StartsByTheStoredTermsVersion)
{
    const struct
    {
        QVariant version;
        Phase phase;
    } cases[] = {
        {"0.1", Phase::needsPermission},
        {QVariant(), Phase::termsAcceptance},
        {"0.1 ", Phase::termsAcceptance},
        {"0.2", Phase::termsAcceptance},
        {QStringList{QStringLiteral("0.1"), QStringLiteral("0.1")}, Phase::termsAcceptance},
    };
    for (const auto& [version, phase] : cases) {
        ScriptedApplication application;
        application.disk->folders[probe];
        QSettings(application.preferencesFile(), QSettings::IniFormat)
            .setValue(QStringLiteral("zorvane.acceptedTermsVersion"), version);
        const AppState state(application.environment());
        EXPECT_EQ(state.phase(), phase) << version.toString().toStdString();
        EXPECT_FALSE(state.hasFullDiskAccess());
    }
}

TEST(AppStateFirstRun, AcceptsTheTermsAndProbesTheDisk)
{
    ScriptedApplication application;
    application.addArea("cache-x", CleanCore::RuleTier::safe, {1});
    const QString file = application.preferencesFile();
    Zorvane::Preferences(file).storeAcceptedTerms(QStringLiteral("1.0"), {});
    AppState state(application.environment());
    SignalLog log;
    log.note(&state, &AppState::phaseChanged, [&] { return state.phaseName().toStdString(); });
    log.note(&state, &AppState::hasFullDiskAccessChanged,
             [&] { return state.hasFullDiskAccess() ? "access" : "no access"; });
    const struct
    {
        void (AppState::*operation)();
        /// What listing the probed folder fails with.
        int error;
        const char* told;
    } steps[] = {
        {&AppState::refreshPermissionState, 0, "access"},
        {&AppState::acceptTerms, ENOENT, "needsPermission, no access"},
        {&AppState::refreshPermissionState, EACCES, "no access"},
        {&AppState::continueWithoutPermission, EACCES, "ready"},
        {&AppState::acceptTerms, 0, "needsPermission, access, ready"},
        {&AppState::refreshPermissionState, EACCES, "no access"},
    };
    for (const auto& [operation, error, expected] : steps) {
        application.disk->folders[probe].error = error;
        (state.*operation)();
        EXPECT_EQ(log.take(), expected);
    }
    const QSettings settings(file, QSettings::IniFormat);
    EXPECT_EQ(settings.value(QStringLiteral("zorvane.acceptedTermsVersion")), "0.1");
    // A million hours after 1970.
    EXPECT_EQ(settings.value(QStringLiteral("zorvane.acceptedTermsDate")),
              "2084-01-29T16:00:00.000Z");
    scan(state);
    state.refreshPermissionState();
    EXPECT_EQ(state.phase(), Phase::results);
}

} // namespace
} // namespace ZorvaneTests
