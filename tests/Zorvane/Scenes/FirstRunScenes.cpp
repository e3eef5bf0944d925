#include "tests/Zorvane/Scenes/Sample.h"
#include "tests/Zorvane/Scenes/Scene.h"

namespace ZorvaneTests {

namespace {

using CleanCore::RuleTier;

void showTerms(MainWindow& window)
{
    Zorvane::Preferences(window.application.preferencesFile())
        .storeAcceptedTerms(QStringLiteral("0.0"), QDateTime::fromSecsSinceEpoch(0));
    window.open();
}

void showReadyWithPermission(MainWindow& window)
{
    Sample::grantAccess(window.application);
    window.open();
}

void showReady(MainWindow& window)
{
    window.open().continueWithoutPermission();
    window.settle();
}

/// Before the first rule: only tools are asked, and the first of them does not answer.
void showPreparing(MainWindow& window)
{
    window.application.addSnapshots({"2024-01-05-091500"});
    window.application.whenToolRuns = [gate = window.gate] { gate->pass(); };
    Zorvane::AppState& state = window.open();
    state.continueWithoutPermission();
    state.startScan();
    window.gate->waitUntilReached();
    waitUntil([&] { return !state.currentRuleId(); });
    window.settle();
}

/// A first area of so many bytes is done, a second one is measured.
void showScanning(MainWindow& window, std::int64_t bytes, const std::string& second)
{
    window.application.addFolder("dev-npm", RuleTier::safe, "/areas/first", {{"a", bytes}});
    window.application.addFolder(second, RuleTier::safe, "/areas/second", {{"a", 1}});
    window.application.disk->onMeasure = [gate = window.gate](const std::string& folder,
                                                              const std::stop_token& /*stop*/) {
        if (folder == "/areas/second") {
            gate->pass();
        }
    };
    Zorvane::AppState& state = window.open();
    state.continueWithoutPermission();
    state.startScan();
    waitUntil([&] { return state.bytesFoundSoFar() > 0 && state.currentRuleId(); });
    window.settle();
}

} // namespace

Scenes firstRunScenes()
{
    return {
        {"terms", "first-run", showTerms, true},
        {"permission", "missing", [](MainWindow& window) { window.open(); }, true},
        {"ready", "with-permission", showReadyWithPermission, true},
        {"ready", "without-permission", showReady, true},
        {"scanning", "preparing", showPreparing},
        {"scanning", "rule",
         [](MainWindow& window) { showScanning(window, 12'480 * Sample::MB, "cache-browsers"); },
         true},
        {"scanning", "unknown-rule",
         [](MainWindow& window) { showScanning(window, 120, "an-area-without-a-title"); }},
        {"scanning", "largest-total",
         [](MainWindow& window) { showScanning(window, Sample::largest, "dev-build-caches"); }},
        {"scanning", "very-long-title",
         [](MainWindow& window) {
             window.application.texts["rule.long.title"] = Sample::longTitle();
             showScanning(window, 999'994 * Sample::GB * 1'000, "long");
         }},
    };
}

} // namespace ZorvaneTests
