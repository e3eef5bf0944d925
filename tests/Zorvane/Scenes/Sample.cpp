#include "tests/Zorvane/Scenes/Sample.h"

#include "CleanCore/Support/PathText.h"

namespace ZorvaneTests::Sample {

using CleanCore::EntryAttributes;
using CleanCore::EntryKind;
using CleanCore::RuleTier;

namespace {

const std::string cloud = "/home/me/Library/Mobile Documents/com~apple~CloudDocs";

} // namespace

void grantAccess(ScriptedApplication& application)
{
    application.disk->folders["/home/me/.cache"];
}

void addFolder(ScriptedApplication& application, const std::string& id, RuleTier tier,
               const std::string& base, const Sizes& items)
{
    CleanCore::CleaningRule rule;
    rule.id = id;
    rule.tier = tier;
    rule.kind = CleanCore::RuleKind::fileSystem;
    rule.basePaths = {base};
    application.catalog.rules.push_back(rule);
    for (const auto& [name, bytes] : items) {
        application.disk->folders[base].names.push_back(name);
        application.disk->measures[CleanCore::PathText::join(base, name)].sizeBytes = bytes;
    }
    application.disk->folders[base];
}

void addTypicalAreas(ScriptedApplication& application)
{
    const auto add = [&](const auto&... arguments) { addFolder(application, arguments...); };
    add("cache-browsers", RuleTier::safe, "/home/me/.cache/mozilla/firefox",
        Sizes{{"k3v9x1qa.default-release", 1'840 * MB}, {"p0s8mmzt.work", 412 * MB}});
    add("dev-npm", RuleTier::safe, "/home/me/.npm",
        Sizes{{"_cacache", 2'310 * MB}, {"_npx", 186 * MB}, {"_logs", 4'200 * kB}});
    add("dev-gradle", RuleTier::reviewRequired, "/home/me/.gradle/caches",
        Sizes{{"modules-2", 3'960 * MB},
              {"8.5", 720 * MB},
              {"jars-9", 245 * MB},
              {"transforms-3", 96 * MB}});
    add("cache-user", RuleTier::safe, "/home/me/.cache",
        Sizes{{"gnome-software", 236 * MB},
              {"babl", 1'300 * kB},
              {"fontconfig", 18 * MB},
              {"gstreamer-1.0", 940 * kB},
              {"evince", 62 * MB},
              {"epiphany", 148 * MB}});
    add("trash-user", RuleTier::reviewRequired, "/home/me/.local/share/Trash/files",
        Sizes{{"Holiday video (unedited).mkv", 1'420 * MB},
              {"debian-12.4.0-amd64-netinst.iso", 659 * MB},
              {"old-backup.tar.zst", 310 * MB},
              {"draft.odt", 84 * kB}});
    add("whatsapp-media", RuleTier::reviewRequired,
        "/home/me/Library/Group Containers/group.net.whatsapp.WhatsApp.shared/Message/Media",
        Sizes{{"491700000001@s.whatsapp.net", 870 * MB}, {"family@g.us", 455 * MB}});
    add("logs-apps", RuleTier::safe, "/home/me/.config/Code/logs",
        Sizes{{"20240105T091502", 28 * MB}, {"20240102T180011", 3'100 * kB}});
    application.addSnapshots({"2024-01-05-091500", "2024-01-06-091500"});
}

Strings hostileNames()
{
    std::string longName;
    while (longName.size() < 300) {
        longName += "a-very-long-name-";
    }
    return {"two\nlines\tand a tab",
            "invoice\u202Efdp.exe",
            longName.substr(0, 300),
            "<b>bold<i> <img src='x'> &amp;",
            "not utf-8: \xff\xfe",
            "\u0627\u0644\u0639\u0631\u0628\u064A\u0629 \u05E2\u05D1\u05E8\u05D9\u05EA",
            "\u1F600 na\u0308ive \u65E5\u672C\u8A9E.txt",
            "   "};
}

std::string longTitle()
{
    return "Zwischenspeicher der Entwicklungsumgebungen, Paketverwaltungen und "
           "Fehlerberichterstattungsprogramme aller Benutzeroberflächen";
}

std::string cloudPath(const std::string& name)
{
    return cloud + '/' + name;
}

void addCloudFolder(ScriptedApplication& application, const std::string& name,
                    std::int64_t fileCount, std::int64_t bytes, const Sizes& apps)
{
    application.disk->folders[cloud].names.push_back(name);
    auto& tree = application.disk->trees[cloudPath(name)];
    for (std::int64_t file = 0; file < fileCount; ++file) {
        tree.push_back({"file" + std::to_string(file),
                        EntryAttributes{EntryKind::file, file == 0 ? bytes : 0}});
    }
    for (const auto& [app, appBytes] : apps) {
        tree.push_back({app, EntryAttributes{EntryKind::folder, 0}});
        tree.push_back({app + "/binary", EntryAttributes{EntryKind::file, appBytes}});
    }
}

void addTypicalCloud(ScriptedApplication& application)
{
    addCloudFolder(application, "Photos", 2'500, 18'400 * MB);
    addCloudFolder(application, "Design", 320, 6'250 * MB,
                   {{"Sketcher.app", 412 * MB}, {"Palette.app", 96 * MB}, {"Fonts.app", 51 * MB}});
    addCloudFolder(application, "Documents from the old laptop", 940, 2'130 * MB);
    addCloudFolder(application, "Scans", 12, 48 * MB);
}

} // namespace ZorvaneTests::Sample
