#pragma once

#include <optional>
#include <string>
#include <vector>

namespace CleanCore {

/// The external tools that measure and clean what no folder shows.
enum class Tool { tmutil, xcrun, brew, docker, flatpak, podman };

/// Where the external tools are: absolute paths, tried in order until a run of one succeeds. There
/// is no search of PATH, so that nobody else's folder can put itself in front. An immutable value.
class ToolLocations
{
public:
    /// The real system's tools.
    [[nodiscard]] static ToolLocations ofSystem() { return ToolLocations(std::string()); }

    /// Stand-ins below `root`, which takes the place of "/": ROOT/usr/bin/tmutil and so on. Throws
    /// std::invalid_argument unless `root` is absolute and leads somewhere else than "/".
    [[nodiscard]] static ToolLocations below(const std::string& root);

    /// No tools at all, which looks as if none were installed.
    [[nodiscard]] static ToolLocations none() { return ToolLocations(std::nullopt); }

    /// What holds for a home: `root` wherever one is given, none without it in a confined home, and
    /// the system's otherwise. Throws as below() does.
    [[nodiscard]] static ToolLocations forHome(bool isConfined,
                                               const std::optional<std::string>& root);

    /// The fixed paths first and in their order, then those of this platform.
    [[nodiscard]] std::vector<std::string> paths(Tool tool) const;

private:
    /// `prefix`: what stands before every path; nothing when there are no tools.
    explicit ToolLocations(std::optional<std::string> prefix) : m_prefix(std::move(prefix)) {}

    std::optional<std::string> m_prefix;
};

} // namespace CleanCore
