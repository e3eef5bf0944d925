#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace CleanCore {

/// The core library's own failures. It carries no message for people; the programs word it.
class CleanCoreError : public std::exception
{
public:
    enum class Kind { rulesCatalogInvalid, commandFailed, rulesCatalogMissing };

    [[nodiscard]] static CleanCoreError rulesCatalogInvalid(std::string reason);
    [[nodiscard]] static CleanCoreError commandFailed(std::string executable, std::int32_t status);
    [[nodiscard]] static CleanCoreError rulesCatalogMissing();

    [[nodiscard]] Kind kind() const { return m_kind; }
    /// Why the catalog is invalid; empty for the other kinds.
    [[nodiscard]] const std::string& reason() const { return m_reason; }
    /// The tool that failed, as the caller named it; empty for the other kinds.
    [[nodiscard]] const std::string& executable() const { return m_executable; }
    [[nodiscard]] std::int32_t status() const { return m_status; }

    /// The name of the kind; not a text for people.
    [[nodiscard]] const char* what() const noexcept override;

    [[nodiscard]] bool operator==(const CleanCoreError& other) const;

private:
    explicit CleanCoreError(Kind kind) : m_kind(kind) {}

    Kind m_kind;
    std::string m_reason;
    std::string m_executable;
    std::int32_t m_status = 0;
};

} // namespace CleanCore
