#pragma once

#include "CleanCore/CloudDrive/CloudDrive.h"
#include "Zorvane/State/AppState.h"
#include "tests/Support/ScriptedCommandRunner.h"
#include "tests/Support/ScriptedDisk.h"
#include "tests/Support/TemporaryFolder.h"

#include <QString>
#include <atomic>

namespace ZorvaneTests {

using CleanCoreTests::ScriptedDisk;
using Strings = std::vector<std::string>;
/// Entries by their names.
using Sizes = std::vector<std::pair<std::string, std::int64_t>>;

/// A cloud drive that writes down which items it was asked to release.
class ScriptedDrive : public CleanCore::CloudDrive
{
public:
    /// Called before an item is released, on the releasing thread.
    std::function<void(const std::string& path)> onRelease;
    /// To be read when no release is running.
    mutable Strings released;

    [[nodiscard]] std::vector<CleanCore::CloudRefusal>
    release(const std::string& path) const override;
    [[nodiscard]] std::vector<CleanCore::CloudRefusal>
    fetch(const std::string& path) const override;
};

/// The collaborators of an application state. The terms are accepted.
struct ScriptedApplication
{
    ScriptedApplication();

    static constexpr const char* home = "/home/me";
    /// The folder of the cloud drive.
    static constexpr const char* cloud = "/home/me/Library/Mobile Documents/com~apple~CloudDocs";

    CleanCoreTests::TemporaryFolder folder;
    std::shared_ptr<ScriptedDisk> disk = std::make_shared<ScriptedDisk>();
    std::shared_ptr<ScriptedDrive> drive = std::make_shared<ScriptedDrive>();
    std::shared_ptr<CleanCore::TaskPool> pool;
    CleanCore::RulesCatalog catalog;
    /// Shared with scans, which may outlive the test.
    std::shared_ptr<std::atomic<bool>> isCatalogBroken = std::make_shared<std::atomic<bool>>(false);
    CleanCoreTests::ScriptedCommandRunner::Script script;
    /// Called with each run of a tool, on the thread that runs it.
    std::function<void()> whenToolRuns = [] {};
    std::map<std::string, std::string, std::less<>> texts;
    std::function<std::chrono::steady_clock::time_point()> steadyNow = [] {
        return std::chrono::steady_clock::time_point();
    };
    std::vector<Strings> revealed;
    QString fullName = QStringLiteral("Ada Lovelace");

    [[nodiscard]] QString preferencesFile() const;
    [[nodiscard]] Zorvane::Environment environment();

    /// Adds a rule of files with these items in the folder `base`.
    void addFolder(const std::string& id, CleanCore::RuleTier tier, const std::string& base,
                   const Sizes& items);
    /// Adds a rule of files whose base holds "item0", "item1", … of these sizes.
    void addArea(const std::string& id, CleanCore::RuleTier tier,
                 const std::vector<std::int64_t>& sizes);
    /// Adds a rule of files whose base exists and cannot be read.
    void addUnreadableArea(const std::string& id);
    void addToolArea(const std::string& id, CleanCore::RuleTier tier);
    /// Lets tmutil list snapshots, which are items of no size.
    void addSnapshots(const Strings& dates);
    /// Adds a folder of the cloud drive that holds these files and applications.
    void addCloudFolder(const std::string& name, std::int64_t fileCount, std::int64_t bytes,
                        const Sizes& apps = {});
    /// Adds a file at the top of the cloud drive.
    void addCloudFile(const std::string& name, std::int64_t bytes);

    [[nodiscard]] static std::string itemPath(const std::string& id, std::size_t item);
    [[nodiscard]] static std::string cloudPath(const std::string& name);
};

/// Runs the event loop until `isTrue`. Waits for events, not for time; a test that waits in vain
/// ends by the test runner's limit.
void waitUntil(const std::function<bool()>& isTrue);

/// Each waits for its end.
void scan(Zorvane::AppState& state);
void runClean(Zorvane::AppState& state);
void measureCloud(Zorvane::AppState& state);

} // namespace ZorvaneTests
