#include "CleanCore/Rules/PathExpander.h"

#include "CleanCore/FileSystem/Descriptors.h"
#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/FileSystem/LinkResolver.h"
#include "CleanCore/Support/PathText.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <system_error>
#include <utility>

namespace CleanCore::PathExpander {

namespace {

struct Token
{
    std::string_view text;
    PerUserFolder folder;
};
constexpr Token tokens[] = {{"$DARWIN_USER_CACHE_DIR", PerUserFolder::cache},
                            {"$DARWIN_USER_TEMP_DIR", PerUserFolder::temporary}};

/// The matches of one pattern while it is expanded.
class Matches
{
public:
    Matches(const FileManager& fileManager, const std::stop_token& stop)
        : m_fileManager(fileManager), m_stop(stop)
    {
    }

    /// Components before `first` are names, even when they are called "*".
    void append(const std::vector<std::string>& components, std::size_t first);

    Expansion expansion;

private:
    [[nodiscard]] std::vector<std::string> namesFor(std::size_t wildcard,
                                                    const std::string& folder);
    [[nodiscard]] std::vector<std::string> sortedNames(const std::string& folder);

    const FileManager& m_fileManager;
    const std::stop_token& m_stop;
    // The resolved folders that each wildcard has already visited.
    std::set<std::pair<std::size_t, std::string>> m_visited;
    std::size_t m_repeatsLeft = repeatLimit;
};

void Matches::append(const std::vector<std::string>& components, std::size_t first)
{
    const auto begin = components.begin();
    const auto wildcard =
        std::find(begin + static_cast<std::ptrdiff_t>(first), components.end(), "*");
    if (wildcard == components.end()) {
        std::string path = PathText::fromComponents(components);
        if (m_fileManager.exists(path)) {
            expansion.bases.push_back(std::move(path));
        }
        return;
    }
    const auto index = static_cast<std::size_t>(wildcard - begin);
    std::vector<std::string> next = components;
    for (std::string& name : namesFor(index, PathText::fromComponents({begin, wildcard}))) {
        if (m_stop.stop_requested()) {
            return;
        }
        next[index] = std::move(name);
        append(next, index + 1);
    }
}

/// The names that the wildcard matches in one folder, within the limit on repeated visits.
std::vector<std::string> Matches::namesFor(std::size_t wildcard, const std::string& folder)
{
    const auto visit = [&] {
        return std::pair(wildcard, m_fileManager.resolvingSymbolicLinks(folder));
    };
    if (m_repeatsLeft == 0 && m_visited.contains(visit())) {
        expansion.isCutShort = true;
        return {};
    }
    std::vector<std::string> names = sortedNames(folder);
    if (!names.empty() && !m_visited.insert(visit()).second) {
        if (names.size() > m_repeatsLeft) {
            expansion.isCutShort = true;
            names.resize(m_repeatsLeft);
        }
        m_repeatsLeft -= names.size();
    }
    return names;
}

std::vector<std::string> Matches::sortedNames(const std::string& folder)
{
    try {
        std::vector<std::string> names = m_fileManager.namesInFolder(folder);
        std::sort(names.begin(), names.end());
        return names;
    } catch (const std::system_error& error) {
        // A wildcard whose folder is missing or unreadable matches nothing.
        expansion.isCutShort = expansion.isCutShort || isShortage(error.code().value());
        return {};
    }
}

} // namespace

Expansion expansion(std::span<const std::string> patterns, const std::string& home,
                    const FileManager& fileManager, const std::stop_token& stop)
{
    Expansion all;
    for (const std::string& pattern : patterns) {
        std::string base = expand(pattern, home, fileManager);
        if (pattern.find('*') == std::string::npos) {
            all.bases.push_back(std::move(base));
            continue;
        }
        // Home and the current folder may have a component "*", which is a name.
        const std::vector<std::string> components = PathText::components(base);
        const std::string_view own =
            std::string_view(pattern).substr(pattern.starts_with("~/") ? 1 : 0);
        const std::size_t first = components.size() - (PathText::components(own).size() - 1);
        Expansion matches = expandGlob(components, fileManager, stop, first);
        std::move(matches.bases.begin(), matches.bases.end(), std::back_inserter(all.bases));
        all.isCutShort = all.isCutShort || matches.isCutShort;
    }
    return all;
}

std::vector<std::string> expandAll(std::span<const std::string> patterns, const std::string& home,
                                   const FileManager& fileManager, const std::stop_token& stop)
{
    return expansion(patterns, home, fileManager, stop).bases;
}

std::string expand(const std::string& pattern, const std::string& home,
                   const FileManager& fileManager)
{
    if (auto folder = expandToken(pattern, fileManager)) {
        return *folder;
    }
    if (pattern == "~") {
        return home;
    }
    if (pattern.compare(0, 2, "~/") == 0) {
        const std::size_t rest = pattern.find_first_not_of('/', 1);
        return PathText::join(home,
                              std::string_view(pattern).substr(std::min(rest, pattern.size())));
    }
    return absolutePath(pattern);
}

std::optional<std::string> expandToken(std::string_view pattern, const FileManager& fileManager)
{
    for (const Token& token : tokens) {
        if (pattern == token.text) {
            return fileManager.perUserFolder(token.folder);
        }
    }
    return std::nullopt;
}

Expansion expandGlob(const std::vector<std::string>& components, const FileManager& fileManager,
                     const std::stop_token& stop, std::size_t first)
{
    Matches matches(fileManager, stop);
    matches.append(components, first);
    return std::move(matches.expansion);
}

} // namespace CleanCore::PathExpander
