#pragma once

#include "CleanCore/Support/PathText.h"
#include "tests/Support/FileManagerDouble.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <system_error>
#include <vector>

namespace CleanCoreTests {

/// A file system that a test writes down: folders with names in the order in which they are to be
/// listed, the measure of each entry, and the faults. It removes nothing.
class ScriptedFileManager : public FileManagerDouble
{
public:
    struct Folder
    {
        std::vector<std::string> names;
        /// Not 0: listing it fails with this errno.
        int error = 0;
    };

    std::map<std::string, Folder> folders;
    /// By path. An entry without one is a file of 0 bytes dated the distant past.
    std::map<std::string, CleanCore::EntryMeasure> measures;
    /// What a path that is a link leads to.
    std::map<std::string, std::string> links;
    /// Called before a folder's entries are measured, on the measuring thread.
    std::function<void(const std::string& folder, const std::stop_token& stop)> onMeasure;

    [[nodiscard]] std::optional<std::string>
    perUserFolder(CleanCore::PerUserFolder folder) const override
    {
        return folder == CleanCore::PerUserFolder::cache ? "/per-user/cache" : "/per-user/tmp";
    }

    [[nodiscard]] bool exists(const std::string& path) const override
    {
        return folders.contains(path) || measures.contains(path);
    }

    [[nodiscard]] std::vector<std::string> namesInFolder(const std::string& path) const override
    {
        const auto folder = folders.find(path);
        const int error = folder == folders.end() ? ENOENT : folder->second.error;
        if (error != 0) {
            throw std::system_error(error, std::generic_category(), path);
        }
        return folder->second.names;
    }

    [[nodiscard]] std::vector<CleanCore::EntryMeasure>
    measure(const std::string& folder, std::span<const std::string> names,
            const std::stop_token& stop) const override
    {
        if (onMeasure) {
            onMeasure(folder, stop);
        }
        std::vector<CleanCore::EntryMeasure> result;
        for (const std::string& name : names) {
            const auto found = measures.find(CleanCore::PathText::join(folder, name));
            result.push_back(found == measures.end() ? CleanCore::EntryMeasure() : found->second);
        }
        return result;
    }

    [[nodiscard]] std::string resolvingSymbolicLinks(const std::string& path) const override
    {
        const auto found = links.find(path);
        return found == links.end() ? path : found->second;
    }
};

} // namespace CleanCoreTests
