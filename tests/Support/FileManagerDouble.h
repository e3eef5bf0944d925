#pragma once

#include "CleanCore/FileSystem/FileManager.h"

#include <stdexcept>

namespace CleanCoreTests {

/// A file manager none of whose operations is expected: what stands in for one in a test overrides
/// those that are, and any other call fails the test.
class FileManagerDouble : public CleanCore::FileManager
{
public:
    [[nodiscard]] std::optional<std::string>
    perUserFolder(CleanCore::PerUserFolder /*folder*/) const override
    {
        unexpected();
    }
    [[nodiscard]] bool exists(const std::string& /*path*/) const override { unexpected(); }
    [[nodiscard]] std::vector<std::string> namesInFolder(const std::string& /*path*/) const override
    {
        unexpected();
    }
    [[nodiscard]] std::vector<CleanCore::EntryMeasure>
    measure(const std::string& /*folder*/, std::span<const std::string> /*names*/,
            const std::stop_token& /*stop*/) const override
    {
        unexpected();
    }
    [[nodiscard]] std::string resolvingSymbolicLinks(const std::string& /*path*/) const override
    {
        unexpected();
    }
    [[nodiscard]] std::optional<std::int64_t>
    availableCapacity(const std::string& /*path*/) const override
    {
        unexpected();
    }
    [[nodiscard]] std::unique_ptr<CleanCore::Removal>
    beginRemoval(const std::string& /*home*/,
                 std::span<const std::string> /*protectedFolders*/) const override
    {
        unexpected();
    }
    [[nodiscard]] std::optional<CleanCore::EntryAttributes>
    attributes(const std::string& /*path*/) const override
    {
        unexpected();
    }
    bool visitTree(const std::string& /*path*/,
                   const CleanCore::TreeVisitor& /*visit*/) const override
    {
        unexpected();
    }

private:
    [[noreturn]] static void unexpected()
    {
        throw std::logic_error("an operation that the test does not expect");
    }
};

} // namespace CleanCoreTests
