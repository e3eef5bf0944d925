#include "ZorvaneCLI/ScanRun.h"

#include "CleanCore/Commands/CommandScanEngine.h"
#include "CleanCore/Commands/Running/SystemCommandRunner.h"
#include "CleanCore/Scanning/Overlaps.h"
#include "CleanCore/Scanning/ResultList.h"
#include "CleanCore/Scanning/ScanEngine.h"
#include "ZorvaneCLI/TerminalText.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <memory>
#include <stop_token>
#include <unistd.h>

namespace ZorvaneCLI {

using CleanCore::CategoryResult;
using CleanCore::CleaningRule;

namespace {

/// One line on standard error that is written over and over, and gone at the end.
class LiveLine
{
public:
    void show(const std::string& text) const
    {
        if (m_isTerminal) {
            std::fprintf(stderr, "\r\033[K%s", text.c_str());
            std::fflush(stderr);
        }
    }
    LiveLine() = default;
    LiveLine(const LiveLine&) = delete;
    LiveLine& operator=(const LiveLine&) = delete;
    ~LiveLine() { show(""); }

private:
    const bool m_isTerminal = ::isatty(STDERR_FILENO) == 1;
};

/// What the events have told so far.
struct Progress
{
    const CleanCore::TextTable& texts;
    LiveLine line = {};
    std::string area = {};
    std::int64_t bytes = 0;
    std::optional<std::vector<CategoryResult>> results = std::nullopt;

    void operator()(const CleanCore::RuleStarted& event) { area = texts.ruleTitle(event.ruleId); }
    void operator()(const CleanCore::RuleCompleted& event)
    {
        bytes = CleanCore::saturatingSum(bytes, event.result.totalBytes());
    }
    void operator()(CleanCore::Finished& event) { results = std::move(event.results); }
    void show() const { line.show("Scanning: " + escaped(area) + " (" + byteCount(bytes) + ")"); }
};

} // namespace

std::optional<std::vector<CategoryResult>>
runScan(const Workspace& workspace, CommandAreas commandAreas, const Interruption& interruption)
{
    const CleanCore::HomeEnvironment& environment = workspace.environment;
    const CleanCore::ScanEngine engine(environment.home, environment.fileManager, environment.pool);
    std::vector<CleaningRule> rules =
        CleanCore::rulesReachingInto(workspace.rules, workspace.catalog, environment.home,
                                     *environment.fileManager, interruption.token());
    rules.insert(rules.end(), workspace.rules.begin(), workspace.rules.end());
    auto stream = engine.scan(rules, workspace.now);
    const std::stop_callback cancelOnSignal(interruption.token(), [&] { stream.cancel(); });
    Progress progress{workspace.texts};
    while (auto event = stream.next()) {
        std::visit(progress, *event);
        progress.show();
    }
    if (progress.results && commandAreas == CommandAreas::included) {
        const CleanCore::CommandScanEngine commands(
            std::make_shared<CleanCore::SystemCommandRunner>(interruption.token()),
            workspace.tools);
        auto measured = commands.scan(workspace.rules, interruption.token());
        std::move(measured.begin(), measured.end(), std::back_inserter(*progress.results));
    }
    if (!progress.results || interruption.happened()) {
        return std::nullopt;
    }
    std::vector<CategoryResult> results =
        CleanCore::withoutOverlaps(std::move(*progress.results), *environment.fileManager);
    std::erase_if(results, [&](const CategoryResult& result) {
        return std::ranges::none_of(
            workspace.rules, [&](const CleaningRule& rule) { return rule.id == result.rule.id; });
    });
    return CleanCore::resultList(std::move(results));
}

} // namespace ZorvaneCLI
