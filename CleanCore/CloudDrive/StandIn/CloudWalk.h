#pragma once

#include "CleanCore/CloudDrive/StandIn/CloudFilePair.h"
#include "CleanCore/FileSystem/Walking/DirectoryReader.h"
#include "CleanCore/FileSystem/Walking/FolderStack.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace CleanCore {

enum class AppBundles { skipped, entered };

/// Walks a folder of the container and its counterpart in the mirror together. Follows no link and
/// enters no other mount on either side. Not for use by two threads at once.
class CloudWalk
{
public:
    /// Releases or fetches one regular file. Returns why it was refused, nothing otherwise.
    using FileWork = std::function<std::optional<CloudFailure>(const CloudEntry&)>;

    CloudWalk(AppBundles appBundles, FileWork work)
        : m_appBundles(appBundles), m_work(std::move(work))
    {
    }

    /// Works on the file at `entry`, or on every file in the folder there, and returns the
    /// refusals. In a folder, links and other entries without content are skipped.
    [[nodiscard]] std::vector<CloudRefusal> run(const CloudEntry& entry);

private:
    void refuse(const std::string& path, const CloudFailure& failure);
    void enter(const CloudEntry& entry);
    void enterMirror(const CloudEntry& entry);
    /// False when the folder above is no longer where it was, which ends the walk.
    [[nodiscard]] bool leave();
    /// Makes the folder on top of the stack that of m_entry.
    void selectTop();
    void readTop();
    void visit(const char* name, NameList& subfolders);

    AppBundles m_appBundles;
    FileWork m_work;
    DirectoryReader m_reader;
    FolderStack m_folders = FolderStack(32);
    FolderStack m_mirrorFolders = FolderStack(32);
    // The number of folders on top of the stack that the mirror lacks.
    std::size_t m_unmirrored = 0;
    // Each entry of the folder on top in turn, and the path of that folder.
    CloudEntry m_entry;
    std::string m_path;
    std::vector<CloudRefusal> m_refusals;
};

} // namespace CleanCore
