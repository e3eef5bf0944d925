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
    systemError,
};

/// Why, and the errno behind it where there is one.
struct CloudFailure
{
    CloudRefusalReason reason = CloudRefusalReason::systemError;
    int error = 0;

    /// One clause for people, without the path.
    [[nodiscard]] std::string text() const;
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
