#pragma once

#include <exception>
#include <optional>
#include <string>

/// The folder "CleanCore_CleanCore.bundle" that holds the core library's resources.
namespace CleanCore::ResourceBundle {

/// The bundle does not exist: the installation is broken and the program must end at once. Both
/// programs load their texts before they start a thread, so no worker meets this error.
struct Missing : std::exception
{
    [[nodiscard]] const char* what() const noexcept override { return "ResourceBundle::Missing"; }
};

/// The bundle's folder, looked up once per process: in the share folder of the installed prefix,
/// then beside this library, then beside the executable; never in the current folder. Throws
/// Missing.
[[nodiscard]] const std::string& path();

/// The path of a resource, or nothing if the bundle does not hold it.
[[nodiscard]] std::optional<std::string> resource(const std::string& name,
                                                  const std::string& extension);

/// The content of a regular file. Throws std::system_error with the path when the file cannot be
/// read, is not regular (EISDIR, or EINVAL: a FIFO might never end) or exceeds 64 MiB (EFBIG).
[[nodiscard]] std::string readFile(const std::string& path);

} // namespace CleanCore::ResourceBundle
