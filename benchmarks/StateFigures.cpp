// Times what the window does with large results, in milliseconds: the median and the largest of
// some rounds, for areas of 100,000 items each; and, for a folder that is given, the longest time
// for which the main thread does not come back to its events while that folder is scanned.
//
// usage: state-figures [FOLDER]

#include "CleanCore/FileSystem/LinuxFileManager.h"
#include "CleanCore/Support/TaskPool.h"
#include "Zorvane/State/AppState.h"
#include "Zorvane/State/Models/Models.h"
#include "benchmarks/LargeResults.h"

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

using Clock = std::chrono::steady_clock;

constexpr int rounds = 21;

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

void timeLargeAreas()
{
    Zorvane::AppState state(LargeResults::environment());
    Zorvane::Models models(state);
    // The bindings of the screens read these after each change.
    QObject::connect(&state, &Zorvane::AppState::selectionChanged, [&] {
        (void)models.confirmation()->rows();
        (void)models.confirmation()->totalText();
    });
    QObject::connect(&state, &Zorvane::AppState::categoriesChanged, [&] {
        (void)models.summary()->rows();
        (void)models.summary()->totalText();
    });
    std::cout << LargeResults::areas << " areas of " << LargeResults::itemsPerArea
              << " items each; milliseconds\n"
              << std::left << std::setw(56) << ""
              << "  median largest\n";
    std::cout << "longest stall while they are scanned and shown: " << longestStall(state) << '\n';
    time("open or close an area", [&] { models.results()->toggleExpanded(0); });
    bool isSelected = true;
    time("tick an area's box, with all that follows on the screen", [&] {
        isSelected = !isSelected;
        models.results()->setSelected(0, isSelected);
    });
    time("tick an item's box, with all that follows on the screen", [&] {
        isSelected = !isSelected;
        models.results()->setSelected(1000, isSelected);
    });
    time("selectedBytes()", [&] { (void)state.selection().selectedBytes(); });
    time("selections()", [&] { (void)state.selection().selections(); });
}

void timeScan(const std::string& folder)
{
    const auto pool = std::make_shared<CleanCore::TaskPool>();
    CleanCore::RulesCatalog catalog;
    catalog.rules.push_back(LargeResults::rule("cache-folder", folder));
    Zorvane::AppState state(LargeResults::environment(
        std::make_shared<CleanCore::LinuxFileManager>(CleanCore::UserFolders(), std::nullopt, pool),
        std::move(catalog)));
    const Zorvane::Models models(state);
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
