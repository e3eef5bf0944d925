#pragma once

#include "CleanCore/Commands/Running/CommandRunning.h"
#include "CleanCore/Rules/CleanCoreError.h"
#include "CleanCore/Rules/CleaningRule.h"

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace CleanCoreTests {

/// The executable and its arguments.
using Call = std::vector<std::string>;

/// Answers calls from a script and records all of them. A call that is not in the script fails as a
/// program that does not exist; one with no answer fails with status 1.
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
        {
            const std::lock_guard lock(m_mutex);
            m_calls.push_back(call);
        }
        if (whenCalled) {
            whenCalled(call);
        }
        const auto answer = m_script.find(call);
        if (answer == m_script.end()) {
            throw std::system_error(ENOENT, std::generic_category(), executable);
        }
        if (!answer->second) {
            throw CleanCore::CleanCoreError::commandFailed(executable, 1);
        }
        return *answer->second;
    }

    [[nodiscard]] std::vector<Call> calls() const
    {
        const std::lock_guard lock(m_mutex);
        return m_calls;
    }

    /// Called with each call before it is answered.
    std::function<void(const Call&)> whenCalled;

private:
    const Script m_script;
    mutable std::mutex m_mutex;
    mutable std::vector<Call> m_calls;
};

[[nodiscard]] inline CleanCore::CleaningRule
commandRule(std::string id, CleanCore::RuleKind kind = CleanCore::RuleKind::command)
{
    CleanCore::CleaningRule rule;
    rule.id = std::move(id);
    rule.kind = kind;
    return rule;
}

} // namespace CleanCoreTests
