#pragma once

#include "CleanCore/Support/PathText.h"
#include "tests/CleanCore/Support/FileManagerDouble.h"

#include <map>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace CleanCoreTests {

/// A file system that is nothing but links: every other path stands for itself.
class LinkedPaths : public FileManagerDouble
{
public:
    /// Path, itself without links on the way, to target, absolute or relative to where the link is.
    using Links = std::map<std::string, std::string>;

    explicit LinkedPaths(Links links = {}) : links(std::move(links)) {}

    Links links;

    /// Follows links as path_resolution(7) says, at most as many as the kernel.
    [[nodiscard]] std::string resolvingSymbolicLinks(const std::string& path) const override
    {
        std::string done = "/";
        std::vector<std::string> toDo = reversed(path);
        for (int followed = 0; !toDo.empty();) {
            const std::string name = std::move(toDo.back());
            toDo.pop_back();
            if (name == "." || name == "..") {
                done = name == "." ? done : CleanCore::PathText::parent(done);
                continue;
            }
            std::string next = CleanCore::PathText::join(done, name);
            const auto link = followed < 40 ? links.find(next) : links.end();
            if (link == links.end()) {
                done = std::move(next);
                continue;
            }
            ++followed;
            if (link->second.front() == '/') {
                done = "/";
            }
            for (std::string& part : reversed(link->second)) {
                toDo.push_back(std::move(part));
            }
        }
        return done;
    }

private:
    static std::vector<std::string> reversed(const std::string& path)
    {
        const std::vector<std::string> parts = CleanCore::PathText::components(path);
        return {parts.rbegin(), parts.rend() - 1};
    }
};

} // namespace CleanCoreTests
