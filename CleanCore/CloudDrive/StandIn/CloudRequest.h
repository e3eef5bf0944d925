#pragma once

#include "CleanCore/CloudDrive/CloudRefusal.h"
#include "CleanCore/CloudDrive/StandIn/CloudFilePair.h"
#include "CleanCore/FileSystem/Removing/EntryPin.h"
#include "CleanCore/Support/FileDescriptor.h"

#include <optional>
#include <string>
#include <vector>

namespace CleanCore {

/// One request to the stand-in: its two folders, opened and checked to be separate, and the
/// requested entry.
class CloudRequest
{
public:
    /// Returns why the request cannot be served, nothing when it can.
    [[nodiscard]] std::optional<CloudFailure> open(const std::string& home,
                                                   const std::string& container,
                                                   const std::string& mirror,
                                                   const std::string& path);

    /// The requested entry; valid as long as this request.
    [[nodiscard]] const CloudEntry& entry() const { return m_entry; }
    /// The home, in which both folders lie.
    [[nodiscard]] const EntryIdentity& home() const { return m_home.identity; }
    /// Whether the entry lies in an application bundle, or is one.
    [[nodiscard]] bool isInAppBundle() const { return m_isInAppBundle; }

private:
    [[nodiscard]] std::optional<CloudFailure>
    openFolders(const std::string& home, const std::string& container, const std::string& mirror);
    [[nodiscard]] std::optional<CloudFailure> checkApart(const std::string& home) const;
    [[nodiscard]] std::optional<CloudFailure> openEntry(const std::vector<std::string>& names);

    EntryStatus m_home;
    FileDescriptor m_container;
    EntryStatus m_containerStatus;
    FileDescriptor m_mirror;
    EntryStatus m_mirrorStatus;
    FileDescriptor m_folder;
    FileDescriptor m_mirrorFolder;
    CloudEntry m_entry;
    bool m_isInAppBundle = false;
};

} // namespace CleanCore
