#include "tests/Zorvane/Scenes/Sample.h"
#include "tests/Zorvane/Scenes/Scene.h"

namespace ZorvaneTests {

namespace {

using CleanCore::RuleTier;

/// Opens the confirmation with what is chosen by itself and all of these areas.
void confirm(MainWindow& window, const Strings& areas)
{
    Zorvane::AppState& state = window.openResults();
    for (const std::string& area : areas) {
        state.selectAll(area);
    }
    state.requestClean();
    window.settle();
}

void confirmTypical(MainWindow& window, const Strings& areas)
{
    Sample::addTypicalAreas(window.application);
    confirm(window, areas);
}

void confirmAcknowledged(MainWindow& window)
{
    confirmTypical(window, {"dev-gradle", "trash-user"});
    window.itemOfType(QStringLiteral("Acknowledgement")).setProperty("checked", true);
    window.settle();
}

void confirmWithoutWarning(MainWindow& window)
{
    window.application.texts["rule.own.title"] = "An area of one's own";
    window.application.addArea("own", RuleTier::reviewRequired, {12 * Sample::MB});
    confirm(window, {"own"});
}

void confirmNoBytes(MainWindow& window)
{
    window.application.addSnapshots({"2024-01-05-091500"});
    confirm(window, {"tm-local-snapshots"});
}

void confirmLongTitles(MainWindow& window)
{
    for (const char* id : {"cache-long", "dev-long", "other-long"}) {
        Sample::addLongTitled(window.application, id, {{"a", 999'990 * Sample::MB}});
    }
    window.application.texts["rule.hostile.title"] = "<b>Bold</b> & <img src=x>\n\u202Esdrawkcab";
    window.application.addArea("hostile", RuleTier::reviewRequired, {Sample::largest});
    confirm(window, {"dev-long", "other-long", "hostile"});
}

void confirmManyAreas(MainWindow& window)
{
    for (const CleanCore::CleaningRule& rule : CleanCore::RulesCatalog::loadBundled().rules) {
        if (rule.kind == CleanCore::RuleKind::fileSystem) {
            window.application.addArea(rule.id, rule.tier, {10 * Sample::MB});
        }
    }
    confirm(window, {"dev-gradle", "dev-maven", "trash-user", "whatsapp-media", "dev-ai-models"});
}

void showCleaning(MainWindow& window)
{
    Sample::addTypicalAreas(window.application);
    window.application.disk->onRemove = [gate = window.gate](const std::string&) { gate->pass(); };
    window.openResults().performClean();
    window.gate->waitUntilReached();
    window.settle();
}

void showClosing(MainWindow& window)
{
    showCleaning(window);
    window.state().requestClose();
    window.settle();
}

enum class Skipped { nothing, inUse, protectedOnes, both };

void report(MainWindow& window, Skipped skipped)
{
    Sample::addTypicalAreas(window.application);
    ScriptedDisk& disk = *window.application.disk;
    if (skipped == Skipped::inUse || skipped == Skipped::both) {
        disk.irremovable.insert({"/home/me/.npm/_npx", "/home/me/.cache/evince"});
    }
    if (skipped == Skipped::protectedOnes || skipped == Skipped::both) {
        disk.links["/home/me/.cache/babl"] = "/home/me/Documents/babl";
    }
    disk.capacities = {0, 3'120 * Sample::MB};
    runClean(window.openResults());
    window.settle();
}

void reportDetails(MainWindow& window)
{
    Sizes items;
    for (const std::string& name : Sample::hostileNames()) {
        items.emplace_back(name, 10 * Sample::MB);
        window.application.disk->irremovable.insert("/home/me/.npm/_tmp/" + name);
    }
    window.application.addFolder("temp-npm", RuleTier::safe, "/home/me/.npm/_tmp", items);
    report(window, Skipped::both);
    window.itemOfType(QStringLiteral("SkippedSummary")).setProperty("showDetails", true);
    window.settle();
}

void reportOn(MainWindow& window, const std::vector<std::int64_t>& sizes)
{
    window.application.addArea("cache-a", RuleTier::safe, sizes);
    window.application.disk->capacities = {0, sizes.front()};
    runClean(window.openResults());
    window.settle();
}

} // namespace

Scenes cleaningScenes()
{
    const auto confirming = [](const Strings& areas) {
        return [areas](MainWindow& window) { confirmTypical(window, areas); };
    };
    const auto reporting = [](Skipped skipped) {
        return [skipped](MainWindow& window) { report(window, skipped); };
    };
    return {
        {"results", "cleaning", showCleaning, true},
        {"results", "closing", showClosing},
        {"confirmation", "safe-only", confirming({})},
        {"confirmation", "one-review-area", confirming({"dev-gradle"})},
        {"confirmation", "two-review-areas", confirming({"dev-gradle", "trash-user"}), true},
        {"confirmation", "no-warning", confirmWithoutWarning},
        {"confirmation", "acknowledged", confirmAcknowledged},
        {"confirmation", "zero-bytes", confirmNoBytes},
        {"confirmation", "long-titles", confirmLongTitles},
        {"confirmation", "many-areas", confirmManyAreas, true},
        {"report", "nothing-skipped", reporting(Skipped::nothing), true},
        {"report", "in-use", reporting(Skipped::inUse)},
        {"report", "protected", reporting(Skipped::protectedOnes)},
        {"report", "both", reporting(Skipped::both)},
        {"report", "details", reportDetails, true},
        {"report", "zero-freed",
         [](MainWindow& window) {
             reportOn(window, {0, 0, 0});
         }},
        {"report", "huge-figures",
         [](MainWindow& window) {
             reportOn(window, {Sample::largest, Sample::largest});
         }},
    };
}

} // namespace ZorvaneTests
