#include "tests/Zorvane/Support/TestWindow.h"

#include "Zorvane/Desktop/UpdaterController.h"
#include "tests/Support/Table.h"

#include <QFile>
#include <algorithm>

namespace ZorvaneTests {

namespace {

/// "SCREEN STATE | STEPS"
const char* const scenes = R"(
terms first-run | declined; open
permission missing | open
ready with-permission | access; open
scanning rule | area dev-npm, safe, a, a=12480M; area other, safe, b, b=1; hold b; ready; scan
results empty | results
results typical | typical; access; results
results expanded | typical; access; results; expand dev-npm; expand cache-browsers
results unreadable-area | typical; unreadable cache-thumbnails; results; expand cache-thumbnails
results huge-figures | area cache-user, safe, a, a=largest; area dev-npm, safe, b, a=499995T, b=499995T; area whatsapp-media, review, c, a=499995G; results; expand cache-user
results hostile-names | area trash-user, review, Trash, hostile=10M; user <b>Augusta Ada King</b>; results; expand trash-user
results long-titles | area cache-long, safe, a, a=999990M, b=40M; long cache-long; unreadable cache-bad; long cache-bad; area other-long, review, b, a=7M; long other-long; results; expand cache-long
results cleaning | typical; results; hold; cleaning
results closing | typical; results; hold; cleaning; close
confirmation review-areas | typical; results; select dev-gradle; select trash-user; select whatsapp-media; select tm-local-snapshots; confirm
confirmation long-titles | area cache-long, safe, a, a=999990M; long cache-long; area other-long, review, b, a=largest; long other-long; results; select other-long; confirm
report details | area temp-npm, safe, npm, hostile=10M, a=9M, b=8M, c=7M; busy npm; protect npm/c; results; clean; details
icloud measuring | cloud Photos, 4, 1G; cloud Design, 3200, 6250M; hold Photos; results; sheet; measured 1
icloud empty | results; sheet; measured
icloud selected | drive; results; sheet; measured; tick Photos; tick Design
icloud freed | drive; free 18448M; results; sheet; measured; tick Photos; tick Scans; release
icloud drives | drive; other git-annex, Archive, 900M, Films, 4G; other Nextcloud, Work, 80M; other ownCloud, closed; results; sheet; measured; tick Photos; tickother git-annex/Archive; release; fetch git-annex/Archive
icloud hostile-names | cloud hostile, 2, 6M, hostile.app=3M; results; sheet; measured; tick a
shell menu | access; open; menu
shell about | access; open; menu; about
shell update-offered | access; open; update Finds the caches of more managers.
)";

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

void addLongTexts(ScriptedApplication& application, const std::string& id)
{
    const std::string text = "Zwischenspeicher der Entwicklungsumgebungen, Paketverwaltungen und "
                             "Fehlerberichterstattungsprogramme aller Benutzeroberflächen. ";
    application.texts["rule." + id + ".title"] = text;
    application.texts["category.explanation." + id] = text + text;
    application.texts["category.warning." + id] = text + text;
}

void updateTo(const MainWindow& window, const std::string& notes)
{
    const QString feed =
        QStringLiteral(R"({"version": "9.8.7", "link": "https://example.org/", "notes": "%1"})");
    window.window().findChild<Zorvane::UpdaterController*>()->conclude(
        feed.arg(QString::fromStdString(notes)).toUtf8());
}

void playStep(MainWindow& window, const Strings& step)
{
    ScriptedApplication& application = window.application;
    const std::string argument = step.size() > 1 ? step[1] : "";
    const auto state = [&]() -> Zorvane::AppState& { return window.state(); };
    const auto press = [&](const char* context, const char* name) {
        window.press(QCoreApplication::translate(context, name).toStdString());
    };
    const std::map<std::string, std::function<void()>> verbs = {
        {"typical", [&] { application.prepare(typicalAreas); }},
        {"drive", [&] { application.prepare(typicalCloud); }},
        {"long", [&] { addLongTexts(application, argument); }},
        {"user", [&] { application.fullName = QString::fromStdString(argument); }},
        {"declined", [&] { QFile::remove(application.preferencesFile()); }},
        {"open", [&] { window.open(); }},
        {"ready", [&] { window.open().continueWithoutPermission(); }},
        {"results", [&] { play(window, "ready"), scan(state()); }},
        {"scan",
         [&] {
             state().startScan();
             waitUntil([&] { return state().bytesFoundSoFar() > 0 && state().currentRuleId(); });
         }},
        {"expand", [&] { window.press(state().texts().ruleTitle(argument) + ", "); }},
        {"select", [&] { state().selectAll(argument); }},
        {"confirm", [&] { state().requestClean(); }},
        {"clean", [&] { runClean(state()); }},
        {"cleaning", [&] { state().performClean(), application.gate.waitUntilReached(); }},
        {"close", [&] { window.window().close(); }},
        {"details", [&] { window.item("SkippedSummary").setProperty("showDetails", true); }},
        {"sheet", [&] { state().cloud()->openICloud(), state().cloud()->reloadICloud(); }},
        {"measured",
         [&] {
             const int left = argument.empty() ? 0 : std::stoi(argument);
             waitUntil([&] { return state().cloud()->icloudPending() == left; });
         }},
        {"tick", [&] { state().cloud()->setICloudSelected(inCloud(argument), true); }},
        {"tickother", [&] { state().cloud()->setICloudSelected(inHome(argument), true); }},
        {"fetch",
         [&] {
             application.otherDrives[0]->refusals = {
                 {inHome(argument), {CleanCore::CloudRefusalReason::programFailed}}};
             state().cloud()->requestFetch(inHome(argument));
             waitUntil([&] { return !state().cloud()->isFetching(); });
         }},
        {"release",
         [&] {
             state().cloud()->requestEvict();
             waitUntil([&] { return !state().cloud()->isEvicting(); });
         }},
        {"menu", [&] { press("TitleBar", "Menu"); }},
        {"about", [&] { press("ApplicationMenu", "About Zorvane"); }},
        {"update", [&] { updateTo(window, argument); }},
    };
    const auto verb = verbs.find(step.front());
    verb == verbs.end() ? application.prepare(step) : verb->second();
    window.settle();
}

} // namespace

void play(MainWindow& window, const std::string& steps)
{
    for (const Strings& step : statements(steps)) {
        playStep(window, step);
    }
}

Strings allScenes()
{
    Strings names;
    for (const Strings& row : CleanCoreTests::table(scenes)) {
        names.push_back(row[0]);
    }
    return names;
}

void show(MainWindow& window, const std::string& scene)
{
    const auto rows = CleanCoreTests::table(scenes);
    play(window, std::ranges::find(rows, scene, [](const Strings& row) { return row[0]; })->at(1));
}

} // namespace ZorvaneTests
