#include "CleanCore/CloudDrive/SyncClient/SyncedTree.h"

#include "CleanCore/Support/PathText.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

namespace CleanCore {

namespace {

std::vector<std::string> namesIn(const std::string& folder)
{
    std::vector<std::string> names;
    std::error_code error;
    std::filesystem::directory_iterator entries(folder, error);
    for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error)) {
        names.push_back(entries->path().filename().native());
    }
    // The last one is taken first.
    std::ranges::sort(names, std::greater());
    return names;
}

} // namespace

bool visitSyncedFiles(const std::string& path, const Placeholders& placeholders,
                      const std::function<bool(const std::string&, const LocalEntry&)>& visit)
{
    const std::uint64_t device = placeholders.entryAt(path).device;
    std::vector<std::string> pending = {path};
    while (!pending.empty()) {
        const std::string current = std::move(pending.back());
        pending.pop_back();
        const LocalEntry entry = placeholders.entryAt(current);
        if (entry.device != device ||
            Placeholders::isClientsOwn(PathText::lastComponent(current))) {
            continue;
        }
        if (entry.kind == LocalKind::folder) {
            for (const std::string& name : namesIn(current)) {
                pending.push_back(PathText::join(current, name));
            }
        } else if (entry.kind == LocalKind::file || entry.kind == LocalKind::placeholder) {
            if (!visit(current, entry)) {
                return false;
            }
        }
    }
    return true;
}

} // namespace CleanCore
