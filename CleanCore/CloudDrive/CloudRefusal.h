#pragma once

#include <string>

namespace CleanCore {

/// Why the cloud drive left a file as it was.
enum class CloudRefusalReason {
    accountHome,
    noMirror,
    noContainer,
    linkedContainer,
    foldersOverlap,
    outsideContainer,
    applicationBundle,
    notAFile,
    otherMount,
    hardLinked,
    inUse,
    foreignOwner,
    privilegedFile,
    missingInMirror,
    differsFromMirror,
    sameFileInMirror,
    mirrorInUse,
    mirrorNotDurable,
    notSupported,
    changedMeanwhile,
    notProven,
    /// Its content was written to while parts of it were only in the cloud.
    changedAfterRelease,
    systemError,
};

struct CloudFailure
{
    CloudRefusalReason reason = CloudRefusalReason::systemError;
    /// The errno behind it, or 0.
    int error = 0;

    [[nodiscard]] bool operator==(const CloudFailure&) const = default;
};

/// A file, or a whole request, that was refused.
struct CloudRefusal
{
    std::string path;
    CloudFailure failure;

    [[nodiscard]] bool operator==(const CloudRefusal&) const = default;
};

} // namespace CleanCore
