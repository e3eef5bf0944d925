#pragma once

#include "CleanCore/CloudDrive/CloudRefusal.h"
#include "CleanCore/CloudDrive/StandIn/CloudPlace.h"
#include "CleanCore/FileSystem/Walking/DirectoryReader.h"
#include "CleanCore/FileSystem/Walking/FolderStack.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace CleanCore {

enum class AppBundles { passedOver, entered };

/// Walks a folder of the container and, beside it, the mirror's. Follows no link and enters no
/// other mount on either side. Not for use by two threads at once.
class CloudWalk
{
public:
    /// Works on one regular file; returns why it was refused, nothing otherwise.
    using FileWork = std::function<std::optional<CloudFailure>(const CloudPlace&)>;

    CloudWalk(AppBundles appBundles, FileWork work)
        : m_appBundles(appBundles), m_work(std::move(work))
    {
    }

    /// Works on the file at `place`, or on every file in the folder there; returns what was
    /// refused. Links and other entries that hold no content are passed over in a folder.
    [[nodiscard]] std::vector<CloudRefusal> run(const CloudPlace& place);

private:
    void refuse(const std::string& path, const CloudFailure& failure);
    void enter(const CloudPlace& place);
    void enterMirror(const CloudPlace& place);
    /// False when the folder above is no longer where it was; the walk is then over.
    [[nodiscard]] bool leave();
    void lookAtTop();
    void readTop();
    void visit(const char* name, NameList& subfolders);

    AppBundles m_appBundles;
    FileWork m_work;
    DirectoryReader m_reader;
    FolderStack m_folders = FolderStack(32);
    FolderStack m_mirrorFolders = FolderStack(32);
    // How many folders on top of the stack the mirror does not have.
    std::size_t m_unmirrored = 0;
    // The folder on top, and each entry in it in turn.
    CloudPlace m_place;
    std::string m_path;
    std::vector<CloudRefusal> m_refusals;
};

} // namespace CleanCore
