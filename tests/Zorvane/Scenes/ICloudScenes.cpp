#include "tests/Zorvane/Scenes/Sample.h"
#include "tests/Zorvane/Scenes/Scene.h"

namespace ZorvaneTests {

namespace {

/// Holds the measuring of these entries.
void hold(MainWindow& window, const Strings& names)
{
    window.application.disk->onVisit = [gate = window.gate, names](const std::string& path) {
        for (const std::string& name : names) {
            if (path == ScriptedApplication::cloudPath(name)) {
                gate->pass();
            }
        }
    };
}

Zorvane::AppState& openSheet(MainWindow& window)
{
    Zorvane::AppState& state = window.openResults();
    state.openICloud();
    state.reloadICloud();
    return state;
}

Zorvane::AppState& openMeasured(MainWindow& window, const Strings& selected = {})
{
    Zorvane::AppState& state = openSheet(window);
    waitUntil([&] { return state.icloudPending() == 0; });
    for (const std::string& name : selected) {
        state.setICloudSelected(ScriptedApplication::cloudPath(name), true);
    }
    window.settle();
    return state;
}

void showMeasuring(MainWindow& window)
{
    window.application.addCloudFolder("Photos", 4, Sample::GB);
    window.application.addCloudFolder("Design", 4, Sample::GB);
    hold(window, {"Photos", "Design"});
    openSheet(window);
    window.settle();
}

void showMeasuringFigures(MainWindow& window)
{
    window.application.addCloudFolder("Photos", 4, Sample::GB);
    window.application.addCloudFolder("Design", 3'200, 6'250 * Sample::MB);
    window.application.addCloudFolder("Scans", 12, 48 * Sample::MB);
    hold(window, {"Photos"});
    Zorvane::AppState& state = openSheet(window);
    waitUntil([&] { return state.icloudPending() == 1; });
    window.settle();
}

void showTypical(MainWindow& window, const Strings& selected)
{
    Sample::addTypicalCloud(window.application);
    openMeasured(window, selected);
}

void showFiveApps(MainWindow& window)
{
    Sample::addTypicalCloud(window.application);
    window.application.addCloudFolder(
        "Tools", 3, 800 * Sample::MB,
        {{"Compressor with a very long name that does not fit into one line of it.app",
          2'100 * Sample::MB},
         {"Reader.app", 77 * Sample::MB}});
    openMeasured(window, {"Design", "Tools"});
}

/// The last entry of the drive runs out of time.
void makeBusy(MainWindow& window, const std::string& name)
{
    window.application.addCloudFolder(name, 600, Sample::GB);
    // Of this thread's measuring, so that the others do not run out of time with it.
    static thread_local bool isLate = false;
    const std::string late = ScriptedApplication::cloudPath(name);
    window.application.disk->onVisit = [late](const std::string& path) { isLate = path == late; };
    window.application.steadyNow = [] {
        return std::chrono::steady_clock::time_point() + std::chrono::seconds(isLate ? 91 : 0);
    };
}

void showBusy(MainWindow& window)
{
    Sample::addTypicalCloud(window.application);
    makeBusy(window, "Music projects");
    openMeasured(window, {"Scans"});
}

void showReleasing(MainWindow& window)
{
    Sample::addTypicalCloud(window.application);
    window.application.drive->onRelease = [gate = window.gate](const std::string& path) {
        if (path == ScriptedApplication::cloudPath("Documents from the old laptop")) {
            gate->pass();
        }
    };
    Zorvane::AppState& state =
        openMeasured(window, {"Photos", "Documents from the old laptop", "Scans"});
    state.requestEvict();
    waitUntil(
        [&] { return state.icloudEvictProgress() && state.icloudEvictProgress()->index == 2; });
    window.settle();
}

void release(MainWindow& window, const Strings& names, std::int64_t freed)
{
    window.application.disk->capacities = {0, freed};
    Sample::addTypicalCloud(window.application);
    Zorvane::AppState& state = openMeasured(window, names);
    state.requestEvict();
    waitUntil([&] { return !state.isEvicting(); });
    window.settle();
}

void showHostileNames(MainWindow& window)
{
    for (const std::string& name : Sample::hostileNames()) {
        window.application.addCloudFolder(name, 2, 4 * Sample::MB,
                                          {{name + ".app", 3 * Sample::MB}});
    }
    Strings names = Sample::hostileNames();
    makeBusy(window, "busy " + names[2]);
    openMeasured(window, names);
}

void showHugeFigures(MainWindow& window)
{
    window.application.addCloudFolder("Everything", 60'000, Sample::largest - Sample::PB,
                                      {{"Giant.app", Sample::PB}});
    window.application.addCloudFolder("The rest", 3, 999'990 * Sample::GB);
    openMeasured(window, {"Everything", "The rest"});
}

void showCard(MainWindow& window, bool isMeasuring)
{
    if (isMeasuring) {
        showMeasuring(window);
    } else {
        showTypical(window, {});
    }
    window.state().setShowICloud(false);
    window.settle();
}

} // namespace

Scenes icloudScenes()
{
    const auto typical = [](const Strings& selected) {
        return [selected](MainWindow& window) { showTypical(window, selected); };
    };
    const auto releasing = [](const Strings& names, std::int64_t freed) {
        return [names, freed](MainWindow& window) { release(window, names, freed); };
    };
    return {
        {"icloud", "measuring", showMeasuring},
        {"icloud", "measuring-with-figures", showMeasuringFigures, true},
        {"icloud", "empty", [](MainWindow& window) { openMeasured(window); }},
        {"icloud", "nothing-selected", typical({})},
        {"icloud", "selected", typical({"Photos", "Scans"}), true},
        {"icloud", "three-apps", typical({"Design"})},
        {"icloud", "five-apps", showFiveApps, true},
        {"icloud", "busy-folder", showBusy},
        {"icloud", "releasing", showReleasing},
        {"icloud", "freed", releasing({"Photos", "Scans"}, 18'448 * Sample::MB)},
        {"icloud", "nothing-freed", releasing({"Scans"}, 0)},
        {"icloud", "apps-still-there", releasing({"Design", "Scans"}, 6'298 * Sample::MB)},
        {"icloud", "hostile-names", showHostileNames},
        {"icloud", "huge-figures", showHugeFigures},
        {"card", "measuring", [](MainWindow& window) { showCard(window, true); }},
        {"card", "measured", [](MainWindow& window) { showCard(window, false); }},
    };
}

} // namespace ZorvaneTests
