#include "tests/Zorvane/Scenes/Sample.h"

namespace ZorvaneTests::Sample {

using CleanCore::RuleTier;

void grantAccess(ScriptedApplication& application)
{
    application.disk->folders["/home/me/.cache"];
}

void addTypicalAreas(ScriptedApplication& application)
{
    const auto add = [&](const auto&... arguments) { application.addFolder(arguments...); };
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

void addLongTitled(ScriptedApplication& application, const std::string& id, const Sizes& items)
{
    application.texts["rule." + id + ".title"] = longTitle();
    const std::string sentences = longTitle() + ". " + longTitle() + '.';
    application.texts["category.explanation." + id] = sentences;
    application.texts["category.warning." + id] = sentences;
    application.addFolder(id, id[0] == 'c' ? RuleTier::safe : RuleTier::reviewRequired,
                          "/areas/" + id, items);
}

void addTypicalCloud(ScriptedApplication& application)
{
    application.addCloudFolder("Photos", 2'500, 18'400 * MB);
    application.addCloudFolder(
        "Design", 320, 6'250 * MB,
        {{"Sketcher.app", 412 * MB}, {"Palette.app", 96 * MB}, {"Fonts.app", 51 * MB}});
    application.addCloudFolder("Documents from the old laptop", 940, 2'130 * MB);
    application.addCloudFolder("Scans", 12, 48 * MB);
}

} // namespace ZorvaneTests::Sample
