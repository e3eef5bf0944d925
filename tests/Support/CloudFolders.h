#pragma once

#include "CleanCore/CloudDrive/StandIn/StandInDrive.h"
#include "tests/Support/TemporaryFolder.h"

#include <optional>
#include <string>
#include <sys/stat.h>

namespace CleanCoreTests {

/// Bytes of `length` that follow from `seed`, none of them zero.
[[nodiscard]] std::string bytes(std::size_t length, unsigned seed = 1);
[[nodiscard]] std::string contentOf(const std::string& path);
[[nodiscard]] struct stat statusOf(const std::string& path);

/// A home of the test's own with a cloud drive in it: "drive" is the container, "mirror" the
/// cloud's side.
struct CloudFolders
{
    explicit CloudFolders(const std::string& below = "/tmp") : home(below)
    {
        run("mkdir drive mirror");
    }

    TemporaryFolder home;
    std::string container = home.path("drive");
    std::string mirror = home.path("mirror");

    /// Its steps are so small that most files take more than one.
    [[nodiscard]] CleanCore::StandInDrive drive() const
    {
        return {home.path(), container, mirror, 8192};
    }
    [[nodiscard]] std::string local(const std::string& name) const
    {
        return container + '/' + name;
    }
    [[nodiscard]] std::string copy(const std::string& name) const { return mirror + '/' + name; }

    /// Makes a file with its copy in the mirror, of equal content and different times.
    void makePair(const std::string& name, const std::string& content) const;
    /// Makes a file that is only in the cloud: all hole, with length and time of its copy.
    void makeCloudOnly(const std::string& name, const std::string& content) const;
    /// Runs a shell command in the home. Throws std::runtime_error when it fails.
    void run(const std::string& command) const;
};

/// The number of bytes of the file at `path` that are not here but in the mirror. Nothing when one
/// of `content`, which holds no zero, is in neither, or not where it was.
[[nodiscard]] std::optional<std::size_t>
releasedBytes(const std::string& path, const std::string& content, const std::string& uploaded);

} // namespace CleanCoreTests
