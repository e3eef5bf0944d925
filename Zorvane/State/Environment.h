#pragma once

#include "CleanCore/Commands/Running/ToolLocations.h"
#include "CleanCore/Rules/RulesCatalog.h"
#include "CleanCore/Rules/TextTable.h"
#include "CleanCore/Startup/HomeEnvironment.h"
#include "CleanCore/Support/Timestamp.h"
#include "Zorvane/Desktop/Preferences.h"
#include "Zorvane/Desktop/UserAccount.h"

#include <QLocale>
#include <chrono>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

namespace CleanCore {
class CloudDrive;
class CommandRunning;
} // namespace CleanCore

namespace Zorvane {

/// The collaborators of the application's state. Made once, by the program or by a test.
struct Environment
{
    CleanCore::HomeEnvironment home;
    /// The given drive, which lies in the home's own folder for it, and then the others; empty for
    /// none.
    std::vector<std::shared_ptr<const CleanCore::CloudDrive>> cloudDrives;
    CleanCore::ToolLocations tools = CleanCore::ToolLocations::none();
    /// Makes a runner whose children end when a stop is requested. Called on the main thread.
    std::function<std::shared_ptr<const CleanCore::CommandRunning>(std::stop_token)> commandRunner;
    /// Reads the catalog afresh; throws when it is missing, invalid or refused. Any thread.
    std::function<CleanCore::RulesCatalog()> loadCatalog;
    CleanCore::TextTable texts;
    QLocale locale;
    Preferences preferences;
    UserAccount account;
    /// Any thread.
    std::function<CleanCore::Timestamp()> now = std::chrono::system_clock::now;
    std::function<std::chrono::steady_clock::time_point()> steadyNow =
        std::chrono::steady_clock::now;
    /// How long an entry of the cloud drive may take that does not notice its deadline.
    std::chrono::milliseconds cloudPatience{std::chrono::seconds(95)};
    /// Shows files in the desktop's file manager, selected. Main thread; returns at once.
    std::function<void(const std::vector<std::string>& paths)> reveal;
    /// Opens the desktop's settings for the permissions of applications. Main thread; returns at
    /// once.
    std::function<void()> openPermissionSettings;
};

} // namespace Zorvane
