#include "CleanCore/CloudDrive/StandIn/StandInDrive.h"

#include "CleanCore/CloudDrive/StandIn/CloudFetch.h"
#include "CleanCore/CloudDrive/StandIn/CloudRelease.h"
#include "CleanCore/CloudDrive/StandIn/CloudRequest.h"
#include "CleanCore/CloudDrive/StandIn/CloudWalk.h"
#include "CleanCore/FileSystem/LinkResolver.h"
#include "CleanCore/Support/PathText.h"

#include <sys/stat.h>
#include <utility>

namespace CleanCore {

namespace {

/// Opens the requested entry. Returns why the request is refused.
std::optional<CloudFailure> openRequest(CloudRequest& request,
                                        const std::optional<std::string>& confinement,
                                        const std::string& container,
                                        const std::optional<std::string>& mirror,
                                        const std::string& path)
{
    if (!confinement) {
        return CloudFailure{CloudRefusalReason::accountHome, 0};
    }
    if (!mirror) {
        return CloudFailure{CloudRefusalReason::noMirror, 0};
    }
    return request.open(*confinement, container, *mirror, path);
}

} // namespace

StandInDrive::StandInDrive(std::optional<std::string> confinement, const std::string& container,
                           std::optional<std::string> mirror, std::int64_t stepBytes)
    : m_confinement(std::move(confinement)),
      m_container(PathText::withoutTrailingSlashes(container)), m_mirror(std::move(mirror)),
      m_stepBytes(stepBytes)
{
    if (m_confinement) {
        m_confinement = resolveSymbolicLinks(*m_confinement);
    }
}

std::vector<CloudContainer> StandInDrive::containers(const std::stop_token& /*stop*/) const
{
    struct stat status = {};
    const bool isThere = ::stat(m_container.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
    if (m_confinement && m_mirror && isThere) {
        return {{m_container}};
    }
    return {{m_container, CloudFailure{!m_confinement ? CloudRefusalReason::accountHome
                                       : !isThere     ? CloudRefusalReason::noContainer
                                                      : CloudRefusalReason::noMirror}}};
}

CloudReply StandInDrive::release(const std::string& path, const CloudWatch& /*watch*/) const
{
    return {release(path)};
}

CloudReply StandInDrive::fetch(const std::string& path, const CloudWatch& /*watch*/) const
{
    return {fetch(path)};
}

std::vector<CloudRefusal> StandInDrive::release(const std::string& path) const
{
    CloudRequest request;
    if (const auto failure = openRequest(request, m_confinement, m_container, m_mirror, path)) {
        return {{path, *failure}};
    }
    if (request.isInAppBundle()) {
        return {{path, {CloudRefusalReason::applicationBundle, 0}}};
    }
    CloudRelease release(request.home(), m_stepBytes);
    return CloudWalk(AppBundles::skipped,
                     [&](const CloudEntry& entry) { return release.releaseFile(entry); })
        .run(request.entry());
}

std::vector<CloudRefusal> StandInDrive::fetch(const std::string& path) const
{
    CloudRequest request;
    if (const auto failure = openRequest(request, m_confinement, m_container, m_mirror, path)) {
        return {{path, *failure}};
    }
    CloudFetch fetch(m_stepBytes);
    return CloudWalk(AppBundles::entered,
                     [&](const CloudEntry& entry) { return fetch.fetchFile(entry); })
        .run(request.entry());
}

} // namespace CleanCore
