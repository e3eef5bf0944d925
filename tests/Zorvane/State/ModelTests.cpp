#include "Zorvane/State/Models/Models.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QAbstractItemModelTester>
#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

/// The values of these roles that a row has, a bool that holds as the name of its role.
std::string rowText(const QAbstractItemModel& model, int row, const Strings& roles)
{
    const QHash<int, QByteArray> names = model.roleNames();
    std::string text;
    for (const std::string& role : roles) {
        const QVariant value = model.index(row, 0).data(names.key(QByteArray::fromStdString(role)));
        const bool isBool = value.typeId() == QMetaType::Bool;
        const std::string word =
            isBool ? (value.toBool() ? role : "") : value.toString().toStdString();
        text += (text.empty() || word.empty() ? "" : " ") + word;
    }
    return text;
}

std::string text(const QAbstractItemModel& model, const Strings& roles)
{
    std::string rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        rows += (row == 0 ? "" : " | ") + rowText(model, row, roles);
    }
    return rows;
}

/// An application's state with its models, set up before it is opened.
struct Opened : ScriptedApplication
{
    void open()
    {
        state.emplace(environment());
        models.emplace(*state);
        for (QAbstractItemModel* model : std::initializer_list<QAbstractItemModel*>{
                 models->results(), models->report(), models->icloud()}) {
            testers.push_back(std::make_unique<QAbstractItemModelTester>(
                model, QAbstractItemModelTester::FailureReportingMode::Fatal));
        }
    }

    std::optional<Zorvane::AppState> state;
    std::optional<Zorvane::Models> models;
    std::vector<std::unique_ptr<QAbstractItemModelTester>> testers;
};

TEST(Models, ResultsOpenTickAndClose)
{
    Opened app;
    app.prepare("area cache-a, safe, a, 0=300, 1=200; area dev-b, review, b, 0=20, 1=10;"
                "tool dev-unavailable-simulators, review; unreadable cache-locked");
    app.script[{"/usr/bin/xcrun", "simctl", "list", "devices", "unavailable", "-j"}] =
        R"({"devices":{"iOS":[{"udid":"A","name":"Phone"},{"udid":"B","name":"Pad"}]}})";
    app.texts = {{"rule.cache-a.title", "Caches"}, {"category.explanation.cache-a", "Kept by A."}};
    app.open();
    Zorvane::ResultsModel& model = *app.models->results();
    scan(*app.state);
    EXPECT_EQ(text(model, {"title", "countText", "sizeText", "isSelected", "isSelectable",
                           "isDiagnostic", "isReviewRequired", "hadAccessErrors", "isLast"}),
              "Caches 2 items 500 bytes isSelected isSelectable isLast | "
              "dev-b 2 items 30 bytes isReviewRequired isLast | "
              "cache-locked 0 items Zero KB isSelectable hadAccessErrors isLast | "
              "dev-unavailable-simulators 2 items Zero KB isDiagnostic isReviewRequired isLast | "
              "isLast");
    for (const int row : {3, 2, 1, 0, 1, -1, 99}) {
        model.toggleExpanded(row);
    }
    EXPECT_EQ(text(model, {"kind", "explanation", "offersSelectAll", "isExpanded", "isLast"}),
              "category isExpanded | details Kept by A. offersSelectAll | item | item isLast | "
              "category isExpanded | "
              "details category.explanation.dev-b offersSelectAll | item | item isLast | "
              "category isExpanded | details category.explanation.cache-locked isLast | "
              "category isExpanded | details category.explanation.dev-unavailable-simulators | "
              "item | item isLast | card isLast");
    EXPECT_EQ(rowText(model, 3, {"path", "sizeText"}), "/home/me/a/1 200 bytes");

    SignalLog log;
    log.note(&model, &QAbstractItemModel::dataChanged, [] { return "told"; });
    const struct
    {
        int row;
        std::string operation;
        /// A letter for each row: X ticked and drawn as selected, x ticked, o drawn so.
        const char* ticks;
    } steps[] = {
        {3, "untick", "ooXo..........."}, {0, "tick", "XoXX..........."},
        {0, "untick", "..............."}, {7, "tick", ".......x......."},
        {5, "all", "....x.xx......."},    {5, "none", "..............."},
        {12, "tick", "..........x.xx."},  {13, "untick", "..............."},
    };
    for (const auto& [row, operation, ticks] : steps) {
        if (operation == "all") {
            model.selectAll(row);
        } else if (operation == "none") {
            model.clearSelection(row);
        } else {
            model.setSelected(row, operation == "tick");
        }
        std::string boxes;
        for (int box = 0; box < model.rowCount(); ++box) {
            const bool isTicked = !rowText(model, box, {"isSelected"}).empty();
            const bool hasLook = !rowText(model, box, {"hasSelectedLook"}).empty();
            boxes += ".xoX"[(isTicked ? 1 : 0) + (hasLook ? 2 : 0)];
        }
        EXPECT_EQ(boxes, ticks) << operation << row;
        EXPECT_EQ(log.take(), "told") << operation << row;
    }
    model.toggleExpanded(0);
    EXPECT_TRUE(text(model, {"kind"}).starts_with("category | category"));
}

