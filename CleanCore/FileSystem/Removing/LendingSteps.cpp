#include "CleanCore/FileSystem/Removing/LendingSteps.h"

#include "CleanCore/FileSystem/Descriptors.h"
#include "CleanCore/FileSystem/Removing/EmptyingJob.h"
#include "CleanCore/FileSystem/Removing/OwnerAccess.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace CleanCore {

LendingSteps::LendingSteps(const EmptyingJob& job)
    : m_job(job), m_ownerAccess(*job.limits.ownerAccess)
{
}

int LendingSteps::openSubfolder(const Folder& parent, const std::string& name,
                                FileDescriptor& folder, EntryStatus& status) const
{
    folder = openFolder(parent.folder.get(), name.c_str());
    if (!folder.isOpen() && errno == EACCES &&
        m_ownerAccess.lend(parent.folder.get(), parent.status)) {
        folder = openFolder(parent.folder.get(), name.c_str());
    }
    if (!folder.isOpen() && errno == EACCES) {
        const FileDescriptor closed = holdFolder(parent.folder.get(), name.c_str());
        if (!closed.isOpen() || readStatus(closed.get(), "", status) != 0) {
            return errno;
        }
        if (const int reason = m_job.reasonToKeep(status, parent.status); reason != 0) {
            return reason;
        }
        if (!m_ownerAccess.lend(closed.get(), status)) {
            return EACCES;
        }
        folder = openFolder(closed.get(), ".");
        if (!folder.isOpen()) {
            const int error = errno;
            m_ownerAccess.takeBack(closed.get(), status);
            return error;
        }
    }
    if (!folder.isOpen()) {
        return errno;
    }
    const int error = readStatus(folder.get(), "", status);
    return error != 0 ? error : m_job.reasonToKeep(status, parent.status);
}

int LendingSteps::statusOf(const Folder& folder, const char* name, EntryStatus& status) const
{
    const int error = readStatus(folder.folder.get(), name, status);
    if (error == EACCES && m_ownerAccess.lend(folder.folder.get(), folder.status)) {
        return readStatus(folder.folder.get(), name, status);
    }
    return error;
}

int LendingSteps::unlink(const Folder& folder, const char* name, int flags) const
{
    if (::unlinkat(folder.folder.get(), name, flags) == 0) {
        return 0;
    }
    if (errno == EACCES && m_ownerAccess.lend(folder.folder.get(), folder.status) &&
        ::unlinkat(folder.folder.get(), name, flags) == 0) {
        return 0;
    }
    return errno;
}

void LendingSteps::takeBack(const Folder& folder) const
{
    m_ownerAccess.takeBack(folder.folder.get(), folder.status);
}

void LendingSteps::takeBack(const Folder& parent, const std::string& name) const
{
    const FileDescriptor folder = holdFolder(parent.folder.get(), name.c_str());
    EntryStatus status;
    if (folder.isOpen() && readStatus(folder.get(), "", status) == 0) {
        m_ownerAccess.takeBack(folder.get(), status);
    }
}

void LendingSteps::takeAllBack(FolderStack& stack) const
{
    if (!m_ownerAccess.hasLent()) {
        return;
    }
    const auto takeBackAlong = [&](std::size_t from, std::size_t count, bool goesUp) {
        FileDescriptor held;
        int folder = stack.at(from).folder.get();
        std::size_t done = 0;
        while (folder >= 0 && done < count) {
            const FolderStack::Level& level = stack.at(goesUp ? from - done : from + done);
            FileDescriptor reopened;
            int next = -1;
            if (++done < count) {
                const FolderStack::Level& following = stack.at(goesUp ? from - done : from + done);
                const char* const name = goesUp ? ".." : following.name.c_str();
                next = following.folder.get();
                if (next < 0) {
                    reopened = holdFolder(folder, name);
                    EntryStatus status;
                    const bool isSame = readStatus(reopened.get(), "", status) == 0 &&
                                        status.identity == following.status.identity;
                    next = isSame ? reopened.get() : -1;
                }
            }
            m_ownerAccess.takeBack(folder, level.status);
            held = std::move(reopened);
            folder = next;
        }
        return done;
    };
    const std::size_t depth = stack.depth();
    const std::size_t done = takeBackAlong(depth - 1, depth, true);
    takeBackAlong(0, depth - done, false);
}

} // namespace CleanCore
