#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace CleanCoreTests {

/// The target of the link at a path; nothing when there is no link.
using LinkReader = std::function<std::optional<std::string>(const std::string& path)>;

/// `path` with every link in it followed, at most as many as the kernel follows.
[[nodiscard]] std::string followingLinks(std::string path, const LinkReader& links);

/// What the safety guard has to answer, worked out slowly, on texts, and in no way as the guard
/// does it: a path is rewritten from its beginning for every link, forms of a name are brought
/// together by a table, and "inside" is a text that begins with another and a slash.
class GuardModel
{
public:
    GuardModel(LinkReader links, const std::string& home, const std::vector<std::string>& further);

    /// "allowed", "outside", "protected" or "critical".
    [[nodiscard]] std::string verdict(const std::string& candidate, const std::string& base) const;

private:
    [[nodiscard]] std::string normalized(const std::string& path) const;

    LinkReader m_links;
    std::string m_home;
    std::vector<std::string> m_protected;
};

} // namespace CleanCoreTests
