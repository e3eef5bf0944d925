#include "tests/Support/TreeText.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

namespace CleanCoreTests {

namespace {

constexpr std::string_view blanks = " \t\n\r";
constexpr std::string_view needQuotes = " \t\n\r':|@=>";

class Reader
{
public:
    explicit Reader(std::string_view text) : m_rest(text) {}

    [[nodiscard]] bool hasMore()
    {
        m_rest.remove_prefix(std::min(m_rest.find_first_not_of(blanks), m_rest.size()));
        return !m_rest.empty();
    }

    TreeTextEntry entry()
    {
        using enum TreeTextEntry::Kind;
        TreeTextEntry entry;
        entry.path = name();
        if (takes("->")) {
            entry.kind = link;
            entry.target = name();
        } else if (takes("==")) {
            entry.kind = twin;
            entry.target = name();
        } else if (takes("|")) {
            entry.kind = pipe;
        } else if (takes(":")) {
            entry.length = number<std::int64_t>(10) * (takes("k")   ? 1 << 10
                                                       : takes("M") ? 1 << 20
                                                                    : 1);
        } else if (entry.path.ends_with('/')) {
            entry.kind = folder;
            entry.path.pop_back();
        }
        for (bool more = true; more;) {
            if (takes("=")) {
                entry.mode = number<unsigned>(8);
            } else if (takes("@")) {
                entry.age = age();
            } else {
                more = false;
            }
        }
        if (entry.path.empty() || !isAtEnd()) {
            fail();
        }
        return entry;
    }

private:
    [[noreturn]] void fail() const
    {
        throw std::invalid_argument("no tree from here on: " + std::string(m_rest));
    }

    [[nodiscard]] bool isAtEnd() const
    {
        return m_rest.empty() || blanks.find(m_rest.front()) != std::string_view::npos;
    }

    bool takes(std::string_view text)
    {
        if (!m_rest.starts_with(text)) {
            return false;
        }
        m_rest.remove_prefix(text.size());
        return true;
    }

    std::string name()
    {
        std::string text;
        while (!isAtEnd() && !m_rest.starts_with("->")) {
            if (takes("'")) {
                text += quotation();
            } else if (needQuotes.find(m_rest.front()) != std::string_view::npos) {
                break;
            } else {
                text += m_rest.front();
                m_rest.remove_prefix(1);
            }
        }
        return text;
    }

    std::string quotation()
    {
        std::string text;
        for (;;) {
            const std::size_t end = m_rest.find('\'');
            if (end == std::string_view::npos) {
                fail();
            }
            text += m_rest.substr(0, end);
            m_rest.remove_prefix(end + 1);
            if (!takes("'")) {
                return text;
            }
            text += '\'';
        }
    }

    template <typename Number>
    Number number(int base)
    {
        Number value = 0;
        const auto [end, error] =
            std::from_chars(m_rest.data(), m_rest.data() + m_rest.size(), value, base);
        if (error != std::errc()) {
            fail();
        }
        m_rest.remove_prefix(static_cast<std::size_t>(end - m_rest.data()));
        return value;
    }

    std::chrono::nanoseconds age()
    {
        using namespace std::chrono_literals;
        const std::int64_t sign = takes("-") ? -1 : 1;
        std::chrono::nanoseconds sum(0);
        do {
            const auto count = number<std::int64_t>(10);
            sum += count * (takes("ns")  ? 1ns
                            : takes("s") ? std::chrono::nanoseconds(1s)
                            : takes("m") ? std::chrono::nanoseconds(1min)
                            : takes("h") ? std::chrono::nanoseconds(1h)
                            : takes("d") ? std::chrono::nanoseconds(24h)
                                         : (fail(), 0ns));
        } while (!isAtEnd() && m_rest.front() >= '0' && m_rest.front() <= '9');
        return sign * sum;
    }

    std::string_view m_rest;
};

} // namespace

std::vector<TreeTextEntry> treeEntries(std::string_view text)
{
    std::vector<TreeTextEntry> entries;
    for (Reader reader(text); reader.hasMore();) {
        entries.push_back(reader.entry());
    }
    return entries;
}

std::string quoted(const std::string& path)
{
    if (path.find_first_of(needQuotes) == std::string::npos) {
        return path;
    }
    std::string text = "'";
    for (const char letter : path) {
        text.append(letter == '\'' ? 2 : 1, letter);
    }
    return text + '\'';
}

} // namespace CleanCoreTests
