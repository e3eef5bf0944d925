#pragma once

#include "CleanCore/Cleaning/Clean.h"

namespace ZorvaneCLI {

/// Print the outcome of a clean or a dry run on standard output, as text and as JSON.
void printReport(const CleanCore::Clean::Outcome& outcome, bool dryRun);
void printJsonReport(const CleanCore::Clean::Outcome& outcome, bool dryRun);

} // namespace ZorvaneCLI
