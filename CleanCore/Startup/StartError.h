#pragma once

#include <exception>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

namespace CleanCore {

/// Why a program cannot start.
enum class StartFault {
    /// The account has no home folder and none was named.
    homeUnknown,
    homeEmpty,
    homeMissing,
    homeNotAFolder,
    homeUnreadable,
    /// The folder contains the account's own home.
    homeHoldsAccount,
    /// The option `subject` is only for trying things out in another home.
    needsOtherHome,
    toolsNotAFolder,
    /// The folder of the tools is the system's own root.
    toolsAtRoot,
    /// The bundled catalog is missing.
    catalogMissing,
    /// `code` says why.
    catalogUnreadable,
    /// `detail` is the reason of CleanCoreError or the JSON library's message.
    catalogInvalid,
    /// The catalog would clean the folder `detail`, which holds more than leftovers.
    catalogTooBroad,
};

/// An option that a program cannot start with. It carries no message for people; the programs word
/// it.
struct StartError : std::exception
{
    StartFault fault;
    /// The path or option that was given, as it is; nothing for the bundled catalog.
    std::optional<std::string> subject;
    std::string detail;
    std::error_code code;

    explicit StartError(StartFault aFault, std::optional<std::string> aSubject = {},
                        std::string aDetail = {}, std::error_code aCode = {})
        : fault(aFault), subject(std::move(aSubject)), detail(std::move(aDetail)), code(aCode)
    {
    }
    [[nodiscard]] const char* what() const noexcept override { return "StartError"; }
};

} // namespace CleanCore
