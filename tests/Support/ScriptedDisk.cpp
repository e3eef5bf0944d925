#include "tests/Support/ScriptedDisk.h"

#include "CleanCore/Support/PathText.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace CleanCoreTests {

using namespace CleanCore;

class ScriptedDisk::Remover : public Removal
{
public:
    explicit Remover(const ScriptedDisk& disk) : m_disk(disk) {}

    [[nodiscard]] RemovalOutcome remove(const std::string& /*base*/, const std::string& path,
                                        const std::optional<EntryIdentity>& /*seen*/) override
    {
        if (m_disk.onRemove) {
            m_disk.onRemove(path);
        }
        if (m_disk.irremovable.contains(path)) {
            return {.error = EBUSY};
        }
        const std::lock_guard lock(m_disk.m_mutex);
        m_disk.m_removed.push_back(path);
        return {};
    }

private:
    const ScriptedDisk& m_disk;
};

void ScriptedDisk::add(const std::string& base, const std::string& name, std::int64_t size,
                       Timestamp modifiedAt)
{
    folders[base].names.push_back(name);
    measures[PathText::join(base, name)] = {size, modifiedAt, std::nullopt};
}

std::vector<std::string> ScriptedDisk::removed() const
{
    const std::lock_guard lock(m_mutex);
    return m_removed;
}

std::optional<std::string> ScriptedDisk::perUserFolder(PerUserFolder folder) const
{
    return folder == PerUserFolder::cache ? "/per-user/cache" : "/per-user/tmp";
}

bool ScriptedDisk::exists(const std::string& path) const
{
    return folders.contains(path) || measures.contains(path);
}

std::vector<std::string> ScriptedDisk::namesInFolder(const std::string& path) const
{
    const auto folder = folders.find(path);
    const int error = folder == folders.end() ? ENOENT : folder->second.error;
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), path);
    }
    return folder->second.names;
}

std::vector<EntryMeasure> ScriptedDisk::measure(const std::string& folder,
                                                std::span<const std::string> names,
                                                const std::stop_token& stop) const
{
    if (onMeasure) {
        onMeasure(folder, stop);
    }
    std::vector<EntryMeasure> result;
    for (const std::string& name : names) {
        const auto found = measures.find(PathText::join(folder, name));
        result.push_back(found == measures.end() ? EntryMeasure() : found->second);
    }
    return result;
}

std::optional<EntryAttributes> ScriptedDisk::attributes(const std::string& path) const
{
    for (const auto& [folder, entries] : trees) {
        for (const auto& [name, attributes] : entries) {
            if (PathText::join(folder, name) == path) {
                return attributes;
            }
        }
    }
    return trees.contains(path) ? std::optional(EntryAttributes{EntryKind::folder, 0})
                                : std::nullopt;
}

bool ScriptedDisk::visitTree(const std::string& path, const TreeVisitor& visit) const
{
    if (onVisit) {
        onVisit(path);
    }
    const auto tree = trees.find(path);
    if (tree == trees.end()) {
        return false;
    }
    for (const auto& [name, attributes] : tree->second) {
        const std::string entry = PathText::join(path, name);
        if (!visit({entry, attributes})) {
            break;
        }
    }
    return true;
}

std::string ScriptedDisk::resolvingSymbolicLinks(const std::string& path) const
{
    const auto found = links.find(path);
    return found == links.end() ? path : found->second;
}

std::optional<std::int64_t> ScriptedDisk::availableCapacity(const std::string& /*path*/) const
{
    const std::lock_guard lock(m_mutex);
    return capacities.at(std::min(m_capacityCalls++, capacities.size() - 1));
}

std::unique_ptr<Removal>
ScriptedDisk::beginRemoval(const std::string& /*home*/,
                           std::span<const std::string> /*protectedFolders*/) const
{
    return std::make_unique<Remover>(*this);
}

} // namespace CleanCoreTests
