#pragma once

#include <optional>
#include <string>
#include <vector>

namespace CleanCore {

/// The external tools that measure and clean areas without a folder of their own, and those that
/// work for cloud drives.
enum class Tool { tmutil, xcrun, brew, docker, flatpak, podman, gitAnnex };

/// Where the external tools are: absolute paths, tried in order until a run of one succeeds. PATH
/// is not searched, so no folder of anybody else can come first. An immutable value.
class ToolLocations
{
public:
    /// The real system's tools.
    [[nodiscard]] static ToolLocations ofSystem() { return ToolLocations(std::string()); }

    /// Stand-ins below `root`, which takes the place of "/": ROOT/usr/bin/tmutil and so on. Throws
    /// std::invalid_argument unless `root` is absolute and does not lead to "/".
    [[nodiscard]] static ToolLocations below(const std::string& root);

    /// No tools at all, as if none were installed.
    [[nodiscard]] static ToolLocations none() { return ToolLocations(std::nullopt); }

    /// The locations for a home: below `root` if one is given, otherwise none in a confined home
    /// and the system's in any other. Throws as below() does.
    [[nodiscard]] static ToolLocations forHome(bool isConfined,
                                               const std::optional<std::string>& root);

    /// The given paths in their order, then the ones of this platform.
    [[nodiscard]] std::vector<std::string> paths(Tool tool) const;

private:
    /// `prefix` precedes every path; nothing means no tools.
    explicit ToolLocations(std::optional<std::string> prefix) : m_prefix(std::move(prefix)) {}

    std::optional<std::string> m_prefix;
};

} // namespace CleanCore
