#include "CleanCore/CloudDrive/SyncClient/SyncClientDrive.h"

#include "CleanCore/CloudDrive/SyncClient/ClientConversation.h"
#include "CleanCore/CloudDrive/SyncClient/SyncedTree.h"
#include "CleanCore/FileSystem/Lease.h"
#include "CleanCore/FileSystem/LinkResolver.h"
#include "CleanCore/Support/FileDescriptor.h"
#include "CleanCore/Support/PathText.h"
#include "CleanCore/Support/SaturatingSum.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <utility>

namespace CleanCore {

namespace {

using Clock = std::chrono::steady_clock;

/// Paths in one request.
constexpr std::size_t pathsInRequest = 50;

/// Whether somebody has the file open for writing: what they write later would be lost with it. No
/// where the file system cannot tell.
bool isBeingWritten(const std::string& path)
{
    const FileDescriptor file(
        ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC | O_NOATIME));
    if (!file.isOpen()) {
        return false;
    }
    // The lease ends with the descriptor.
    return takeLease(file.get(), F_RDLCK) == EAGAIN;
}

} // namespace

std::optional<CloudFailure> SyncClientDrive::connect(ClientConversation& conversation) const
{
    const std::string name = "socket";
    // A confined run sees only the sockets in its home.
    return isReachable(PathText::join(m_client.socketFolder, name))
               ? conversation.connect(m_client.socketFolder, name)
               : CloudFailure{CloudRefusalReason::clientUnreachable};
}

bool SyncClientDrive::isReachable(const std::string& path) const
{
    return m_client.confinement.empty() ||
           PathText::isSameOrInside(resolveSymbolicLinks(path),
                                    resolveSymbolicLinks(m_client.confinement));
}

std::vector<CloudContainer> SyncClientDrive::containers(const std::stop_token& stop) const
{
    ClientConversation conversation(stop, m_limits.answer);
    if (connect(conversation)) {
        return {};
    }
    const auto failure = conversation.begin();
    const std::set<std::string> folders = conversation.folders();
    std::vector<CloudContainer> containers;
    for (const std::string& folder : folders) {
        if (isReachable(folder)) {
            containers.push_back({folder, failure ? failure : conversation.findObstacle(folder)});
        }
    }
    return containers;
}

std::optional<CloudFailure> SyncClientDrive::beginFor(const std::string& path,
                                                      ClientConversation& conversation) const
{
    if (auto failure = connect(conversation)) {
        return failure;
    }
    if (auto failure = conversation.begin()) {
        return failure;
    }
    std::string holder;
    for (const std::string& folder : conversation.folders()) {
        if (path != folder && PathText::isSameOrInside(path, folder) && isReachable(folder)) {
            // Of folders in each other, the inner one comes last.
            holder = folder;
        }
    }
    return holder.empty() ? CloudFailure{CloudRefusalReason::outsideContainer}
                          : conversation.findObstacle(holder);
}

std::vector<ICloudMeasure> SyncClientDrive::measure(const std::string& /*container*/,
                                                    std::span<const std::string> paths,
                                                    std::optional<Deadline> deadline,
                                                    const std::stop_token& stop) const
{
    std::vector<ICloudMeasure> results;
    for (const std::string& path : paths) {
        ICloudMeasure& result = results.emplace_back(ICloudMeasure{{path, 0, 0, {}}, false});
        const auto count = [&](const std::string& /*path*/, const LocalEntry& entry) {
            if (stop.stop_requested() || (deadline && Clock::now() > *deadline)) {
                return false;
            }
            ++result.item.fileCount;
            result.item.localBytes = saturatingSum(result.item.localBytes, entry.allocatedBytes);
            return true;
        };
        result.timedOut = !visitSyncedFiles(path, m_placeholders, count);
    }
    return results;
}

/// The files at `path` with content that the client can release; refuses the others.
std::vector<std::string> SyncClientDrive::releasable(const std::string& path,
                                                     ClientConversation& conversation,
                                                     const std::stop_token& stop,
                                                     CloudReply& reply) const
{
    using enum CloudRefusalReason;
    const auto refuse = [&](const std::string& file, CloudRefusalReason reason) {
        reply.refused.push_back({file, {reason}});
    };
    std::vector<std::string> files;
    const bool isWhole = visitSyncedFiles(
        path, m_placeholders, [&](const std::string& file, const LocalEntry& entry) {
            if (entry.kind == LocalKind::file && entry.allocatedBytes > 0) {
                isSpeakable(file) ? files.push_back(file) : refuse(file, unspeakableName);
            }
            return !stop.stop_requested();
        });
    if (!isWhole) {
        refuse(path, stopped);
        return {};
    }
    const auto states = conversation.statesOf(files);
    std::erase_if(files, [&](const std::string& file) {
        const auto state = states.find(file);
        if (state == states.end()) {
            refuse(file, stop.stop_requested() ? stopped : clientUnreachable);
        } else if (state->second != ClientFileState::synchronized) {
            refuse(file, state->second == ClientFileState::synchronizing ? stillSynchronizing
                                                                         : notSynchronized);
        } else if (isBeingWritten(file)) {
            refuse(file, inUse);
        } else {
            return false;
        }
        return true;
    });
    return files;
}

