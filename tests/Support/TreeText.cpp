#include "tests/Support/TreeText.h"

#include <algorithm>
#include <regex>
#include <stdexcept>

namespace CleanCoreTests {

namespace {

/// A name without its quotes.
std::string plain(const std::string& text)
{
    std::string result;
    bool isQuoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\'') {
            result += text[i];
        } else if (isQuoted && text.substr(i + 1, 1) == "'") {
            result += text[++i];
        } else {
            isQuoted = !isQuoted;
        }
    }
    return result;
}

std::chrono::nanoseconds ageOf(const std::string& text)
{
    using namespace std::chrono_literals;
    static const std::regex part("(\\d+)(ns|[dhms])");
    std::chrono::nanoseconds sum(0);
    for (std::sregex_iterator match(text.begin(), text.end(), part), end; match != end; ++match) {
        const std::string unit = (*match)[2];
        const std::chrono::nanoseconds one = unit == "ns"  ? 1ns
                                             : unit == "s" ? 1s
                                             : unit == "m" ? 1min
                                             : unit == "h" ? 1h
                                                           : 24h;
        sum += std::stoll((*match)[1]) * one;
    }
    return text.starts_with('-') ? -sum : sum;
}

} // namespace

std::vector<TreeTextEntry> treeEntries(std::string_view text)
{
    using enum TreeTextEntry::Kind;
    const std::string name = "((?:[^\\s':|@=>-]|-(?!>)|'(?:[^']|'')*')+)";
    static const std::regex whole("\\s*" + name + "(?:(->|==)" + name +
                                  "|(\\|)|:(\\d+)([kM]?))?(?:=([0-7]+))?"
                                  "(?:@(-?(?:\\d+(?:ns|[dhms]))+))?(?:\\s+|$)");
    std::vector<TreeTextEntry> entries;
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\r"), text.size()));
    const char* const end = text.data() + text.size();
    std::cmatch match;
    for (const char* at = text.data(); at != end; at = match[0].second) {
        if (!std::regex_search(at, end, match, whole, std::regex_constants::match_continuous)) {
            throw std::invalid_argument("no tree from here on: " + std::string(at, end));
        }
        TreeTextEntry& entry = entries.emplace_back();
        entry.path = plain(match[1]);
        entry.target = plain(match[3]);
        entry.kind = match[4].matched   ? pipe
                     : match[2] == "->" ? link
                     : match[2] == "==" ? twin
                                        : file;
        if (match[5].matched) {
            entry.length = std::stoll(match[5]) * (match[6] == "k"   ? 1 << 10
                                                   : match[6] == "M" ? 1 << 20
                                                                     : 1);
        }
        if (entry.path.ends_with('/') && entry.kind == file) {
            entry.kind = folder;
            entry.path.pop_back();
        }
        if (match[7].matched) {
            entry.mode = static_cast<unsigned>(std::stoul(match[7], nullptr, 8));
        }
        if (match[8].matched) {
            entry.age = ageOf(match[8]);
        }
    }
    return entries;
}

std::string quoted(const std::string& path)
{
    if (path.find_first_of(" \t\n\r':|@=>") == std::string::npos) {
        return path;
    }
    return '\'' + std::regex_replace(path, std::regex("'"), "''") + '\'';
}

} // namespace CleanCoreTests
