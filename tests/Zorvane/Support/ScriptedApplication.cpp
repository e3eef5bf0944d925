#include "tests/Zorvane/Support/ScriptedApplication.h"

#include "CleanCore/Platform/Removal.h"
#include "CleanCore/Support/PathText.h"
#include "CleanCore/Support/TaskPool.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <stdexcept>

namespace ZorvaneTests {

using CleanCore::CleaningRule;
using CleanCore::RuleKind;
using CleanCore::RuleTier;

namespace {

class ScriptedRemoval : public CleanCore::Removal
{
public:
    explicit ScriptedRemoval(const ScriptedDisk& disk) : m_disk(disk) {}

    [[nodiscard]] CleanCore::RemovalOutcome
    remove(const std::string& /*base*/, const std::string& path,
           const std::optional<CleanCore::EntryIdentity>& /*seen*/) override
    {
        if (m_disk.onRemove) {
            m_disk.onRemove(path);
        }
        if (m_disk.irremovable.contains(path)) {
            return {.error = EBUSY};
        }
        m_disk.noteRemoved(path);
        return {};
    }

private:
    const ScriptedDisk& m_disk;
};

constexpr const char* tmutil = "/usr/bin/tmutil";

} // namespace

Strings ScriptedDisk::removed() const
{
    const std::lock_guard lock(m_mutex);
    return m_removed;
}

Strings ScriptedDisk::released() const
{
    const std::lock_guard lock(m_mutex);
    return m_released;
}

void ScriptedDisk::noteRemoved(const std::string& path) const
{
    const std::lock_guard lock(m_mutex);
    m_removed.push_back(path);
}

std::optional<std::int64_t> ScriptedDisk::availableCapacity(const std::string& /*path*/) const
{
    const std::lock_guard lock(m_mutex);
    return capacities.at(std::min(m_capacityCalls++, capacities.size() - 1));
}

std::unique_ptr<CleanCore::Removal>
ScriptedDisk::beginRemoval(const std::string& /*home*/,
                           std::span<const std::string> /*protectedFolders*/) const
{
    return std::make_unique<ScriptedRemoval>(*this);
}

std::optional<CleanCore::EntryAttributes> ScriptedDisk::attributes(const std::string& path) const
{
    for (const auto& [folder, entries] : trees) {
        for (const auto& [name, attributes] : entries) {
            if (CleanCore::PathText::join(folder, name) == path) {
                return attributes;
            }
        }
    }
    return trees.contains(path)
               ? std::optional(CleanCore::EntryAttributes{CleanCore::EntryKind::folder, 0})
               : std::nullopt;
}

bool ScriptedDisk::visitTree(const std::string& path, const CleanCore::TreeVisitor& visit) const
{
    if (onVisit) {
        onVisit(path);
    }
    const auto tree = trees.find(path);
    if (tree == trees.end()) {
        return false;
    }
    for (const auto& [name, attributes] : tree->second) {
        const std::string entry = CleanCore::PathText::join(path, name);
        if (!visit({entry, attributes})) {
            break;
        }
    }
    return true;
}

std::vector<CleanCore::CloudRefusal> ScriptedDisk::releaseLocalCopy(const std::string& path) const
{
    if (onRelease) {
        onRelease(path);
    }
    const std::lock_guard lock(m_mutex);
    m_released.push_back(path);
    return {};
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
    CleanCore::HomeEnvironment homeEnvironment;
    homeEnvironment.home = home;
    homeEnvironment.isConfined = true;
    homeEnvironment.folders.home = home;
    homeEnvironment.pool = pool;
    homeEnvironment.fileManager = disk;
    auto runner = std::make_shared<CleanCoreTests::ScriptedCommandRunner>(script);
    runner->whenCalled = [call = whenToolRuns](const CleanCoreTests::Call& /*call*/) {
        if (call) {
            call();
        }
    };
    return {
        .home = homeEnvironment,
        .cloudFileManager = disk,
        .tools = CleanCore::ToolLocations::ofSystem(),
        .commandRunner = [runner](const std::stop_token& /*stop*/) { return runner; },
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

void ScriptedApplication::addArea(const std::string& id, RuleTier tier,
                                  const std::vector<std::int64_t>& sizes)
{
    const std::string base = "/areas/" + id;
    CleaningRule rule;
    rule.id = id;
    rule.tier = tier;
    rule.kind = RuleKind::fileSystem;
    rule.basePaths = {base};
    catalog.rules.push_back(rule);
    for (std::size_t item = 0; item < sizes.size(); ++item) {
        disk->folders[base].names.push_back("item" + std::to_string(item));
        disk->measures[itemPath(id, item)].sizeBytes = sizes[item];
    }
    disk->folders[base];
}

void ScriptedApplication::addUnreadableArea(const std::string& id)
{
    addArea(id, RuleTier::safe, {});
    disk->folders["/areas/" + id].error = EACCES;
}

void ScriptedApplication::addToolArea(const std::string& id, RuleTier tier)
{
    CleaningRule rule = CleanCoreTests::commandRule(id);
    rule.tier = tier;
    catalog.rules.push_back(rule);
}

void ScriptedApplication::addSnapshots(const Strings& dates)
{
    std::string listing;
    for (const std::string& date : dates) {
        listing += "com.apple.TimeMachine." + date + ".local\n";
        script[{tmutil, "deletelocalsnapshots", date}] = "";
    }
    script[{tmutil, "listlocalsnapshots", "/"}] = listing;
    addToolArea("tm-local-snapshots", RuleTier::reviewRequired);
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

Strings categoryTexts(const Zorvane::AppState& state)
{
    Strings texts;
    for (const CleanCore::CategoryResult& category : state.categories()) {
        texts.push_back(category.rule.id + ":" + std::to_string(category.totalBytes()));
    }
    return texts;
}

} // namespace ZorvaneTests
