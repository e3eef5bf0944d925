#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace CleanCoreTests {

/// A folder of the test's own below the system's temporary folder, gone with everything in it at
/// the end, whatever permissions the test gave its entries. Paths given to its members are relative
/// to it; parents are made as needed. Every member throws std::system_error when it fails.
class TemporaryFolder
{
public:
    /// `below`: the folder to make it in; another than the default for another file system.
    explicit TemporaryFolder(const std::string& below = "/tmp");
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    /// Its own path, without links.
    [[nodiscard]] const std::string& path() const { return m_path; }
    [[nodiscard]] std::string path(std::string_view relative) const;

    std::string makeFolder(std::string_view relative) const;
    std::string makeFile(std::string_view relative, std::string_view content = "content") const;
    std::string makeLink(std::string_view relative, const std::string& target) const;
    /// Sets the modification time of an entry, of a link itself; seconds since 1970 may be
    /// negative.
    void setTime(std::string_view relative, std::int64_t seconds, long nanoseconds = 0) const;
    void setMode(std::string_view relative, unsigned mode) const;

    /// Whether an entry is there; a link counts, wherever it leads.
    [[nodiscard]] bool has(std::string_view relative) const;

private:
    std::string m_path;
};

/// Every entry below `folder` with kind, mode, owner, modification time and content (or target),
/// one line each, in a fixed order: two snapshots are equal exactly when nothing has changed.
/// Folders' times are left out, since reading them is all that keeps them the same.
[[nodiscard]] std::string snapshot(const std::string& folder);

} // namespace CleanCoreTests
