#include "CleanCore/CloudDrive/GitAnnex/GitAnnexDrive.h"

#include "CleanCore/CloudDrive/GitAnnex/AnnexMeasuring.h"
#include "CleanCore/CloudDrive/GitAnnex/AnnexRecord.h"
#include "CleanCore/CloudDrive/GitAnnex/AnnexRepository.h"
#include "CleanCore/CloudDrive/GitAnnex/RepositorySearch.h"
#include "CleanCore/Commands/Running/LineRun.h"
#include "CleanCore/Commands/Running/WriteConfinement.h"
#include "CleanCore/Support/PathText.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <thread>
#include <unistd.h>
#include <utility>

namespace CleanCore {

namespace {

/// More entries than these are measured with all others of their repository.
constexpr std::size_t mostNamed = 64;

/// Keeps git from running what a repository's settings or its folder of hooks name.
constexpr std::array<std::string_view, 6> safeSettings = {
    "-c", "core.fsmonitor=false",
    "-c", "core.hooksPath=/dev/null",
    "-c", "annex.autoupgraderepository=false"};

CloudRefusal refusal(const std::string& path, CloudRefusalReason reason, int error = 0,
                     std::string detail = {})
{
    return {path, {reason, error, std::move(detail)}};
}

/// The path of a file that git-annex names. Where it cannot name the entry exactly, the entry's.
std::string pathOf(const AnnexRecord& record, const std::string& container,
                   const std::string& entry)
{
    std::string path = PathText::join(container, record.file);
    return PathText::isSameOrInside(path, entry) ? path : entry;
}

} // namespace

GitAnnexDrive::GitAnnexDrive(Place place, const std::vector<std::string>& programs)
    : m_place(std::move(place))
{
    const auto isRunnable = [](const std::string& path) {
        return ::access(path.c_str(), X_OK) == 0;
    };
    if (const auto found = std::ranges::find_if(programs, isRunnable); found != programs.end()) {
        m_program = *found;
    }
}

std::vector<CloudContainer> GitAnnexDrive::containers(const std::stop_token& stop) const
{
    std::vector<CloudContainer> containers;
    for (std::string& path : findAnnexRepositories(m_place.home, m_place.excluded, stop)) {
        std::optional<CloudFailure> failure = closed(path);
        containers.push_back({std::move(path), std::move(failure)});
    }
    return containers;
}

std::optional<CloudFailure> GitAnnexDrive::closed(const std::string& container) const
{
    if (!isAnnexRepository(container)) {
        return CloudFailure{CloudRefusalReason::outsideContainer};
    }
    if (m_program.empty()) {
        return CloudFailure{CloudRefusalReason::programMissing};
    }
    return m_place.isConfined ? leadsOutside(container, m_place.home) : std::nullopt;
}

LineRun GitAnnexDrive::commandIn(const std::string& container, std::vector<std::string> words) const
{
    // Variables of git's own would lead it to another repository.
    return {m_program, std::move(words), container, "GIT_"};
}

LineRunResult GitAnnexDrive::run(const LineRun& command,
                                 const std::function<void(std::string_view)>& onLine,
                                 const std::stop_token& stop,
                                 std::optional<Deadline> deadline) const
{
    if (!m_place.isConfined) {
        return runForLines(command, onLine, stop, deadline);
    }
    LineRunResult result = {LineRunEnd::failed, ENOTSUP, {}};
    // The confinement cannot be taken off again, so it gets a thread of its own.
    std::thread([&] {
        if (confineWritesOfThread(m_place.home)) {
            result = runForLines(command, onLine, stop, deadline);
        }
    }).join();
    return result;
}

std::vector<ICloudMeasure> GitAnnexDrive::measure(const std::string& container,
                                                  std::span<const std::string> paths,
                                                  std::optional<Deadline> deadline,
                                                  const std::stop_token& stop) const
{
    AnnexMeasuring measuring(container, paths);
    if (closed(container)) {
        return std::move(measuring).results();
    }
    const auto run = [&](const std::vector<std::string>& names, const auto& onRecord) {
        std::vector<std::string> words = {"find",   "--in=here",
                                          "--json", "--json-error-messages",
                                          "-c",     "annex.merge-annex-branches=false"};
        words.insert(words.end(), safeSettings.begin(), safeSettings.end());
        words.emplace_back("--");
        words.insert(words.end(), names.begin(), names.end());
        const auto result = this->run(
            commandIn(container, std::move(words)),
            [&](std::string_view line) {
                if (const auto record = parseAnnexRecord(line); record && !record->file.empty()) {
                    onRecord(*record);
                }
            },
            stop, deadline);
        return result.end == LineRunEnd::finished && result.status == 0;
    };
    const std::vector<std::string> exact = measuring.exactNames();
    bool isComplete = true;
    if (!exact.empty()) {
        isComplete = run(exact.size() > mostNamed ? std::vector<std::string>() : exact,
                         [&](const AnnexRecord& record) { measuring.add(record); });
    }
    // What git-annex calls them is not what they are called, so each gets an answer of its own.
    for (const std::string& name : measuring.inexactNames()) {
        isComplete = run({name}, [&](const AnnexRecord& record) { measuring.add(record, name); }) &&
                     isComplete;
    }
    if (!isComplete) {
        measuring.markLate();
    }
    return std::move(measuring).results();
}

CloudReply GitAnnexDrive::release(const std::string& path, const CloudWatch& watch) const
{
    return ask(Request::drop, path, watch);
}

CloudReply GitAnnexDrive::fetch(const std::string& path, const CloudWatch& watch) const
{
    return ask(Request::get, path, watch);
}

CloudReply GitAnnexDrive::ask(Request request, const std::string& path,
                              const CloudWatch& watch) const
{
    using enum CloudRefusalReason;
    const std::string container = PathText::parent(path);
    if (const auto failure = closed(container)) {
        return {{{path, *failure}}};
    }
    const bool isDrop = request == Request::drop;
    std::vector<std::string> words = {
        isDrop ? "drop" : "get", isDrop ? "--json" : "--json-progress", "--json-error-messages"};
    words.insert(words.end(), safeSettings.begin(), safeSettings.end());
    words.insert(words.end(), {"--", std::string(PathText::lastComponent(path))});
    CloudReply reply;
    const auto onLine = [&](std::string_view line) {
        const auto record = parseAnnexRecord(line);
        if (!record) {
            return;
        }
        if (record->arrived && watch.progress) {
            watch.progress({pathOf(*record, container, path), *record->arrived, record->bytes});
        } else if (record->success == false) {
            reply.refused.push_back(refusal(pathOf(*record, container, path),
                                            isDrop ? refusedByProgram : programFailed, 0,
                                            record->reason));
        }
    };
    const LineRunResult result = run(commandIn(container, std::move(words)), onLine, watch.stop);
    if (result.end == LineRunEnd::stopped) {
        reply.refused.push_back(refusal(path, stopped));
    } else if (result.end == LineRunEnd::failed) {
        reply.refused.push_back(refusal(path, programFailed, result.status));
    } else if (result.status != 0 && reply.refused.empty()) {
        reply.refused.push_back(refusal(path, programFailed, 0, result.complaint));
    }
    return reply;
}

} // namespace CleanCore
