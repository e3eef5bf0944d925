#pragma once

#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/Support/PathText.h"

#include <algorithm>
#include <cerrno>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <system_error>
#include <utility>

namespace CleanCoreTests {

/// A file system that a test writes down. It changes nothing, and keeps what it was asked to
/// remove. What is not written down is missing.
class ScriptedDisk : public CleanCore::FileManager
{
public:
    struct Folder
    {
        /// In the order in which they are to be listed.
        std::vector<std::string> names;
        /// Not 0: listing it fails with this errno.
        int error = 0;
    };
    using Entries = std::vector<std::pair<std::string, CleanCore::EntryAttributes>>;

    std::map<std::string, Folder> folders;
    /// By path. An entry without one is a file of 0 bytes dated the distant past.
    std::map<std::string, CleanCore::EntryMeasure> measures;
    /// What a path that is a link, or leads through one, resolves to.
    std::map<std::string, std::string> links;
    /// What a walk of a folder comes to, by paths relative to it, in order.
    std::map<std::string, Entries> trees;
    /// Paths whose removal fails.
    std::set<std::string> irremovable;
    /// The free space, call by call; the last answer stays. Nothing: unknown.
    std::vector<std::optional<std::int64_t>> capacities = {0};

    /// Each is called before the operation, on the thread that it runs on.
    std::function<void(const std::string& folder, const std::stop_token& stop)> onMeasure =
        [](auto&&...) {};
    std::function<void(const std::string& path)> onRemove = [](auto&&...) {};
    std::function<void(const std::string& path)> onVisit = [](auto&&...) {};

    /// Adds an entry to the end of the folder `base`.
    void add(const std::string& base, const std::string& name, std::int64_t size,
             CleanCore::Timestamp modifiedAt = {})
    {
        folders[base].names.push_back(name);
        measures[CleanCore::PathText::join(base, name)] = {size, modifiedAt, std::nullopt};
    }

    /// The paths of what was removed, in order.
    [[nodiscard]] std::vector<std::string> removed() const
    {
        const std::lock_guard lock(m_mutex);
        return m_removed;
    }

    [[nodiscard]] std::optional<std::string>
    perUserFolder(CleanCore::PerUserFolder folder) const override
    {
        return folder == CleanCore::PerUserFolder::cache ? "/per-user/cache" : "/per-user/tmp";
    }
    [[nodiscard]] bool exists(const std::string& path) const override
    {
        return folders.contains(path) || measures.contains(path);
    }
    [[nodiscard]] std::vector<std::string> namesInFolder(const std::string& path) const override
    {
        const auto folder = folders.find(path);
        const int error = folder == folders.end() ? ENOENT : folder->second.error;
        if (error != 0) {
            throw std::system_error(error, std::generic_category(), path);
        }
        return folder->second.names;
    }
    [[nodiscard]] std::vector<CleanCore::EntryMeasure>
    measure(const std::string& folder, std::span<const std::string> names,
            const std::stop_token& stop) const override
    {
        onMeasure(folder, stop);
        std::vector<CleanCore::EntryMeasure> result;
        for (const std::string& name : names) {
            const auto found = measures.find(CleanCore::PathText::join(folder, name));
            result.push_back(found == measures.end() ? CleanCore::EntryMeasure() : found->second);
        }
        return result;
    }
    [[nodiscard]] std::optional<CleanCore::EntryAttributes>
    attributes(const std::string& path) const override
    {
        for (const auto& [folder, entries] : trees) {
            for (const auto& [name, attributes] : entries) {
                if (CleanCore::PathText::join(folder, name) == path) {
                    return attributes;
                }
            }
        }
        return trees.contains(path)
                   ? std::optional(CleanCore::EntryAttributes{CleanCore::EntryKind::folder, 0})
                   : std::nullopt;
    }
    bool visitTree(const std::string& path, const CleanCore::TreeVisitor& visit) const override
    {
        onVisit(path);
        const auto tree = trees.find(path);
        if (tree != trees.end()) {
            for (const auto& [name, attributes] : tree->second) {
                const std::string entry = CleanCore::PathText::join(path, name);
                if (!visit({entry, attributes})) {
                    break;
                }
            }
        }
        return tree != trees.end();
    }
    [[nodiscard]] std::string resolvingSymbolicLinks(const std::string& path) const override
    {
        const auto found = links.find(path);
        return found == links.end() ? path : found->second;
    }
    [[nodiscard]] std::optional<std::int64_t>
    availableCapacity(const std::string& /*path*/) const override
    {
        const std::lock_guard lock(m_mutex);
        return capacities.at(std::min(m_capacityCalls++, capacities.size() - 1));
    }
    [[nodiscard]] std::unique_ptr<CleanCore::Removal>
    beginRemoval(const std::string& /*home*/,
                 std::span<const std::string> /*protectedFolders*/) const override
    {
        return std::make_unique<Remover>(*this);
    }

private:
    class Remover : public CleanCore::Removal
    {
    public:
        explicit Remover(const ScriptedDisk& disk) : m_disk(disk) {}

        [[nodiscard]] CleanCore::RemovalOutcome
        remove(const std::string& /*base*/, const std::string& path,
               const std::optional<CleanCore::EntryIdentity>& /*seen*/) override
        {
            m_disk.onRemove(path);
            const std::lock_guard lock(m_disk.m_mutex);
            if (m_disk.irremovable.contains(path)) {
                return {.error = EBUSY};
            }
            m_disk.m_removed.push_back(path);
            return {};
        }

    private:
        const ScriptedDisk& m_disk;
    };

    mutable std::mutex m_mutex;
    mutable std::size_t m_capacityCalls = 0;
    mutable std::vector<std::string> m_removed;
};

} // namespace CleanCoreTests
