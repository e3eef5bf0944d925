#pragma once

#include "CleanCore/FileSystem/EntryIdentity.h"

#include <optional>
#include <string>

namespace CleanCore {

/// The error of an entry that is left whole because it is, or holds, home or a protected folder, or
/// lies in a protected folder. No errno has this value.
constexpr int protectedEntryError = -1;

/// The error of an entry that stays because it, or something inside it, belongs to another user
/// than home.
constexpr int foreignEntryError = -2;

/// How the removal of one entry ended.
struct RemovalOutcome
{
    /// 0 when the entry is wholly gone; else one of the errors above, or the errno that tells why
    /// all or a part of it stays.
    int error = 0;
    /// Whether the entry was a symbolic link (which was, or would have been, removed itself).
    bool wasSymbolicLink = false;
};

/// A series of permanent removals. Not for use by two threads at once.
class Removal
{
public:
    Removal() = default;
    Removal(const Removal&) = delete;
    Removal& operator=(const Removal&) = delete;
    virtual ~Removal() = default;

    /// Removes the entry at `path`, which must lie inside the folder `base`: a folder with
    /// everything in it, a link itself and never its target. If `seen` is given, only that very
    /// entry is removed and not one that has taken its place (ESTALE). An entry that is already
    /// gone is an error (ENOENT). Entries that cannot be removed stay, with the folders above them.
    [[nodiscard]] virtual RemovalOutcome remove(const std::string& base, const std::string& path,
                                                const std::optional<EntryIdentity>& seen) = 0;

    /// The error with which remove() would refuse to begin; 0 when it would begin, or when this
    /// cannot be known before. Changes nothing.
    [[nodiscard]] virtual int check(const std::string& /*base*/, const std::string& /*path*/,
                                    const std::optional<EntryIdentity>& /*seen*/)
    {
        return 0;
    }
};

} // namespace CleanCore
