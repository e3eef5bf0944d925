#pragma once

#include "ZorvaneCLI/CommonOptions.h"
#include "ZorvaneCLI/ExitStatus.h"

#include <string>
#include <vector>

namespace ZorvaneCLI {

class Interruption;

struct ScanOptions
{
    CommonOptions common;
    bool withoutCommands = false;
    bool reclaim = false;
};

struct CleanOptions
{
    CommonOptions common;
    bool safe = false;
    bool all = false;
    std::vector<std::string> items;
    bool dryRun = false;
    bool yes = false;
};

struct GuardOptions
{
    CommonOptions common;
    std::string path;
    std::string base;
};

/// The commands print results on standard output and progress on standard error. They throw
/// CommandError when they cannot do their work.
[[nodiscard]] ExitStatus listRules(const CommonOptions& options);
[[nodiscard]] ExitStatus scan(const ScanOptions& options, const Interruption& interruption);
[[nodiscard]] ExitStatus clean(const CleanOptions& options, const Interruption& interruption);
[[nodiscard]] ExitStatus guard(const GuardOptions& options);

} // namespace ZorvaneCLI
