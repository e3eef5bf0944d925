#include "CleanCore/FileSystem/Removing/EntryPin.h"

#include "CleanCore/FileSystem/Descriptors.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace CleanCore {

namespace {

constexpr int pathFlags = O_PATH | O_NOFOLLOW | O_CLOEXEC;

bool isName(const std::string& name)
{
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of(std::string_view("/\0", 2)) == std::string::npos;
}

/// Whether the kernel refuses openat2 itself and not this path.
bool isUnavailable(int error)
{
    return error == ENOSYS || error == EPERM || error == E2BIG;
}

int openBeneath(int folder, const std::string& name, int flags, FileDescriptor& opened)
{
    open_how how = {};
    how.flags = static_cast<std::uint64_t>(flags);
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS | RESOLVE_NO_MAGICLINKS | RESOLVE_NO_XDEV;
    // RESOLVE_BENEATH answers EAGAIN when a rename anywhere raced with it; see openat2(2).
    constexpr int attempts = 64;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const long descriptor = ::syscall(SYS_openat2, folder, name.c_str(), &how, sizeof how);
        if (descriptor >= 0) {
            opened = FileDescriptor(static_cast<int>(descriptor));
            return 0;
        }
        if (errno != EAGAIN && errno != EINTR) {
            break;
        }
    }
    return errno;
}

int openStep(int folder, const EntryStatus& folderStatus, const std::string& name, int flags,
             FileDescriptor& opened)
{
    opened = FileDescriptor(::openat(folder, name.c_str(), flags));
    if (!opened.isOpen()) {
        return errno;
    }
    EntryStatus status;
    if (const int error = readStatus(opened.get(), "", status); error != 0) {
        return error;
    }
    const bool isOtherMount =
        status.mountId != folderStatus.mountId ||
        (status.mountId == 0 && status.identity.device != folderStatus.identity.device);
    return isOtherMount ? EXDEV : 0;
}

} // namespace

int pinEntry(int base, std::span<const std::string> names, EntryPin& pin, PinMethod method)
{
    if (names.empty() || !std::all_of(names.begin(), names.end(), isName)) {
        return EINVAL;
    }
    pin.parent = duplicate(base);
    if (!pin.parent.isOpen()) {
        return errno;
    }
    if (const int error = readStatus(base, "", pin.parentStatus); error != 0) {
        return error;
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        const bool isLast = i + 1 == names.size();
        const int flags = isLast ? pathFlags : pathFlags | O_DIRECTORY;
        FileDescriptor opened;
        int error = method == PinMethod::kernelResolution
                        ? openBeneath(pin.parent.get(), names[i], flags, opened)
                        : ENOSYS;
        if (isUnavailable(error)) {
            method = PinMethod::stepByStep;
            error = openStep(pin.parent.get(), pin.parentStatus, names[i], flags, opened);
        }
        if (error != 0) {
            return error;
        }
        EntryStatus status;
        error = readStatus(opened.get(), "", status);
        if (error != 0) {
            return error;
        }
        if (isLast) {
            pin.name = names[i];
            pin.entry = std::move(opened);
            pin.status = status;
        } else {
            pin.parent = std::move(opened);
            pin.parentStatus = status;
        }
    }
    return 0;
}

} // namespace CleanCore
