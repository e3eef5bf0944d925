#pragma once

#include "CleanCore/CloudDrive/StandIn/StandInDrive.h"
#include "tests/Support/TemporaryFolder.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <sys/stat.h>

namespace CleanCoreTests {

/// Bytes of `length` that follow from `seed`, none of them zero.
[[nodiscard]] inline std::string bytes(std::size_t length, unsigned seed = 1)
{
    std::string text(length, '\0');
    std::minstd_rand random(seed);
    for (char& byte : text) {
        byte = static_cast<char>(1 + random() % 255);
    }
    return text;
}

/// A home of the test's own with a cloud drive in it: "drive" is the container, "mirror" the
/// cloud's side.
struct CloudFolders
{
    CloudFolders() { home.make("drive/ mirror/"); }

    /// Its steps are so small that most files take more than one.
    [[nodiscard]] CleanCore::StandInDrive drive() const
    {
        return {home.path(), home.path("drive"), home.path("mirror"), 8192};
    }
    /// Makes a file with its copy in the mirror, of equal content and different times.
    void makePair(const std::string& name, const std::string& content) const
    {
        using namespace std::chrono_literals;
        home.makeFile("drive/" + name, content);
        home.makeFile("mirror/" + name, content);
        home.setTime("drive/" + name, CleanCore::Timestamp(1'600'000'000s + 123'456'789ns));
        home.setTime("mirror/" + name, CleanCore::Timestamp(1'600'000'100s));
    }
    [[nodiscard]] std::string content(const std::string& name) const
    {
        std::ifstream file(home.path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    [[nodiscard]] struct stat status(const std::string& name) const
    {
        struct stat status = {};
        ::lstat(home.path(name).c_str(), &status);
        return status;
    }
    /// Runs a shell command in the home. Throws std::runtime_error when it fails.
    void run(const std::string& command) const
    {
        if (std::system(("cd '" + home.path() + "' && " + command).c_str()) != 0) {
            throw std::runtime_error(command);
        }
    }

    const TemporaryFolder home;
};

} // namespace CleanCoreTests
