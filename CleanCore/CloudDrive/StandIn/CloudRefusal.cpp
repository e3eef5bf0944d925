#include "CleanCore/CloudDrive/CloudRefusal.h"

#include <system_error>

namespace CleanCore {

namespace {

const char* textOf(CloudRefusalReason reason)
{
    switch (reason) {
    case CloudRefusalReason::accountHome:
        return "the stand-in cloud drive works only in another home";
    case CloudRefusalReason::noMirror:
        return "there is no mirror folder that stands for the cloud";
    case CloudRefusalReason::noContainer:
        return "the cloud drive's folder is missing or outside the home in use";
    case CloudRefusalReason::linkedContainer:
        return "the cloud drive's folder is a link";
    case CloudRefusalReason::foldersOverlap:
        return "the cloud drive's folder and its mirror are the same or one holds the other";
    case CloudRefusalReason::outsideContainer:
        return "it is not an entry of the cloud drive";
    case CloudRefusalReason::applicationBundle:
        return "application bundles stay downloaded";
    case CloudRefusalReason::notAFile:
        return "it is neither a file nor a folder";
    case CloudRefusalReason::otherMount:
        return "it lies on another mount";
    case CloudRefusalReason::hardLinked:
        return "the file has another name (a hard link)";
    case CloudRefusalReason::inUse:
        return "the file is open in another program";
    case CloudRefusalReason::foreignOwner:
        return "the file belongs to another user";
    case CloudRefusalReason::privilegedFile:
        return "the file carries privileges that would be lost";
    case CloudRefusalReason::missingInMirror:
        return "the mirror holds no such file";
    case CloudRefusalReason::differsFromMirror:
        return "the mirror's copy differs";
    case CloudRefusalReason::sameFileInMirror:
        return "the mirror's copy is this very file";
    case CloudRefusalReason::mirrorInUse:
        return "the mirror's copy is being written";
    case CloudRefusalReason::mirrorNotDurable:
        return "the mirror's copy is not known to be safely on disk";
    case CloudRefusalReason::notSupported:
        return "this file system cannot hold placeholders";
    case CloudRefusalReason::changedMeanwhile:
        return "it was changed meanwhile";
    case CloudRefusalReason::notProven:
        return "nothing proves that its missing parts are those of the mirror's copy";
    case CloudRefusalReason::systemError:
        break;
    }
    return "the system refused";
}

} // namespace

std::string CloudFailure::text() const
{
    const std::string text = textOf(reason);
    return error == 0 ? text : text + " (" + std::generic_category().message(error) + ")";
}

} // namespace CleanCore
