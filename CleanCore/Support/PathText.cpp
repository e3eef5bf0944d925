#include "CleanCore/Support/PathText.h"

namespace CleanCore::PathText {

std::string join(std::string_view directory, std::string_view name)
{
    std::string path(directory);
    if (name.empty()) {
        return path;
    }
    if (path.empty() || path.back() != '/') {
        path += '/';
    }
    return path.append(name);
}

std::vector<std::string> components(std::string_view path)
{
    std::vector<std::string> parts = {"/"};
    std::size_t begin = 0;
    while (begin < path.size()) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        if (end > begin) {
            parts.emplace_back(path.substr(begin, end - begin));
        }
        begin = end + 1;
    }
    return parts;
}

std::string fromComponents(const std::vector<std::string>& components)
{
    std::string path;
    for (std::size_t i = 1; i < components.size(); ++i) {
        path.append("/").append(components[i]);
    }
    return path.empty() ? "/" : path;
}

std::string standardized(std::string_view path)
{
    std::vector<std::string> kept = {"/"};
    for (std::string& part : components(path)) {
        if (part == "..") {
            if (kept.size() > 1) {
                kept.pop_back();
            }
        } else if (part != "." && part != "/") {
            kept.push_back(std::move(part));
        }
    }
    return fromComponents(kept);
}

std::string_view withoutTrailingSlashes(std::string_view path)
{
    while (path.size() > 1 && path.back() == '/') {
        path.remove_suffix(1);
    }
    return path;
}

std::string_view lastComponent(std::string_view path)
{
    path = withoutTrailingSlashes(path);
    return path == "/" ? std::string_view() : path.substr(path.rfind('/') + 1);
}

std::string parent(std::string_view path)
{
    path = withoutTrailingSlashes(path);
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos) {
        return ".";
    }
    return std::string(withoutTrailingSlashes(path.substr(0, slash + 1)));
}

bool isSameOrInside(std::string_view path, std::string_view ancestor)
{
    if (ancestor == "/") {
        return path.substr(0, 1) == "/";
    }
    return path.substr(0, ancestor.size()) == ancestor &&
           (path.size() == ancestor.size() || path[ancestor.size()] == '/');
}

} // namespace CleanCore::PathText
