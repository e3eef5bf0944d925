#include "Words/StartErrorText.h"

#include "CleanCore/Support/EscapedText.h"

#include <iostream>

namespace Words {

namespace {

using CleanCore::StartError;
using CleanCore::StartFault;

std::string catalogName(const StartError& error)
{
    return error.subject ? "the catalog " + *error.subject : "the bundled catalog";
}

/// The JSON library's message without the "[json.exception.…] " in front.
std::string withoutCode(const std::string& message)
{
    const std::size_t end = message.find("] ");
    return message.starts_with("[json.") && end != std::string::npos ? message.substr(end + 2)
                                                                     : message;
}

} // namespace

std::string startErrorText(const StartError& error)
{
    const std::string subject = error.subject.value_or("");
    switch (error.fault) {
    case StartFault::homeUnknown:
        return "this account has no home folder; name one with --home DIR";
    case StartFault::homeEmpty:
        return "the home folder must not be empty";
    case StartFault::homeMissing:
        return "the home folder " + subject + " does not exist";
    case StartFault::homeNotAFolder:
        return "the home folder " + subject + " is not a folder";
    case StartFault::homeUnreadable:
        return "the home folder " + subject + " cannot be read";
    case StartFault::homeHoldsAccount:
        return "the folder " + subject +
               " contains this account's own home; choose a folder beside or below it";
    case StartFault::needsOtherHome:
        return subject + " is for trying things out and needs another home (--home DIR)";
    case StartFault::toolsNotAFolder:
        return "--tools needs a folder, not " + subject;
    case StartFault::toolsAtRoot:
        return "--tools: the folder of the tools must not be the system's own root";
    case StartFault::catalogMissing:
        return "the bundled catalog is missing; install Zorvane again";
    case StartFault::catalogUnreadable:
        return catalogName(error) + " cannot be read: " +
               (error.code == std::errc::invalid_argument ? "it is not a regular file"
                                                          : error.code.message());
    case StartFault::catalogInvalid:
        return catalogName(error) + " is invalid: " + withoutCode(error.detail);
    case StartFault::catalogTooBroad:
        break;
    }
    return catalogName(error) + " is refused: it would clean " + error.detail +
           ", which holds more than leftovers";
}

ExitStatus exitStatus(const StartError& error)
{
    switch (error.fault) {
    case StartFault::catalogMissing:
    case StartFault::catalogUnreadable:
    case StartFault::catalogInvalid:
    case StartFault::catalogTooBroad:
        return ExitStatus::catalogUnusable;
    default:
        return ExitStatus::wrongUsage;
    }
}

std::string usageErrorText(std::string_view complaint)
{
    return std::string(complaint) + " (use --help for a list of options)";
}

void printError(std::string_view program, std::string_view text)
{
    std::cerr << program << ": " << CleanCore::shortened(CleanCore::escaped(text)) << '\n';
}

} // namespace Words
