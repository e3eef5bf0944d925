#pragma once

#include "CleanCore/CloudDrive/CloudDrive.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace CleanCore {

/// A stand-in for a cloud drive, for trying out the release of downloads: this platform has no such
/// cloud, so a folder, the mirror, plays the cloud's side of the container.
///
/// It works only in a home that the run is confined to, and it never loses a byte. It punches out a
/// file's content only when it has proved that the mirror holds all of it, safely on disk, in
/// another file, and while nobody can change either. Everything else is refused and left untouched.
/// The mirror is never written to. All work is done through descriptors below the two folders;
/// links are never followed and mounts never entered. It may be killed at any moment.
///
/// An immutable value. Two requests for the same file at the same time refuse one another.
class StandInDrive : public CloudDrive
{
public:
    static constexpr std::int64_t defaultStepBytes = std::int64_t{16} * 1024 * 1024;

    /// `confinement` is the home that the run is confined to; without one, which means the
    /// account's own home, every request is refused. `container` and `mirror` must lie in it.
    /// Content is released and fetched in steps of `stepBytes`, a multiple of 4,096.
    StandInDrive(std::optional<std::string> confinement, const std::string& container,
                 std::optional<std::string> mirror, std::int64_t stepBytes = defaultStepBytes);

    [[nodiscard]] std::string name() const override { return "iCloud"; }
    /// Always the one container, even where there is no such folder.
    [[nodiscard]] std::vector<CloudContainer>
    containers(const std::stop_token& stop) const override;
    [[nodiscard]] bool keepsApplications() const override { return true; }
    [[nodiscard]] CloudReply release(const std::string& path,
                                     const CloudWatch& watch) const override;
    [[nodiscard]] CloudReply fetch(const std::string& path, const CloudWatch& watch) const override;

    /// The same requests, which nobody needs to watch: when they return, all is done. They return
    /// the refusals.
    [[nodiscard]] std::vector<CloudRefusal> release(const std::string& path) const;
    [[nodiscard]] std::vector<CloudRefusal> fetch(const std::string& path) const;

private:
    std::optional<std::string> m_confinement;
    std::string m_container;
    std::optional<std::string> m_mirror;
    std::int64_t m_stepBytes;
};

} // namespace CleanCore
