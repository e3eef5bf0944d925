#include "tests/Zorvane/Scenes/Sample.h"
#include "tests/Zorvane/Scenes/Scene.h"

namespace ZorvaneTests {

namespace {

using CleanCore::RuleTier;

void showTypical(MainWindow& window)
{
    Sample::addTypicalAreas(window.application);
    Sample::grantAccess(window.application);
    window.openResults();
}

/// Opens the results and lists the items of these areas.
void openExpanded(MainWindow& window, const Strings& areas)
{
    window.openResults();
    for (const std::string& area : areas) {
        window.press(title(window, area) + QStringLiteral(", "));
    }
}

void showExpanded(MainWindow& window)
{
    showTypical(window);
    window.press(QStringLiteral("%1, ").arg(title(window, "dev-npm")));
    window.press(QStringLiteral("%1, ").arg(title(window, "cache-browsers")));
}

void showToolArea(MainWindow& window)
{
    window.application.addSnapshots(
        {"2024-01-05-091500", "2024-01-06-091500", "2024-01-07-091500"});
    openExpanded(window, {"tm-local-snapshots"});
}

void showUnreadable(MainWindow& window)
{
    Sample::addTypicalAreas(window.application);
    window.application.addUnreadableArea("cache-thumbnails");
    openExpanded(window, {"cache-thumbnails"});
}

void showHugeCategory(MainWindow& window)
{
    Sizes items;
    items.reserve(100'000);
    for (int item = 0; item < 100'000; ++item) {
        items.emplace_back("entry-" + std::to_string(item), 512 * Sample::kB - item);
    }
    window.application.addFolder("cache-user", RuleTier::safe, "/home/me/.cache", items);
    openExpanded(window, {"cache-user"});
}

void showHugeFigures(MainWindow& window)
{
    const auto add = [&](const char* id, RuleTier tier, std::int64_t bytes) {
        window.application.addFolder(id, tier, std::string("/areas/") + id,
                                     {{"a", bytes}, {"b", bytes}});
    };
    add("cache-user", RuleTier::safe, Sample::largest);
    add("dev-npm", RuleTier::safe, 499'995 * Sample::GB * 1'000);
    add("whatsapp-media", RuleTier::reviewRequired, 499'995 * Sample::GB);
    add("other-area", RuleTier::reviewRequired, 999 * Sample::PB);
    openExpanded(window, {"cache-user"});
}

void showHostileNames(MainWindow& window)
{
    Sizes items;
    for (const std::string& name : Sample::hostileNames()) {
        items.emplace_back(name, 10 * Sample::MB);
    }
    window.application.addFolder("trash-user", RuleTier::reviewRequired,
                                 "/home/me/.local/share/Trash/files", items);
    window.application.fullName = QStringLiteral("<b>Ada</b>\n\u202EAugusta ").repeated(12);
    openExpanded(window, {"trash-user"});
}

void showLongTitles(MainWindow& window)
{
    for (const char* id : {"cache-long", "dev-long"}) {
        Sample::addLongTitled(window.application, id,
                              {{"a", 999'990 * Sample::MB}, {"b", 40 * Sample::MB}});
    }
    window.application.addUnreadableArea("dev-long-unreadable");
    window.application.catalog.rules.back().tier = RuleTier::reviewRequired;
    window.application.texts["rule.dev-long-unreadable.title"] = Sample::longTitle();
    window.openResults();
    window.press(QString::fromStdString(Sample::longTitle()));
}

void showRing(MainWindow& window)
{
    window.application.addFolder("cache-user", RuleTier::safe, "/areas/a", {{"a", 75}});
    window.application.addFolder("dev-npm", RuleTier::safe, "/areas/b", {{"b", 25}});
    window.openResults();
}

void showNothingSelected(MainWindow& window)
{
    showTypical(window);
    for (const auto& category : std::vector(window.state().categories())) {
        window.state().deselectAll(category.rule.id);
    }
    window.settle();
}

} // namespace

QString title(const MainWindow& window, const std::string& ruleId)
{
    return QString::fromStdString(window.state().texts().ruleTitle(ruleId));
}

Scenes resultsScenes()
{
    return {
        {"results", "empty", [](MainWindow& window) { window.openResults(); }, true},
        {"results", "typical", showTypical, true},
        {"results", "expanded", showExpanded, true},
        {"results", "tool-area", showToolArea},
        {"results", "unreadable-area", showUnreadable, true},
        {"results", "100000-items", showHugeCategory},
        {"results", "huge-figures", showHugeFigures, true},
        {"results", "hostile-names", showHostileNames},
        {"results", "long-titles", showLongTitles},
        {"results", "three-to-one", showRing},
        {"results", "nothing-selected", showNothingSelected},
    };
}

} // namespace ZorvaneTests
