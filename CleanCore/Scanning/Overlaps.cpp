#include "CleanCore/Scanning/Overlaps.h"

#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/Rules/PathExpander.h"
#include "CleanCore/Support/PathText.h"

#include <algorithm>
#include <set>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace CleanCore {

namespace {

/// An item and its place in the file system.
struct Entry
{
    // The path with all links resolved except the entry itself. The separator sorts before every
    // other byte, so that the content of an entry follows it directly.
    std::string place;
    std::size_t result = 0;
    std::size_t item = 0;
};

constexpr char separator = '\0';

std::vector<Entry> entriesOf(const std::vector<CategoryResult>& results,
                             const FileManager& fileManager)
{
    std::vector<Entry> entries;
    std::unordered_map<std::string, std::string> resolvedFolders;
    for (std::size_t result = 0; result < results.size(); ++result) {
        if (results[result].rule.kind != RuleKind::fileSystem) {
            continue;
        }
        const std::vector<ScannedItem>& items = results[result].items;
        for (std::size_t item = 0; item < items.size(); ++item) {
            const std::string& path = items[item].path;
            const auto [folder, isNew] = resolvedFolders.try_emplace(PathText::parent(path));
            if (isNew) {
                folder->second = fileManager.resolvingSymbolicLinks(folder->first);
            }
            std::string place = PathText::join(folder->second, PathText::lastComponent(path));
            std::replace(place.begin(), place.end(), '/', separator);
            entries.push_back({std::move(place), result, item});
        }
    }
    return entries;
}

bool isInside(const Entry& entry, const Entry& outer)
{
    return entry.place.size() > outer.place.size() &&
           entry.place.compare(0, outer.place.size(), outer.place) == 0 &&
           entry.place[outer.place.size()] == separator;
}

} // namespace

std::vector<CategoryResult> withoutOverlaps(std::vector<CategoryResult> results,
                                            const FileManager& fileManager)
{
    std::vector<Entry> entries = entriesOf(results, fileManager);
    const auto rank = [&](const Entry& entry) {
        const CleaningRule& rule = results[entry.result].rule;
        return std::tuple(rule.tier == RuleTier::safe, std::string_view(rule.id), entry.item);
    };
    std::sort(entries.begin(), entries.end(), [&](const Entry& a, const Entry& b) {
        const int order = a.place.compare(b.place);
        return order != 0 ? order < 0 : rank(a) < rank(b);
    });
    std::vector<std::vector<bool>> isLeftOut(results.size());
    for (std::size_t i = 0; i < results.size(); ++i) {
        isLeftOut[i].resize(results[i].items.size());
    }
    for (std::size_t first = 0; first < entries.size();) {
        std::size_t next = first + 1;
        while (next < entries.size() && entries[next].place == entries[first].place) {
            isLeftOut[entries[next].result][entries[next].item] = true;
            ++next;
        }
        if (next < entries.size() && isInside(entries[next], entries[first])) {
            CategoryResult& outer = results[entries[first].result];
            isLeftOut[entries[first].result][entries[first].item] = true;
            outer.reachedEntries.push_back(
                {outer.items[entries[first].item].path, results[entries[next].result].rule.id});
        }
        first = next;
    }
    for (std::size_t i = 0; i < results.size(); ++i) {
        std::size_t item = 0;
        std::erase_if(results[i].items, [&](const ScannedItem&) { return isLeftOut[i][item++]; });
    }
    return results;
}

std::vector<CleaningRule> rulesReachingInto(std::span<const CleaningRule> rules,
                                            std::span<const CleaningRule> all,
                                            const std::string& home, const FileManager& fileManager,
                                            const std::stop_token& stop)
{
    if (rules.size() == all.size()) {
        return {};
    }
    const auto basesOf = [&](const CleaningRule& rule) {
        std::set<std::string> bases;
        if (rule.kind == RuleKind::fileSystem) {
            for (const std::string& base :
                 PathExpander::expandAll(rule.basePaths, home, fileManager, stop)) {
                bases.insert(PathText::standardized(fileManager.resolvingSymbolicLinks(base)));
            }
        }
        return bases;
    };
    std::set<std::string> ids;
    std::set<std::string> bases;
    for (const CleaningRule& rule : rules) {
        ids.insert(rule.id);
        bases.merge(basesOf(rule));
    }
    const auto liesInBase = [&](const std::string& path) {
        std::string folder = path;
        while (!bases.contains(folder)) {
            std::string outer = PathText::parent(folder);
            if (outer.size() >= folder.size()) {
                return false;
            }
            folder = std::move(outer);
        }
        return true;
    };
    std::vector<CleaningRule> reaching;
    for (const CleaningRule& rule : all) {
        if (!ids.contains(rule.id) && std::ranges::any_of(basesOf(rule), liesInBase)) {
            reaching.push_back(rule);
        }
    }
    return reaching;
}

} // namespace CleanCore
