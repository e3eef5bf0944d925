#pragma once

#include "CleanCore/FileSystem/LinuxFileManager.h"

#include <memory>
#include <stop_token>
#include <utility>

namespace CleanCoreTests {

/// A real file manager that requests a stop once so many removals are done.
class StoppingFileManager : public CleanCore::LinuxFileManager
{
public:
    StoppingFileManager(const std::string& home, std::shared_ptr<CleanCore::TaskPool> pool,
                        std::stop_source stop, int removals)
        : LinuxFileManager(CleanCore::UserFolders::confinedTo(home), home, std::move(pool)),
          m_stop(std::move(stop)), m_removals(removals)
    {
    }

    [[nodiscard]] std::unique_ptr<CleanCore::Removal>
    beginRemoval(const std::string& home,
                 std::span<const std::string> protectedFolders) const override
    {
        return std::make_unique<StoppingRemoval>(
            LinuxFileManager::beginRemoval(home, protectedFolders), m_stop, m_removals);
    }

private:
    class StoppingRemoval : public CleanCore::Removal
    {
    public:
        StoppingRemoval(std::unique_ptr<CleanCore::Removal> removal, std::stop_source stop,
                        int removals)
            : m_removal(std::move(removal)), m_stop(std::move(stop)), m_left(removals)
        {
        }
        [[nodiscard]] CleanCore::RemovalOutcome
        remove(const std::string& base, const std::string& path,
               const std::optional<CleanCore::EntryIdentity>& seen) override
        {
            const CleanCore::RemovalOutcome outcome = m_removal->remove(base, path, seen);
            if (--m_left == 0) {
                m_stop.request_stop();
            }
            return outcome;
        }
        [[nodiscard]] int check(const std::string& base, const std::string& path,
                                const std::optional<CleanCore::EntryIdentity>& seen) override
        {
            return m_removal->check(base, path, seen);
        }

    private:
        std::unique_ptr<CleanCore::Removal> m_removal;
        std::stop_source m_stop;
        int m_left;
    };

    std::stop_source m_stop;
    int m_removals;
};

} // namespace CleanCoreTests
