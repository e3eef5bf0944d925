#include "CleanCore/Rules/TextTable.h"

#include "CleanCore/Rules/ResourceBundle.h"

#include <fstream>
#include <nlohmann/json.hpp>

namespace CleanCore {

namespace {

using Texts = std::map<std::string, std::string, std::less<>>;

Texts readTexts(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    const auto document = nlohmann::json::parse(file, nullptr, false);
    Texts texts;
    if (document.is_object()) {
        for (const auto& [key, value] : document.items()) {
            if (value.is_string()) {
                texts.emplace(key, value.get<std::string>());
            }
        }
    }
    return texts;
}

} // namespace

TextTable::TextTable(Texts texts) : m_texts(std::move(texts)) {}

TextTable TextTable::loadBundled(std::string_view language)
{
    const std::string folder = ResourceBundle::path() + "/texts/";
    language = language.substr(0, language.find_first_of(".@/"));
    const std::string_view broad = language.substr(0, language.find('_'));
    Texts texts;
    for (const std::string_view name : {language, broad, std::string_view("en")}) {
        // The first table that has a text keeps it.
        texts.merge(readTexts(folder + std::string(name) + ".json"));
    }
    return TextTable(std::move(texts));
}

std::string TextTable::text(std::string_view key) const
{
    const auto found = m_texts.find(key);
    return found == m_texts.end() ? std::string(key) : found->second;
}

std::string TextTable::textOrEmpty(std::string_view key) const
{
    const auto found = m_texts.find(key);
    return found == m_texts.end() ? std::string() : found->second;
}

std::string TextTable::ruleTitle(std::string_view ruleId) const
{
    const auto found = m_texts.find("rule." + std::string(ruleId) + ".title");
    return found == m_texts.end() ? std::string(ruleId) : found->second;
}

} // namespace CleanCore
