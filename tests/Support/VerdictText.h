#pragma once

#include "CleanCore/Rules/SafetyGuard.h"

#include <string>

namespace CleanCoreTests {

[[nodiscard]] inline std::string textOf(const CleanCore::SafetyVerdict& verdict)
{
    if (verdict.isAllowed()) {
        return "allowed";
    }
    switch (verdict.reason()) {
    case CleanCore::BlockReason::outsideAllowedBase:
        return "outside";
    case CleanCore::BlockReason::protectedUserPath:
        return "protected";
    case CleanCore::BlockReason::criticalSystemPath:
        break;
    }
    return "critical";
}

} // namespace CleanCoreTests
