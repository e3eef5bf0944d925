#include "ZorvaneCLI/ScanRun.h"

#include "CleanCore/Commands/CommandScanEngine.h"
#include "CleanCore/Commands/Running/SystemCommandRunner.h"
#include "CleanCore/Scanning/Scan.h"
#include "ZorvaneCLI/Output/TerminalText.h"

#include <cstdio>
#include <functional>
#include <memory>
#include <unistd.h>

namespace ZorvaneCLI {

namespace {

/// One line on standard error that each text replaces, erased at the end. Only on a terminal.
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

} // namespace

std::optional<std::vector<CleanCore::CategoryResult>>
runScan(const Workspace& workspace, ToolAreas toolAreas, const Interruption& interruption)
{
    const CleanCore::HomeEnvironment& environment = workspace.environment;
    CleanCore::Scan::ToolAreas measureToolAreas;
    if (toolAreas == ToolAreas::included) {
        measureToolAreas = std::bind_front(
            &CleanCore::CommandScanEngine::scan,
            CleanCore::CommandScanEngine(
                std::make_shared<CleanCore::SystemCommandRunner>(interruption.token()),
                workspace.tools));
    }
    const CleanCore::Scan scan(environment.home, environment.fileManager, environment.pool,
                               std::move(measureToolAreas));
    const LiveLine line;
    std::string area;
    std::int64_t bytes = 0;
    const auto show = [&] {
        line.show("Scanning: " + escaped(area) + " (" + byteCount(bytes) + ")");
    };
    CleanCore::Scan::Progress progress;
    progress.ruleStarted = [&](const std::string& ruleId) {
        area = workspace.texts.ruleTitle(ruleId);
        show();
    };
    progress.bytesFound = [&](std::int64_t found) {
        bytes = found;
        show();
    };
    return scan.run(workspace.rules, workspace.catalog, workspace.now, progress,
                    interruption.token());
}

} // namespace ZorvaneCLI
