#include "ZorvaneCLI/ICloudCommand.h"

#include "CleanCore/CloudDrive/CloudDrive.h"
#include "CleanCore/CloudDrive/ICloudEvictor.h"
#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/Startup/HomeEnvironment.h"
#include "CleanCore/Support/PathText.h"
#include "Words/CloudRefusalText.h"
#include "ZorvaneCLI/Output/ColumnTable.h"
#include "ZorvaneCLI/Output/PathJson.h"
#include "ZorvaneCLI/Output/TerminalText.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <system_error>

namespace ZorvaneCLI {

using CleanCore::CloudRefusal;
using CleanCore::HomeEnvironment;
using CleanCore::ICloudAppBundle;
using CleanCore::ICloudEvictor;
using CleanCore::ICloudItem;
using nlohmann::ordered_json;

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

/// A path on its own: its text, or, where that is not exact, an object as setPath() makes it.
ordered_json pathJson(const std::string& path)
{
    ordered_json object;
    setPath(object, path);
    return object.contains("pathBytes") ? object : object["path"];
}

ordered_json pathsJson(const std::vector<std::string>& paths)
{
    ordered_json array = ordered_json::array();
    for (const std::string& path : paths) {
        array.push_back(pathJson(path));
    }
    return array;
}

ordered_json appsJson(const std::vector<ICloudAppBundle>& apps)
{
    ordered_json array = ordered_json::array();
    for (const ICloudAppBundle& app : apps) {
        ordered_json object;
        setPath(object, app.path);
        object["localBytes"] = app.localBytes;
        object["fileCount"] = app.fileCount;
        setPath(object, app.probePath, "probePath");
        array.push_back(std::move(object));
    }
    return array;
}

ordered_json refusalsJson(const std::vector<CloudRefusal>& refusals)
{
    ordered_json array = ordered_json::array();
    for (const CloudRefusal& refusal : refusals) {
        ordered_json object;
        setPath(object, refusal.path);
        object["reason"] = Words::refusalText(refusal.failure);
        array.push_back(std::move(object));
    }
    return array;
}

void printRefusals(const std::vector<CloudRefusal>& refusals)
{
    for (const CloudRefusal& refusal : refusals) {
        std::cerr << "refused: " << escaped(refusal.path) << ": "
                  << Words::refusalText(refusal.failure) << '\n';
    }
}

/// One run of the command.
class Run
{
public:
    Run(const ICloudOptions& options, const HomeEnvironment& environment,
        const std::stop_token& stop)
        : m_options(options), m_stop(stop),
          m_container(absolute(options.container.value_or(environment.cloudContainer()))),
          m_drive(environment.cloudDrive(m_container, options.mirror
                                                          ? std::optional(absolute(*options.mirror))
                                                          : std::nullopt)),
          m_fileManager(environment.fileManager),
          m_evictor(m_container, m_fileManager, m_drive, environment.pool, [stop] {
              // An interruption ends the measuring like a deadline.
              return stop.stop_requested() ? ICloudEvictor::Deadline::max()
                                           : std::chrono::steady_clock::now();
          })
    {
    }

    ExitStatus run() const
    {
        const bool isReadable = checkContainer();
        const std::vector<std::string> paths = chosenPaths();
        ExitStatus status = isReadable ? ExitStatus::done : ExitStatus::incomplete;
        switch (m_options.action) {
        case ICloudAction::list:
            status = std::max(status, list(paths));
            break;
        case ICloudAction::release:
            status = release(paths);
            break;
        case ICloudAction::fetch:
            status = fetch(paths);
            break;
        }
        if (m_stop.stop_requested()) {
            std::cerr << "zorvane-cli: interrupted; the current entry was finished, the others "
                         "were left as they are\n";
            return ExitStatus::interrupted;
        }
        return status;
    }

private:
    /// Whether the cloud drive can be listed; prints why not.
    bool checkContainer() const
    {
        try {
            (void)m_fileManager->namesInFolder(m_container);
            return true;
        } catch (const std::system_error& error) {
            std::cerr << "zorvane-cli: there is no cloud drive at " << escaped(m_container) << ": "
                      << error.code().message() << '\n';
            return false;
        }
    }

    /// The named entries, each once and in their order; all of them when none is named.
    std::vector<std::string> chosenPaths() const
    {
        std::vector<std::string> listed = m_evictor.topLevelChildren();
        if (m_options.paths.empty()) {
            if (m_options.action != ICloudAction::list) {
                throw CommandError(ExitStatus::wrongUsage,
                                   "name the entries, as \"icloud list\" shows them");
            }
            return listed;
        }
        std::vector<std::string> chosen;
        for (const std::string& path : m_options.paths) {
            if (std::find(listed.begin(), listed.end(), path) == listed.end()) {
                throw CommandError(ExitStatus::wrongUsage,
                                   "\"icloud list\" shows no entry " + path);
            }
            if (std::find(chosen.begin(), chosen.end(), path) == chosen.end()) {
                chosen.push_back(path);
            }
        }
        return chosen;
    }

