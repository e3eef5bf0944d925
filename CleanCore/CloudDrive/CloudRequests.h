#pragma once

#include "CleanCore/CloudDrive/CloudRefusal.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace CleanCore {

/// A folder that a cloud drive keeps in the cloud too.
struct CloudContainer
{
    std::string path;
    /// Why nothing in it can be released or fetched; nothing when it can.
    std::optional<CloudFailure> closed = {};

    [[nodiscard]] bool operator==(const CloudContainer&) const = default;
};

/// How far the fetching of one file is, in bytes; a total of 0 is unknown.
struct CloudProgress
{
    std::string path;
    std::int64_t bytes = 0;
    std::int64_t totalBytes = 0;
};

/// How a request is watched and ended.
struct CloudWatch
{
    std::stop_token stop = {};
    /// Called on the thread of the request; may be absent.
    std::function<void(const CloudProgress&)> progress = nullptr;
};

enum class CloudRequestKind { release, fetch };

/// A file whose release or fetching was asked for, and that the drive does in its own time.
struct CloudPending
{
    std::string path;
    CloudRequestKind kind = CloudRequestKind::release;
    std::chrono::steady_clock::time_point askedAt = {};
};

/// The answer to a request.
struct CloudReply
{
    std::vector<CloudRefusal> refused;
    /// The files to wait for; everything else is done or refused.
    std::vector<CloudPending> pending = {};
    /// Files that have another name now, by the one that they had.
    std::map<std::string, std::string> renamed = {};
};

} // namespace CleanCore
