#include "ZorvaneCLI/ICloudCommand.h"

#include "CleanCore/CloudDrive/CloudDrive.h"
#include "CleanCore/CloudDrive/ICloudEvictor.h"
#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/Startup/CloudDrives.h"
#include "CleanCore/Startup/HomeEnvironment.h"
#include "CleanCore/Startup/Startup.h"
#include "CleanCore/Support/PathText.h"
#include "ZorvaneCLI/Output/ICloudReport.h"
#include "ZorvaneCLI/Output/TerminalText.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <system_error>
#include <unistd.h>

namespace ZorvaneCLI {

using CleanCore::CloudContainer;
using CleanCore::HomeEnvironment;
using CleanCore::ICloudEvictor;
using CleanCore::ICloudItem;
using CleanCore::ICloudMeasure;
using CleanCore::Startup::CloudDrives;

namespace Startup = CleanCore::Startup;
namespace PathText = CleanCore::PathText;

namespace {

constexpr std::chrono::seconds measuringTime{90};
/// Never comes, except after an interruption.
constexpr auto noDeadline = ICloudEvictor::Deadline::max() - measuringTime;

std::string absolute(const std::string& path)
{
    if (path.starts_with('/')) {
        return PathText::standardized(path);
    }
    std::error_code error;
    const std::filesystem::path current = std::filesystem::current_path(error);
    if (error) {
        throw CommandError(ExitStatus::wrongUsage,
                           "the current folder cannot be found, so give the whole path of " + path);
    }
    return PathText::standardized(PathText::join(current.native(), path));
}

/// Draws how far fetching is, on a terminal.
void showProgress(std::int64_t index, std::int64_t total, const CleanCore::CloudProgress& progress)
{
    std::cerr << "\r\x1b[K" << index << '/' << total << ' ' << byteCount(progress.bytes)
              << (progress.totalBytes > 0 ? " of " + byteCount(progress.totalBytes) : "") << ' '
              << escaped(PathText::lastComponent(progress.path)) << std::flush;
}

/// One run of the command with one drive.
class Run
{
public:
    Run(const ICloudOptions& options, const HomeEnvironment& environment,
        const CleanCore::CloudDrive& drive, std::vector<CloudContainer> containers,
        std::vector<ICloudEvictor> evictors, const std::stop_token& stop)
        : m_options(options), m_fileManager(*environment.fileManager), m_drive(drive),
          m_containers(std::move(containers)), m_evictors(std::move(evictors)), m_stop(stop)
    {
    }

    ExitStatus run() const
    {
        const bool isReadable = checkContainers();
        const std::vector<std::vector<std::string>> paths = chosenPaths();
        ExitStatus status = isReadable ? ExitStatus::done : ExitStatus::incomplete;
        if (m_options.action == ICloudAction::list) {
            status = std::max(status, list(paths));
        } else {
            status = m_options.action == ICloudAction::release ? release(paths) : fetch(paths);
        }
        if (m_stop.stop_requested()) {
            std::cerr << "zorvane-cli: interrupted; what was not reached is as it was\n";
            return ExitStatus::interrupted;
        }
        return status;
    }

private:
    ICloudReport::Form form() const
    {
        return m_options.json ? ICloudReport::Form::json : ICloudReport::Form::text;
    }

    /// Whether the drive's folders can be listed and worked with; prints why not.
    bool checkContainers() const
    {
        bool isReadable = !m_containers.empty();
        if (m_containers.empty()) {
            std::cerr << "zorvane-cli: there is no folder of " << m_drive.name()
                      << " in this home\n";
        }
        for (const CloudContainer& container : m_containers) {
            if (container.closed) {
                ICloudReport::printClosed(container);
                isReadable = false;
                continue;
            }
            try {
                (void)m_fileManager.namesInFolder(container.path);
            } catch (const std::system_error& error) {
                std::cerr << "zorvane-cli: there is no cloud drive at " << escaped(container.path)
                          << ": " << error.code().message() << '\n';
                isReadable = false;
            }
        }
        return isReadable;
    }

    /// For each folder of the drive its named entries, each once and in their order; all of them
    /// when none is named.
    std::vector<std::vector<std::string>> chosenPaths() const
    {
        std::vector<std::vector<std::string>> listed;
        for (const ICloudEvictor& evictor : m_evictors) {
            listed.push_back(evictor.topLevelChildren());
        }
        if (m_options.paths.empty()) {
            if (m_options.action != ICloudAction::list) {
                throw CommandError(ExitStatus::wrongUsage,
                                   "name the entries, as \"icloud list\" shows them");
            }
            return listed;
        }
        std::vector<std::vector<std::string>> chosen(listed.size());
        for (const std::string& path : m_options.paths) {
            const auto holds = [&](const auto& paths) {
                return std::ranges::find(paths, path) != paths.end();
            };
            const auto place = std::ranges::find_if(listed, holds);
            if (place == listed.end()) {
                throw CommandError(ExitStatus::wrongUsage,
                                   "\"icloud list\" shows no entry " + path);
            }
            auto& ofContainer = chosen[static_cast<std::size_t>(place - listed.begin())];
            if (!holds(ofContainer)) {
                ofContainer.push_back(path);
            }
        }
        return chosen;
    }