TEST(Models, ResultsAndReportShowHostileNamesHarmlesslyAndTellThemApart)
{
    Opened app;
    const std::string name = "evil\u202Egpj\n\xFF<b>";
    app.prepare("area cache-a, safe, a, " + name +
                "=4, evil\u202Egpj\n\xFE<b>=3, c=2, d=1;"
                "protect a/c; free 600; tool brew-cleanup, safe");
    app.script[{"/opt/homebrew/bin/brew", "cleanup", "--dry-run", "-s"}] =
        "Would remove: /cellar/old (1B)\n";
    app.open();
    scan(*app.state);
    Zorvane::ResultsModel& model = *app.models->results();
    model.toggleExpanded(0);
    // A safe area of a tool can be selected, and is no diagnosis.
    EXPECT_EQ(rowText(model, 6, {"title", "isSelectable", "isDiagnostic", "isSelected"}),
              "brew-cleanup isSelectable");
    const std::string shown = "/home/me/a/evil⟨U+202E⟩gpj⟨U+000A⟩\uFFFD<b>";
    EXPECT_EQ(text(model, {"path"}),
              " |  | " + shown + " | " + shown + " | /home/me/a/c | /home/me/a/d |  | ");
    model.setSelected(3, false);
    app.disk->irremovable = {inHome("a/" + name)};
    runClean(*app.state);
    Zorvane::ReportModel& report = *app.models->report();
    EXPECT_EQ(text(report, {"path"}), shown + " | /home/me/a/c");
    EXPECT_EQ(app.state->cleaningReport()->skipped.at(0).path, inHome("a/" + name));
    const QStringList texts = {report.freedText(), report.removedText(), report.visibleFreedText(),
                               report.reasons()[0].title, report.reasons()[1].title};
    EXPECT_EQ(texts.join(QStringLiteral(" | ")).toStdString(),
              "1 byte | freed — 1 items removed | Visible in Finder right now: 600 bytes | "
              "1 in use by an open app | 1 protected by Zorvane");
}

TEST(Models, ConfirmationFollowsTheSelection)
{
    Opened app;
    app.prepare("area cache-a, safe, a, 0=300, 1=200; area dev-b, review, b, 0=40;"
                "area dev-c, review, c, 0=0; area dev-unchosen, review, d, 0=1");
    app.texts = {{"rule.dev-b.title", "Builds <b>B</b> **%1**"},
                 {"category.warning.dev-b", "Takes long."},
                 {"category.warning.dev-unchosen", "Never shown."}};
    app.open();
    Zorvane::ConfirmationModel& model = *app.models->confirmation();
    Zorvane::Figures& figures = *app.models->figures();
    const auto shown = [&] {
        QStringList rows;
        for (const auto& row : model.rows()) {
            rows << row.title + QLatin1String(row.isReviewRequired ? "! " : " ") + row.sizeText;
        }
        EXPECT_EQ(figures.selectedText(), model.totalText());
        rows << model.totalText() << model.warnings();
        return rows.join(QStringLiteral(" | ")).toStdString();
    };
    SignalLog log;
    log.note(&model, &Zorvane::ConfirmationModel::changed, [] { return "confirmation"; });
    log.note(&figures, &Zorvane::Figures::selectionChanged, [] { return "figures"; });
    EXPECT_FALSE(figures.canClean());
    scan(*app.state);
    EXPECT_EQ(shown(), "cache-a 500 bytes | 500 bytes");
    EXPECT_FALSE(model.needsAcknowledgement());
    (void)log.take();
    // An area whose selected items hold nothing has no row, and is acknowledged all the same.
    app.state->selectAll("dev-c");
    EXPECT_EQ(log.take(), "figures, confirmation");
    EXPECT_TRUE(model.needsAcknowledgement());
    app.state->selectAll("dev-b");
    EXPECT_EQ(shown(),
              "cache-a 500 bytes | Builds <b>B</b> **%1**! 40 bytes | 540 bytes | Takes long.");
    EXPECT_EQ(model.plainAcknowledgementText(),
              QStringLiteral("I understand that the selected review required items (Builds "
                             "<b>B</b> **%1**, dev-c) may not be recoverable."));
    EXPECT_EQ(model.acknowledgementText(),
              QStringLiteral("I understand that the selected <b>review required</b> items (Builds "
                             "&lt;b&gt;B&lt;/b&gt; **%1**, dev-c) may <b>not be recoverable</b>."));
    EXPECT_TRUE(figures.canClean());
    (void)log.take();
    app.state->performClean();
    EXPECT_EQ(log.take(), "figures");
    EXPECT_FALSE(figures.canClean());
    waitUntil([&] { return figures.canClean(); });
    app.state->deselectAll("cache-a");
    app.state->deselectAll("dev-b");
    EXPECT_FALSE(figures.canClean());
}

