#include "CleanCore/Commands/Running/ChildSignal.h"
#include "CleanCore/Rules/ResourceBundle.h"
#include "CleanCore/Startup/Startup.h"
#include "ZorvaneCLI/Commands.h"
#include "ZorvaneCLI/ExitStatus.h"
#include "ZorvaneCLI/ICloudCommand.h"
#include "ZorvaneCLI/Interruption.h"

#include "Words/StartErrorText.h"

#include <CLI/CLI.hpp>
#include <exception>
#include <fcntl.h>
#include <functional>
#include <iostream>
#include <unistd.h>

namespace {

using namespace ZorvaneCLI;

void addHome(CLI::App& command, CommonOptions& options)
{
    command
        .add_option("--home", options.home,
                    "Work in this home folder; one that is not the account's own confines the "
                    "run to it")
        ->type_name("DIR");
}

void addCatalog(CLI::App& command, CommonOptions& options)
{
    command.add_option("--catalog", options.catalog, "Use this catalog instead of the bundled one")
        ->type_name("FILE");
}

void addCommon(CLI::App& command, CommonOptions& options)
{
    addHome(command, options);
    addCatalog(command, options);
    command
        .add_option("--tools", options.tools,
                    "In another home: the folder that stands as the root of the tool paths")
        ->type_name("ROOT");
    command.add_option("--now", options.now, "In another home: the time that ages refer to")
        ->type_name("RFC3339");
    command.add_option("--rule", options.ruleIds, "Only this area; may be given more than once")
        ->type_name("ID")
        ->allow_extra_args(false);
    command.add_flag("--json", options.json, "Print JSON");
}

/// All commands with their options. Parsing sets `run` to the chosen command.
struct CommandLine
{
    CLI::App app = CLI::App("Zorvane finds disk space held by caches, logs and other leftovers, "
                            "and removes what you choose.",
                            "zorvane-cli");
    CommonOptions rulesOptions;
    ScanOptions scanOptions;
    CleanOptions cleanOptions;
    GuardOptions guardOptions;
    CommonOptions iCloudCommon;
    ICloudOptions iCloudOptions;
    std::function<ExitStatus(const Interruption&)> run;

    CommandLine()
    {
        app.set_version_flag("--version", "zorvane-cli " ZORVANE_VERSION);
        app.require_subcommand(1);
        addRules();
        addScan();
        addClean();
        addGuard();
        addICloud();
    }

private:
    void addRules()
    {
        CLI::App& command = *app.add_subcommand("rules", "Validate and list the catalog");
        addCatalog(command, rulesOptions);
        command.add_flag("--json", rulesOptions.json, "Print JSON");
        command.callback(
            [this] { run = [this](const Interruption&) { return listRules(rulesOptions); }; });
    }

    void addScan()
    {
        CLI::App& command = *app.add_subcommand("scan", "Show what could be cleaned");
        addCommon(command, scanOptions.common);
        command.add_flag("--no-commands", scanOptions.withoutCommands,
                         "Leave out the areas that only a tool can measure");
        command.add_flag("--reclaim", scanOptions.reclaim,
                         "Find out how much free space the removal brings");
        command.callback(
            [this] { run = [this](const Interruption& i) { return scan(scanOptions, i); }; });
    }

    void addClean()
    {
        CLI::App& command = *app.add_subcommand("clean", "Remove what you choose, permanently");
        addCommon(command, cleanOptions.common);
        command.add_flag("--safe", cleanOptions.safe,
                         "Everything that is selected by default: all items of safe areas");
        command.add_flag("--all", cleanOptions.all, "With --rule: every item of those areas");
        command.add_option("--item", cleanOptions.items, "With --rule: only this item")
            ->type_name("PATH")
            ->allow_extra_args(false);
        command.add_flag("--dry-run", cleanOptions.dryRun, "Remove nothing, show what would go");
        command.add_flag("--yes", cleanOptions.yes, "Do not ask");
        command.callback(
            [this] { run = [this](const Interruption& i) { return clean(cleanOptions, i); }; });
    }

