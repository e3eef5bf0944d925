#include "CleanCore/Commands/CommandCleanEngine.h"
#include "CleanCore/Commands/CommandScanEngine.h"
#include "tests/Support/ScriptedCommandRunner.h"

#include <gtest/gtest.h>

using namespace CleanCore;
using namespace CleanCoreTests;

namespace {

using Items = std::vector<std::pair<std::string, std::int64_t>>;
using Outputs = std::vector<std::string>;
using Script = ScriptedCommandRunner::Script;

const std::string flatpakRule = "dev-flatpak-unused";
const std::string podmanRule = "podman-reclaimable";

const std::vector<Call> flatpakListings = {
    {"/usr/bin/flatpak", "list", "--app", "--columns=ref,runtime"},
    {"/usr/bin/flatpak", "list", "--user", "--runtime", "--all", "--columns=ref,size,runtime"},
    {"/usr/bin/flatpak", "pin", "--user"}};
const std::vector<Call> podmanListings = {
    {"/usr/bin/podman", "--remote=false", "images", "--filter", "dangling=true", "--quiet",
     "--no-trunc"},
    {"/usr/bin/podman", "--remote=false", "system", "df", "--verbose"}};

Call flatpakRemoval(const std::string& reference)
{
    return {"/usr/bin/flatpak", "uninstall",    "--user",
            "--noninteractive", "--no-related", "runtime/" + reference};
}

Script answering(const std::vector<Call>& listings, const Outputs& outputs)
{
    Script script;
    for (std::size_t index = 0; index < listings.size(); ++index) {
        script[listings[index]] = outputs[index];
    }
    return script;
}

Items scan(const std::string& ruleId, const Script& script)
{
    const auto runner = std::make_shared<ScriptedCommandRunner>(script);
    Items items;
    for (const CategoryResult& result :
         CommandScanEngine(runner).scan(std::vector{commandRule(ruleId)})) {
        for (const ScannedItem& item : result.items) {
            items.emplace_back(item.path, item.sizeBytes);
        }
    }
    return items;
}

const std::string fullId = "3f53bb00af943dfdf815650be70c0fa7b426e56a66f5e3362b47a129d57d5991";

const std::string usage =
    "Images space usage:\n\n"
    "REPOSITORY                TAG         IMAGE ID      CREATED      SIZE        SHARED SIZE  "
    "UNIQUE SIZE  CONTAINERS\n"
    "<none>                    <none>      3f53bb00af94  2 weeks ago  1.2GB       800MB        "
    "400MB        0\n"
    "docker.io/library/debian  latest      a4d2f91c0b77  3 weeks ago  120MB       0B           "
    "120MB        1\n"
    "<none>                    <none>      a4d2f91c0b78  3 weeks ago  120MB       0B           "
    "120MB        1\n"
    "\nContainers space usage:\n\n"
    "CONTAINER ID  IMAGE  COMMAND  LOCAL VOLUMES  SIZE  CREATED  STATUS  NAMES\n"
    "5e6f7a8b9c0d  x      3f53bb00af94  0  9GB  2 weeks ago  777GB  y\n";

} // namespace

