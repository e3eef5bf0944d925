#include "CleanCore/Rules/PathExpander.h"

#include "CleanCore/Platform/FileManager.h"
#include "CleanCore/Platform/LinkResolver.h"
#include "CleanCore/Support/PathText.h"

#include <algorithm>
#include <system_error>

namespace CleanCore::PathExpander {

namespace {

struct Token
{
    std::string_view text;
    PerUserFolder folder;
};
constexpr Token tokens[] = {{"$DARWIN_USER_CACHE_DIR", PerUserFolder::cache},
                            {"$DARWIN_USER_TEMP_DIR", PerUserFolder::temporary}};

std::vector<std::string> sortedNames(const std::string& folder, const FileManager& fileManager)
{
    try {
        std::vector<std::string> names = fileManager.namesInFolder(folder);
        std::sort(names.begin(), names.end());
        return names;
    } catch (const std::system_error&) {
        // A wildcard whose folder is missing or unreadable matches nothing.
        return {};
    }
}

/// One pattern's matches on their way.
struct Matches
{
    const FileManager& fileManager;
    const std::stop_token& stop;
    std::size_t pathsLeft = pathLimit;
    std::vector<std::string> paths = {};

    /// Looks for wildcards from component `first` on: an entry that is itself called "*" is a name.
    void append(const std::vector<std::string>& components, std::size_t first);
};

void Matches::append(const std::vector<std::string>& components, std::size_t first)
{
    const auto begin = components.begin();
    const auto wildcard =
        std::find(begin + static_cast<std::ptrdiff_t>(first), components.end(), "*");
    if (wildcard == components.end()) {
        std::string path = PathText::fromComponents(components);
        if (fileManager.exists(path)) {
            paths.push_back(std::move(path));
        }
        return;
    }
    const std::string folder = PathText::fromComponents({begin, wildcard});
    const auto index = static_cast<std::size_t>(wildcard - begin);
    std::vector<std::string> next = components;
    for (std::string& name : sortedNames(folder, fileManager)) {
        if (pathsLeft == 0 || stop.stop_requested()) {
            return;
        }
        --pathsLeft;
        next[index] = std::move(name);
        append(next, index + 1);
    }
}

} // namespace

std::vector<std::string> expandAll(std::span<const std::string> patterns, const std::string& home,
                                   const FileManager& fileManager, const std::stop_token& stop)
{
    std::vector<std::string> bases;
    for (const std::string& pattern : patterns) {
        std::string base = expand(pattern, home, fileManager);
        if (pattern.find('*') == std::string::npos) {
            bases.push_back(std::move(base));
            continue;
        }
        for (std::string& match : expandGlob(PathText::components(base), fileManager, stop)) {
            bases.push_back(std::move(match));
        }
    }
    return bases;
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
        return PathText::join(home, std::string_view(pattern).substr(2));
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

std::vector<std::string> expandGlob(const std::vector<std::string>& components,
                                    const FileManager& fileManager, const std::stop_token& stop)
{
    Matches matches{fileManager, stop};
    matches.append(components, 0);
    return std::move(matches.paths);
}

} // namespace CleanCore::PathExpander
