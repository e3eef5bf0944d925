#pragma once

#include <cstddef>
#include <memory>
#include <sys/types.h>
#include <type_traits>

namespace CleanCore {

/// Reads the names of a folder in large batches, into one buffer that serves one folder after the
/// other. Not for use by two threads at once.
class DirectoryReader
{
public:
    static constexpr std::size_t bufferBytes = std::size_t{64} * 1024;

    DirectoryReader();

    /// Reads the next batch of the folder open as `directory`, from where its last read ended.
    /// Returns 1 with entries, 0 at the end, a negative errno otherwise.
    [[nodiscard]] int readBatch(int directory);

    /// Calls `visit(name)`, or `visit(name, isKnownFolder)`, for each entry of the batch except "."
    /// and ".."; ends early and returns false when `visit` returns false. The names live until the
    /// next batch. Some file systems do not say which entries are folders.
    template <typename Visit>
    bool forEach(Visit&& visit) const
    {
        for (std::size_t at = 0; at < m_filled; at = next(at)) {
            const char* const name = nameAt(at);
            if (!isDotOrDotDot(name) && !call(visit, name, at)) {
                return false;
            }
        }
        return true;
    }

    /// Whether the batch is large enough to be shared with another thread.
    [[nodiscard]] bool isLarge() const { return m_filled > bufferBytes / 8; }

    /// Hands the current batch over to another reader, which can then visit it; this one continues
    /// with a new buffer.
    [[nodiscard]] DirectoryReader takeBatch();

private:
    template <typename Visit>
    bool call(Visit& visit, const char* name, std::size_t at) const
    {
        if constexpr (std::is_invocable_v<Visit&, const char*, bool>) {
            return visit(name, isKnownFolder(at));
        } else {
            return visit(name);
        }
    }
    [[nodiscard]] bool isKnownFolder(std::size_t at) const;
    [[nodiscard]] std::size_t next(std::size_t at) const;
    [[nodiscard]] const char* nameAt(std::size_t at) const;
    [[nodiscard]] static bool isDotOrDotDot(const char* name)
    {
        return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
    }

    std::unique_ptr<std::byte[]> m_buffer;
    std::size_t m_filled = 0;
};

} // namespace CleanCore