TEST(FlatpakArea, OffersOnlyPlatformsThatNothingNeeds)
{
    const std::string apps = "org.example.App/x86_64/stable\torg.gnome.Platform/x86_64/46\n";
    const std::string platform43 = "org.gnome.Platform/x86_64/43\t865.2\u00a0MB\t\n";
    struct Case
    {
        std::string what;
        Outputs outputs;
        Items items;
    };
    for (const Case& row : std::vector<Case>{
             {"used and unused",
              {apps, "org.gnome.Platform/x86_64/46\t935.0\u00a0MB\t\n" + platform43, ""},
              {{"org.gnome.Platform/x86_64/43", 865'200'000}}},
             {"the C locale's size",
              {"", "org.kde.Platform/x86_64/5.15\t1.0?GB", "No pinned patterns\n"},
              {{"org.kde.Platform/x86_64/5.15", 1'000'000'000}}},
             {"translations go with their platform",
              {apps,
               "org.gnome.Platform.Locale/x86_64/46\t1 MB\t\n"
               "org.gnome.Platform.Locale/x86_64/43\t2 MB\t\n",
               ""},
              {{"org.gnome.Platform.Locale/x86_64/43", 2'000'000}}},
             {"needed by another runtime, or by itself",
              {"",
               "org.gnome.Sdk/x86_64/43\t1 GB\torg.gnome.Platform/x86_64/43\n"
               "org.kde.Platform/x86_64/6.5\t1 GB\torg.kde.Platform/x86_64/6.5\n" +
                   platform43,
               ""},
              {{"org.kde.Platform/x86_64/6.5", 1'000'000'000}}},
             {"others pinned",
              {"", platform43, "  runtime/org.gnome.Plat/*\n  *.Sdk\n"},
              {{"org.gnome.Platform/x86_64/43", 865'200'000}}},
         }) {
        EXPECT_EQ(scan(flatpakRule, answering(flatpakListings, row.outputs)), row.items)
            << row.what;
    }
    for (const Outputs& outputs :
         {// Kits, extensions and apps are never offered.
          Outputs{
              "",
              "org.gnome.Sdk/x86_64/43\t1 GB\t\norg.freedesktop.Platform.GL.default/x86_64/22.08\t"
              "1 GB\t\norg.kde.PlatformTheme.QGnomePlatform/x86_64/5.15\t1 MB\t\n"
              "org.example.App/x86_64/stable\t1 GB\torg.gnome.Platform/x86_64/46\n",
              ""},
          // Pinned, by another version's pattern, any pattern, or with its translations.
          Outputs{"", platform43, "Pinned patterns:\n  runtime/org.gnome.Platform/x86_64/42\n"},
          Outputs{"", platform43, "  org.*.Plat*\n"},
          Outputs{"", "org.gnome.Platform.Locale/x86_64/43\t2 MB\t\n",
                  "  runtime/org.gnome.Platform/x86_64/43\n"},
          // Where an app cannot be read, nothing is certain.
          Outputs{apps + "org.example.Other/x86_64/stable\t\n", platform43, ""},
          Outputs{"Ref   Runtime\norg.example.App/x86_64/stable   org.gnome.Platform/x86_64/43\n",
                  platform43, ""},
          // References that are none.
          Outputs{"",
                  "-x.Platform/x86_64/43\t1 GB\na.Platform/x86_64\t1 GB\na.Platform/x y/1\t1 GB\n"
                  "a.Platform//1\t1 GB\na.Platform/x86_64/1/2\t1 GB\n",
                  ""}}) {
        EXPECT_EQ(scan(flatpakRule, answering(flatpakListings, outputs)), Items())
            << testing::PrintToString(outputs);
    }
}

TEST(FlatpakArea, HasNoItemsUnlessAllListingsSucceed)
{
    for (const Call& failing : flatpakListings) {
        Script script =
            answering(flatpakListings, {"", "org.gnome.Platform/x86_64/43\t865.2 MB\n", ""});
        script[failing] = std::nullopt;
        EXPECT_EQ(scan(flatpakRule, script), Items{});
    }
}

TEST(FlatpakArea, RemovesChosenRuntimesOneByOneIfStillUnused)
{
    const std::string kept = "org.gnome.Platform/x86_64/43";
    const std::string gone = "org.kde.Platform/x86_64/5.15";
    const std::string failing = "org.kde.Platform/x86_64/5.12";
    // Since the scan an app was installed that needs the first of them.
    Script script = answering(flatpakListings,
                              {"org.example.App/x86_64/stable\t" + kept + "\n",
                               kept + "\t1 GB\n" + gone + "\t2 GB\n" + failing + "\t3 GB\n", ""});
    script[flatpakRemoval(gone)] = "";
    const auto runner = std::make_shared<ScriptedCommandRunner>(script);
    const CleaningReport report = CommandCleanEngine(runner).clean(std::vector<CleaningSelection>{
        {commandRule(flatpakRule),
         {{.path = kept, .sizeBytes = 1}, {.path = gone, .sizeBytes = 2}, {.path = failing}}}});

    std::vector<Call> calls = flatpakListings;
    calls.push_back(flatpakRemoval(gone));
    calls.push_back(flatpakRemoval(failing));
    EXPECT_EQ(runner->calls(), calls);
    // Runtimes share files, so their sizes are not what is freed.
    EXPECT_EQ(report.removed, (std::vector<CleaningReport::RemovedItem>{{gone, 0}}));
    ASSERT_EQ(report.skipped.size(), 2U);
    EXPECT_EQ(report.skipped[0].path, kept);
    EXPECT_EQ(report.skipped[1].path, failing);
}

TEST(PodmanArea, OffersDanglingImagesAtTheSizeThatIsTheirsAlone)
{
    const std::string tagged = "a4d2f91c0b77" + std::string(52, '0');
    const std::string used = "a4d2f91c0b78" + std::string(52, '0');
    const std::string unknown = std::string(64, 'e');
    struct Case
    {
        std::string what;
        Outputs outputs;
        Items items;
    };
    for (const Case& row : std::vector<Case>{
             {"with a digest's algorithm",
              {"sha256:" + fullId + "\n", usage},
              {{"Podman — image 3f53bb00af94", 400'000'000}}},
             {"bare", {fullId + "\n", usage}, {{"Podman — image 3f53bb00af94", 400'000'000}}},
             {"used by a container", {used + "\n", usage}, {}},
             {"not in the table", {unknown + "\n", usage}, {{"Podman — image eeeeeeeeeeee", 0}}},
             {"no table", {fullId + "\n", ""}, {{"Podman — image 3f53bb00af94", 0}}},
             {"none", {"", usage}, {}},
             {"lines that are no ids", {"3f53\nWARNING\n--all\n3f53bb00af94 x\n", usage}, {}},
         }) {
        EXPECT_EQ(scan(podmanRule, answering(podmanListings, row.outputs)), row.items) << row.what;
    }
}

TEST(PodmanArea, RemovesAChosenImageByItsIdIfStillDangling)
{
    const Call removal = {"/usr/bin/podman", "--remote=false", "image", "rm", "3f53bb00af94"};
    Script script = answering(podmanListings, {fullId + "\n", usage});
    script[removal] = "Deleted: " + fullId + "\n";
    const auto runner = std::make_shared<ScriptedCommandRunner>(script);
    const CleaningReport report = CommandCleanEngine(runner).clean(std::vector<CleaningSelection>{
        {commandRule(podmanRule),
         {{.path = "Podman — image 3f53bb00af94", .sizeBytes = 400},
          {.path = "Podman — image a4d2f91c0b77", .sizeBytes = 120}}}});
    EXPECT_EQ(report.removed,
              (std::vector<CleaningReport::RemovedItem>{{"Podman — image 3f53bb00af94", 400}}));
    ASSERT_EQ(report.skipped.size(), 1U);
    EXPECT_EQ(runner->calls().back(), removal);
    EXPECT_EQ(runner->calls().size(), podmanListings.size() + 1);
}
