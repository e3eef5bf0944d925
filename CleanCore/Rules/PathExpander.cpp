#include "CleanCore/Rules/PathExpander.h"

#include "CleanCore/Platform/FileManager.h"
#include "CleanCore/Support/PathText.h"

#include <algorithm>
#include <filesystem>
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

/// Looks for wildcards from component `first` on: an entry that is itself called "*" is a name.
void appendMatches(const std::vector<std::string>& components, std::size_t first,
                   const FileManager& fileManager, std::vector<std::string>& matches)
{
    const auto begin = components.begin();
    const auto wildcard =
        std::find(begin + static_cast<std::ptrdiff_t>(first), components.end(), "*");
    if (wildcard == components.end()) {
        std::string path = PathText::fromComponents(components);
        if (fileManager.exists(path)) {
            matches.push_back(std::move(path));
        }
        return;
    }
    const std::string folder = PathText::fromComponents({begin, wildcard});
    const auto index = static_cast<std::size_t>(wildcard - begin);
    std::vector<std::string> next = components;
    for (std::string& name : sortedNames(folder, fileManager)) {
        next[index] = std::move(name);
        appendMatches(next, index + 1, fileManager, matches);
    }
}

} // namespace

std::vector<std::string> expandAll(std::span<const std::string> patterns, const std::string& home,
                                   const FileManager& fileManager)
{
    std::vector<std::string> bases;
    for (const std::string& pattern : patterns) {
        std::string base = expand(pattern, home, fileManager);
        if (pattern.find('*') == std::string::npos) {
            bases.push_back(std::move(base));
            continue;
        }
        for (std::string& match : expandGlob(PathText::components(base), fileManager)) {
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
    if (pattern.substr(0, 1) == "/") {
        return pattern;
    }
    return PathText::join(std::filesystem::current_path().native(), pattern);
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
                                    const FileManager& fileManager)
{
    std::vector<std::string> matches;
    appendMatches(components, 0, fileManager, matches);
    return matches;
}

} // namespace CleanCore::PathExpander
