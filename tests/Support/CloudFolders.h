#pragma once

#include "CleanCore/CloudDrive/StandIn/StandInDrive.h"
#include "tests/Support/TemporaryFolder.h"

#include <string>
#include <string_view>
#include <sys/stat.h>

namespace CleanCoreTests {

/// Bytes of `length` that follow from `seed`, none of them zero.
[[nodiscard]] std::string bytes(std::size_t length, unsigned seed = 1);

[[nodiscard]] std::string contentOf(const std::string& path);
void appendTo(const std::string& path, std::string_view content);
[[nodiscard]] struct stat statusOf(const std::string& path);

/// A home of the test's own with a cloud drive in it: "drive" is the container, "mirror" the
/// cloud's side.
struct CloudFolders
{
    explicit CloudFolders(const std::string& below = "/tmp");

    TemporaryFolder home;
    std::string container;
    std::string mirror;

    /// Small steps, so that most files take more than one.
    [[nodiscard]] CleanCore::StandInDrive drive() const;
    [[nodiscard]] std::string local(std::string_view relative) const;
    [[nodiscard]] std::string copy(std::string_view relative) const;

    /// Makes a file with its copy in the mirror, of equal content and different times.
    void makePair(std::string_view relative, std::string_view content) const;
    /// Makes a file that is only in the cloud: all hole, with length and time of its copy.
    void makeCloudOnly(std::string_view relative, std::string_view content) const;
};

} // namespace CleanCoreTests
