#pragma once

#include "CleanCore/CloudDrive/CloudDrive.h"

#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace CleanCore {

struct LineRun;
struct LineRunResult;

/// The files that git-annex keeps in repositories of the home: a released one stays there as a link
/// or a pointer, and its content in other repositories.
///
/// All work is done by git-annex itself, which drops content only after asking enough other
/// repositories for it. Its checks are never overridden, and nothing is run in a folder that is not
/// yet one of its repositories. Nothing that a repository's settings name as hooks or monitors is
/// run, and measuring runs nothing else that they name.
///
/// An immutable value.
class GitAnnexDrive : public CloudDrive
{
public:
    struct Place
    {
        std::string home;
        /// Whether no repository may lead out of the home.
        bool isConfined = false;
        /// Folders that are not searched.
        std::vector<std::string> excluded;
    };

    /// `programs`: where git-annex may be, in order.
    GitAnnexDrive(Place place, const std::vector<std::string>& programs);

    [[nodiscard]] std::string name() const override { return "git-annex"; }
    [[nodiscard]] std::vector<CloudContainer>
    containers(const std::stop_token& stop) const override;
    [[nodiscard]] bool fetchesWhenOpened() const override { return false; }
    [[nodiscard]] CloudMeasuring measuring() const override { return CloudMeasuring::together; }
    [[nodiscard]] std::vector<ICloudMeasure> measure(const std::string& container,
                                                     std::span<const std::string> paths,
                                                     std::optional<Deadline> deadline,
                                                     const std::stop_token& stop) const override;
    [[nodiscard]] CloudReply release(const std::string& path,
                                     const CloudWatch& watch) const override;
    [[nodiscard]] CloudReply fetch(const std::string& path, const CloudWatch& watch) const override;

private:
    enum class Request { drop, get };

    [[nodiscard]] std::optional<CloudFailure> closed(const std::string& container) const;
    [[nodiscard]] CloudReply ask(Request request, const std::string& path,
                                 const CloudWatch& watch) const;
    /// runForLines(); in a confined run the kernel keeps the program from changing anything outside
    /// the home, and nothing runs where it cannot.
    [[nodiscard]] LineRunResult run(const LineRun& command,
                                    const std::function<void(std::string_view)>& onLine,
                                    const std::stop_token& stop,
                                    std::optional<Deadline> deadline = std::nullopt) const;
    [[nodiscard]] LineRun commandIn(const std::string& container,
                                    std::vector<std::string> words) const;

    Place m_place;
    /// Empty when there is no git-annex.
    std::string m_program;
};

} // namespace CleanCore
