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

enum class ICloudAction { drives, list, release, fetch };

struct ICloudOptions
{
    ICloudAction action = ICloudAction::list;
    /// Entries as `list` shows them, byte by byte. None means all of them, which only `list`
    /// accepts.
    std::vector<std::string> paths;
    /// The name of the drive; by default the given one, which has the folders below.
    std::optional<std::string> drive;
    /// The cloud drive's folder; by default the usual one of the home in use, or, of another drive,
    /// all its folders.
    std::optional<std::string> container;
    /// The folder that plays the cloud; nothing is released or fetched without one.
    std::optional<std::string> mirror;
    /// The folder that stands as the root of the programs' paths.
    std::optional<std::string> tools;
    bool json = false;
};

/// Lists the cloud drives, or lists, releases or fetches again the downloads of one. Prints results
/// to standard output, and refusals to standard error unless they are part of the JSON. Returns
/// `incomplete` when anything was refused, blocked, unreadable or not measured in time, and
/// `interrupted` after a stop request, which lets the current entry finish and leaves the others.
/// Throws CommandError for a path that `list` does not show and for an unknown drive.
[[nodiscard]] ExitStatus runICloud(const ICloudOptions& options,
                                   const CleanCore::HomeEnvironment& environment,
                                   const std::stop_token& stop);

} // namespace ZorvaneCLI
