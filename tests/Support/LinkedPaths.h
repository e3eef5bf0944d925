#pragma once

#include "tests/Support/FileManagerDouble.h"
#include "tests/Support/GuardModel.h"

#include <map>
#include <optional>
#include <string>

namespace CleanCoreTests {

/// A file system that is nothing but links: every other path stands for itself.
class LinkedPaths : public FileManagerDouble
{
public:
    /// Path, itself without links on the way, to target, absolute or relative to where the link is.
    using Links = std::map<std::string, std::string>;

    explicit LinkedPaths(Links links = {}) : links(std::move(links)) {}

    Links links;

    [[nodiscard]] std::optional<std::string> target(const std::string& path) const
    {
        const auto link = links.find(path);
        return link == links.end() ? std::nullopt : std::optional(link->second);
    }
    [[nodiscard]] std::string resolvingSymbolicLinks(const std::string& path) const override
    {
        return followingLinks(path, [this](const std::string& link) { return target(link); });
    }
};

} // namespace CleanCoreTests
