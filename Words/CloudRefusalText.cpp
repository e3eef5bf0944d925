#include "Words/CloudRefusalText.h"

#include "CleanCore/Support/EscapedText.h"

#include <system_error>

namespace Words {

namespace {

const char* textOf(CleanCore::CloudRefusalReason reason)
{
    using enum CleanCore::CloudRefusalReason;
    switch (reason) {
    case accountHome:
        return "the stand-in cloud drive works only in another home";
    case noMirror:
        return "there is no mirror folder that stands for the cloud";
    case noContainer:
        return "the cloud drive's folder is missing or outside the home in use";
    case linkedContainer:
        return "the cloud drive's folder is a link";
    case foldersOverlap:
        return "the cloud drive's folder and its mirror are the same or one holds the other";
    case outsideContainer:
        return "it is not an entry of the cloud drive";
    case applicationBundle:
        return "application bundles stay downloaded";
    case notAFile:
        return "it is neither a file nor a folder";
    case otherMount:
        return "it lies on another mount";
    case hardLinked:
        return "the file has another name (a hard link)";
    case inUse:
        return "the file is open in another program";
    case foreignOwner:
        return "the file belongs to another user";
    case privilegedFile:
        return "the file carries privileges that would be lost";
    case missingInMirror:
        return "the mirror has no such file";
    case differsFromMirror:
        return "the mirror's copy differs";
    case sameFileInMirror:
        return "the mirror's copy is this very file";
    case mirrorInUse:
        return "the mirror's copy is being written";
    case mirrorNotDurable:
        return "the mirror's copy is not known to be safely on disk";
    case notSupported:
        return "this file system cannot hold placeholders";
    case changedMeanwhile:
        return "it changed during the request";
    case notProven:
        return "nothing proves that its missing parts are those of the mirror's copy";
    case changedAfterRelease:
        return "it was written to after its release; it and the mirror's copy stay as they are";
    case refusedByProgram:
        return "git-annex keeps it";
    case programFailed:
        return "git-annex failed";
    case programMissing:
        return "git-annex is not installed, or, in another home, not allowed (--tools / does)";
    case leadsOutside:
        return "the repository leads out of the home in use";
    case noPlaceholders:
        return "virtual files are switched off for this folder in its sync client";
    case stillSynchronizing:
        return "it is still being uploaded or downloaded";
    case notSynchronized:
        return "the sync client does not synchronize it";
    case unspeakableName:
        return "the sync client cannot be told this name";
    case clientUnreachable:
        return "the sync client does not answer";
    case foreignClient:
        return "the sync client belongs to another user";
    case notDoneInTime:
        return "the sync client was asked and has not done it yet";
    case stopped:
        return "the request was stopped before it was done";
    case systemError:
        break;
    }
    return "the system refused";
}

/// The lines of another program's message as one line that can do no harm.
std::string oneLine(const std::string& message)
{
    std::string text;
    for (const char character : message) {
        text += character == '\n' ? std::string("; ") : std::string(1, character);
    }
    return CleanCore::escaped(text, CleanCore::EscapeNotation::brackets);
}

} // namespace

std::string refusalText(const CleanCore::CloudFailure& failure)
{
    std::string text = textOf(failure.reason);
    if (!failure.detail.empty()) {
        text += ": " + oneLine(failure.detail);
    }
    return failure.error == 0 ? text
                              : text + " (" + std::generic_category().message(failure.error) + ")";
}

} // namespace Words
