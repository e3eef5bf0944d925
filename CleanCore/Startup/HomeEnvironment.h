#pragma once

#include "CleanCore/FileSystem/UserFolders.h"

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

namespace CleanCore {

class CloudDrive;
class FileManager;
class TaskPool;

/// A home folder that cannot be worked in; what() says why, for people.
class HomeError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The home in use and the collaborators made for it: the one place that decides whether a run is
/// confined.
///
/// The account's home is the password database's entry; see getpwuid(3). Any other home is there
/// for trying things out: the run is confined to it, the environment of this process and its
/// children is pointed into it, and no tool of the real system is run.
struct HomeEnvironment
{
    std::string home;
    bool isConfined = false;
    UserFolders folders;
    std::shared_ptr<TaskPool> pool;
    std::shared_ptr<const FileManager> fileManager;

    /// Makes the environment for `requestedHome`, or for $HOME. Changes the process's environment
    /// variables when confined, so it must run before any thread is started. Throws HomeError.
    [[nodiscard]] static HomeEnvironment make(const std::optional<std::string>& requestedHome);

    /// Where the cloud drive's folder is unless somebody names another.
    [[nodiscard]] std::string cloudContainer() const;

    /// The cloud drive in the folder `container`, with `mirror` for the cloud's side. It refuses
    /// every request unless this home is confined.
    [[nodiscard]] std::shared_ptr<const CloudDrive>
    cloudDrive(const std::string& container, const std::optional<std::string>& mirror) const;
};

} // namespace CleanCore
