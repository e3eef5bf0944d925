#pragma once

#include "CleanCore/CloudDrive/CloudDrive.h"
#include "Zorvane/State/AppState.h"
#include "tests/Support/ScriptedCommandRunner.h"
#include "tests/Support/ScriptedDisk.h"
#include "tests/Support/TemporaryFolder.h"

#include <QObject>
#include <QString>
#include <atomic>
#include <stdexcept>

namespace ZorvaneTests {

using CleanCoreTests::ScriptedDisk;
using Strings = std::vector<std::string>;

/// Holds threads until it is opened. A copy is the same gate: threads that nobody waits for keep
/// one.
class Gate
{
public:
    /// Waits for the gate to open.
    void pass() const
    {
        State isFirst = State::closed;
        m_state->compare_exchange_strong(isFirst, State::reached);
        m_state->notify_all();
        m_state->wait(State::reached);
    }

    /// Waits until a thread has come to the gate.
    void waitUntilReached() const { m_state->wait(State::closed); }

    void open() const
    {
        *m_state = State::open;
        m_state->notify_all();
    }

private:
    enum class State { closed, reached, open };
    std::shared_ptr<std::atomic<State>> m_state =
        std::make_shared<std::atomic<State>>(State::closed);
};

/// The signals of objects in the order in which they were emitted, each as a text.
class SignalLog
{
public:
    template <typename Object, typename Signal>
    void note(Object* object, Signal signal, std::function<std::string()> text)
    {
        QObject::connect(object, signal, &m_context, [this, text = std::move(text)] {
            m_text += (m_text.empty() ? "" : ", ") + text();
        });
    }

    /// What was noted since the last call, separated by ", ".
    [[nodiscard]] std::string take() { return std::exchange(m_text, {}); }

private:
    QObject m_context;
    std::string m_text;
};

/// A cloud drive that writes down which items it was asked to release.
class ScriptedDrive : public CleanCore::CloudDrive
{
public:
    using Refusals = std::vector<CleanCore::CloudRefusal>;

    /// Called before an item is released, on the releasing thread.
    std::function<void(const std::string& path)> onRelease = [](auto&&) {};
    /// What each release answers.
    Refusals refusals;
    /// To be read when no release is running.
    mutable Strings released;

    /// Its name and its folder.
    std::string title = "iCloud";
    std::string folder;
    std::optional<CleanCore::CloudFailure> closed;

    [[nodiscard]] std::string name() const override { return title; }
    [[nodiscard]] std::vector<CleanCore::CloudContainer>
    containers(const std::stop_token& /*stop*/) const override
    {
        return {{folder, closed}};
    }
    [[nodiscard]] bool fetchesWhenOpened() const override { return title == "iCloud"; }
    [[nodiscard]] bool keepsApplications() const override { return title == "iCloud"; }
    [[nodiscard]] CleanCore::CloudReply release(const std::string& path,
                                                const CleanCore::CloudWatch&) const override
    {
        onRelease(path);
        released.push_back(path);
        return {refusals};
    }
    [[nodiscard]] CleanCore::CloudReply fetch(const std::string& path,
                                              const CleanCore::CloudWatch&) const override
    {
        released.push_back("fetched " + path);
        return {refusals};
    }
};

/// The collaborators of an application state. The terms are accepted.
struct ScriptedApplication
{
    ScriptedApplication();

    CleanCoreTests::TemporaryFolder folder;
    // What scans use is shared with them: they may outlive the test.
    std::shared_ptr<ScriptedDisk> disk = std::make_shared<ScriptedDisk>();
    std::shared_ptr<ScriptedDrive> drive = std::make_shared<ScriptedDrive>();
    /// Further drives, which "drive" prepares.
    std::vector<std::shared_ptr<ScriptedDrive>> otherDrives = {};
    /// The seconds that pass before each reading of the clock.
    std::shared_ptr<std::atomic<int>> clockStep = std::make_shared<std::atomic<int>>(0);
    /// For work to be held at.
    const Gate gate;
    CleanCore::RulesCatalog catalog;
    CleanCoreTests::ScriptedCommandRunner::Script script;
    /// Called with each run of a tool, on the thread that runs it.
    std::function<void(const std::string& executable)> onTool = [](auto&&) {};
    std::map<std::string, std::string, std::less<>> texts;
    std::vector<Strings> revealed;
    QString fullName = QStringLiteral("Ada Lovelace");

    [[nodiscard]] QString preferencesFile() const;
    [[nodiscard]] Zorvane::Environment environment();
    [[nodiscard]] std::vector<std::shared_ptr<const CleanCore::CloudDrive>> drives() const;

    /// Sets up what statements() describe. Paths are in the home, sizes may have a unit, and the
    /// name "hostile" stands for several as nobody would choose them.
    /// - area ID, safe|review, FOLDER, ITEM=SIZE…: a rule of files in this folder
    /// - unreadable ID: a rule whose base cannot be read
    /// - tool ID, safe|review: a rule of the tool that the script answers for
    /// - snapshots DATE…: which tmutil lists and deletes
    /// - other DRIVE, NAME, SIZE…: another drive with its folder "DRIVE" and the files in it; a
    /// size
    ///   of "closed" closes the folder
    /// - cloud NAME, FILES, SIZE, BUNDLE=SIZE…: a folder of the cloud drive
    /// - file NAME, SIZE: a file at its top
    /// - access: to the home's files
    /// - free SIZE: by which a clean makes the free space grow
    /// - busy FOLDER: nothing in it can be removed
    /// - protect PATH: it leads to another folder
    /// - hold END: work on paths that end so waits at the gate
    void prepare(const std::string& text);
    void prepare(const Strings& statement);
};

[[nodiscard]] Strings split(const std::string& text, const std::string& separator);
/// The verb and the arguments of each "VERB ARGUMENT, ARGUMENT…", separated by ";".
[[nodiscard]] std::vector<Strings> statements(const std::string& text);

[[nodiscard]] std::string inHome(const std::string& path);
[[nodiscard]] std::string inCloud(const std::string& name);

/// Runs the event loop until `isTrue`. Waits for events, not for time; a test that waits in vain
/// ends by the test runner's limit.
void waitUntil(const std::function<bool()>& isTrue);

/// Each waits for its end.
void scan(Zorvane::AppState& state);
void runClean(Zorvane::AppState& state);
void measureCloud(Zorvane::AppState& state);

} // namespace ZorvaneTests
