#include "CleanCore/CloudDrive/StandIn/CloudWalk.h"

#include "CleanCore/CloudDrive/ICloudItem.h"
#include "CleanCore/FileSystem/OpenWithoutLinks.h"
#include "CleanCore/Support/PathText.h"

#include <cerrno>
#include <utility>

namespace CleanCore {

namespace {

/// Opens a subfolder of `parent`. Returns 0 or errno: EXDEV for one on another mount.
int openSubfolder(int parent, const EntryStatus& parentStatus, const std::string& name,
                  FileDescriptor& folder, EntryStatus& status)
{
    folder = openFolder(parent, name.c_str());
    if (!folder.isOpen()) {
        return errno;
    }
    const int error = readStatus(folder.get(), "", status);
    return error == 0 && status.isBeyondBoundaryOf(parentStatus) ? EXDEV : error;
}

} // namespace

std::vector<CloudRefusal> CloudWalk::run(const CloudEntry& entry)
{
    EntryStatus status;
    if (const int error = readStatus(entry.folder, entry.name.c_str(), status); error != 0) {
        return {{entry.path, failureOf(error)}};
    }
    if (!status.isFolder()) {
        const auto failure = m_work(entry);
        return failure ? std::vector<CloudRefusal>{{entry.path, *failure}}
                       : std::vector<CloudRefusal>();
    }
    enter(entry);
    while (!m_folders.isEmpty()) {
        NameList& pending = m_folders.top().pending;
        if (!pending.isEmpty()) {
            m_entry.name = pending.takeLast();
            m_entry.path = PathText::join(m_path, m_entry.name);
            enter(CloudEntry(m_entry));
        } else if (!leave()) {
            refuse(m_path, {CloudRefusalReason::changedMeanwhile, 0});
            break;
        }
    }
    return std::exchange(m_refusals, {});
}

void CloudWalk::refuse(const std::string& path, const CloudFailure& failure)
{
    m_refusals.push_back({path, failure});
}

void CloudWalk::enter(const CloudEntry& entry)
{
    FileDescriptor folder;
    EntryStatus status;
    const int error = openSubfolder(entry.folder, entry.folderStatus, entry.name, folder, status);
    if (error != 0) {
        refuse(entry.path,
               error == EXDEV ? CloudFailure{CloudRefusalReason::otherMount, 0} : failureOf(error));
        return;
    }
    enterMirror(entry);
    m_folders.push(std::move(folder), status, entry.name);
    m_path = entry.path;
    selectTop();
    readTop();
}

bool CloudWalk::leave()
{
    const bool isWhereItWas = m_folders.pop();
    if (m_unmirrored > 0) {
        --m_unmirrored;
    } else if (!m_mirrorFolders.pop()) {
        m_unmirrored = m_folders.depth();
    }
    if (!m_folders.isEmpty()) {
        m_path = PathText::parent(m_path);
        selectTop();
    }
    return isWhereItWas;
}

void CloudWalk::enterMirror(const CloudEntry& entry)
{
    FileDescriptor folder;
    EntryStatus status;
    if (entry.mirrorFolder >= 0 && openSubfolder(entry.mirrorFolder, entry.mirrorFolderStatus,
                                                 entry.name, folder, status) == 0) {
        m_mirrorFolders.push(std::move(folder), status, entry.name);
    } else {
        ++m_unmirrored;
    }
}

void CloudWalk::selectTop()
{
    const FolderStack::Level& level = m_folders.top();
    m_entry.folder = level.folder.get();
    m_entry.folderStatus = level.status;
    m_entry.mirrorFolder = -1;
    if (m_unmirrored == 0) {
        m_entry.mirrorFolder = m_mirrorFolders.top().folder.get();
        m_entry.mirrorFolderStatus = m_mirrorFolders.top().status;
    }
}

void CloudWalk::readTop()
{
    FolderStack::Level& level = m_folders.top();
    int more = 0;
    while ((more = m_reader.readBatch(level.folder.get())) > 0) {
        m_reader.forEach([&](const char* name) {
            visit(name, level.pending);
            return true;
        });
    }
    if (more < 0) {
        refuse(m_path, failureOf(-more));
    }
}

void CloudWalk::visit(const char* name, NameList& subfolders)
{
    EntryStatus status;
    if (const int error = readStatus(m_entry.folder, name, status); error != 0) {
        if (error != ENOENT) {
            refuse(PathText::join(m_path, name), failureOf(error));
        }
        return;
    }
    if (status.isFolder()) {
        if (m_appBundles == AppBundles::entered || !isAppBundleName(name)) {
            subfolders.add(name);
        }
        return;
    }
    if (status.identity.kind == EntryKind::file) {
        m_entry.name = name;
        m_entry.path = PathText::join(m_path, name);
        if (const auto failure = m_work(m_entry)) {
            refuse(m_entry.path, *failure);
        }
    }
}

} // namespace CleanCore
