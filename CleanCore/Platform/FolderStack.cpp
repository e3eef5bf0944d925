#include "CleanCore/Platform/FolderStack.h"

#include <fcntl.h>
#include <utility>

namespace CleanCore {

FolderStack::Level& FolderStack::push(FileDescriptor folder, const EntryStatus& status,
                                      std::string name)
{
    m_levels.push_back({std::move(folder), status, std::move(name), {}, false});
    if (m_levels.size() - m_firstOpen >= m_openLimit && m_levels.size() > 2) {
        m_levels[m_firstOpen].folder.reset();
        ++m_firstOpen;
    }
    return m_levels.back();
}

bool FolderStack::pop()
{
    const Level left = std::move(m_levels.back());
    m_levels.pop_back();
    if (m_levels.empty() || top().folder.isOpen()) {
        return true;
    }
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    FileDescriptor parent(::openat(left.folder.get(), "..", flags));
    EntryStatus status;
    if (!parent.isOpen() || readStatus(parent.get(), "", status) != 0 ||
        status.identity != top().status.identity || status.mountId != top().status.mountId) {
        clear();
        return false;
    }
    top().folder = std::move(parent);
    top().wasReopened = true;
    m_firstOpen = m_levels.size() - 1;
    return true;
}

void FolderStack::clear()
{
    m_levels.clear();
    m_firstOpen = 1;
}

} // namespace CleanCore
