#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace CleanCore {

class FileManager;

/// Why a removal is refused.
enum class BlockReason {
    /// The candidate is the base itself, above it, or beside it.
    outsideAllowedBase,
    /// The candidate is a protected folder or inside one.
    protectedUserPath,
    /// The candidate is the root, a top-level folder, or the home folder itself.
    criticalSystemPath,
};

/// The name of the case.
[[nodiscard]] std::string_view name(BlockReason reason);

/// The guard's answer. Equality compares both fields.
class SafetyVerdict
{
public:
    [[nodiscard]] static SafetyVerdict allowed() { return SafetyVerdict(true, {}); }
    [[nodiscard]] static SafetyVerdict blocked(BlockReason reason) { return {false, reason}; }

    [[nodiscard]] bool isAllowed() const { return m_isAllowed; }
    /// Meaningful only when not allowed.
    [[nodiscard]] BlockReason reason() const { return m_reason; }

    [[nodiscard]] bool operator==(const SafetyVerdict&) const = default;

private:
    SafetyVerdict(bool isAllowed, BlockReason reason) : m_isAllowed(isAllowed), m_reason(reason) {}
    bool m_isAllowed;
    BlockReason m_reason;
};

/// The last check before anything is removed: may `candidate` be removed by a rule whose base is
/// `allowedBase`?
///
/// Both paths are judged by the place that they lead to: links are resolved, "." and ".." removed,
/// the data-volume prefix and the aliases below /private undone. Components are compared
/// case-sensitively; canonically equivalent texts are equal. An immutable value; safe from any
/// thread. It keeps a reference to the file manager, which must outlive it.
class SafetyGuard
{
public:
    /// `furtherProtected`: more absolute folders to protect, on this platform or for this user. The
    /// home and the folders above it are ignored.
    SafetyGuard(const std::string& home, const FileManager& fileManager,
                std::span<const std::string> furtherProtected = {});

    [[nodiscard]] SafetyVerdict validate(const std::string& candidate,
                                         const std::string& allowedBase) const;

    /// Every protected folder, the seven fixed ones first. Existing folders are normalised.
    [[nodiscard]] std::vector<std::string> protectedFolders() const;

    [[nodiscard]] static std::string normalize(const std::string& path,
                                               const FileManager& fileManager);

private:
    using Components = std::vector<std::string>;
    [[nodiscard]] static bool isEqualOrDescendant(const Components& a, const Components& of);
    [[nodiscard]] Components normalizedComponents(const std::string& path) const;

    const FileManager* m_fileManager;
    Components m_home;
    std::vector<Components> m_protected;
};

} // namespace CleanCore
