#include "CleanCore/CloudDrive/GitAnnex/GitConfig.h"

#include "CleanCore/Support/FileDescriptor.h"

#include <algorithm>
#include <cctype>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace CleanCore {

namespace {

constexpr off_t largestConfig = 1'048'576;

std::string lowered(std::string_view text)
{
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](unsigned char character) {
        return static_cast<char>(std::tolower(character));
    });
    return result;
}

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    text.remove_suffix(text.size() - (text.find_last_not_of(blanks) + 1));
    return text;
}

/// Reads a configuration from its beginning to its end.
class Parser
{
public:
    explicit Parser(std::string_view text) : m_rest(text) {}

    std::vector<GitSetting> settings()
    {
        std::vector<GitSetting> settings;
        while (!m_rest.empty()) {
            const char first = m_rest.front();
            if (std::isspace(static_cast<unsigned char>(first)) != 0) {
                m_rest.remove_prefix(1);
            } else if (first == '#' || first == ';') {
                (void)take(m_rest.find('\n'));
            } else if (first == '[') {
                readSection();
            } else {
                readVariable(settings);
            }
        }
        return settings;
    }

private:
    std::string_view take(std::size_t count)
    {
        const std::string_view taken = m_rest.substr(0, count);
        m_rest.remove_prefix(taken.size());
        return taken;
    }

    void readSection()
    {
        std::string name;
        std::string subsection;
        bool isQuoted = false;
        bool isSubsection = false;
        m_rest.remove_prefix(1);
        while (!m_rest.empty() && m_rest.front() != '\n' && (isQuoted || m_rest.front() != ']')) {
            char character = take(1).front();
            if (character == '"') {
                isQuoted = !isQuoted;
                isSubsection = true;
                continue;
            }
            if (isQuoted && character == '\\' && !m_rest.empty()) {
                character = take(1).front();
            }
            (isSubsection ? subsection : name) += character;
        }
        (void)take(1);
        const std::string_view whole = trimmed(name);
        const std::size_t dot = whole.find('.');
        m_section = lowered(whole.substr(0, dot));
        m_subsection = dot == std::string_view::npos ? std::string(trimmed(subsection))
                                                     : lowered(whole.substr(dot + 1));
    }

    void readVariable(std::vector<GitSetting>& settings)
    {
        const std::string_view name = take(m_rest.find_first_of("=\n"));
        std::string value = "true";
        if (m_rest.starts_with('=')) {
            m_rest.remove_prefix(1);
            value = readValue();
        }
        settings.push_back({m_section, m_subsection, lowered(trimmed(name)), std::move(value)});
    }

    std::string readValue()
    {
        std::string value;
        // Blanks at the end count only in quotes.
        std::size_t kept = 0;
        bool isQuoted = false;
        (void)take(std::min(m_rest.find_first_not_of(" \t"), m_rest.size()));
        while (!m_rest.empty()) {
            const char character = take(1).front();
            if (character == '\n') {
                break;
            }
            if (!isQuoted && (character == '#' || character == ';')) {
                (void)take(m_rest.find('\n'));
                break;
            }
            if (character == '"') {
                isQuoted = !isQuoted;
                kept = value.size();
            } else if (character == '\\') {
                const char escaped = m_rest.empty() ? '\n' : take(1).front();
                if (escaped != '\n') {
                    value += escaped == 'n' ? '\n' : escaped == 't' ? '\t' : escaped;
                    kept = value.size();
                }
            } else {
                value += character;
                kept = trimmed(std::string_view(&character, 1)).empty() && !isQuoted ? kept
                                                                                     : value.size();
            }
        }
        value.resize(kept);
        return value;
    }

    std::string_view m_rest;
    std::string m_section;
    std::string m_subsection;
};

} // namespace

std::vector<GitSetting> parseGitConfig(std::string_view text)
{
    return Parser(text).settings();
}

std::optional<std::vector<GitSetting>> readGitConfig(const std::string& path)
{
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat status = {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_size > largestConfig) {
        return std::nullopt;
    }
    std::string text(static_cast<std::size_t>(status.st_size), '\0');
    const ssize_t count = ::read(file.get(), text.data(), text.size());
    if (count < 0) {
        return std::nullopt;
    }
    text.resize(static_cast<std::size_t>(count));
    return parseGitConfig(text);
}

} // namespace CleanCore
