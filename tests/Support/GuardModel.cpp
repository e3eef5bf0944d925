#include "tests/Support/GuardModel.h"

#include <algorithm>
#include <utility>

namespace CleanCoreTests {

namespace {

constexpr int mostLinksFollowed = 40;

bool beginsWith(const std::string& text, const std::string& beginning)
{
    return text.rfind(beginning, 0) == 0;
}

bool isSameOrInside(const std::string& path, const std::string& folder)
{
    return path == folder || folder == "/" || beginsWith(path, folder + "/");
}

/// One step of the rewriting: the first link in `path` replaced by its target. Without any left,
/// `path` as it is to be, and false.
bool followFirstLink(std::string& path, const LinkReader& links)
{
    std::string walked;
    for (std::size_t begin = 0; begin < path.size();) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        const std::string part = path.substr(begin, end - begin);
        if (part == "..") {
            walked = walked.substr(0, std::min(walked.rfind('/'), walked.size()));
        } else if (!part.empty() && part != ".") {
            std::string folder = walked;
            walked.append("/").append(part);
            if (const auto target = links(walked)) {
                const std::string rest = path.substr(end);
                path = beginsWith(*target, "/") ? *target : folder.append("/").append(*target);
                path += rest;
                return true;
            }
        }
        begin = end + 1;
    }
    path = walked.empty() ? "/" : walked;
    return false;
}

/// One text for names that are canonically equivalent, for the names that the tests use.
std::string inOneForm(std::string text)
{
    const std::pair<std::string, std::string> forms[] = {
        {"e\u0301", "\u00e9"},
        {"a\u0308", "\u00e4"},
        {"A\u030a", "\u00c5"},
        {"\u212b", "\u00c5"},
        {"q\u0307\u0323", "q\u0323\u0307"},
    };
    for (const auto& [from, to] : forms) {
        for (auto at = text.find(from); at != std::string::npos; at = text.find(from)) {
            text.replace(at, from.size(), to);
        }
    }
    return text;
}

} // namespace

std::string followingLinks(std::string path, const LinkReader& links)
{
    for (int followed = 0; followed < mostLinksFollowed; ++followed) {
        if (!followFirstLink(path, links)) {
            return path;
        }
    }
    followFirstLink(path, [](const std::string&) { return std::nullopt; });
    return path;
}

GuardModel::GuardModel(LinkReader links, const std::string& home,
                       const std::vector<std::string>& further)
    : m_links(std::move(links)), m_home(normalized(home))
{
    // Links are found by the exact bytes of their names; only what is compared has one form.
    std::vector<std::string> asWritten;
    for (const char* name : {"Documents", "Desktop", "Downloads", "Pictures", "Music", "Movies",
                             "Library/Mobile Documents"}) {
        asWritten.push_back(m_home + (m_home == "/" ? "" : "/") + name);
    }
    m_home = inOneForm(m_home);
    std::vector<std::string> unlessAboveHome;
    for (const std::string& folder : asWritten) {
        m_protected.push_back(inOneForm(folder));
        unlessAboveHome.push_back(normalized(folder));
    }
    for (const std::string& folder : further) {
        unlessAboveHome.push_back(folder);
        followFirstLink(unlessAboveHome.back(), [](const std::string&) { return std::nullopt; });
        unlessAboveHome.push_back(normalized(folder));
    }
    for (const std::string& folder : unlessAboveHome) {
        if (!isSameOrInside(m_home, inOneForm(folder))) {
            m_protected.push_back(inOneForm(folder));
        }
    }
}

std::string GuardModel::normalized(const std::string& path) const
{
    std::string text = followingLinks(path, m_links);
    const std::string volume = "/System/Volumes/Data";
    if (beginsWith(text, volume + "/")) {
        text = text.substr(volume.size());
    }
    const std::string alias = "/private";
    for (const char* name : {"/tmp", "/var", "/etc"}) {
        if (isSameOrInside(text, alias + name)) {
            text = text.substr(alias.size());
            break;
        }
    }
    return text;
}

std::string GuardModel::verdict(const std::string& candidate, const std::string& base) const
{
    const std::string c = inOneForm(normalized(candidate));
    const std::string b = inOneForm(normalized(base));
    if (c == "/" || std::count(c.begin(), c.end(), '/') == 1 || c == m_home) {
        return "critical";
    }
    if (std::any_of(m_protected.begin(), m_protected.end(),
                    [&](const std::string& folder) { return isSameOrInside(c, folder); })) {
        return "protected";
    }
    return c != b && isSameOrInside(c, b) ? "allowed" : "outside";
}

} // namespace CleanCoreTests
