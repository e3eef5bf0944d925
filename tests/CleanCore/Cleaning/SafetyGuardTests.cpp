#include "CleanCore/Rules/SafetyGuard.h"

#include "CleanCore/Support/FileDescriptor.h"
#include "tests/Support/CleanableHome.h"
#include "tests/Support/ScriptedDisk.h"
#include "tests/Support/Table.h"

#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <map>
#include <random>
#include <regex>

namespace CleanCoreTests {

using CleanCore::SafetyGuard;
namespace fs = std::filesystem;

namespace {

std::string judged(const SafetyGuard& guard, const std::string& candidate, const std::string& base)
{
    const auto found = guard.validate(candidate, base);
    return std::string(found.isAllowed() ? "allowed" : name(found.reason()));
}

/// A verdict, and what gets it: CANDIDATE<BASE, separated by white space, with "~"
/// for the home.
using Rows = std::vector<std::pair<const char*, const char*>>;

void expectVerdicts(const SafetyGuard& guard, const std::string& home, const Rows& rows)
{
    for (const auto& [verdict, questions] : rows) {
        for (const std::string& question :
             words(std::regex_replace(questions, std::regex("~"), home))) {
            const std::size_t mark = question.find('<');
            EXPECT_EQ(judged(guard, question.substr(0, mark), question.substr(mark + 1)), verdict)
                << question;
        }
    }
}

/// Where the kernel itself ends up on the way along `path`, whose last component may be missing;
/// empty where that leads nowhere.
std::string whereTo(const std::string& path)
{
    std::error_code error;
    const auto placeOf = [&](const std::string& entry) {
        const CleanCore::FileDescriptor held(::open(entry.c_str(), O_PATH | O_CLOEXEC));
        return fs::read_symlink("/proc/self/fd/" + std::to_string(held.get()), error);
    };
    const std::size_t slash = path.rfind('/');
    const std::string name = path.substr(slash + 1);
    const fs::path place = placeOf(path);
    if (!place.empty() || name.empty() || name.starts_with('.') ||
        fs::symlink_status(path, error).type() != fs::file_type::not_found) {
        return place;
    }
    const fs::path folder = placeOf(path.substr(0, slash + 1));
    return folder.empty() ? folder : folder / name;
}

bool isIn(const std::string& path, const std::string& folder)
{
    return (path + '/').starts_with(folder == "/" ? folder : folder + '/');
}

/// What the guard has to say of two places, for a home that is one.
std::string verdict(const std::string& candidate, const std::string& base, const std::string& home,
                    const std::vector<std::string>& protectedFolders)
{
    if (std::ranges::count(candidate, '/') == 1 || candidate == home) {
        return "criticalSystemPath";
    }
    const auto isProtected = [&](const std::string& folder) {
        const std::string target = whereTo(folder);
        return isIn(candidate, folder) || (!isIn(home, target) && isIn(candidate, target));
    };
    if (std::ranges::any_of(protectedFolders, isProtected)) {
        return "protectedUserPath";
    }
    return candidate != base && isIn(candidate, base) ? "allowed" : "outsideAllowedBase";
}

} // namespace

TEST(SafetyGuard, JudgesPathsOfAnyPlatformAndOfAHomeThatIsALinkToAnAlias)
{
    ScriptedDisk files;
    for (const std::string path : {"", "/", "/x", "/Movies/x"}) {
        files.links["/home/alice" + path] = "/System/Volumes/Data/Users/alice" + path;
    }
    const SafetyGuard guard("/home/alice/", files);
    expectVerdicts(
        guard, "/Users/alice",
        {{"criticalSystemPath", "/</ </ /Users/<~ ~/</Users ~/x/..</Users /private/tmp</private "
                                "/System/Volumes/Data/Users</ /home/alice</ "
                                "/System/Volumes/Data/Users/alice</Users"},
         {"protectedUserPath", "~/Documents<~ ~/Documents/a<~ ~/Documents/in/a<~/Documents/in "
                               "/home/alice/Movies/x</ ~/Movies/x</home/alice "
                               "/System/Volumes/Data/Users/alice/Music/x<~/Music"},
         {"outsideAllowedBase", "~/Caches/<~/Caches ~/Caches<~/Caches/x ~/CachesOld/x<~/Caches "
                                "~/Caches/../Logs/x<~/Caches /private/tmpfile/x</tmpfile "
                                "/System/Volumes/Database/x/y</x"},
         {"allowed", "~/Caches/x<~/Caches/ ~/Caches/x/y<~/Music/.././/Caches ~/Library<~ ~/x</ "
                     "~/Documents2/x<~ ~/documents/x<~ /Users/bob/Documents/x</Users/bob "
                     "~/caf\u00e9/x<~/cafe\u0301 /System/Volumes/Data/</System/Volumes "
                     "/System/Volumes/Data/private/var/x/y</var/x /private/etc/x</etc "
                     "/private/var/folders/x</var/folders /var/folders/x</private/var/folders "
                     "/private/Users/alice/Documents</private /home/alice/x<~"}});
    EXPECT_EQ(guard.protectedFolders().front(), "/Users/alice/Documents");
    EXPECT_EQ(guard.protectedFolders()[6], "/Users/alice/Library/Mobile Documents");
}

TEST(SafetyGuard, FollowsLinksAsFarAsTheyLead)
{
    // Music and Movies are their owner's way to have no such folder.
    const CleanableHome home(
        "disk/papers/ Documents->disk/papers Desktop->~/.cache/desktop Music->. Movies->/ "
        "Bilder->Photos .cache/dangling->../Documents/missing/x .cache/out->../disk/missing/.. "
        "circle->.cache/circle .cache/circle->../circle .cache/odd->'../\xff\n/../disk/papers'");
    home.makeFile(".config/user-dirs.dirs", "XDG_PICTURES_DIR=\"$HOME/Bilder\"\n"
                                            "XDG_MUSIC_DIR=\"$HOME/M\u00fcsik/\"\n");
    const auto further = CleanCore::UserFolders::confinedTo(home.path()).protectedFolders;
    expectVerdicts(
        SafetyGuard(home.path(), *home.files, further), home.path(),
        {{"protectedUserPath",
          "~/disk/papers<~/disk ~/disk/papers/x<~/disk ~/.cache/desktop/x<~/.cache "
          "~/.cache/dangling<~/.cache ~/.cache/odd/x<~/.cache ~/Documents<~ "
          "~/Bilder<~ ~/Photos/x<~ ~/Mu\u0308sik/x<~ ~/Pictures/x<~ ~/.ssh/id<~/.ssh "
          "~/.local/share/keyrings/x<~/.local"},
         {"outsideAllowedBase", "~/.cache/out/x<~/.cache"},
         {"allowed", "~/disk/papers2<~/disk ~/.cache/x<~/.cache ~/Music/.cache/x<~/.cache "
                     "~/circle/x<~ ~/.local/share/Trash/x<~/.local ~/.sshd/x<~"}});
}

TEST(SafetyGuard, AgreesWithTheKernelHoweverLinksAreChained)
{
    constexpr int trees = 60;
    constexpr int questions = 100;
    std::vector<std::string> names =
        words("Documents documents Music Library Caches Bilder \xff\xfe a b .. .. .");
    names.insert(names.end(), {"", "Mobile Documents"});
    std::map<std::string, int> tally;
    for (unsigned seed = 20'240'229; seed < 20'240'229 + trees; ++seed) {
        std::mt19937 dice(seed);
        const auto oneOf = [&](const std::vector<std::string>& texts) {
            return texts[dice() % texts.size()];
        };
        const CleanableHome world("home/Library/Caches/ home/a/ entrance->home");
        const std::string home = world.path("home");
        // Every entry by one path, links too.
        std::vector<std::string> paths = {
            world.path(), home, home, home + "/Library", home + "/Library/Caches", home + "/a"};
        const auto somewhere = [&](unsigned most) {
            std::string path = oneOf(paths);
            for (unsigned long left = dice() % (most + 1); left > 0; --left) {
                path += '/' + oneOf(names);
            }
            return path;
        };
        for (int i = 0; i < 60; ++i) {
            const std::string path = oneOf(paths) + '/' + oneOf(names);
            if (!isIn(whereTo(path), world.path()) || fs::exists(fs::symlink_status(path))) {
                continue;
            }
            if (dice() % 2 == 0) {
                fs::create_directory(path);
            } else {
                fs::create_symlink(dice() % 2 == 0 ? somewhere(2) + '/' : "../" + oneOf(names),
                                   path);
            }
            if (std::error_code loop; fs::exists(path, loop)) {
                paths.push_back(path);
            } else {
                fs::remove(path);
            }
        }
        std::vector<std::string> guarded = {home + "/Bilder"};
        const SafetyGuard guard(dice() % 2 == 0 ? home : world.path("entrance"), *world.files,
                                guarded);
        for (const char* const name : {"Documents", "Desktop", "Downloads", "Pictures", "Music",
                                       "Movies", "Library/Mobile Documents"}) {
            guarded.push_back(home + '/' + name);
        }
        for (int i = 0; i < questions; ++i) {
            const std::string base = somewhere(1);
            const std::string candidate =
                dice() % 2 == 0 ? somewhere(4) : base + '/' + oneOf(names);
            const std::string c = whereTo(candidate);
            const std::string b = whereTo(base);
            if (!c.empty() && !b.empty()) {
                const std::string expected = verdict(c, b, home, guarded);
                ++tally[expected];
                ASSERT_EQ(judged(guard, candidate, base), expected)
                    << "seed " << seed << ", " << candidate << " from " << base << "\n"
                    << world.tree();
            }
        }
    }
    for (const char* const each :
         {"allowed", "outsideAllowedBase", "protectedUserPath", "criticalSystemPath"}) {
        EXPECT_GT(tally[each], trees * questions / 100) << each;
    }
}

} // namespace CleanCoreTests
