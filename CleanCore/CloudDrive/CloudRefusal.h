#pragma once

#include <string>

namespace CleanCore {

/// Why a cloud drive left a file, or a whole container, as it was.
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
    /// The program that works for the drive said no; `detail` is its own reason.
    refusedByProgram,
    /// The program failed, or ended without a word about this entry; `detail` may tell more.
    programFailed,
    /// There is no such program, or none that a confined run may use.
    programMissing,
    /// The repository would lead a confined run out of its home, by `detail`.
    leadsOutside,
    /// The sync client keeps no placeholders in this folder.
    noPlaceholders,
    /// Not all of it is on the server yet.
    stillSynchronizing,
    /// The sync client does not keep it in step with the server, or cannot.
    notSynchronized,
    /// The sync client cannot be told this name.
    unspeakableName,
    clientUnreachable,
    foreignClient,
    /// The sync client was asked, and nothing happened within the time limit.
    notDoneInTime,
    /// The user ended the request before it was done.
    stopped,
    systemError,
};

struct CloudFailure
{
    CloudRefusalReason reason = CloudRefusalReason::systemError;
    /// The errno behind it, or 0.
    int error = 0;
    /// What another program said about it, as it is; may be empty and hold several lines.
    std::string detail = {};

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
