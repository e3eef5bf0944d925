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

using namespace CleanCore;

/// A file system that a test writes down. It changes nothing, and keeps what it was asked to
/// remove. What is not written down is missing.
class ScriptedDisk : public FileManager
{
public:
    struct Folder
    {
        /// In the order in which they are to be listed.
        std::vector<std::string> names;
        /// Not 0: listing it fails with this errno.
        int error = 0;
    };
    using Entries = std::vector<std::pair<std::string, EntryAttributes>>;

    std::map<std::string, Folder> folders;
    /// By path. An entry without one is a file of 0 bytes dated the distant past.
    std::map<std::string, EntryMeasure> measures;
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
             Timestamp modifiedAt = {})
    {
        folders[base].names.push_back(name);
        measures[PathText::join(base, name)] = {size, modifiedAt, std::nullopt};
    }

    /// The paths of what was removed, in order.
    std::vector<std::string> removed() const
    {
        const std::lock_guard lock(m_mutex);
        return m_removed;
    }

    std::optional<std::string> perUserFolder(PerUserFolder folder) const override
    {
        return folder == PerUserFolder::cache ? "/per-user/cache" : "/per-user/tmp";
    }
    bool exists(const std::string& path) const override
    {
        return folders.contains(path) || measures.contains(path);
    }
    std::vector<std::string> namesInFolder(const std::string& path) const override
    {
        Folder folder = valueAt(folders, path, {{}, ENOENT});
        return folder.error == 0 ? folder.names
                                 : throw std::system_error(folder.error, std::generic_category());
    }
    FileDescriptor openFolder(const std::string& /*path*/) const override { return {}; }
    std::vector<EntryMeasure> measure(const std::string& folder, std::span<const std::string> names,
                                      const std::stop_token& stop) const override
    {
        onMeasure(folder, stop);
        std::vector<EntryMeasure> result;
        for (const std::string& name : names) {
            result.push_back(valueAt(measures, PathText::join(folder, name), {}));
        }
        return result;
    }
    std::optional<EntryAttributes> attributes(const std::string& path) const override
    {
        for (const auto& [folder, entries] : trees) {
            for (const auto& [name, attributes] : entries) {
                if (PathText::join(folder, name) == path) {
                    return attributes;
                }
            }
        }
        return trees.contains(path) ? std::optional<EntryAttributes>({EntryKind::folder, 0})
                                    : std::nullopt;
    }
    bool visitTree(const std::string& path, const TreeVisitor& visit) const override
    {
        onVisit(path);
        for (const auto& [name, attributes] : valueAt(trees, path, {})) {
            if (!visit({PathText::join(path, name), attributes})) {
                break;
            }
        }
        return trees.contains(path);
    }
    std::string resolvingSymbolicLinks(const std::string& path) const override
    {
        return valueAt(links, path, path);
    }
    std::optional<std::int64_t> availableCapacity(const std::string& /*path*/) const override
    {
        const std::lock_guard lock(m_mutex);
        return capacities.at(std::min(m_capacityCalls++, capacities.size() - 1));
    }
    std::unique_ptr<Removal> beginRemoval(const std::string&,
                                          std::span<const std::string>) const override
    {
        return std::make_unique<Remover>(*this);
    }

private:
    template <typename Value>
    static Value valueAt(const std::map<std::string, Value>& all, const std::string& path,
                         const std::type_identity_t<Value>& otherwise)
    {
        const auto found = all.find(path);
        return found == all.end() ? otherwise : found->second;
    }

    struct Remover : Removal
    {
        explicit Remover(const ScriptedDisk& from) : disk(from) {}

        RemovalOutcome remove(const std::string&, const std::string& path,
                              const std::optional<EntryIdentity>&) override
        {
            disk.onRemove(path);
            const std::lock_guard lock(disk.m_mutex);
            if (disk.irremovable.contains(path)) {
                return {.error = EBUSY};
            }
            disk.m_removed.push_back(path);
            return {};
        }

        const ScriptedDisk& disk;
    };

    mutable std::mutex m_mutex;
    mutable std::size_t m_capacityCalls = 0;
    mutable std::vector<std::string> m_removed;
};

} // namespace CleanCoreTests
