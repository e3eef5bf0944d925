#include "CleanCore/CloudDrive/StandIn/CloudWalk.h"

#include "CleanCore/CloudDrive/AppBundleName.h"
#include "CleanCore/CloudDrive/StandIn/CloudFilePair.h"
#include "CleanCore/Support/PathText.h"

#include <cerrno>
#include <fcntl.h>
#include <utility>

namespace CleanCore {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;

/// Opens a subfolder of `parent` that lies behind no boundary. Returns 0 or errno.
int openSubfolder(int parent, const EntryStatus& parentStatus, const std::string& name,
                  FileDescriptor& folder, EntryStatus& status)
{
    folder = FileDescriptor(::openat(parent, name.c_str(), folderFlags));
    if (!folder.isOpen()) {
        return errno;
    }
    const int error = readStatus(folder.get(), "", status);
    return error == 0 && status.isBeyondBoundaryOf(parentStatus) ? EXDEV : error;
}

} // namespace

std::vector<CloudRefusal> CloudWalk::run(const CloudPlace& place)
{
    EntryStatus status;
    if (const int error = readStatus(place.folder, place.name.c_str(), status); error != 0) {
        return {{place.path, failureOf(error)}};
    }
    if (!status.isFolder()) {
        const auto failure = m_work(place);
        return failure ? std::vector<CloudRefusal>{{place.path, *failure}}
                       : std::vector<CloudRefusal>();
    }
    enter(place);
    while (!m_folders.isEmpty()) {
        NameList& pending = m_folders.top().pending;
        if (!pending.isEmpty()) {
            m_place.name = pending.takeLast();
            m_place.path = PathText::join(m_path, m_place.name);
            enter(CloudPlace(m_place));
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

void CloudWalk::enter(const CloudPlace& place)
{
    FileDescriptor folder;
    EntryStatus status;
    const int error = openSubfolder(place.folder, place.folderStatus, place.name, folder, status);
    if (error != 0) {
        refuse(place.path,
               error == EXDEV ? CloudFailure{CloudRefusalReason::otherMount, 0} : failureOf(error));
        return;
    }
    enterMirror(place);
    m_folders.push(std::move(folder), status, place.name);
    m_path = place.path;
    lookAtTop();
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
        lookAtTop();
    }
    return isWhereItWas;
}

void CloudWalk::enterMirror(const CloudPlace& place)
{
    FileDescriptor folder;
    EntryStatus status;
    if (place.mirrorFolder >= 0 && openSubfolder(place.mirrorFolder, place.mirrorFolderStatus,
                                                 place.name, folder, status) == 0) {
        m_mirrorFolders.push(std::move(folder), status, place.name);
    } else {
        ++m_unmirrored;
    }
}

void CloudWalk::lookAtTop()
{
    const FolderStack::Level& level = m_folders.top();
    m_place.folder = level.folder.get();
    m_place.folderStatus = level.status;
    m_place.mirrorFolder = -1;
    if (m_unmirrored == 0) {
        m_place.mirrorFolder = m_mirrorFolders.top().folder.get();
        m_place.mirrorFolderStatus = m_mirrorFolders.top().status;
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
    if (readStatus(m_place.folder, name, status) != 0) {
        return;
    }
    if (status.isFolder()) {
        if (m_appBundles == AppBundles::entered || !isAppBundleName(name)) {
            subfolders.add(name);
        }
        return;
    }
    if (status.identity.kind == EntryKind::file) {
        m_place.name = name;
        m_place.path = PathText::join(m_path, name);
        if (const auto failure = m_work(m_place)) {
            refuse(m_place.path, *failure);
        }
    }
}

} // namespace CleanCore