void SyncClientDrive::ask(CloudRequestKind kind, std::span<const std::string> paths,
                          ClientConversation& conversation, CloudReply& reply) const
{
    const char* const command =
        kind == CloudRequestKind::release ? "MAKE_ONLINE_ONLY" : "MAKE_AVAILABLE_LOCALLY";
    for (std::size_t begin = 0; begin < paths.size(); begin += pathsInRequest) {
        const auto part = paths.subspan(begin, std::min(pathsInRequest, paths.size() - begin));
        const auto failure = conversation.request(command, part);
        for (const std::string& path : part) {
            // A part of a failed request may have arrived, so these are looked at as well.
            reply.pending.push_back({path, kind, Clock::now()});
        }
        if (failure) {
            for (const std::string& path : paths.subspan(begin + part.size())) {
                reply.refused.push_back({path, *failure});
            }
            return;
        }
    }
}

CloudReply SyncClientDrive::release(const std::string& path, const CloudWatch& watch) const
{
    CloudReply reply;
    ClientConversation conversation(watch.stop, m_limits.answer);
    if (const auto failure = beginFor(path, conversation)) {
        reply.refused.push_back({path, *failure});
        return reply;
    }
    const std::vector<std::string> files = releasable(path, conversation, watch.stop, reply);
    ask(CloudRequestKind::release, files, conversation, reply);
    return reply;
}

CloudReply SyncClientDrive::fetch(const std::string& path, const CloudWatch& watch) const
{
    CloudReply reply;
    ClientConversation conversation(watch.stop, m_limits.answer);
    if (const auto failure = beginFor(path, conversation)) {
        reply.refused.push_back({path, *failure});
        return reply;
    }
    // A file that was released under this name may have another one since.
    const bool isRenamed = m_placeholders.entryAt(path).kind == LocalKind::missing;
    std::vector<std::string> files;
    visitSyncedFiles(isRenamed ? m_placeholders.marked(path) : path, m_placeholders,
                     [&](const std::string& file, const LocalEntry& entry) {
                         if (entry.kind == LocalKind::placeholder) {
                             isSpeakable(file) ? files.push_back(file)
                                               : reply.refused.push_back(
                                                     {file, {CloudRefusalReason::unspeakableName}});
                         }
                         return true;
                     });
    ask(CloudRequestKind::fetch, files, conversation, reply);
    return reply;
}

/// Whether the files on the disk show that it is done.
bool SyncClientDrive::isDone(const CloudPending& pending, CloudReply& reply) const
{
    const LocalEntry entry = m_placeholders.entryAt(pending.path);
    if (pending.kind == CloudRequestKind::fetch) {
        const std::string plain = m_placeholders.plain(pending.path);
        return entry.kind != LocalKind::placeholder &&
               m_placeholders.entryAt(plain).kind == LocalKind::file;
    }
    if (entry.kind == LocalKind::placeholder) {
        return true;
    }
    const std::string marked = m_placeholders.marked(pending.path);
    if (entry.kind == LocalKind::missing &&
        m_placeholders.entryAt(marked).kind == LocalKind::placeholder) {
        reply.renamed[pending.path] = marked;
        return true;
    }
    return false;
}

CloudReply SyncClientDrive::await(std::span<const CloudPending> pending,
                                  const CloudWatch& watch) const
{
    using enum CloudRefusalReason;
    CloudReply reply;
    std::vector<CloudPending> left(pending.begin(), pending.end());
    ClientConversation conversation({}, m_limits.answer);
    bool isThere = pending.empty() || !connect(conversation);
    const auto refuseIf = [&](const auto& isHopeless, CloudRefusalReason reason) {
        std::erase_if(left, [&](const CloudPending& file) {
            if (isHopeless(file)) {
                reply.refused.push_back({file.path, {reason}});
                return true;
            }
            return false;
        });
    };
    while (true) {
        std::erase_if(left, [&](const CloudPending& file) {
            const bool done = isDone(file, reply);
            if (done && watch.progress) {
                const auto bytes = m_placeholders.entryAt(m_placeholders.plain(file.path));
                watch.progress({file.path, bytes.allocatedBytes, bytes.allocatedBytes});
            }
            return done;
        });
        const auto isLate = [&](const CloudPending& file) {
            return Clock::now() - file.askedAt >= m_limits.completion;
        };
        refuseIf(isLate, notDoneInTime);
        if (watch.stop.stop_requested()) {
            refuseIf([](auto&&) { return true; }, stopped);
        } else if (!isThere) {
            refuseIf([](auto&&) { return true; }, clientUnreachable);
        }
        if (left.empty()) {
            return reply;
        }
        isThere = conversation.listen(Clock::now() + m_limits.look);
    }
}

} // namespace CleanCore