TEST(Models, TheRingGroupsAreasByTheirIds)
{
    Opened app;
    app.prepare("area whatsapp-media, safe, a, 0=10; area cache-x, safe, b, 0=5;"
                "area trash-user, safe, c, 0=1; area dev-y, safe, d, 0=0;"
                "area brew-cleanup, safe, e, 0=2; area logs-a, safe, f, 0=20;"
                "area temp-a, safe, g, 0=40; area whatsapp-media-2, safe, h, 0=100");
    app.open();
    Zorvane::SummaryModel& model = *app.models->summary();
    scan(*app.state);
    EXPECT_EQ(model.totalText(), QStringLiteral("178 bytes"));
    QString rows;
    for (const Zorvane::SummaryRow& row : model.rows()) {
        rows += QStringLiteral("%1 %2 %3-%4 | ")
                    .arg(row.label, row.sizeText)
                    .arg(row.start * 178)
                    .arg(row.end * 178);
    }
    EXPECT_EQ(rows.toStdString(), "WhatsApp 10 bytes 0-10 | Caches 66 bytes 10-76 | "
                                  "Dev (npm, brew) 2 bytes 76-78 | Other 100 bytes 78-178 | ");
}

TEST(Models, TheCloudDriveIsMeasuredReleasedAndTried)
{
    for (const auto& [files, estimate] : {std::pair{89'999, "less than a minute"},
                                          {90'000, "about a minute"},
                                          {180'000, "about 2 minutes"},
                                          {299'999, "about 2 minutes"}}) {
        EXPECT_EQ(Zorvane::ICloudModel::estimate(files).toStdString(), estimate) << files;
    }
    Opened app;
    app.prepare("cloud Work, 1, 10k, 1.app=1k, 2.app=2k, 3.app=3k; cloud Play, 0, 0, 4.app=5k;"
                "file note.txt, 4k; cloud Tool.app, 1, 1k");
    // A file of one entry stays.
    app.drive->refusals = {{inCloud("Work/file"), {CleanCore::CloudRefusalReason::inUse}}};
    app.open();
    Zorvane::ICloudModel& model = *app.models->icloud();
    Zorvane::CloudState& cloud = *app.state->cloud();
    const Strings roles = {"name",      "isBusy",   "isReleased", "isSelected",
                           "filesText", "sizeText", "restText"};
    model.open();
    EXPECT_TRUE(cloud.showICloud() && model.isMeasuring());
    waitUntil([&] { return !model.isMeasuring(); });
    EXPECT_EQ(text(model, roles),
              "Work 4 files 16 KB includes 3 apps (6 KB) that macOS keeps downloaded | "
              "Play 1 files 5 KB includes 1 apps (5 KB) that macOS keeps downloaded | "
              "note.txt 1 files 4 KB | "
              "Tool.app 1 files 1 KB includes 1 apps (1 KB) that macOS keeps downloaded");
    // An application is never released.
    model.setSelected(3, true);
    model.setSelected(0, true);
    model.setSelected(1, true);
    model.setSelected(7, true);
    EXPECT_TRUE(model.canRelease());
    const QStringList before = {model.beforeFreeingText(), model.appsTitle(),
                                (model.appNames() + model.appSizes()).join(u' '),
                                model.moreAppsText()};
    EXPECT_EQ(before.join(u'|').toStdString(),
              "iCloud will release 10 KB in 1 files — this usually takes less than a minute.|"
              "11 KB are apps stored in iCloud Drive.|4.app 3.app 2.app 5 KB 3 KB 2 KB|and 1 more");
    model.revealApps();
    EXPECT_EQ(app.revealed.at(0).size(), 4U);
    cloud.requestEvict();
    EXPECT_TRUE(!model.canRelease() && model.beforeFreeingText().isEmpty());
    waitUntil([&] { return !cloud.isEvicting(); });
    EXPECT_EQ(model.reportText(), QStringLiteral("Nothing was released this time."));
    EXPECT_EQ(model.appsTitle(), QStringLiteral("Still on this Mac: 11 KB in apps."));
    EXPECT_EQ(text(model, {"name", "isOffered", "isReleased"}),
              "Work isOffered | Play isOffered isReleased | note.txt isOffered | Tool.app");
    EXPECT_EQ(rowText(model, 0, {"restText"}), "not wholly released: 2 files stayed");
    EXPECT_EQ(model.refusals(),
              QStringList(QStringLiteral("file and 1 more: the file is open in another program")));

    for (const char* const gone : {"Play", "Tool.app"}) {
        app.disk->trees.erase(inCloud(gone));
    }
    *app.clockStep = 91;
    measureCloud(*app.state);
    EXPECT_EQ(text(model, {"name", "isBusy"}), "note.txt | Work isBusy");
    EXPECT_TRUE(model.busyText().startsWith(QStringLiteral("“Work” went past 90 seconds")));
    model.setSelected(1, true);
    EXPECT_TRUE(cloud.icloudSelection().empty());
    app.disk->folders.clear();
    measureCloud(*app.state);
    EXPECT_TRUE(model.emptyText().startsWith(QStringLiteral("No cloud drive was found.")));
}

TEST(Models, EveryDriveHasItsNameItsSectionAndItsFetching)
{
    Opened app;
    app.prepare("cloud Photos, 1, 9k; other git-annex, Old, 4k, Tool.app, 5k; "
                "other Nextcloud, Work, 2k, Busy, 1k; other ownCloud, closed");
    app.open();
    Zorvane::ICloudModel& model = *app.models->icloud();
    Zorvane::CloudState& cloud = *app.state->cloud();
    EXPECT_EQ(model.driveTitle(), QStringLiteral("iCloud Drive"));
    model.open();
    waitUntil([&] { return !model.isMeasuring(); });
    const Strings roles = {"section", "name", "sizeText", "drive", "isOffered", "canFetch"};
    EXPECT_EQ(text(model, roles),
              "iCloud Drive Photos 9 KB iCloud isOffered | "
              "git-annex — /home/me/git-annex Tool.app 5 KB git-annex isOffered | "
              "Old 4 KB git-annex isOffered | "
              "Nextcloud — /home/me/Nextcloud Work 2 KB Nextcloud isOffered | "
              "Busy 1 KB Nextcloud isOffered");
    EXPECT_EQ(model.driveTitle(), QStringLiteral("iCloud Drive, git-annex, Nextcloud, ownCloud"));
    EXPECT_EQ(model.closedTexts(),
              QStringList(QStringLiteral("ownCloud: /home/me/ownCloud: virtual files are switched "
                                         "off for this folder in its sync client")));
    EXPECT_TRUE(model.returnText().contains(QStringLiteral("when you fetch them")));

    model.setSelected(2, true);
    model.setSelected(3, true);
    EXPECT_TRUE(model.beforeFreeingText().startsWith(
        QStringLiteral("git-annex, Nextcloud will release 6 KB in 2 files")));
    SignalLog log;
    log.note(&cloud, &Zorvane::CloudState::icloudEvictProgressChanged,
             [&] { return model.freeingText().toStdString().substr(0, 47); });
    std::string told;
    QObject::connect(&model, &QAbstractItemModel::dataChanged, &model,
                     [&] { told = rowText(model, 2, {"canFetch"}); });
    cloud.requestEvict();
    waitUntil([&] { return !cloud.isEvicting(); });
    EXPECT_EQ(told, "canFetch");
    EXPECT_EQ(log.take(), "Freeing 1 of 2 — Old… git-annex is removing, "
                          "Freeing 2 of 2 — Work… Nextcloud is removin, ");
    EXPECT_EQ(app.otherDrives[0]->released, Strings{"/home/me/git-annex/Old"});
    EXPECT_EQ(app.otherDrives[1]->released, Strings{"/home/me/Nextcloud/Work"});
    EXPECT_EQ(text(model, {"canFetch"}), " |  | canFetch | canFetch | ");

    // It is fetched in its place, and what stays in the cloud is told.
    app.otherDrives[0]->refusals = {
        {"/home/me/git-annex/Old/x", {CleanCore::CloudRefusalReason::programFailed, 0, "a\nb"}}};
    for (const int row : {0, 2, 3, 9}) {
        model.fetch(row);
        EXPECT_EQ(!model.fetchingText().isEmpty(), cloud.isFetching());
        waitUntil([&] { return !cloud.isFetching(); });
        EXPECT_EQ(model.fetchRefusals().join(u' ').toStdString(),
                  row == 2 ? "x: git-annex failed: a; b" : "");
    }
    EXPECT_EQ(text(model, {"canFetch"}), " |  | canFetch |  | ");
    cloud.openICloud();
    EXPECT_TRUE(model.fetchRefusals().isEmpty());
}

} // namespace
} // namespace ZorvaneTests
