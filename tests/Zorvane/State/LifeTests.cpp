#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

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
    for (int round = 0; round < rounds; ++round) {
        ScriptedApplication application;
        application.prepare("area cache-a, safe, a, 0=30, 1=20; area logs-b, safe, b, 0=30, 1=20;"
                            "snapshots 1; cloud a, 1, 4096; cloud b, 1, 4096");
        Zorvane::AppState state(application.environment());
        const int last = round % 5;
        state.startScan();
        for (int events = round / 5 % 5; events > 0; --events) {
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
        EXPECT_EQ(application.disk->removed().size(), 4U);
        state.cloud()->setICloudSelected(inCloud("a"), true);
        state.cloud()->requestEvict();
        if (last == 2) {
            state.requestClose();
        }
    }
}

} // namespace
} // namespace ZorvaneTests