    ExitStatus list(const std::vector<std::string>& paths) const
    {
        auto results =
            m_evictor.measureChildren(paths, std::chrono::steady_clock::now() + measuringTime);
        std::stable_sort(results.begin(), results.end(), [](const auto& a, const auto& b) {
            return a.item.localBytes > b.item.localBytes;
        });
        m_options.json ? printListJson(results) : printList(results);
        const bool timedOut = std::any_of(results.begin(), results.end(),
                                          [](const auto& result) { return result.timedOut; });
        return timedOut ? ExitStatus::incomplete : ExitStatus::done;
    }

    static void printListJson(const std::vector<ICloudEvictor::MeasureResult>& results)
    {
        ordered_json items = ordered_json::array();
        for (const auto& [item, timedOut] : results) {
            ordered_json object;
            setPath(object, item.path);
            object["localBytes"] = item.localBytes;
            object["fileCount"] = item.fileCount;
            object["releasableBytes"] = item.releasableBytes();
            object["releasableFileCount"] = item.releasableFileCount();
            object["apps"] = appsJson(item.apps);
            object["timedOut"] = timedOut;
            items.push_back(std::move(object));
        }
        std::cout << ordered_json({{"items", std::move(items)}}).dump(2) << '\n';
    }

    static void printList(const std::vector<ICloudEvictor::MeasureResult>& results)
    {
        using enum ColumnTable::Alignment;
        ColumnTable table({right, right, right, left, left});
        table.add({"ON THIS DISK", "RELEASABLE", "FILES", "PATH", ""});
        for (const auto& [item, timedOut] : results) {
            std::string note = timedOut ? "not measured in time" : "";
            if (!item.apps.empty()) {
                note += (note.empty() ? "" : ", ") + counted(item.apps.size(), "app") + " (" +
                        byteCount(item.appBytes()) + ")";
            }
            table.add({byteCount(item.localBytes), byteCount(item.releasableBytes()),
                       std::to_string(item.fileCount), escaped(item.path), note});
        }
        std::cout << table.text();
    }

    ExitStatus release(const std::vector<std::string>& paths) const
    {
        std::vector<ICloudItem> items;
        for (auto& result : m_evictor.measureChildren(paths, noDeadline)) {
            items.push_back(std::move(result.item));
        }
        const auto report = m_evictor.evict(items, nullptr, m_stop);
        if (m_options.json) {
            ordered_json document;
            document["freedBytes"] = report.freedBytes;
            document["released"] = pathsJson(report.released);
            document["refused"] = refusalsJson(report.refused);
            document["blocked"] = pathsJson(report.blocked);
            document["appsStillDownloaded"] = appsJson(report.appsStillDownloaded);
            std::cout << document.dump(2) << '\n';
        } else {
            std::cout << byteCount(report.freedBytes) << " freed — release asked for "
                      << counted(report.released.size(), "item") << '\n';
            for (const ICloudAppBundle& app : report.appsStillDownloaded) {
                std::cout << "still downloaded: " << escaped(app.path) << " ("
                          << byteCount(app.localBytes) << ")\n";
            }
            for (const std::string& path : report.blocked) {
                std::cerr << "blocked: " << escaped(path) << ": not in the cloud drive\n";
            }
            printRefusals(report.refused);
        }
        return report.refused.empty() && report.blocked.empty() ? ExitStatus::done
                                                                : ExitStatus::incomplete;
    }

    ExitStatus fetch(const std::vector<std::string>& paths) const
    {
        std::vector<std::string> fetched;
        std::vector<CloudRefusal> refused;
        for (const std::string& path : paths) {
            if (m_stop.stop_requested()) {
                break;
            }
            for (CloudRefusal& refusal : m_drive->fetch(path)) {
                refused.push_back(std::move(refusal));
            }
            fetched.push_back(path);
        }
        if (m_options.json) {
            ordered_json document;
            document["fetched"] = pathsJson(fetched);
            document["refused"] = refusalsJson(refused);
            std::cout << document.dump(2) << '\n';
        } else {
            std::cout << "fetch asked for " << counted(fetched.size(), "item") << '\n';
            printRefusals(refused);
        }
        return refused.empty() ? ExitStatus::done : ExitStatus::incomplete;
    }

    const ICloudOptions& m_options;
    const std::stop_token m_stop;
    std::string m_container;
    std::shared_ptr<const CleanCore::CloudDrive> m_drive;
    std::shared_ptr<const CleanCore::FileManager> m_fileManager;
    ICloudEvictor m_evictor;
};

} // namespace

ExitStatus runICloud(const ICloudOptions& options, const HomeEnvironment& environment,
                     const std::stop_token& stop)
{
    return Run(options, environment, stop).run();
}

} // namespace ZorvaneCLI
