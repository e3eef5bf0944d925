#pragma once

#include "CleanCore/CloudDrive/StandIn/CloudRefusal.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace CleanCore {

/// A stand-in for a cloud drive, for trying the release of downloads out. There is no such cloud on
/// this platform, so a folder, the mirror, stands for the cloud's side of the container.
///
/// It works only in a home that the run is confined to, and it never loses a byte: it gives up a
/// file's content only if it can prove that the mirror holds all of it, safely on disk, in another
/// file, and that nobody can be changing either meanwhile. Everything else is refused and left
/// untouched. The mirror is never written to. All work is done on descriptors below the two
/// folders; links are never followed, mounts not entered. It may be cut short at any moment.
///
/// An immutable value; may be used from any thread. Two uses of the same file at once refuse one
/// another.
class CloudDrive
{
public:
    static constexpr std::int64_t defaultStepBytes = std::int64_t{16} * 1024 * 1024;

    /// `confinement` is the home that the run is confined to, and nothing on the account's own,
    /// where every request is refused; `container` and `mirror` must lie in it. Content is given up
    /// and brought back in steps of `stepBytes`, a multiple of 4,096.
    CloudDrive(std::optional<std::string> confinement, const std::string& container,
               std::optional<std::string> mirror, std::int64_t stepBytes = defaultStepBytes);

    /// Turns the file at `path`, or every file in the folder there but those of application
    /// bundles, into placeholders: of the same name, length, mode, owner, times and extended
    /// attributes, without content. Returns what was refused, nothing when all was released.
    [[nodiscard]] std::vector<CloudRefusal> release(const std::string& path) const;

    /// Brings the content of the placeholder at `path`, or of every one in the folder there, back.
    /// Returns what was refused, nothing when all is local.
    [[nodiscard]] std::vector<CloudRefusal> fetch(const std::string& path) const;

private:
    std::optional<std::string> m_confinement;
    std::string m_container;
    std::optional<std::string> m_mirror;
    std::int64_t m_stepBytes;
};

} // namespace CleanCore
