#include "tests/Zorvane/Support/ScriptedApplication.h"

#include "CleanCore/Support/PathText.h"
#include "CleanCore/Support/TaskPool.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <stdexcept>

namespace ZorvaneTests {

using CleanCore::CleaningRule;
using CleanCore::EntryKind;
using CleanCore::RuleTier;
using CleanCore::PathText::join;

std::vector<CleanCore::CloudRefusal> ScriptedDrive::release(const std::string& path) const
{
    if (onRelease) {
        onRelease(path);
    }
    released.push_back(path);
    return {};
}

std::vector<CleanCore::CloudRefusal> ScriptedDrive::fetch(const std::string& /*path*/) const
{
    throw std::logic_error("the window fetches nothing");
}

ScriptedApplication::ScriptedApplication() : pool(std::make_shared<CleanCore::TaskPool>(2))
{
    Zorvane::Preferences(preferencesFile())
        .storeAcceptedTerms(QStringLiteral("0.1"), QDateTime::fromSecsSinceEpoch(0));
}

QString ScriptedApplication::preferencesFile() const
{
    return QString::fromStdString(folder.path("preferences.ini"));
}

Zorvane::Environment ScriptedApplication::environment()
{
    CleanCore::HomeEnvironment environment;
    environment.home = environment.folders.home = home;
    environment.isConfined = true;
    environment.pool = pool;
    environment.fileManager = disk;
    const auto runner = std::make_shared<CleanCoreTests::ScriptedCommandRunner>(script);
    runner->whenCalled = [call = whenToolRuns](const auto& /*call*/) { call(); };
    return {
        .home = environment,
        .cloudDrive = drive,
        .tools = CleanCore::ToolLocations::ofSystem(),
        .commandRunner = [runner](const std::stop_token& /*stop*/)
            -> std::shared_ptr<const CleanCore::CommandRunning> { return runner; },
        .loadCatalog =
            [isBroken = isCatalogBroken, given = catalog] {
                if (*isBroken) {
                    throw std::runtime_error("no catalog");
                }
                return given;
            },
        .texts = CleanCore::TextTable(texts),
        .locale = QLocale(QLocale::English, QLocale::UnitedStates),
        .preferences = Zorvane::Preferences(preferencesFile()),
        .account = {fullName, QStringLiteral("ada")},
        .now = [] { return CleanCore::Timestamp(std::chrono::hours(1'000'000)); },
        .steadyNow = steadyNow,
        .reveal = [this](const Strings& paths) { revealed.push_back(paths); },
        .openPermissionSettings = [] {},
    };
}

std::string ScriptedApplication::itemPath(const std::string& id, std::size_t item)
{
    return "/areas/" + id + "/item" + std::to_string(item);
}

std::string ScriptedApplication::cloudPath(const std::string& name)
{
    return join(cloud, name);
}

void ScriptedApplication::addFolder(const std::string& id, RuleTier tier, const std::string& base,
                                    const Sizes& items)
{
    CleaningRule rule = CleanCoreTests::commandRule(id, CleanCore::RuleKind::fileSystem);
    rule.tier = tier;
    rule.basePaths = {base};
    catalog.rules.push_back(rule);
    disk->folders[base];
    for (const auto& [name, bytes] : items) {
        disk->add(base, name, bytes);
    }
}

void ScriptedApplication::addArea(const std::string& id, RuleTier tier,
                                  const std::vector<std::int64_t>& sizes)
{
    Sizes items;
    for (const std::int64_t bytes : sizes) {
        items.emplace_back("item" + std::to_string(items.size()), bytes);
    }
    addFolder(id, tier, "/areas/" + id, items);
}

void ScriptedApplication::addUnreadableArea(const std::string& id)
{
    addArea(id, RuleTier::safe, {});
    disk->folders["/areas/" + id].error = EACCES;
}

void ScriptedApplication::addToolArea(const std::string& id, RuleTier tier)
{
    catalog.rules.push_back(CleanCoreTests::commandRule(id));
    catalog.rules.back().tier = tier;
}

void ScriptedApplication::addSnapshots(const Strings& dates)
{
    static constexpr const char* tmutil = "/usr/bin/tmutil";
    std::string listing;
    for (const std::string& date : dates) {
        listing += "com.apple.TimeMachine." + date + ".local\n";
        script[{tmutil, "deletelocalsnapshots", date}] = "";
    }
    script[{tmutil, "listlocalsnapshots", "/"}] = listing;
    addToolArea("tm-local-snapshots", RuleTier::reviewRequired);
}

void ScriptedApplication::addCloudFolder(const std::string& name, std::int64_t fileCount,
                                         std::int64_t bytes, const Sizes& apps)
{
    disk->folders[cloud].names.push_back(name);
    auto& tree = disk->trees[cloudPath(name)];
    for (std::int64_t file = 0; file < fileCount; ++file) {
        tree.push_back({"file" + std::to_string(file), {EntryKind::file, file == 0 ? bytes : 0}});
    }
    for (const auto& [app, appBytes] : apps) {
        tree.push_back({app, {EntryKind::folder, 0}});
        tree.push_back({app + "/binary", {EntryKind::file, appBytes}});
    }
}

void ScriptedApplication::addCloudFile(const std::string& name, std::int64_t bytes)
{
    disk->folders[cloud].names.push_back(name);
    disk->trees[cloud].push_back({name, {EntryKind::file, bytes}});
}

void waitUntil(const std::function<bool()>& isTrue)
{
    while (!isTrue()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

void scan(Zorvane::AppState& state)
{
    state.startScan();
    waitUntil([&] { return state.phase() == Zorvane::Phase::results; });
}

void runClean(Zorvane::AppState& state)
{
    state.performClean();
    waitUntil([&] { return !state.isCleaning(); });
}

void measureCloud(Zorvane::AppState& state)
{
    state.cloud()->reloadICloud();
    waitUntil([&] { return state.cloud()->icloudPending() == 0; });
}

} // namespace ZorvaneTests
