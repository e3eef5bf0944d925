#include "CleanCore/FileSystem/Walking/TreeWalk.h"

#include "CleanCore/FileSystem/OpenWithoutLinks.h"
#include "CleanCore/FileSystem/Walking/DirectoryReader.h"
#include "CleanCore/FileSystem/Walking/FolderStack.h"

#include <utility>

namespace CleanCore {

namespace {

constexpr std::size_t openFolderLimit = 48;

/// Visits the files of a folder while it is read, and a subfolder when it is entered, so that the
/// entries in it follow at once.
class Walk
{
public:
    Walk(const std::string& path, const TreeVisitor& visit) : m_visit(visit), m_path(path)
    {
        if (m_path.empty() || m_path.back() != '/') {
            m_path += '/';
        }
    }

    void run(FileDescriptor folder, const EntryStatus& status)
    {
        m_stack.push(std::move(folder), status);
        bool wantsMore = readTop();
        while (wantsMore && !m_stack.isEmpty()) {
            if (m_stack.top().pending.isEmpty()) {
                m_path.resize(m_path.rfind('/', m_path.size() - 2) + 1);
                wantsMore = m_stack.pop();
            } else {
                wantsMore = enter(m_stack.top().pending.takeLast());
            }
        }
    }

private:
    bool visit(const EntryStatus& status)
    {
        return m_visit({m_path, {status.identity.kind, status.allocatedBytes}});
    }

    bool enter(const std::string& name)
    {
        const FolderStack::Level& parent = m_stack.top();
        const std::size_t parentLength = m_path.size();
        EntryStatus status;
        if (readStatus(parent.folder.get(), name.c_str(), status) != 0 || !status.isFolder() ||
            status.isBeyondBoundaryOf(parent.status)) {
            return true;
        }
        m_path += name;
        if (!visit(status)) {
            return false;
        }
        FileDescriptor folder = openFolder(parent.folder.get(), name.c_str());
        if (!folder.isOpen() || readStatus(folder.get(), "", status) != 0 ||
            status.isBeyondBoundaryOf(parent.status)) {
            m_path.resize(parentLength);
            return true;
        }
        m_path += '/';
        m_stack.push(std::move(folder), status, name);
        return readTop();
    }

    bool readTop()
    {
        FolderStack::Level& level = m_stack.top();
        const std::size_t folderLength = m_path.size();
        bool wantsMore = true;
        while (wantsMore && m_reader.readBatch(level.folder.get()) > 0) {
            wantsMore = m_reader.forEach([&](const char* name) {
                EntryStatus status;
                if (readStatus(level.folder.get(), name, status) != 0 ||
                    status.isBeyondBoundaryOf(level.status)) {
                    return true;
                }
                if (status.isFolder()) {
                    level.pending.add(name);
                    return true;
                }
                m_path += name;
                const bool isWanted = visit(status);
                m_path.resize(folderLength);
                return isWanted;
            });
        }
        return wantsMore;
    }

    const TreeVisitor& m_visit;
    DirectoryReader m_reader;
    FolderStack m_stack = FolderStack(openFolderLimit);
    // The path of the top folder with a slash behind it, and of an entry while it is visited.
    std::string m_path;
};

} // namespace

void walkTree(FileDescriptor folder, const std::string& path, const TreeVisitor& visit)
{
    EntryStatus status;
    if (readStatus(folder.get(), "", status) == 0) {
        Walk(path, visit).run(std::move(folder), status);
    }
}

} // namespace CleanCore
