#pragma once

#include "CleanCore/FileSystem/FileManager.h"

#include <functional>
#include <map>
#include <mutex>
#include <set>
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

    /// Each is called, if it is set, before the operation, on the thread that it runs on.
    std::function<void(const std::string& folder, const std::stop_token& stop)> onMeasure;
    std::function<void(const std::string& path)> onRemove;
    std::function<void(const std::string& path)> onVisit;

    /// Adds an entry to the end of the folder `base`.
    void add(const std::string& base, const std::string& name, std::int64_t size,
             CleanCore::Timestamp modifiedAt = {});

    /// The paths of what was removed, in order.
    [[nodiscard]] std::vector<std::string> removed() const;

    [[nodiscard]] std::optional<std::string>
    perUserFolder(CleanCore::PerUserFolder folder) const override;
    [[nodiscard]] bool exists(const std::string& path) const override;
    [[nodiscard]] std::vector<std::string> namesInFolder(const std::string& path) const override;
    [[nodiscard]] std::vector<CleanCore::EntryMeasure>
    measure(const std::string& folder, std::span<const std::string> names,
            const std::stop_token& stop) const override;
    [[nodiscard]] std::optional<CleanCore::EntryAttributes>
    attributes(const std::string& path) const override;
    bool visitTree(const std::string& path, const CleanCore::TreeVisitor& visit) const override;
    [[nodiscard]] std::string resolvingSymbolicLinks(const std::string& path) const override;
    [[nodiscard]] std::optional<std::int64_t>
    availableCapacity(const std::string& path) const override;
    [[nodiscard]] std::unique_ptr<CleanCore::Removal>
    beginRemoval(const std::string& home,
                 std::span<const std::string> protectedFolders) const override;

private:
    class Remover;

    mutable std::mutex m_mutex;
    mutable std::size_t m_capacityCalls = 0;
    mutable std::vector<std::string> m_removed;
};

} // namespace CleanCoreTests
