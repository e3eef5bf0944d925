#include "CleanCore/Support/TaskPool.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QCoreApplication>
#include <gtest/gtest.h>
#include <random>

namespace ZorvaneTests {
namespace {

using CleanCore::RuleTier;
using Zorvane::AppState;
using Zorvane::Phase;

/// Everything that a person does in one sitting, as fast as it can be done. Meant for the thread
/// sanitizer; the state goes at a moment that differs from round to round.
TEST(AppStateLifeTest, ScansCancelsCleansMeasuresReleasesAndGoes)
{
    constexpr int rounds = 200;
    std::mt19937 random(1); // NOLINT(cert-msc51-cpp): the same moments in every run
    std::uniform_int_distribution<int> upToFour(0, 4);
    for (int round = 0; round < rounds; ++round) {
        ScriptedApplication application;
        for (const char* id : {"cache-a", "cache-b", "logs-c", "dev-d"}) {
            application.addArea(id, RuleTier::safe, {30, 20, 10});
        }
        application.addSnapshots({"2026-01-01-000000"});
        for (const char* name : {"a", "b", "c"}) {
            application.addCloudFolder(name, 1, 4096);
        }
        auto state = std::make_unique<AppState>(application.environment());
        const int last = upToFour(random);

        state->startScan();
        for (int events = upToFour(random); events > 0; --events) {
            QCoreApplication::processEvents();
        }
        state->cancelScan();
        EXPECT_NE(state->phase(), Phase::scanning);
        state->startScan();
        if (last == 0) {
            continue;
        }
        waitUntil([&] { return state->phase() == Phase::results; });
        EXPECT_EQ(state->totalRecoverableBytes(), 240);

        state->performClean();
        state->cloud()->reloadICloud();
        state->categoryBinding(0).set(false);
        if (last == 1) {
            continue;
        }
        waitUntil([&] { return !state->isCleaning() && state->cloud()->icloudPending() == 0; });
        EXPECT_EQ(application.disk->removed().size(), 12U);

        state->cloud()->setICloudSelected(ScriptedApplication::cloudPath("a"), true);
        state->cloud()->setICloudSelected(ScriptedApplication::cloudPath("b"), true);
        state->cloud()->requestEvict();
        if (last == 2) {
            continue;
        }
        waitUntil([&] { return !state->cloud()->isEvicting(); });
        state->startScan();
        if (last == 3) {
            state->requestClose();
        }
    }
}

} // namespace
} // namespace ZorvaneTests
