#include "CleanCore/Commands/Running/ToolLocations.h"

#include "CleanCore/FileSystem/LinkResolver.h"
#include "CleanCore/Support/PathText.h"

#include <stdexcept>

namespace CleanCore {

namespace {

std::vector<std::string> systemPaths(Tool tool)
{
    switch (tool) {
    case Tool::tmutil:
        return {"/usr/bin/tmutil"};
    case Tool::xcrun:
        return {"/usr/bin/xcrun"};
    case Tool::brew:
        return {"/opt/homebrew/bin/brew", "/usr/local/bin/brew",
                "/home/linuxbrew/.linuxbrew/bin/brew"};
    case Tool::docker:
        return {"/usr/local/bin/docker", "/usr/bin/docker"};
    case Tool::flatpak:
        return {"/usr/bin/flatpak"};
    case Tool::podman:
        return {"/usr/bin/podman"};
    case Tool::gitAnnex:
        return {"/usr/bin/git-annex"};
    }
    return {};
}

} // namespace

ToolLocations ToolLocations::below(const std::string& root)
{
    if (root.substr(0, 1) != "/") {
        throw std::invalid_argument("not absolute");
    }
    // A confined run would reach the real tools through it.
    if (resolveSymbolicLinks(root) == "/") {
        throw std::invalid_argument("leads to the root");
    }
    return ToolLocations(std::string(PathText::withoutTrailingSlashes(root)));
}

ToolLocations ToolLocations::forHome(bool isConfined, const std::optional<std::string>& root)
{
    if (root) {
        return below(*root);
    }
    return isConfined ? none() : ofSystem();
}

std::vector<std::string> ToolLocations::paths(Tool tool) const
{
    if (!m_prefix) {
        return {};
    }
    std::vector<std::string> paths = systemPaths(tool);
    for (std::string& path : paths) {
        path.insert(0, *m_prefix);
    }
    return paths;
}

} // namespace CleanCore
