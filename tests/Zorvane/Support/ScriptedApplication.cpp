#include "tests/Zorvane/Support/ScriptedApplication.h"

#include "CleanCore/Reclaim/LinuxVolumeFacts.h"
#include "CleanCore/Support/PathText.h"
#include "CleanCore/Support/TaskPool.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <cmath>
#include <limits>

namespace ZorvaneTests {

namespace {

using CleanCore::EntryKind;
using CleanCore::RuleKind;
using CleanCore::RuleTier;

/// The folder of the cloud drive.
const std::string cloud = inHome("Library/Mobile Documents/com~apple~CloudDocs");

std::int64_t bytes(const std::string& text)
{
    if (text == "largest") {
        return std::numeric_limits<std::int64_t>::max();
    }
    // 0 without a unit.
    const std::size_t unit = std::string_view("kMGT").find(text.back()) + 1;
    return std::stoll(text) * static_cast<std::int64_t>(std::pow(1'000, unit));
}

/// "hostile" and a suffix stand for many names with it: line ends, a right-to-left override, 300
/// characters, markup, bytes that are no text, Arabic and Hebrew, spaces.
Strings names(const std::string& text)
{
    if (!text.starts_with("hostile")) {
        return {text};
    }
    Strings names = {"two\nlines\tand a tab",
                     "invoice\u202Efdp.exe",
                     std::string(300, 'a'),
                     "<b>bold<i> <img src='x'> &amp;",
                     "not utf-8: \xff\xfe",
                     "\u0627\u0644\u0639 \u05E2\u05D1\u05E8",
                     "   "};
    for (std::string& name : names) {
        name += text.substr(7);
    }
    return names;
}

/// From "NAME=SIZE" texts; several names of one have falling sizes.
std::vector<std::pair<std::string, std::int64_t>> sizes(std::span<const std::string> texts)
{
    std::vector<std::pair<std::string, std::int64_t>> result;
    for (const std::string& text : texts) {
        const Strings parts = split(text, "=");
        std::int64_t size = bytes(parts[1]);
        for (const std::string& name : names(parts[0])) {
            result.emplace_back(name, size--);
        }
    }
    return result;
}

} // namespace

ScriptedApplication::ScriptedApplication()
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
    environment.home = environment.folders.home = "/home/me";
    environment.isConfined = true;
    environment.pool = std::make_shared<CleanCore::TaskPool>(2);
    environment.fileManager = disk;
    environment.volumeFacts = std::make_shared<CleanCore::LinuxVolumeFacts>();
    const auto runner = std::make_shared<CleanCoreTests::ScriptedCommandRunner>(script);
    runner->whenCalled = [onTool = onTool](const auto& call) { onTool(call.front()); };
    return {
        .home = environment,
        .cloudDrives = drives(),
        .tools = CleanCore::ToolLocations::ofSystem(),
        .commandRunner = [runner](const std::stop_token& /*stop*/)
            -> std::shared_ptr<const CleanCore::CommandRunning> { return runner; },
        .loadCatalog = [given = catalog] { return given; },
        .texts = CleanCore::TextTable(texts),
        .locale = QLocale(QLocale::English, QLocale::UnitedStates),
        .preferences = Zorvane::Preferences(preferencesFile()),
        .account = {fullName, QStringLiteral("ada")},
        .now = [] { return CleanCore::Timestamp(std::chrono::hours(1'000'000)); },
        .steadyNow =
            [step = clockStep, time = std::make_shared<std::atomic<int>>(0)] {
                return std::chrono::steady_clock::time_point(std::chrono::seconds(*time += *step));
            },
        .reveal = [this](const Strings& paths) { revealed.push_back(paths); },
        .openPermissionSettings = [] {},
    };
}

std::vector<std::shared_ptr<const CleanCore::CloudDrive>> ScriptedApplication::drives() const
{
    std::vector<std::shared_ptr<const CleanCore::CloudDrive>> drives = {drive};
    drives.insert(drives.end(), otherDrives.begin(), otherDrives.end());
    return drives;
}

void ScriptedApplication::prepare(const std::string& text)
{
    for (const Strings& statement : statements(text)) {
        prepare(statement);
    }
}

void ScriptedApplication::prepare(const Strings& statement)
{
    const auto argument = [&](std::size_t i) {
        return i < statement.size() ? statement[i] : std::string();
    };
    const std::string verb = argument(0);
    const std::string first = argument(1);
    const auto sized = [&] {
        return sizes(std::span(statement).subspan(std::min<std::size_t>(4, statement.size())));
    };
    if (verb == "area" || verb == "tool") {
        const RuleKind kind = verb == "area" ? RuleKind::fileSystem : RuleKind::command;
        CleanCore::CleaningRule rule = CleanCoreTests::commandRule(first, kind);
        rule.tier = argument(2) == "safe" ? RuleTier::safe : RuleTier::reviewRequired;
        rule.basePaths = {inHome(argument(3))};
        disk->folders[inHome(argument(3))];
        for (const auto& [name, size] : sized()) {
            disk->add(inHome(argument(3)), name, size);
        }
        catalog.rules.push_back(rule);
    } else if (verb == "unreadable") {
        prepare("area " + first + ", safe, " + first);
        disk->folders[inHome(first)].error = EACCES;
    } else if (verb == "snapshots") {
        std::string& listing = script[{"/usr/bin/tmutil", "listlocalsnapshots", "/"}].emplace();
        for (const std::string& date : std::span(statement).subspan(1)) {
            listing += "com.apple.TimeMachine." + date + ".local\n";
            script[{"/usr/bin/tmutil", "deletelocalsnapshots", date}] = "";
        }
        prepare("tool tm-local-snapshots, review");
    } else if (verb == "cloud") {
        for (const std::string& name : names(first)) {
            disk->folders[cloud].names.push_back(name);
            auto& tree = disk->trees[inCloud(name)];
            for (int file = 0; file < std::stoi(argument(2)); ++file) {
                tree.push_back({"file" + std::to_string(file),
                                {EntryKind::file, file == 0 ? bytes(argument(3)) : 0}});
            }
            for (const auto& [bundle, size] : sized()) {
                tree.push_back({bundle, {EntryKind::folder, 0}});
                tree.push_back({bundle + "/binary", {EntryKind::file, size}});
            }
        }
    } else if (verb == "other") {
        if (otherDrives.empty() || otherDrives.back()->title != first) {
            otherDrives.push_back(std::make_shared<ScriptedDrive>());
            otherDrives.back()->title = first;
            otherDrives.back()->folder = inHome(first);
        }
        if (argument(2) == "closed") {
            otherDrives.back()->closed = {CleanCore::CloudRefusalReason::noPlaceholders};
        } else {
            for (std::size_t i = 2; i + 1 < statement.size(); i += 2) {
                disk->folders[inHome(first)].names.push_back(statement[i]);
                disk->trees[inHome(first)].push_back(
                    {statement[i], {EntryKind::file, bytes(statement[i + 1])}});
            }
        }
    } else if (verb == "file") {
        disk->folders[cloud].names.push_back(first);
        disk->trees[cloud].push_back({first, {EntryKind::file, bytes(argument(2))}});
    } else if (verb == "access") {
        disk->folders[inHome(".cache")];
    } else if (verb == "free") {
        disk->capacities = {0, bytes(first)};
    } else if (verb == "busy") {
        for (const std::string& name : disk->folders[inHome(first)].names) {
            disk->irremovable.insert(CleanCore::PathText::join(inHome(first), name));
        }
    } else if (verb == "protect") {
        disk->links[inHome(first)] = inHome("Documents/x");
    } else if (verb == "hold") {
        const auto pass = [gate = gate, first](const std::string& path, auto&&...) {
            if (path.ends_with(first)) {
                gate.pass();
            }
        };
        disk->onMeasure = pass;
        disk->onVisit = disk->onRemove = drive->onRelease = onTool = pass;
    } else {
        throw std::invalid_argument(verb);
    }
}

Strings split(const std::string& text, const std::string& separator)
{
    Strings parts;
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t to = std::min(text.find(separator, from), text.size());
        parts.push_back(text.substr(from, to - from));
        from = to + separator.size();
    }
    return parts;
}

std::vector<Strings> statements(const std::string& text)
{
    std::vector<Strings> all;
    for (const std::string& part : split(text, ";")) {
        std::string statement = part.substr(part.find_first_not_of(' '));
        if (const std::size_t end = statement.find(' '); end != std::string::npos) {
            statement.replace(end, 1, ", ");
        }
        all.push_back(split(statement, ", "));
    }
    return all;
}

std::string inHome(const std::string& path)
{
    return "/home/me/" + path;
}

std::string inCloud(const std::string& name)
{
    return cloud + '/' + name;
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