    void addGuard()
    {
        CLI::App& command = *app.add_subcommand("guard", "The safety guard's verdict on one path");
        addHome(command, guardOptions.common);
        command.add_option("path", guardOptions.path, "The path to judge")
            ->type_name("PATH")
            ->required();
        command.add_option("--base", guardOptions.base, "The folder it would be removed from")
            ->type_name("DIR")
            ->required();
        command.callback(
            [this] { run = [this](const Interruption&) { return guard(guardOptions); }; });
    }

    void addICloud()
    {
        CLI::App& command =
            *app.add_subcommand("icloud", "Cloud drives: list, release and fetch their downloads");
        command.require_subcommand(1);
        addICloudAction(command, ICloudAction::drives, "drives", "Show the cloud drives");
        addICloudAction(command, ICloudAction::list, "list", "Show the downloads");
        addICloudAction(command, ICloudAction::release, "release",
                        "Release downloads whose content is safe in the cloud");
        addICloudAction(command, ICloudAction::fetch, "fetch", "Fetch released content again");
    }

    void addICloudAction(CLI::App& parent, ICloudAction action, const char* name, const char* text)
    {
        CLI::App& command = *parent.add_subcommand(name, text);
        addHome(command, iCloudCommon);
        command
            .add_option("--tools", iCloudOptions.tools,
                        "In another home: the folder that stands as the root of the programs' "
                        "paths; / for the system's")
            ->type_name("ROOT");
        command.add_flag("--json", iCloudOptions.json, "Print JSON");
        command.callback([this, action] {
            iCloudOptions.action = action;
            run = [this](const Interruption& interruption) {
                return runICloud(iCloudOptions, CleanCore::Startup::openHome(iCloudCommon.home),
                                 interruption.token());
            };
        });
        if (action == ICloudAction::drives) {
            return;
        }
        command
            .add_option("--drive", iCloudOptions.drive,
                        "A drive that \"icloud drives\" shows, instead of iCloud")
            ->type_name("NAME");
        command.add_option("path", iCloudOptions.paths, "Entries, as \"icloud list\" shows them")
            ->type_name("PATH");
        command.add_option("--container", iCloudOptions.container, "The cloud drive's folder")
            ->type_name("DIR");
        command
            .add_option("--mirror", iCloudOptions.mirror, "The folder that stands for the cloud")
            ->type_name("DIR");
    }
};

/// Otherwise the first files to be opened would take the descriptors of the standard streams.
void openMissingStandardStreams()
{
    int file = 0;
    do {
        file = ::open("/dev/null", O_RDWR);
    } while (file >= 0 && file <= STDERR_FILENO);
    if (file > STDERR_FILENO) {
        ::close(file);
    }
}

int complain(std::string_view text, ExitStatus status)
{
    Words::printError("zorvane-cli", text);
    return static_cast<int>(status);
}

int parseAndRun(int argc, char** argv)
{
    CommandLine commandLine;
    try {
        commandLine.app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
            return commandLine.app.exit(error);
        }
        // For an unknown command, the parser only complains that a command is missing.
        const std::vector<std::string> unknown = commandLine.app.remaining(true);
        const bool isUnknownCommand =
            dynamic_cast<const CLI::RequiredError*>(&error) != nullptr && !unknown.empty();
        const std::string complaint =
            isUnknownCommand ? "there is no command \"" + unknown.front() + "\"" : error.what();
        return complain(Words::usageErrorText(complaint), ExitStatus::wrongUsage);
    }
    const Interruption interruption;
    return static_cast<int>(commandLine.run(interruption));
}

} // namespace

int main(int argc, char** argv)
{
    CleanCore::restoreChildSignal();
    openMissingStandardStreams();
    try {
        const int status = parseAndRun(argc, argv);
        if (!std::cout.flush()) {
            throw CommandError(ExitStatus::incomplete, "the results could not be written");
        }
        return status;
    } catch (const CommandError& error) {
        return complain(error.what(), error.status());
    } catch (const CleanCore::StartError& error) {
        return complain(Words::startErrorText(error), Words::exitStatus(error));
    } catch (const CleanCore::ResourceBundle::Missing&) {
        std::cerr << Words::missingBundleText << '\n';
        return static_cast<int>(ExitStatus::catalogUnusable);
    } catch (const std::exception& error) {
        return complain(error.what(), ExitStatus::incomplete);
    }
}
