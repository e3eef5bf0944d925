#pragma once

#include "CleanCore/FileSystem/Removing/EmptyingJob.h"
#include "CleanCore/FileSystem/Removing/LendingSteps.h"
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
    explicit EmptyingWalk(EmptyingJob& job) : m_job(job), m_steps(job) {}
    void run(EmptyingPiece piece);

private:
    // Two walks with this many folders each, and what surrounds them, fit into 32 descriptors.
    static constexpr std::size_t openFolderLimit = 7;

    struct Progress
    {
        // Entries that stay, so that this folder has to.
        std::size_t kept = 0;
        std::size_t removed = 0;
        std::size_t rescans = 0;
        bool isPartlyRead = false;
    };

    void push(FileDescriptor folder, const EntryStatus& status, std::string name);
    void enter(std::string name, std::size_t rescans = 0);
    void readTop();
    void look(const char* name, bool isKnownFolder);
    void leave();
    void shareWork();
    [[nodiscard]] bool isInPlace();
    void abandon();
    void keep(int error);

    EmptyingJob& m_job;
    LendingSteps m_steps;
    DirectoryReader m_reader;
    FolderStack m_stack = FolderStack(openFolderLimit);
    std::vector<Progress> m_progress;
    std::size_t m_depthOfRoot = 0;
    std::size_t m_enteredSinceCheck = 0;
};

} // namespace CleanCore