    ExitStatus list(const std::vector<std::vector<std::string>>& paths) const
    {
        std::vector<ICloudMeasure> results;
        const auto deadline = std::chrono::steady_clock::now() + measuringTime;
        for (std::size_t i = 0; i < m_evictors.size(); ++i) {
            std::ranges::move(m_evictors[i].measureChildren(paths[i], deadline, m_stop),
                              std::back_inserter(results));
        }
        std::ranges::stable_sort(results, [](const auto& a, const auto& b) {
            return a.item.localBytes > b.item.localBytes;
        });
        ICloudReport::printList(results, form());
        const bool timedOut = std::ranges::any_of(results, &ICloudMeasure::timedOut);
        return timedOut ? ExitStatus::incomplete : ExitStatus::done;
    }

    ExitStatus release(const std::vector<std::vector<std::string>>& paths) const
    {
        ICloudEvictor::EvictReport report;
        for (std::size_t i = 0; i < m_evictors.size(); ++i) {
            std::vector<ICloudItem> items;
            for (auto& result : m_evictors[i].measureChildren(paths[i], noDeadline, m_stop)) {
                items.push_back(std::move(result.item));
            }
            if (!items.empty()) {
                report.add(m_evictors[i].evict(items, nullptr, m_stop));
            }
        }
        ICloudReport::printRelease(report, form());
        return report.refused.empty() && report.blocked.empty() ? ExitStatus::done
                                                                : ExitStatus::incomplete;
    }

    ExitStatus fetch(const std::vector<std::vector<std::string>>& paths) const
    {
        const bool isShown = !m_options.json && ::isatty(STDERR_FILENO) != 0;
        ICloudEvictor::FetchReport report;
        for (std::size_t i = 0; i < m_evictors.size(); ++i) {
            report.add(m_evictors[i].fetch(
                paths[i], isShown ? showProgress : ICloudEvictor::FetchProgress(), m_stop));
        }
        if (isShown) {
            std::cerr << "\r\x1b[K";
        }
        ICloudReport::printFetch(report, form());
        return report.refused.empty() ? ExitStatus::done : ExitStatus::incomplete;
    }

    const ICloudOptions& m_options;
    const CleanCore::FileManager& m_fileManager;
    const CleanCore::CloudDrive& m_drive;
    const std::vector<CloudContainer> m_containers;
    /// One for each container.
    const std::vector<ICloudEvictor> m_evictors;
    const std::stop_token m_stop;
};

CloudDrives openDrives(const ICloudOptions& options, const HomeEnvironment& environment)
{
    const auto absoluteOrNone = [](const std::optional<std::string>& path) {
        return path ? std::optional(absolute(*path)) : std::nullopt;
    };
    return Startup::openCloudDrives(
        environment, Startup::openCloudTools(options.tools, environment),
        options.drive ? std::nullopt : absoluteOrNone(options.container),
        absoluteOrNone(options.mirror));
}

ExitStatus printDrives(const ICloudOptions& options, const CloudDrives& drives,
                       const std::stop_token& stop)
{
    std::vector<ICloudReport::FoundDrive> found;
    for (const auto& drive : drives) {
        found.push_back({drive->name(), drive->containers(stop)});
    }
    ICloudReport::printDrives(found,
                              options.json ? ICloudReport::Form::json : ICloudReport::Form::text);
    return stop.stop_requested() ? ExitStatus::interrupted : ExitStatus::done;
}

/// The drive that the options name; the given one without a name.
std::shared_ptr<const CleanCore::CloudDrive> chosenDrive(const ICloudOptions& options,
                                                         const CloudDrives& drives)
{
    if (!options.drive) {
        return drives.front();
    }
    if (auto drive = Startup::driveNamed(*options.drive, drives)) {
        return drive;
    }
    std::string names;
    for (const auto& drive : drives) {
        names += (names.empty() ? "" : ", ") + drive->name();
    }
    throw CommandError(ExitStatus::wrongUsage, "there is no drive named " + *options.drive +
                                                   "; --drive takes one of these: " + names);
}

} // namespace

ExitStatus runICloud(const ICloudOptions& options, const HomeEnvironment& environment,
                     const std::stop_token& stop)
{
    const CloudDrives drives = openDrives(options, environment);
    if (options.action == ICloudAction::drives) {
        return printDrives(options, drives, stop);
    }
    const auto drive = chosenDrive(options, drives);
    std::vector<CloudContainer> containers = drive->containers(stop);
    if (!options.drive) {
        // The given drive tells with each request why it refuses it.
        containers.front().closed.reset();
    }
    if (options.drive && options.container) {
        const std::string wanted = absolute(*options.container);
        std::erase_if(containers, [&](const auto& container) { return container.path != wanted; });
        if (containers.empty()) {
            throw CommandError(ExitStatus::wrongUsage, "\"icloud drives\" shows no folder " +
                                                           wanted + " of " + drive->name());
        }
    }
    std::vector<ICloudEvictor> evictors;
    evictors.reserve(containers.size());
    for (const CloudContainer& container : containers) {
        evictors.emplace_back(
            container.path, environment.fileManager, drive, environment.pool,
            [stop] {
                // An interruption ends the measuring like a deadline.
                return stop.stop_requested() ? ICloudEvictor::Deadline::max()
                                             : std::chrono::steady_clock::now();
            },
            environment.volumeFacts);
    }
    return Run(options, environment, *drive, std::move(containers), std::move(evictors), stop)
        .run();
}

} // namespace ZorvaneCLI
