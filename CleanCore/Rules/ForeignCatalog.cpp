#include "CleanCore/Rules/ForeignCatalog.h"

#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/Rules/PathExpander.h"
#include "CleanCore/Rules/RulesCatalog.h"
#include "CleanCore/Support/PathText.h"

#include <algorithm>
#include <iterator>

namespace CleanCore {

namespace {

constexpr const char* wholeUserFolders[] = {".config", ".local", ".local/share"};

// The folders of the system and of other users; see hier(7). Public folders for temporary files and
// crash reports are excepted.
constexpr const char* systemFolders[] = {
    "/bin",  "/boot", "/dev", "/etc",  "/home", "/lib", "/lib32", "/lib64", "/libx32", "/opt",
    "/proc", "/root", "/run", "/sbin", "/snap", "/srv", "/sys",   "/usr",   "/var"};
constexpr const char* publicFolders[] = {"/var/tmp", "/var/crash"};
// The folders of the system that hold people's homes.
constexpr const char* foldersOfHomes[] = {"/home", "/var/home"};

bool isPublic(const std::string& base)
{
    return std::any_of(std::begin(publicFolders), std::end(publicFolders),
                       [&](const char* folder) { return PathText::isSameOrInside(base, folder); });
}

bool isSystemFolder(const std::string& base)
{
    const bool isTopLevel = PathText::components(base).size() <= 2;
    return (isTopLevel && base != "/tmp") ||
           std::any_of(std::begin(systemFolders), std::end(systemFolders),
                       [&](const char* folder) { return PathText::isSameOrInside(base, folder); });
}

/// Whether everything in this home belongs to its owner. The homes of service accounts, such as "/"
/// and "/usr/sbin", hold files of the system.
bool isHomeOfAPerson(const std::string& home)
{
    return home == "/root" ||
           std::any_of(std::begin(foldersOfHomes), std::end(foldersOfHomes),
                       [&](const char* folder) {
                           return home != folder && PathText::isSameOrInside(home, folder);
                       });
}

bool isWholeUserFolder(const std::string& base, const std::string& home,
                       const FileManager& fileManager)
{
    return PathText::isSameOrInside(home, base) ||
           std::any_of(
               std::begin(wholeUserFolders), std::end(wholeUserFolders), [&](const char* name) {
                   const std::string folder = PathText::join(home, name);
                   return base == folder || base == fileManager.resolvingSymbolicLinks(folder);
               });
}

} // namespace

std::optional<std::string> refusedBase(const RulesCatalog& catalog, const std::string& home,
                                       const FileManager& fileManager)
{
    const std::string resolvedHome = fileManager.resolvingSymbolicLinks(home);
    for (const CleaningRule& rule : catalog.rules) {
        if (rule.kind != RuleKind::fileSystem) {
            continue;
        }
        for (const std::string& base : PathExpander::expandAll(rule.basePaths, home, fileManager)) {
            const std::string resolved = fileManager.resolvingSymbolicLinks(base);
            const bool isOwn =
                isHomeOfAPerson(resolvedHome) && PathText::isSameOrInside(resolved, resolvedHome);
            if (isWholeUserFolder(resolved, resolvedHome, fileManager) ||
                (isSystemFolder(resolved) && !isPublic(resolved) && !isOwn)) {
                return base;
            }
        }
    }
    return std::nullopt;
}

} // namespace CleanCore
