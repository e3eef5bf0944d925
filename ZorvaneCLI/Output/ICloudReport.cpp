#include "ZorvaneCLI/Output/ICloudReport.h"

#include "Words/CloudRefusalText.h"
#include "ZorvaneCLI/Output/ColumnTable.h"
#include "ZorvaneCLI/Output/PathJson.h"
#include "ZorvaneCLI/Output/TerminalText.h"

#include <iostream>

namespace ZorvaneCLI::ICloudReport {

using CleanCore::CloudContainer;
using CleanCore::CloudRefusal;
using CleanCore::ICloudAppBundle;
using CleanCore::ICloudEvictor;
using CleanCore::ICloudMeasure;
using nlohmann::ordered_json;

namespace {

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

void printListJson(const std::vector<ICloudMeasure>& results)
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

} // namespace

void printDrives(const std::vector<FoundDrive>& drives, Form form)
{
    if (form == Form::text) {
        ColumnTable table({ColumnTable::Alignment::left, ColumnTable::Alignment::left,
                           ColumnTable::Alignment::left});
        table.add({"DRIVE", "FOLDER", ""});
        for (const FoundDrive& drive : drives) {
            for (const CloudContainer& container : drive.containers) {
                table.add({drive.name, escaped(container.path),
                           container.closed ? Words::refusalText(*container.closed) : ""});
            }
        }
        std::cout << table.text();
        return;
    }
    ordered_json array = ordered_json::array();
    for (const FoundDrive& drive : drives) {
        ordered_json containers = ordered_json::array();
        for (const CloudContainer& container : drive.containers) {
            ordered_json object;
            setPath(object, container.path);
            object["closed"] = container.closed
                                   ? ordered_json(Words::refusalText(*container.closed))
                                   : ordered_json();
            containers.push_back(std::move(object));
        }
        array.push_back({{"name", drive.name}, {"containers", std::move(containers)}});
    }
    std::cout << ordered_json({{"drives", std::move(array)}}).dump(2) << '\n';
}

void printClosed(const CloudContainer& container)
{
    std::cerr << "closed: " << escaped(container.path) << ": "
              << Words::refusalText(*container.closed) << '\n';
}

void printList(const std::vector<ICloudMeasure>& results, Form form)
{
    if (form == Form::json) {
        printListJson(results);
        return;
    }
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

void printRelease(const ICloudEvictor::EvictReport& report, Form form)
{
    if (form == Form::json) {
        ordered_json document;
        document["freedBytes"] = report.freedBytes;
        document["released"] = pathsJson(report.released);
        document["refused"] = refusalsJson(report.refused);
        document["blocked"] = pathsJson(report.blocked);
        document["appsStillDownloaded"] = appsJson(report.appsStillDownloaded);
        for (const auto& [path, name] : report.renamed) {
            ordered_json object;
            setPath(object, path);
            setPath(object, name, "newPath");
            document["renamed"].push_back(std::move(object));
        }
        std::cout << document.dump(2) << '\n';
        return;
    }
    std::cout << byteCount(report.freedBytes) << " freed — release asked for "
              << counted(report.released.size(), "item") << '\n';
    for (const auto& [path, name] : report.renamed) {
        std::cout << "now: " << escaped(name) << '\n';
    }
    for (const ICloudAppBundle& app : report.appsStillDownloaded) {
        std::cout << "still downloaded: " << escaped(app.path) << " (" << byteCount(app.localBytes)
                  << ")\n";
    }
    for (const std::string& path : report.blocked) {
        std::cerr << "blocked: " << escaped(path) << ": not in the cloud drive\n";
    }
    printRefusals(report.refused);
}

void printFetch(const ICloudEvictor::FetchReport& report, Form form)
{
    if (form == Form::json) {
        ordered_json document;
        document["fetched"] = pathsJson(report.fetched);
        document["refused"] = refusalsJson(report.refused);
        std::cout << document.dump(2) << '\n';
        return;
    }
    std::cout << "fetch asked for " << counted(report.fetched.size(), "item") << '\n';
    printRefusals(report.refused);
}

} // namespace ZorvaneCLI::ICloudReport
