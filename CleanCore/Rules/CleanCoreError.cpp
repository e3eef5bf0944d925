#include "CleanCore/Rules/CleanCoreError.h"

#include <tuple>
#include <utility>

namespace CleanCore {

CleanCoreError CleanCoreError::rulesCatalogInvalid(std::string reason)
{
    CleanCoreError error(Kind::rulesCatalogInvalid);
    error.m_reason = std::move(reason);
    return error;
}

CleanCoreError CleanCoreError::commandFailed(std::string executable, std::int32_t status)
{
    CleanCoreError error(Kind::commandFailed);
    error.m_executable = std::move(executable);
    error.m_status = status;
    return error;
}

CleanCoreError CleanCoreError::rulesCatalogMissing()
{
    return CleanCoreError(Kind::rulesCatalogMissing);
}

const char* CleanCoreError::what() const noexcept
{
    switch (m_kind) {
    case Kind::rulesCatalogInvalid:
        return "rulesCatalogInvalid";
    case Kind::commandFailed:
        return "commandFailed";
    case Kind::rulesCatalogMissing:
        break;
    }
    return "rulesCatalogMissing";
}

bool CleanCoreError::operator==(const CleanCoreError& other) const
{
    const auto fields = [](const CleanCoreError& e) {
        return std::tie(e.m_kind, e.m_reason, e.m_executable, e.m_status);
    };
    return fields(*this) == fields(other);
}

} // namespace CleanCore
