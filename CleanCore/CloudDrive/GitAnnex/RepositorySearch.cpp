#include "CleanCore/CloudDrive/GitAnnex/RepositorySearch.h"

#include "CleanCore/CloudDrive/GitAnnex/AnnexRepository.h"
#include "CleanCore/Support/PathText.h"

#include <algorithm>
#include <deque>
#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <system_error>

namespace CleanCore {

namespace {

struct Folder
{
    std::string path;
    int depth = 0;
};

std::optional<dev_t> deviceOf(const std::string& path)
{
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 ? std::optional(status.st_dev) : std::nullopt;
}

/// The folders in a folder that are worth a look; none if it is a cache.
std::vector<std::string> subfolders(const std::string& path)
{
    std::vector<std::string> names;
    std::error_code error;
    std::filesystem::directory_iterator entries(path, error);
    for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error)) {
        const std::string name = entries->path().filename().native();
        if (name == "CACHEDIR.TAG") {
            return {};
        }
        std::error_code unreadable;
        if (name.front() != '.' && name != "node_modules" &&
            entries->symlink_status(unreadable).type() == std::filesystem::file_type::directory) {
            names.push_back(name);
        }
    }
    std::ranges::sort(names);
    return names;
}

} // namespace

std::vector<std::string> findAnnexRepositories(const std::string& home,
                                               std::span<const std::string> excluded,
                                               const std::stop_token& stop,
                                               const SearchLimits& limits)
{
    const auto end = std::chrono::steady_clock::now() + limits.time;
    const std::optional<dev_t> device = deviceOf(home);
    std::vector<std::string> found;
    // The nearest ones come first, so that a limit cuts off the far ones.
    std::deque<Folder> pending = {{home, 0}};
    for (std::size_t seen = 0; !pending.empty() && seen < limits.folders; ++seen) {
        if (stop.stop_requested() || std::chrono::steady_clock::now() > end) {
            break;
        }
        const Folder folder = std::move(pending.front());
        pending.pop_front();
        if (isAnnexRepository(folder.path)) {
            found.push_back(folder.path);
            continue;
        }
        if (folder.depth >= limits.depth) {
            continue;
        }
        for (const std::string& name : subfolders(folder.path)) {
            std::string path = PathText::join(folder.path, name);
            if (std::ranges::find(excluded, path) == excluded.end() && deviceOf(path) == device) {
                pending.push_back({std::move(path), folder.depth + 1});
            }
        }
    }
    std::ranges::sort(found);
    return found;
}

} // namespace CleanCore
