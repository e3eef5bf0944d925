#pragma once

#include <map>
#include <string>
#include <string_view>

namespace CleanCore {

/// The texts of one language that are looked up by id: "rule.{id}.title",
/// "category.explanation.{id}", "category.warning.{id}".
class TextTable
{
public:
    TextTable() = default;
    explicit TextTable(std::map<std::string, std::string, std::less<>> texts);

    /// The table of `language` ("de", "pt_BR"; an encoding is ignored) from the resource bundle;
    /// missing texts are taken from the English table. A missing or broken table counts as empty:
    /// texts are no reason not to start. Throws ResourceBundle::Missing.
    [[nodiscard]] static TextTable loadBundled(std::string_view language);

    /// The text of `key`, or the key itself where there is none.
    [[nodiscard]] std::string text(std::string_view key) const;

    /// The text of `key`, or "" where there is none.
    [[nodiscard]] std::string textOrEmpty(std::string_view key) const;

    /// The title of a rule, or its id where it has none.
    [[nodiscard]] std::string ruleTitle(std::string_view ruleId) const;

private:
    std::map<std::string, std::string, std::less<>> m_texts;
};

} // namespace CleanCore
