#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QCoreApplication>
#include <gtest/gtest.h>
#include <random>

namespace ZorvaneTests {
namespace {

/// Whole sittings in which the state is destroyed at different moments, for the thread sanitizer.
TEST(AppStateLife, ScansCancelsCleansMeasuresReleasesAndGoes)
{
#ifdef __SANITIZE_THREAD__
    constexpr int rounds = 200;
#else
    constexpr int rounds = 10;
#endif
    std::mt19937 random(1); // NOLINT(cert-msc51-cpp): the same moments in every run
    std::uniform_int_distribution<int> upToFour(0, 4);
    for (int round = 0; round < rounds; ++round) {
        ScriptedApplication application;
        for (const char* id : {"cache-a", "logs-b"}) {
            application.addArea(id, CleanCore::RuleTier::safe, {30, 20, 10});
        }
        application.addSnapshots({"2026-01-01-000000"});
        application.addCloudFolder("a", 1, 4096);
        application.addCloudFolder("b", 1, 4096);
        Zorvane::AppState state(application.environment());
        const int last = upToFour(random);
        state.startScan();
        for (int events = upToFour(random); events > 0; --events) {
            QCoreApplication::processEvents();
        }
        state.cancelScan();
        state.startScan();
        if (last == 0) {
            continue;
        }
        waitUntil([&] { return state.phase() == Zorvane::Phase::results; });
        state.performClean();
        state.cloud()->reloadICloud();
        state.categoryBinding(0).set(false);
        if (last == 1) {
            continue;
        }
        waitUntil([&] { return !state.isCleaning() && state.cloud()->icloudPending() == 0; });
        EXPECT_EQ(application.disk->removed().size(), 6U);
        state.cloud()->setICloudSelected(ScriptedApplication::cloudPath("a"), true);
        state.cloud()->requestEvict();
        if (last == 2) {
            state.requestClose();
        }
    }
}

} // namespace
} // namespace ZorvaneTests
