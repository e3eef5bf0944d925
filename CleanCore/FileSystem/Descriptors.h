#pragma once

#include "CleanCore/Support/FileDescriptor.h"

#include <string>

namespace CleanCore {

/// A second descriptor of the same open file, which child processes do not inherit; closed, with
/// errno set, when there is none to be had.
[[nodiscard]] FileDescriptor duplicate(int descriptor);

/// The present path of an open file, from the kernel (proc(5)); empty when it has none.
[[nodiscard]] std::string pathOfDescriptor(int descriptor);

/// Whether this errno means that the system lacked the descriptors or the memory for an operation,
/// which says nothing about the file.
[[nodiscard]] bool isShortage(int error);

} // namespace CleanCore
