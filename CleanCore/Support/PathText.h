#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Paths as text: exact bytes, no file-system access.
namespace CleanCore::PathText {

/// `directory` and `name` joined by exactly one slash; `directory` itself when `name` is empty.
[[nodiscard]] std::string join(std::string_view directory, std::string_view name);

/// The components of an absolute path: "/" first, then every non-empty component, "." and ".." as
/// they stand.
[[nodiscard]] std::vector<std::string> components(std::string_view path);

/// The absolute path that `components` describes; its first element is taken to be the root.
[[nodiscard]] std::string fromComponents(const std::vector<std::string>& components);

/// `path` without "." and ".." components and without repeated or trailing slashes. ".." takes the
/// component before it away, as text; at the root it is dropped.
[[nodiscard]] std::string standardized(std::string_view path);

/// `path` without trailing slashes; the root stays "/".
[[nodiscard]] std::string_view withoutTrailingSlashes(std::string_view path);

/// The last component; empty for the root and for the empty path.
[[nodiscard]] std::string_view lastComponent(std::string_view path);

/// The path up to the last component; "/" for an entry of the root.
[[nodiscard]] std::string parent(std::string_view path);

/// Whether `path` is `ancestor` or lies inside it, compared by bytes; both standardized.
[[nodiscard]] bool isSameOrInside(std::string_view path, std::string_view ancestor);

} // namespace CleanCore::PathText
