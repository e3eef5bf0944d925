#pragma once

#include "CleanCore/FileSystem/Removing/EntryPin.h"
#include "CleanCore/FileSystem/Removing/ProtectedIdentities.h"
#include "CleanCore/FileSystem/Removing/Removal.h"

#include <memory>
#include <span>
#include <sys/types.h>
#include <vector>

namespace CleanCore {

class TaskPool;

/// Removes entries so that no exchange of names can redirect it: the way down from the base is
/// walked on descriptors, the entry is held before it is judged, and the very folder that was
/// judged is emptied. docs/safety.md says what an attacker can still do.
///
/// An entry directly in a folder ".../Trash/files" takes its record in ".../Trash/info" with it
/// (freedesktop.org Trash specification).
class LinuxRemoval : public Removal
{
public:
    /// `confinement`, if any, is a resolved folder outside of which nothing is touched.
    LinuxRemoval(const std::string& home, std::span<const std::string> protectedFolders,
                 std::optional<std::string> confinement, std::shared_ptr<TaskPool> pool,
                 PinMethod method = PinMethod::kernelResolution);

    [[nodiscard]] RemovalOutcome remove(const std::string& base, const std::string& path,
                                        const std::optional<EntryIdentity>& seen) override;
    [[nodiscard]] int check(const std::string& base, const std::string& path,
                            const std::optional<EntryIdentity>& seen) override;

private:
    struct Base
    {
        std::string path;
        FileDescriptor folder;
        EntryStatus status;
    };

    /// An entry that is held, and the base that it was reached from.
    struct Held
    {
        Base base;
        EntryPin pin;
        // Whether the entry lies in the base itself.
        bool isDirect = false;
    };

    /// Holds the entry and judges it; returns an error, 0 when it may go.
    [[nodiscard]] int hold(const std::string& base, const std::string& path,
                           const std::optional<EntryIdentity>& seen, Held& held) const;
    /// Whether the confinement, if any, holds the folder open as `folder`.
    [[nodiscard]] bool isVisible(int folder) const;
    [[nodiscard]] int openBase(const std::string& path, Base& base) const;
    [[nodiscard]] int reasonToKeep(const EntryPin& pin,
                                   const std::optional<EntryIdentity>& seen) const;
    [[nodiscard]] int removeFolder(const Base& base, const EntryPin& pin) const;
    void removeTrashRecord(const Base& base, const std::string& name) const;

    std::optional<std::string> m_confinement;
    std::shared_ptr<TaskPool> m_pool;
    PinMethod m_method;
    ProtectedIdentities m_protected;
    // Whose entries may go; nobody's when home cannot be read.
    std::optional<uid_t> m_owner;
};

} // namespace CleanCore
