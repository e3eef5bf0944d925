#include "CleanCore/FileSystem/Walking/FolderStack.h"

#include "CleanCore/FileSystem/Descriptors.h"
#include "CleanCore/FileSystem/OpenWithoutLinks.h"

#include <algorithm>
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

bool FolderStack::openParent()
{
    if (m_levels.size() < 2 || m_levels[m_levels.size() - 2].folder.isOpen()) {
        return true;
    }
    Level& above = m_levels[m_levels.size() - 2];
    FileDescriptor parent = openFolder(top().folder.get(), "..");
    EntryStatus status;
    if (!parent.isOpen() || readStatus(parent.get(), "", status) != 0 ||
        status.identity != above.status.identity || status.mountId != above.status.mountId) {
        return false;
    }
    above.folder = std::move(parent);
    above.wasReopened = true;
    m_firstOpen = m_levels.size() - 2;
    return true;
}

bool FolderStack::pop()
{
    if (!openParent()) {
        clear();
        return false;
    }
    m_levels.pop_back();
    return true;
}

void FolderStack::clear()
{
    m_levels.clear();
    m_firstOpen = 1;
}

std::optional<FolderStack::Share> FolderStack::splitPending()
{
    for (std::size_t i = 0; i < m_levels.size(); i = std::max(i + 1, m_firstOpen)) {
        Level& level = m_levels[i];
        const bool isOnlyOne = i + 1 == m_levels.size() && !level.pending.holdsSeveral();
        if (level.pending.isEmpty() || isOnlyOne) {
            continue;
        }
        FileDescriptor folder = duplicate(level.folder.get());
        if (!folder.isOpen()) {
            return std::nullopt;
        }
        return Share{std::move(folder), level.status, level.pending.takeHalf(), i};
    }
    return std::nullopt;
}

} // namespace CleanCore
