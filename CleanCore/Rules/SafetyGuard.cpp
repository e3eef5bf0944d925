#include "CleanCore/Rules/SafetyGuard.h"

#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/FileSystem/UserFolders.h"
#include "CleanCore/Support/PathText.h"
#include "CleanCore/Support/TextEquality.h"

#include <algorithm>
#include <iterator>

namespace CleanCore {

namespace {

constexpr std::string_view dataVolumePrefix = "/System/Volumes/Data/";
constexpr std::string_view privateAliases[] = {"tmp", "var", "etc"};
constexpr std::size_t fewestRemovableComponents = 3;

} // namespace

std::string_view name(BlockReason reason)
{
    switch (reason) {
    case BlockReason::outsideAllowedBase:
        return "outsideAllowedBase";
    case BlockReason::protectedUserPath:
        return "protectedUserPath";
    case BlockReason::criticalSystemPath:
        break;
    }
    return "criticalSystemPath";
}

SafetyGuard::SafetyGuard(const std::string& home, const FileManager& fileManager,
                         std::span<const std::string> furtherProtected)
    : m_fileManager(&fileManager), m_home(normalizedComponents(home))
{
    const std::string normalizedHome = PathText::fromComponents(m_home);
    for (const std::string_view subpath : protectedHomeSubpaths) {
        m_protected.push_back(
            PathText::components(PathText::standardized(PathText::join(normalizedHome, subpath))));
    }
    // A protected folder that is a link protects its target as well. The seven fixed folders stay
    // first and unresolved.
    std::vector<Components> further;
    for (const Components& folder : m_protected) {
        further.push_back(normalizedComponents(PathText::fromComponents(folder)));
    }
    for (const std::string& folder : furtherProtected) {
        further.push_back(PathText::components(PathText::standardized(folder)));
        further.push_back(normalizedComponents(folder));
    }
    for (Components& folder : further) {
        if (!isEqualOrDescendant(m_home, folder) &&
            std::find(m_protected.begin(), m_protected.end(), folder) == m_protected.end()) {
            m_protected.push_back(std::move(folder));
        }
    }
}

SafetyVerdict SafetyGuard::validate(const std::string& candidate,
                                    const std::string& allowedBase) const
{
    const Components c = normalizedComponents(candidate);
    const Components b = normalizedComponents(allowedBase);
    if (c.size() < fewestRemovableComponents ||
        (c.size() == m_home.size() && isEqualOrDescendant(c, m_home))) {
        return SafetyVerdict::blocked(BlockReason::criticalSystemPath);
    }
    for (const Components& folder : m_protected) {
        if (isEqualOrDescendant(c, folder)) {
            return SafetyVerdict::blocked(BlockReason::protectedUserPath);
        }
    }
    if (b.size() < c.size() && isEqualOrDescendant(c, b)) {
        return SafetyVerdict::allowed();
    }
    return SafetyVerdict::blocked(BlockReason::outsideAllowedBase);
}

std::vector<std::string> SafetyGuard::protectedFolders() const
{
    std::vector<std::string> folders;
    std::transform(m_protected.begin(), m_protected.end(), std::back_inserter(folders),
                   PathText::fromComponents);
    return folders;
}

std::string SafetyGuard::normalize(const std::string& path, const FileManager& fileManager)
{
    std::string resolved = PathText::standardized(fileManager.resolvingSymbolicLinks(path));
    if (resolved.compare(0, dataVolumePrefix.size(), dataVolumePrefix) == 0) {
        resolved.erase(0, dataVolumePrefix.size() - 1);
    }
    Components parts = PathText::components(resolved);
    if (parts.size() >= 3 && parts[1] == "private" &&
        std::find(std::begin(privateAliases), std::end(privateAliases), parts[2]) !=
            std::end(privateAliases)) {
        parts.erase(parts.begin() + 1);
    }
    return PathText::fromComponents(parts);
}

bool SafetyGuard::isEqualOrDescendant(const Components& a, const Components& of)
{
    return a.size() >= of.size() && std::equal(of.begin(), of.end(), a.begin(), areEquivalent);
}

SafetyGuard::Components SafetyGuard::normalizedComponents(const std::string& path) const
{
    return PathText::components(normalize(path, *m_fileManager));
}

} // namespace CleanCore
