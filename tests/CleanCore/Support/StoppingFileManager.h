#pragma once

#include "tests/CleanCore/Support/FileManagerDouble.h"

#include <memory>
#include <stop_token>
#include <utility>

namespace CleanCoreTests {

/// Another file manager that requests a stop once so many removals are done.
class StoppingFileManager : public FileManagerDouble
{
public:
    StoppingFileManager(std::shared_ptr<const CleanCore::FileManager> files, std::stop_source stop,
                        int removals)
        : m_files(std::move(files)), m_stop(std::move(stop)), m_removals(removals)
    {
    }

    [[nodiscard]] std::optional<std::string>
    perUserFolder(CleanCore::PerUserFolder folder) const override
    {
        return m_files->perUserFolder(folder);
    }
    [[nodiscard]] bool exists(const std::string& path) const override
    {
        return m_files->exists(path);
    }
    [[nodiscard]] std::vector<std::string> namesInFolder(const std::string& path) const override
    {
        return m_files->namesInFolder(path);
    }
    [[nodiscard]] std::vector<CleanCore::EntryMeasure>
    measure(const std::string& folder, std::span<const std::string> names,
            const std::stop_token& stop) const override
    {
        return m_files->measure(folder, names, stop);
    }
    [[nodiscard]] std::string resolvingSymbolicLinks(const std::string& path) const override
    {
        return m_files->resolvingSymbolicLinks(path);
    }
    [[nodiscard]] std::optional<std::int64_t>
    availableCapacity(const std::string& path) const override
    {
        return m_files->availableCapacity(path);
    }
    [[nodiscard]] std::unique_ptr<CleanCore::Removal>
    beginRemoval(const std::string& home,
                 std::span<const std::string> protectedFolders) const override
    {
        return std::make_unique<StoppingRemoval>(m_files->beginRemoval(home, protectedFolders),
                                                 m_stop, m_removals);
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

    std::shared_ptr<const CleanCore::FileManager> m_files;
    std::stop_source m_stop;
    int m_removals;
};

} // namespace CleanCoreTests
