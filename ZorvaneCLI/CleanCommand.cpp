#include "CleanCore/Cleaning/Clean.h"
#include "CleanCore/Cleaning/SelectionReclaim.h"
#include "CleanCore/Commands/CommandCleanEngine.h"
#include "CleanCore/Commands/Running/SystemCommandRunner.h"
#include "ZorvaneCLI/CleanChoice.h"
#include "ZorvaneCLI/Commands.h"
#include "ZorvaneCLI/Output/CleanPreview.h"
#include "ZorvaneCLI/Output/CleanReport.h"
#include "ZorvaneCLI/ScanRun.h"

#include <algorithm>
#include <functional>
#include <iostream>
#include <memory>
#include <unistd.h>

namespace ZorvaneCLI {

using CleanCore::CategoryResult;
using CleanCore::Clean;
using CleanCore::CleaningSelection;
using CleanCore::RuleKind;
using CleanCore::RuleTier;

namespace {

/// Shows the items to be removed and waits for "yes". Both need a terminal: a list that went into a
/// file has not been read.
void askForConsent(std::span<const CleaningSelection> selections, const Workspace& workspace,
                   const Interruption& interruption)
{
    const bool isShownByErrors = ::isatty(STDERR_FILENO) == 1;
    if (::isatty(STDIN_FILENO) != 1 || (!isShownByErrors && ::isatty(STDOUT_FILENO) != 1)) {
        throw CommandError(ExitStatus::refused,
                           "nothing was removed: there is no terminal to ask for confirmation (use "
                           "--yes to skip the question)");
    }
    (isShownByErrors ? std::cerr : std::cout)
        << previewText(selections, workspace.texts) << "Type \"yes\" to remove: " << std::flush;
    if (interruption.readLine() == "yes") {
        return;
    }
    if (interruption.happened()) {
        throw CommandError(ExitStatus::interrupted, "interrupted; nothing was removed");
    }
    throw CommandError(ExitStatus::refused, "nothing was removed");
}

Clean::Outcome remove(std::vector<CleaningSelection> selections, const Workspace& workspace,
                      std::shared_ptr<const CleanCore::ReclaimSurvey> survey, bool dryRun,
                      const Interruption& interruption)
{
    const CleanCore::HomeEnvironment& environment = workspace.environment;
    const CleanCore::CommandCleanEngine tools(std::make_shared<CleanCore::SystemCommandRunner>(),
                                              workspace.tools);
    const Clean clean(
        environment.home, environment.fileManager, environment.folders.protectedFolders,
        std::bind_front(&CleanCore::CommandCleanEngine::run, tools), std::move(survey));
    return clean.run(std::move(selections), dryRun, interruption.token());
}

} // namespace

ExitStatus clean(const CleanOptions& options, const Interruption& interruption)
{
    requireChoice(options);
    Workspace workspace = openWorkspace(options.common);
    if (options.safe) {
        std::erase_if(workspace.rules, [](const CleanCore::CleaningRule& rule) {
            return rule.tier != RuleTier::safe || rule.kind != RuleKind::fileSystem;
        });
    }
    auto results = runScan(workspace, ToolAreas::included, interruption);
    if (!results) {
        throw CommandError(ExitStatus::interrupted, "interrupted; nothing was removed");
    }
    const bool wasUnreadable =
        std::any_of(results->begin(), results->end(),
                    [](const CategoryResult& result) { return result.hadAccessErrors; });
    if (wasUnreadable) {
        std::cerr
            << "zorvane-cli: some areas could not be read; \"zorvane-cli scan\" shows which\n";
    }
    std::vector<CleaningSelection> selections = choose(options, std::move(*results));
    const auto survey = workspace.environment.reclaimSurvey();
    if (!options.yes && !options.dryRun && !selections.empty()) {
        CleanCore::examine(selections, *survey, interruption.token());
        askForConsent(selections, workspace, interruption);
    }
    const Clean::Outcome outcome =
        remove(std::move(selections), workspace, survey, options.dryRun, interruption);
    (options.common.json ? printJsonReport : printReport)(outcome, options.dryRun);
    if (interruption.happened()) {
        std::cerr << "zorvane-cli: interrupted; the current item was finished, the others were "
                     "left in place\n";
        return ExitStatus::interrupted;
    }
    return outcome.report.skipped.empty() && !wasUnreadable ? ExitStatus::done
                                                            : ExitStatus::incomplete;
}

} // namespace ZorvaneCLI
