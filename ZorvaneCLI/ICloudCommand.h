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
    /// Entries as `list` shows them, byte by byte. None means all of them, which only `list`
    /// accepts.
    std::vector<std::string> paths;
    /// The cloud drive's folder; by default the usual one of the home in use.
    std::optional<std::string> container;
    /// The folder that plays the cloud; nothing is released or fetched without one.
    std::optional<std::string> mirror;
    bool json = false;
};

/// Lists the downloads of the cloud drive, releases them, or fetches them again. Prints results to
/// standard output, and refusals to standard error unless they are part of the JSON. Returns
/// `incomplete` when anything was refused, blocked, unreadable or not measured in time, and
/// `interrupted` after a stop request, which lets the current entry finish and leaves the others.
/// Throws CommandError for a path that `list` does not show.
[[nodiscard]] ExitStatus runICloud(const ICloudOptions& options,
                                   const CleanCore::HomeEnvironment& environment,
                                   const std::stop_token& stop);

} // namespace ZorvaneCLI
