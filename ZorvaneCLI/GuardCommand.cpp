#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/Rules/SafetyGuard.h"
#include "CleanCore/Startup/Startup.h"
#include "ZorvaneCLI/Commands.h"

#include <iostream>

namespace ZorvaneCLI {

using CleanCore::SafetyVerdict;

ExitStatus guard(const GuardOptions& options)
{
    if (options.path.empty() || options.base.empty()) {
        throw CommandError(ExitStatus::wrongUsage, "guard needs a PATH and a --base DIR");
    }
    const CleanCore::HomeEnvironment environment =
        CleanCore::Startup::openHome(options.common.home);
    const CleanCore::SafetyGuard guard(environment.home, *environment.fileManager,
                                       environment.folders.protectedFolders);
    const SafetyVerdict verdict = guard.validate(options.path, options.base);
    if (verdict.isAllowed()) {
        std::cout << "allowed\n";
        return ExitStatus::done;
    }
    std::cout << "blocked: " << name(verdict.reason()) << '\n';
    return ExitStatus::incomplete;
}

} // namespace ZorvaneCLI
