// Times what the window does with large results, in milliseconds: the median and the largest of
// some rounds, for areas of 100,000 items each; and, for a folder that is given, the longest time
// for which the main thread does not come back to its events while that folder is scanned.
//
// usage: state-figures [FOLDER]

#include "CleanCore/Platform/LinuxFileManager.h"
#include "CleanCore/Support/TaskPool.h"
#include "Zorvane/State/AppState.h"
#include "Zorvane/State/ConfirmationModel.h"
#include "Zorvane/State/Figures.h"
#include "Zorvane/State/ResultsModel.h"
#include "Zorvane/State/SummaryModel.h"

#include <QCoreApplication>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <functional>
#include <iomanip>
#include <iostream>
#include <numeric>
#include <string>
#include <vector>

namespace {

using CleanCore::CleaningRule;
using Clock = std::chrono::steady_clock;

constexpr int rounds = 21;
constexpr std::size_t areas = 6;
constexpr std::size_t itemsPerArea = 100'000;

double milliseconds(Clock::duration duration)
{
    return std::chrono::duration<double, std::milli>(duration).count();
}

void time(const char* what, const std::function<void()>& action)
{
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        const auto start = Clock::now();
        action();
        times.push_back(milliseconds(Clock::now() - start));
    }
    std::ranges::sort(times);
    std::cout << std::left << std::setw(56) << what << std::right << std::fixed
              << std::setprecision(2) << std::setw(8) << times[rounds / 2] << std::setw(8)
              << times.back() << '\n';
}

/// A file system of flat folders of entries without content.
class FlatDisk : public CleanCore::LinuxFileManager
{
public:
    FlatDisk() : LinuxFileManager({}, std::nullopt, std::make_shared<CleanCore::TaskPool>()) {}

    [[nodiscard]] std::vector<std::string> namesInFolder(const std::string& path) const override
    {
        std::vector<std::string> names;
        if (path.starts_with("/area")) {
            for (std::size_t item = 0; item < itemsPerArea; ++item) {
                names.push_back("an item with a name of some length " + std::to_string(item));
            }
        }
        return names;
    }
    [[nodiscard]] std::vector<CleanCore::EntryMeasure>
    measure(const std::string& /*folder*/, std::span<const std::string> names,
            const std::stop_token& /*stop*/) const override
    {
        CleanCore::EntryMeasure measure;
        measure.sizeBytes = 4096;
        return std::vector<CleanCore::EntryMeasure>(names.size(), measure);
    }
    [[nodiscard]] bool exists(const std::string& /*path*/) const override { return true; }
};

CleaningRule rule(const std::string& id, const std::string& base)
{
    CleaningRule rule;
    rule.id = id;
    rule.tier = CleanCore::RuleTier::safe;
    rule.kind = CleanCore::RuleKind::fileSystem;
    rule.basePaths = {base};
    return rule;
}

Zorvane::Environment environment(const std::shared_ptr<const CleanCore::FileManager>& disk,
                                 CleanCore::RulesCatalog catalog)
{
    CleanCore::HomeEnvironment home;
    home.home = "/home/benchmark";
    home.isConfined = true;
    home.pool = std::make_shared<CleanCore::TaskPool>();
    home.fileManager = disk;
    return {
        .home = home,
        .cloudFileManager = disk,
        .commandRunner = [](const std::stop_token&) { return nullptr; },
        .loadCatalog = [catalog = std::move(catalog)] { return catalog; },
        .texts = {},
        .locale = {},
        .preferences = Zorvane::Preferences(QStringLiteral("/nonexistent/preferences.ini")),
        .account = {},
        .reveal = [](const std::vector<std::string>&) {},
        .openPermissionSettings = [] {},
    };
}

/// The longest time between two turns of the event loop while `state` scans.
double longestStall(Zorvane::AppState& state)
{
    state.startScan();
    double longest = 0;
    auto last = Clock::now();
    QTimer heartbeat;
    QObject::connect(&heartbeat, &QTimer::timeout, [&] {
        const auto now = Clock::now();
        longest = std::max(longest, milliseconds(now - last));
        last = now;
    });
    heartbeat.start(std::chrono::milliseconds(1));
    while (state.phase() == Zorvane::Phase::scanning) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    QCoreApplication::processEvents();
    return longest;
}

/// What the window has open in its results.
struct Screen
{
    explicit Screen(Zorvane::AppState& state)
    {
        results.setAppState(&state);
        summary.setAppState(&state);
        figures.setAppState(&state);
        confirmation.setAppState(&state);
    }
    Zorvane::ResultsModel results;
    Zorvane::SummaryModel summary;
    Zorvane::Figures figures;
    Zorvane::ConfirmationModel confirmation;
};

void timeLargeAreas()
{
    CleanCore::RulesCatalog catalog;
    for (std::size_t area = 0; area < areas; ++area) {
        const std::string name = std::to_string(area);
        catalog.rules.push_back(rule("cache-" + name, "/area" + name));
    }
    Zorvane::AppState state(environment(std::make_shared<FlatDisk>(), std::move(catalog)));
    Screen screen(state);
    std::cout << areas << " areas of " << itemsPerArea << " items each; milliseconds\n"
              << std::left << std::setw(56) << ""
              << "  median largest\n";
    std::cout << "longest stall while they are scanned and shown: " << longestStall(state) << '\n';
    time("open or close an area", [&] { screen.results.toggleExpanded(0); });
    bool isSelected = true;
    time("tick an area's box, with all that follows on the screen", [&] {
        isSelected = !isSelected;
        screen.results.setSelected(0, isSelected);
    });
    time("tick an item's box, with all that follows on the screen", [&] {
        isSelected = !isSelected;
        screen.results.setSelected(1000, isSelected);
    });
    time("selectedBytes()", [&] { (void)state.selection().selectedBytes(); });
    time("selections()", [&] { (void)state.selection().selections(); });
}

void timeScan(const std::string& folder)
{
    CleanCore::RulesCatalog catalog;
    catalog.rules.push_back(rule("cache-folder", folder));
    const auto pool = std::make_shared<CleanCore::TaskPool>();
    Zorvane::AppState state(environment(
        std::make_shared<CleanCore::LinuxFileManager>(CleanCore::UserFolders(), std::nullopt, pool),
        std::move(catalog)));
    const Screen screen(state);
    std::cout << "longest stall while " << folder << " is scanned: " << longestStall(state) << " ("
              << state.totalRecoverableBytes() << " bytes found)\n";
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    timeLargeAreas();
    if (argc > 1) {
        timeScan(argv[1]);
    }
}
