#pragma once

#include <exception>
#include <optional>
#include <string>

/// The folder "CleanCore_CleanCore.bundle" that holds the core library's resources.
namespace CleanCore::ResourceBundle {

/// There is no bundle: the program was installed without its parts and has to end at once. Both
/// programs look for their texts before any thread is started, so no worker meets it.
struct Missing : std::exception
{
    [[nodiscard]] const char* what() const noexcept override { return "ResourceBundle::Missing"; }
};

/// The bundle's folder, looked up once per process: in the share folder of the installed prefix,
/// beside the code of this library, beside the executable; never in the current folder, whatever
/// name the program was started by. Throws Missing.
[[nodiscard]] const std::string& path();

/// The path of a resource, or nothing if the bundle does not hold it.
[[nodiscard]] std::optional<std::string> resource(const std::string& name,
                                                  const std::string& extension);

/// A whole regular file; throws std::system_error with the path in it when it cannot be read, when
/// it is none (EISDIR, EINVAL: a FIFO might never end) and beyond 64 MiB (EFBIG).
[[nodiscard]] std::string readFile(const std::string& path);

} // namespace CleanCore::ResourceBundle
