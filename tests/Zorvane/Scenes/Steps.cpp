#include "Zorvane/Desktop/UpdaterController.h"
#include "tests/Zorvane/Scenes/Scene.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace ZorvaneTests {

namespace {

using CleanCore::RuleTier;

using Step = std::function<void(MainWindow&, const Strings&)>;

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

std::int64_t bytes(const std::string& text)
{
    if (text == "largest") {
        return std::numeric_limits<std::int64_t>::max();
    }
    // 0 without a unit.
    const std::size_t unit = std::string_view("kMGT").find(text.back()) + 1;
    return std::stoll(text) * static_cast<std::int64_t>(std::pow(1'000, unit));
}

/// "hostile" stands for many names: line ends, a right-to-left override, 300 characters, markup,
/// bytes that are no text, Arabic and Hebrew, spaces.
Strings names(const std::string& text)
{
    if (text != "hostile") {
        return {text};
    }
    return {"two\nlines\tand a tab",
            "invoice\u202Efdp.exe",
            std::string(300, 'a'),
            "<b>bold<i> <img src='x'> &amp;",
            "not utf-8: \xff\xfe",
            "\u0627\u0644\u0639 \u05E2\u05D1\u05E8",
            "   "};
}

/// From "NAME=SIZE" texts.
Sizes sizes(const Strings& arguments, std::size_t first)
{
    Sizes result;
    for (std::size_t i = first; i < arguments.size(); ++i) {
        const Strings parts = split(arguments[i], "=");
        for (const std::string& name : names(parts[0])) {
            // Different sizes keep the order the same.
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

void addLongTexts(ScriptedApplication& application, const std::string& id)
{
    const std::string title = "Zwischenspeicher der Entwicklungsumgebungen, Paketverwaltungen und "
                              "Fehlerberichterstattungsprogramme aller Benutzeroberflächen";
    application.texts["rule." + id + ".title"] = title;
    for (const char* key : {"category.explanation.", "category.warning."}) {
        application.texts[key + id] = title + ". " + title + '.';
    }
}

/// Holds work on these paths at the window's gate.
void hold(MainWindow& window, const Strings& arguments)
{
    ScriptedDisk& disk = *window.application.disk;
    const auto pass = [gate = window.gate, arguments](const std::string& path, auto&&...) {
        if (arguments.size() == 1 || std::ranges::any_of(arguments, [&](const auto& name) {
                return path.ends_with(name);
            })) {
            gate->pass();
        }
    };
    const std::map<std::string, std::function<void()>> works = {
        {"tool", [&] { window.application.whenToolRuns = [pass] { pass(""); }; }},
        {"sizing", [&] { disk.onMeasure = pass; }},
        {"removing", [&] { disk.onRemove = pass; }},
        {"measuring", [&] { disk.onVisit = pass; }},
        {"releasing", [&] { window.application.drive->onRelease = pass; }},
    };
    works.at(arguments[0])();
}

/// Lets the first measuring of an entry of the cloud drive run out of time.
void delay(ScriptedApplication& application, const std::string& name)
{
    // Each thread has its own clock, so that only one measuring is late.
    static thread_local bool isLate = false;
    application.disk->onVisit =
        [late = ScriptedApplication::cloudPath(name), times = std::make_shared<std::atomic<int>>()](
            const std::string& path) { isLate = path == late && (*times)++ == 0; };
    application.steadyNow = [] {
        // Late once: the thread may begin the next attempt too, and reads the clock before its
        // visit.
        return std::chrono::steady_clock::time_point() +
               std::chrono::seconds(std::exchange(isLate, false) ? 91 : 0);
    };
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
    "area logs-apps, safe, .config/Code/logs, 20240105T091502=28M;"
    "snapshots 2024-01-05-091500, 2024-01-06-091500";
const char* const typicalCloud =
    "cloud Photos, 2500, 18400M;"
    "cloud Design, 320, 6250M, Sketcher.app=412M, Palette.app=96M, Fonts.app=51M;"
    "cloud Documents from the old laptop, 940, 2130M; cloud Scans, 12, 48M";

/// Every file area of the bundled catalog.
void addBundledAreas(ScriptedApplication& application)
{
    for (const CleanCore::CleaningRule& rule : CleanCore::RulesCatalog::loadBundled().rules) {
        if (rule.kind == CleanCore::RuleKind::fileSystem) {
            const auto size =
                static_cast<std::int64_t>(10'000'000 + application.catalog.rules.size());
            application.addArea(rule.id, rule.tier, {size});
        }
    }
}

const std::map<std::string, Step>& setUps()
{
    static const std::map<std::string, Step> all = {
        {"typical", [](auto& w, auto&) { play(w, typicalAreas); }},
        {"bundled", [](auto& w, auto&) { addBundledAreas(w.application); }},
        {"area", [](auto& w, auto& a) { addArea(w.application, a); }},
        {"unreadable", [](auto& w, auto& a) { w.application.addUnreadableArea(a[0]); }},
        {"snapshots", [](auto& w, auto& a) { w.application.addSnapshots(a); }},
        {"long", [](auto& w, auto& a) { addLongTexts(w.application, a[0]); }},
        {"user", [](auto& w, auto& a) { w.application.fullName = QString::fromStdString(a[0]); }},
        {"drive", [](auto& w, auto&) { play(w, typicalCloud); }},
        {"cloud",
         [](auto& w, auto& a) {
             w.application.addCloudFolder(a[0], std::stoll(a[1]), bytes(a[2]), sizes(a, 3));
         }},
        {"cloud-files",
         [](auto& w, auto& a) {
             for (const auto& [name, size] : sizes(a, 0)) {
                 w.application.addCloudFolder(name, 2, size, {{name + ".app", size / 2}});
             }
         }},
        {"access", [](auto& w, auto&) { w.application.disk->folders["/home/me/.cache"]; }},
        {"free",
         [](auto& w, auto& a) {
             w.application.disk->capacities = {0, bytes(a[0])};
         }},
        {"busy",
         [](auto& w, auto& a) {
             for (const std::string& each : a) {
                 for (const std::string& name : names(each)) {
                     w.application.disk->irremovable.insert(inHome(a[0] + '/' + name));
                 }
             }
         }},
        {"protect",
         [](auto& w, auto& a) { w.application.disk->links[inHome(a[0])] = inHome("Documents/x"); }},
        {"hold", [](auto& w, auto& a) { hold(w, a); }},
        {"late", [](auto& w, auto& a) { delay(w.application, a[0]); }},
        {"declined",
         [](auto& w, auto&) {
             Zorvane::Preferences(w.application.preferencesFile())
                 .storeAcceptedTerms(QStringLiteral("0.0"), QDateTime::fromSecsSinceEpoch(0));
         }},
    };
    return all;
}

const std::map<std::string, Step>& actions()
{
    static const std::map<std::string, Step> all = {
        {"open", [](auto& w, auto&) { w.open(); }},
        {"ready", [](auto& w, auto&) { w.open().continueWithoutPermission(); }},
        {"results", [](auto& w, auto&) { play(w, "ready"), scan(w.state()); }},
        {"scan",
         [](auto& w, auto& a) {
             w.state().startScan();
             w.gate->waitUntilReached();
             waitUntil([&] {
                 return a.empty() ? !w.state().currentRuleId()
                                  : w.state().bytesFoundSoFar() > 0 && w.state().currentRuleId();
             });
         }},
        {"expand",
         [](auto& w, auto& a) {
             const std::string title = w.state().texts().ruleTitle(a[0]);
             w.press(QString::fromStdString(title) + QStringLiteral(", "));
         }},
        {"select", [](auto& w, auto& a) { w.state().selectAll(a[0]); }},
        {"deselect",
         [](auto& w, auto&) {
             for (const auto& category : std::vector(w.state().categories())) {
                 w.state().deselectAll(category.rule.id);
             }
         }},
        {"confirm", [](auto& w, auto&) { w.state().requestClean(); }},
        {"acknowledge",
         [](auto& w, auto&) {
             w.item(QStringLiteral("Acknowledgement")).setProperty("checked", true);
         }},
        {"clean", [](auto& w, auto&) { runClean(w.state()); }},
        {"cleaning", [](auto& w, auto&) { w.state().performClean(), w.gate->waitUntilReached(); }},
        {"close", [](auto& w, auto&) { w.state().requestClose(); }},
        {"details",
         [](auto& w, auto&) {
             w.item(QStringLiteral("SkippedSummary")).setProperty("showDetails", true);
         }},
        {"sheet",
         [](auto& w, auto&) {
             w.state().cloud()->openICloud(), w.state().cloud()->reloadICloud();
         }},
        {"measured",
         [](auto& w, auto& a) {
             const int left = a.empty() ? 0 : std::stoi(a[0]);
             waitUntil([&] { return w.state().cloud()->icloudPending() == left; });
         }},
        {"tick",
         [](auto& w, auto& a) {
             for (const std::string& name : a) {
                 w.state().cloud()->setICloudSelected(ScriptedApplication::cloudPath(name), true);
             }
         }},
        {"release",
         [](auto& w, auto&) {
             w.state().cloud()->requestEvict(),
                 waitUntil([&] { return !w.state().cloud()->isEvicting(); });
         }},
        {"releasing",
         [](auto& w, auto&) { w.state().cloud()->requestEvict(), w.gate->waitUntilReached(); }},
        {"back", [](auto& w, auto&) { w.state().cloud()->setShowICloud(false); }},
        {"menu", [](auto& w, auto&) { w.press(QCoreApplication::translate("TitleBar", "Menu")); }},
        {"about",
         [](auto& w, auto&) {
             w.press(QCoreApplication::translate("ApplicationMenu", "About Zorvane"));
         }},
        {"update", [](auto& w, auto& a) { updateTo(w, a[0]); }},
    };
    return all;
}

} // namespace

void play(MainWindow& window, const std::string& steps)
{
    for (const std::string& text : split(steps, ";")) {
        const std::string step = text.substr(text.find_first_not_of(' '));
        const std::size_t end = std::min(step.find(' '), step.size());
        const std::string verb = step.substr(0, end);
        const Strings arguments = split(step.substr(std::min(end + 1, step.size())), ", ");
        if (const auto setUp = setUps().find(verb); setUp != setUps().end()) {
            setUp->second(window, arguments);
        } else {
            actions().at(verb)(window, arguments);
            window.settle();
        }
    }
}

} // namespace ZorvaneTests
