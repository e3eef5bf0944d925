#pragma once

#include "CleanCore/Startup/StartError.h"
#include "Words/ExitStatus.h"

#include <string>
#include <string_view>

/// How both programs tell people and scripts that they cannot start. Thread-safe.
namespace Words {

/// One sentence without a full stop that says what to do. It quotes what was given as it is, so it
/// has to be escaped before it is shown.
[[nodiscard]] std::string startErrorText(const CleanCore::StartError& error);

[[nodiscard]] ExitStatus exitStatus(const CleanCore::StartError& error);

/// The complaint of the command line's parser with a pointer to the help.
[[nodiscard]] std::string usageErrorText(std::string_view complaint);

/// The message for CleanCore::ResourceBundle::Missing.
constexpr const char* missingBundleText = "unable to find bundle named CleanCore_CleanCore";

/// Prints "PROGRAM: TEXT" on standard error as one line, escaped, and shortened if it quotes much.
void printError(std::string_view program, std::string_view text);

} // namespace Words
