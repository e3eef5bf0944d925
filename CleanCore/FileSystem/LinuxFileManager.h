#pragma once

#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/FileSystem/UserFolders.h"
#include "CleanCore/FileSystem/Walking/TreeMeasurer.h"
#include "CleanCore/Support/FileDescriptor.h"

#include <memory>

namespace CleanCore {

/// The file system of this machine. Names are listed in ascending order of their bytes.
///
/// One that is confined to a folder treats everything that resolves outside of it as missing, at
/// the entry of every operation; only resolvingSymbolicLinks() follows links out of it.
class LinuxFileManager : public FileManager
{
public:
    /// `confinement` is an existing folder; without one the whole system is visible.
    LinuxFileManager(UserFolders folders, std::optional<std::string> confinement,
                     std::shared_ptr<TaskPool> pool);

    [[nodiscard]] std::optional<std::string> perUserFolder(PerUserFolder folder) const override;
    [[nodiscard]] bool exists(const std::string& path) const override;
    [[nodiscard]] std::vector<std::string> namesInFolder(const std::string& path) const override;
    [[nodiscard]] FileDescriptor openFolder(const std::string& path) const override;
    [[nodiscard]] std::vector<EntryMeasure> measure(const std::string& folder,
                                                    std::span<const std::string> names,
                                                    const std::stop_token& stop) const override;
    [[nodiscard]] std::optional<EntryAttributes> attributes(const std::string& path) const override;
    bool visitTree(const std::string& path, const TreeVisitor& visit) const override;
    [[nodiscard]] std::string resolvingSymbolicLinks(const std::string& path) const override;
    [[nodiscard]] std::optional<std::int64_t>
    availableCapacity(const std::string& path) const override;
    [[nodiscard]] std::unique_ptr<Removal>
    beginRemoval(const std::string& home,
                 std::span<const std::string> protectedFolders) const override;

private:
    /// Opens the entry that `path` resolves to; closed, with errno set, when it cannot be opened or
    /// lies outside the confinement.
    [[nodiscard]] FileDescriptor open(const std::string& path, int flags) const;

    UserFolders m_folders;
    std::optional<std::string> m_confinement;
    std::shared_ptr<TaskPool> m_pool;
};

} // namespace CleanCore
