#pragma once

#include "CleanCore/Commands/Running/CommandRunning.h"
#include "CleanCore/Rules/CleanCoreError.h"
#include "CleanCore/Rules/CleaningRule.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace CleanCoreTests {

/// The executable and its arguments.
using Call = std::vector<std::string>;

/// Answers calls from a script. A call that is not in the script fails as a program that does not
/// exist; one with no answer fails with status 1.
class ScriptedCommandRunner final : public CleanCore::CommandRunning
{
public:
    using Script = std::map<Call, std::optional<std::string>>;

    explicit ScriptedCommandRunner(Script script) : m_script(std::move(script)) {}

    [[nodiscard]] std::string run(const std::string& executable,
                                  const std::vector<std::string>& arguments) const override
    {
        Call call = {executable};
        call.insert(call.end(), arguments.begin(), arguments.end());
        whenCalled(call);
        const auto answer = m_script.find(call);
        if (answer == m_script.end()) {
            throw std::system_error(ENOENT, std::generic_category(), executable);
        }
        return answer->second ? *answer->second
                              : throw CleanCore::CleanCoreError::commandFailed(executable, 1);
    }

    /// Called with each call before it is answered, on the thread that makes it.
    std::function<void(const Call&)> whenCalled = [](auto&&...) {};

private:
    const Script m_script;
};

[[nodiscard]] inline CleanCore::CleaningRule
commandRule(const std::string& id, CleanCore::RuleKind kind = CleanCore::RuleKind::command)
{
    CleanCore::CleaningRule rule;
    rule.id = id;
    rule.kind = kind;
    return rule;
}

} // namespace CleanCoreTests
