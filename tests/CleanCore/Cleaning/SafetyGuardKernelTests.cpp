#include "CleanCore/Rules/SafetyGuard.h"
#include "CleanCore/Support/FileDescriptor.h"
#include "tests/Support/CleanableHome.h"

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <map>
#include <random>

namespace CleanCoreTests {

using namespace CleanCore;
namespace fs = std::filesystem;

namespace {

/// Where the kernel itself ends up on the way along `path`; nothing where that leads nowhere. The
/// last component may be missing.
std::optional<std::string> whereTo(const std::string& path)
{
    const FileDescriptor entry(::open(path.c_str(), O_PATH | O_CLOEXEC));
    if (entry.isOpen()) {
        return fs::read_symlink("/proc/self/fd/" + std::to_string(entry.get()));
    }
    std::error_code error;
    const std::size_t slash = path.rfind('/');
    const std::string name = path.substr(slash + 1);
    if (name.empty() || name == "." || name == ".." ||
        fs::symlink_status(path, error).type() != fs::file_type::not_found) {
        return std::nullopt;
    }
    const FileDescriptor folder(
        ::open(path.substr(0, slash + 1).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!folder.isOpen()) {
        return std::nullopt;
    }
    return (fs::read_symlink("/proc/self/fd/" + std::to_string(folder.get())) / name).string();
}

bool isIn(const std::string& path, const std::string& folder)
{
    return (path + '/').rfind(folder == "/" ? folder : folder + '/', 0) == 0;
}

/// A text that canonically equivalent names of this test share.
std::string inOneForm(std::string text)
{
    for (auto at = text.find("e\u0301"); at != std::string::npos; at = text.find("e\u0301")) {
        text.replace(at, 3, "\u00e9");
    }
    return text;
}

/// What the guard has to say of two places, for a home that is one.
std::string verdict(const std::string& candidate, const std::string& base, const std::string& home,
                    const std::vector<std::string>& further)
{
    const std::string c = inOneForm(candidate);
    if (std::count(c.begin(), c.end(), '/') == 1 || c == home) {
        return "critical";
    }
    const auto isProtected = [&](const std::string& folder) {
        const std::string target = whereTo(folder).value_or(folder);
        return isIn(c, inOneForm(folder)) ||
               (!isIn(home, inOneForm(target)) && isIn(c, inOneForm(target)));
    };
    for (const char* const name : {"Documents", "Desktop", "Downloads", "Pictures", "Music",
                                   "Movies", "Library/Mobile Documents"}) {
        if (isProtected(home + '/' + name)) {
            return "protected";
        }
    }
    if (std::any_of(further.begin(), further.end(), isProtected)) {
        return "protected";
    }
    const std::string b = inOneForm(base);
    return c != b && isIn(c, b) ? "allowed" : "outside";
}

} // namespace

TEST(SafetyGuard, AgreesWithTheKernelHoweverLinksAreChained)
{
    constexpr int trees = 60;
    constexpr int questions = 100;
    const std::vector<std::string> names = {
        "Documents", "documents", "Music",    "Library", "Mobile Documents",
        "Caches",    "Bilder",    "e\u0301t", "\u00e9t", "\xff\xfe",
        "a",         "b",         "..",       "..",      ".",
        ""};
    std::map<std::string, int> tally;
    for (unsigned seed = 20'240'229; seed < 20'240'229 + trees; ++seed) {
        std::mt19937 dice(seed);
        const auto below = [&](std::size_t count) { return dice() % count; };
        const auto oneOf = [&](const std::vector<std::string>& texts) {
            return texts[below(texts.size())];
        };
        const CleanableHome world("home/Library/Caches/ home/a/ entrance->home");
        const std::string home = world.path("home");
        // Every entry by one path, links too.
        std::vector<std::string> paths = {
            world.path(), home, home, home + "/Library", home + "/Library/Caches", home + "/a"};
        const auto somewhere = [&](std::size_t most) {
            std::string path = oneOf(paths);
            for (std::size_t left = below(most + 1); left > 0; --left) {
                path += '/' + oneOf(names);
            }
            return path;
        };
        for (int i = 0; i < 60; ++i) {
            const std::string path = oneOf(paths) + '/' + oneOf(names);
            const auto place = whereTo(path);
            if (!place || !isIn(*place, world.path()) || fs::exists(fs::symlink_status(path))) {
                continue;
            }
            if (below(2) == 0) {
                fs::create_directory(path);
            } else {
                fs::create_symlink(below(2) == 0 ? somewhere(2) + '/' : "../" + oneOf(names), path);
            }
            if (std::error_code loop; fs::exists(path, loop)) {
                paths.push_back(path);
            } else {
                fs::remove(path);
            }
        }
        const std::vector<std::string> further = {home + "/Bilder", home + "/e\u0301t"};
        const SafetyGuard guard(below(2) == 0 ? home : world.path("entrance"), *world.files,
                                further);
        for (int i = 0; i < questions; ++i) {
            const std::string base = somewhere(1);
            const std::string candidate = below(2) == 0 ? somewhere(4) : base + '/' + oneOf(names);
            const auto c = whereTo(candidate);
            const auto b = whereTo(base);
            if (c && b) {
                const std::string expected = verdict(*c, *b, home, further);
                ++tally[expected];
                const auto found = guard.validate(candidate, base);
                ASSERT_THAT(std::string(found.isAllowed() ? "allowed" : name(found.reason())),
                            testing::StartsWith(expected))
                    << "seed " << seed << "\n"
                    << candidate << " from " << base << "\n"
                    << world.tree();
            }
        }
    }
    for (const char* const each : {"allowed", "outside", "protected", "critical"}) {
        EXPECT_GT(tally[each], trees * questions / 100) << each;
    }
}

} // namespace CleanCoreTests
