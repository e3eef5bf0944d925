#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace CleanCore {

/// What lies at a path, as far as a sync client's placeholders go.
enum class LocalKind {
    missing,
    /// A regular file with its content.
    file,
    /// A regular file that stands for content on the server.
    placeholder,
    folder,
    other,
};

struct LocalEntry
{
    LocalKind kind = LocalKind::missing;
    /// 0 for a placeholder: its block comes and goes with no content.
    std::int64_t allocatedBytes = 0;
    std::uint64_t device = 0;
};

/// How a sync client marks files whose content is only on the server: by a suffix to their name and
/// a length of one byte, or in place by an extended attribute. Looks at entries without opening
/// them, which would download some. An immutable value.
class Placeholders
{
public:
    explicit Placeholders(std::string suffix) : m_suffix(std::move(suffix)) {}

    /// The entry at `path` itself; a link is no file.
    [[nodiscard]] LocalEntry entryAt(const std::string& path) const;

    /// The name that the file at `path` has as a placeholder with a suffix.
    [[nodiscard]] std::string marked(const std::string& path) const { return path + m_suffix; }

    /// The name of a placeholder's file with its content.
    [[nodiscard]] std::string plain(const std::string& path) const;

    /// Whether a client keeps its own records under this name.
    [[nodiscard]] static bool isClientsOwn(std::string_view name);

private:
    std::string m_suffix;
};

} // namespace CleanCore
