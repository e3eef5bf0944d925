#include "CleanCore/Support/PathText.h"
#include "Zorvane/Desktop/UpdaterController.h"
#include "tests/Zorvane/Scenes/Scene.h"

#include <QFile>
#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace ZorvaneTests {

namespace {

using CleanCore::RuleTier;

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

/// From "NAME=SIZE" texts, in the order of their sizes.
Sizes sizes(const Strings& arguments, std::size_t first)
{
    Sizes result;
    for (std::size_t i = first; i < arguments.size(); ++i) {
        const Strings parts = split(arguments[i], "=");
        for (const std::string& name : names(parts[0])) {
            result.emplace_back(name, bytes(parts[1]) - static_cast<std::int64_t>(result.size()));
        }
    }
    return result;
}

std::string inHome(const std::string& path)
{
    return ScriptedApplication::home + ("/" + path);
}

void addArea(ScriptedApplication& application, const Strings& arguments)
{
    const bool isSafe = arguments[1] == "safe";
    application.addFolder(arguments[0], isSafe ? RuleTier::safe : RuleTier::reviewRequired,
                          inHome(arguments[2]), sizes(arguments, 3));
}

void addCloudFolders(ScriptedApplication& application, const Strings& arguments)
{
    for (const std::string& name : names(arguments[0])) {
        application.addCloudFolder(name, std::stoll(arguments[1]), bytes(arguments[2]),
                                   sizes(arguments, 3));
    }
}

void addLongTexts(ScriptedApplication& application, const std::string& id)
{
    const std::string text = "Zwischenspeicher der Entwicklungsumgebungen, Paketverwaltungen und "
                             "Fehlerberichterstattungsprogramme aller Benutzeroberflächen. ";
    application.texts["rule." + id + ".title"] = text;
    application.texts["category.explanation." + id] = text + text;
    application.texts["category.warning." + id] = text + text;
}

/// Holds work on the paths that end so at the window's gate, from now on.
void hold(MainWindow& window, const std::string& end)
{
    const auto pass = [gate = window.gate, end](const std::string& path, auto&&...) {
        if (path.ends_with(end)) {
            gate->pass();
        }
    };
    ScriptedDisk& disk = *window.application.disk;
    disk.onMeasure = pass;
    disk.onVisit = pass;
    disk.onRemove = pass;
}

/// Lets nothing in a folder be removed.
void makeBusy(ScriptedDisk& disk, const std::string& path)
{
    for (const std::string& name : disk.folders[path].names) {
        disk.irremovable.insert(CleanCore::PathText::join(path, name));
    }
}

void updateTo(const MainWindow& window, const std::string& notes)
{
    const QString feed =
        QStringLiteral(R"({"version": "9.8.7", "link": "https://example.org/", "notes": "%1"})");
    const QString text = QString::fromStdString(notes + ' ').repeated(notes == "long" ? 900 : 1);
    window.window().findChild<Zorvane::UpdaterController*>()->conclude(feed.arg(text).toUtf8());
}

const char* const typicalAreas =
    "area cache-browsers, safe, .cache/mozilla, k3v9x1qa.default-release=1840M, work=412M;"
    "area dev-npm, safe, .npm, _cacache=2310M, _npx=186M, _logs=4200k;"
    "area dev-gradle, review, .gradle/caches, modules-2=3960M, 8.5=720M, jars-9=245M;"
    "area cache-user, safe, .cache, gnome-software=236M, babl=1300k, evince=62M, epiphany=148M;"
    "area trash-user, review, .local/share/Trash/files, Holiday video (unedited).mkv=1420M, "
    "debian-12.4.0-amd64-netinst.iso=659M, draft.odt=84k;"
    "area whatsapp-media, review, WhatsApp/Media, 4917001@s.whatsapp.net=870M;"
    "snapshots 2024-01-05-091500, 2024-01-06-091500";
const char* const typicalCloud =
    "cloud Photos, 2500, 18400M;"
    "cloud Design, 320, 6250M, Sketcher.app=412M, Palette.app=96M, Fonts.app=51M;"
    "cloud Documents from the old laptop, 940, 2130M; cloud Scans, 12, 48M";

void playStep(MainWindow& window, const std::string& verb, const Strings& arguments)
{
    ScriptedApplication& application = window.application;
    const std::string first = arguments.empty() ? "" : arguments[0];
    const auto state = [&]() -> Zorvane::AppState& { return window.state(); };
    const auto press = [&](const char* context, const char* name) {
        window.press(QCoreApplication::translate(context, name).toStdString());
    };
    const std::map<std::string, std::function<void()>> verbs = {
        {"typical", [&] { play(window, typicalAreas); }},
        {"area", [&] { addArea(application, arguments); }},
        {"unreadable", [&] { application.addUnreadableArea(first); }},
        {"snapshots", [&] { application.addSnapshots(arguments); }},
        {"long", [&] { addLongTexts(application, first); }},
        {"user", [&] { application.fullName = QString::fromStdString(first); }},
        {"drive", [&] { play(window, typicalCloud); }},
        {"cloud", [&] { addCloudFolders(application, arguments); }},
        {"access", [&] { application.disk->folders["/home/me/.cache"]; }},
        {"free",
         [&] {
             application.disk->capacities = {0, bytes(first)};
         }},
        {"busy", [&] { makeBusy(*application.disk, inHome(first)); }},
        {"protect", [&] { application.disk->links[inHome(first)] = inHome("Documents/x"); }},
        {"hold", [&] { hold(window, first); }},
        {"declined", [&] { QFile::remove(application.preferencesFile()); }},
        {"open", [&] { window.open(); }},
        {"ready", [&] { window.open().continueWithoutPermission(); }},
        {"results", [&] { play(window, "ready"), scan(state()); }},
        {"scan",
         [&] {
             state().startScan();
             waitUntil([&] { return state().bytesFoundSoFar() > 0 && state().currentRuleId(); });
         }},
        {"expand", [&] { window.press(state().texts().ruleTitle(first) + ", "); }},
        {"select", [&] { state().selectAll(first); }},
        {"confirm", [&] { state().requestClean(); }},
        {"clean", [&] { runClean(state()); }},
        {"cleaning", [&] { state().performClean(), window.gate->waitUntilReached(); }},
        {"close", [&] { state().requestClose(); }},
        {"details", [&] { window.item("SkippedSummary").setProperty("showDetails", true); }},
        {"sheet", [&] { state().cloud()->openICloud(), state().cloud()->reloadICloud(); }},
        {"measured",
         [&] {
             const int left = first.empty() ? 0 : std::stoi(first);
             waitUntil([&] { return state().cloud()->icloudPending() == left; });
         }},
        {"tick",
         [&] { state().cloud()->setICloudSelected(ScriptedApplication::cloudPath(first), true); }},
        {"release",
         [&] {
             state().cloud()->requestEvict();
             waitUntil([&] { return !state().cloud()->isEvicting(); });
         }},
        {"menu", [&] { press("TitleBar", "Menu"); }},
        {"about", [&] { press("ApplicationMenu", "About Zorvane"); }},
        {"update", [&] { updateTo(window, first); }},
    };
    verbs.at(verb)();
    window.settle();
}

} // namespace

void play(MainWindow& window, const std::string& steps)
{
    for (const std::string& text : split(steps, ";")) {
        const std::string step = text.substr(text.find_first_not_of(' '));
        const std::size_t end = std::min(step.find(' '), step.size());
        playStep(window, step.substr(0, end),
                 split(step.substr(std::min(end + 1, step.size())), ", "));
    }
}

} // namespace ZorvaneTests
