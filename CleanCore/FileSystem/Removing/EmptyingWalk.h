#pragma once

#include "CleanCore/FileSystem/Removing/TemporaryPermissions.h"
#include "CleanCore/FileSystem/Removing/TreeEmptier.h"
#include "CleanCore/FileSystem/Walking/DirectoryReader.h"
#include "CleanCore/FileSystem/Walking/FolderStack.h"

#include <cstddef>
#include <string>
#include <vector>

namespace CleanCore {

/// Works through one piece of a tree that is emptied, on one thread.
class EmptyingWalk
{
public:
    explicit EmptyingWalk(EmptyingJob& job) : m_job(job), m_permissions(job.permissions) {}
    void run(EmptyingPiece piece);

private:
    // Two walks with this many folders each, and the descriptors around them, fit into 32.
    static constexpr std::size_t openFolderLimit = 7;

    struct Progress
    {
        // Entries that stay, and this folder with them.
        std::size_t kept = 0;
        std::size_t removed = 0;
        std::size_t rescans = 0;
        bool isPartlyRead = false;
    };

    void push(FileDescriptor folder, const EntryStatus& status, std::string name);
    [[nodiscard]] int open(const std::string& name, FileDescriptor& folder, EntryStatus& status);
    void enter(std::string name, std::size_t rescans = 0);
    void readTop();
    void removeOrDefer(const char* name, bool isKnownFolder);
    void removeTop();
    void shareWork();
    [[nodiscard]] bool isInPlace();
    void abandon();
    void recordKept(int error);

    EmptyingJob& m_job;
    TemporaryPermissions& m_permissions;
    DirectoryReader m_reader;
    FolderStack m_stack = FolderStack(openFolderLimit);
    std::vector<Progress> m_progress;
    std::size_t m_depthOfRoot = 0;
    std::size_t m_enteredSinceCheck = 0;
};

} // namespace CleanCore
