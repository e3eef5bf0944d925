#pragma once

#include "ZorvaneCLI/ExitStatus.h"

#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace CleanCore {
struct HomeEnvironment;
}

namespace ZorvaneCLI {

enum class ICloudAction { list, release, fetch };

struct ICloudOptions
{
    ICloudAction action = ICloudAction::list;
    /// Entries as `list` shows them, byte by byte; none for all of them, which only `list` takes.
    std::vector<std::string> paths;
    /// The cloud drive's folder; without one its place in the home in use.
    std::optional<std::string> container;
    /// The folder that stands for the cloud; nothing is released or fetched without one.
    std::optional<std::string> mirror;
    bool json = false;
};

/// Lists what of the cloud drive is downloaded, releases downloads, or fetches them back. Results
/// on standard output, refusals on standard error too unless they are part of the JSON. Returns
/// `incomplete` when anything was refused, blocked, unreadable or not measured in time, and
/// `interrupted` after a stop request: an entry that was begun is finished, the others are left.
/// Throws CommandError for a path that is not listed.
[[nodiscard]] ExitStatus runICloud(const ICloudOptions& options,
                                   const CleanCore::HomeEnvironment& environment,
                                   const std::stop_token& stop);

} // namespace ZorvaneCLI
