#pragma once

#include "CleanCore/FileSystem/UserFolders.h"

#include <memory>
#include <optional>
#include <string>

namespace CleanCore {

class CloudDrive;
class FileManager;
class ReclaimSurvey;
class TaskPool;
class VolumeFacts;

/// The home in use and the collaborators made for it: the one place that decides whether a run is
/// confined.
///
/// The account's home is the password database's entry; see getpwuid(3). Any other home is for
/// trying things out: the run is confined to it, the environment variables of this process and its
/// children point into it, and no tool of the real system runs.
struct HomeEnvironment
{
    std::string home;
    bool isConfined = false;
    UserFolders folders;
    std::shared_ptr<TaskPool> pool;
    std::shared_ptr<const FileManager> fileManager;
    std::shared_ptr<const VolumeFacts> volumeFacts;

    /// Makes the environment for `requestedHome`, or for $HOME. Changes the process's environment
    /// variables when confined, so it must run before any thread is started. Throws StartError.
    [[nodiscard]] static HomeEnvironment make(const std::optional<std::string>& requestedHome);

    /// A survey for the results of one scan.
    [[nodiscard]] std::shared_ptr<const ReclaimSurvey> reclaimSurvey() const;

    /// The default folder of the cloud drive.
    [[nodiscard]] std::string cloudContainer() const;

    /// The cloud drive in the folder `container`, with `mirror` for the cloud's side. It refuses
    /// every request unless this home is confined.
    [[nodiscard]] std::shared_ptr<const CloudDrive>
    cloudDrive(const std::string& container, const std::optional<std::string>& mirror) const;
};

} // namespace CleanCore
