#include "CleanCore/FileSystem/LinkResolver.h"

#include "CleanCore/Support/PathText.h"

#include <filesystem>
#include <optional>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace CleanCore {

namespace {

// The kernel's own limit; see path_resolution(7).
constexpr int followedLinksLimit = 40;
constexpr std::size_t longestTarget = 4096;

std::optional<std::string> linkTarget(const std::string& path)
{
    std::string target(longestTarget, '\0');
    const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
    if (length <= 0) {
        return std::nullopt;
    }
    target.resize(static_cast<std::size_t>(length));
    return target;
}

/// The components of `path` in reverse order, so that the next one is at the end.
std::vector<std::string> reversedComponents(const std::string& path)
{
    std::vector<std::string> parts = PathText::components(path);
    return {parts.rbegin(), parts.rend() - 1};
}

} // namespace

std::string absolutePath(const std::string& path)
{
    if (path.substr(0, 1) == "/") {
        return path;
    }
    std::error_code error;
    const std::filesystem::path current = std::filesystem::current_path(error);
    return error ? path : PathText::join(current.native(), path);
}

std::string resolveSymbolicLinks(const std::string& path)
{
    const std::string start = absolutePath(path);
    if (start.substr(0, 1) != "/") {
        return path;
    }
    std::vector<std::string> remaining = reversedComponents(start);
    std::string resolved = "/";
    int followedLinks = 0;
    while (!remaining.empty()) {
        const std::string name = std::move(remaining.back());
        remaining.pop_back();
        if (name == ".") {
            continue;
        }
        if (name == "..") {
            resolved = PathText::parent(resolved);
            continue;
        }
        std::string next = PathText::join(resolved, name);
        const std::optional<std::string> target =
            followedLinks < followedLinksLimit ? linkTarget(next) : std::nullopt;
        if (!target) {
            resolved = std::move(next);
            continue;
        }
        ++followedLinks;
        if (target->front() == '/') {
            resolved = "/";
        }
        for (std::string& part : reversedComponents(*target)) {
            remaining.push_back(std::move(part));
        }
    }
    return resolved;
}

} // namespace CleanCore
