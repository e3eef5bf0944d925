#include "tests/Support/CleanableHome.h"
#include "tests/Support/GuardModel.h"
#include "tests/Support/LinkedPaths.h"
#include "tests/Support/VerdictText.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <random>

namespace CleanCoreTests {

using CleanCore::SafetyGuard;

namespace {

constexpr std::size_t firstSeed = 20'240'229;

/// Paths from few names, so that links, bases and protected folders meet often.
class Dice
{
public:
    Dice(std::size_t seed, std::vector<std::string> roots)
        : m_engine(static_cast<std::mt19937::result_type>(seed)), m_roots(std::move(roots))
    {
    }

    std::size_t below(std::size_t count)
    {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(m_engine);
    }

    const std::string& oneOf(const std::vector<std::string>& texts)
    {
        return texts[below(texts.size())];
    }

    std::string path() { return oneOf(m_roots) + tail(below(5)); }

    std::string relativePath()
    {
        return (below(2) == 0 ? "../" : "") + tail(1 + below(3)).substr(1);
    }

    std::string tail(std::size_t components)
    {
        static const std::vector<std::string> names = {"Documents",
                                                       "documents",
                                                       "Documents2",
                                                       "Library",
                                                       "Mobile Documents",
                                                       "Caches",
                                                       "Caches",
                                                       "..",
                                                       "..",
                                                       ".",
                                                       "",
                                                       "tmp",
                                                       "e\u0301t",
                                                       "\u00e9t",
                                                       "A\u030a",
                                                       "\u212b",
                                                       "\u00c5",
                                                       "Bilder",
                                                       "q\u0307\u0323",
                                                       "q\u0323\u0307",
                                                       "\xff\xfe",
                                                       "a",
                                                       "b"};
        std::string text;
        for (std::size_t i = 0; i < components; ++i) {
            text += "/" + oneOf(names);
        }
        return text + (below(8) == 0 ? "/" : "");
    }

private:
    std::mt19937 m_engine;
    std::vector<std::string> m_roots;
};

std::string describe(const LinkedPaths::Links& links)
{
    std::string text;
    for (const auto& [path, target] : links) {
        text.append("\n  ").append(path).append(" -> ").append(target);
    }
    return text;
}

/// The same questions for the guard and the model, and how often each verdict was met: a comparison
/// in which one never occurs shows nothing about it.
class Comparison
{
public:
    /// Asks one question and returns its candidate.
    std::string ask(const SafetyGuard& guard, const GuardModel& model, Dice& dice)
    {
        const std::string base = dice.path();
        std::string candidate =
            dice.below(3) == 0 ? dice.path() : base + dice.tail(1 + dice.below(2));
        const std::string expected = model.verdict(candidate, base);
        ++m_tally[expected];
        EXPECT_EQ(textOf(guard.validate(candidate, base)), expected)
            << "candidate " << candidate << "\nbase " << base;
        return candidate;
    }

    void expectEveryVerdict(int least)
    {
        for (const char* verdict : {"allowed", "outside", "protected", "critical"}) {
            EXPECT_GT(m_tally[verdict], least) << verdict;
        }
    }

private:
    std::map<std::string, int> m_tally;
};

} // namespace

TEST(SafetyGuardAgainstModel, AgreesOnTreesInMemory)
{
    constexpr int trees = 20'400;
    constexpr int questions = 3;
    const std::vector<std::string> homes = {
        "/Users/alice", "/Users/e\u0301t",         "/private/var/h", "/tmp/h/../h",
        "/h",           "/System/Volumes/Data/h/x"};
    Comparison comparison;
    for (std::size_t i = 0; i < homes.size(); ++i) {
        const std::string& home = homes[i];
        const std::size_t seed = firstSeed + i;
        Dice dice(seed, {home, home + "/Library", home + "/Library/Caches", home + "/Documents",
                         home + "/Bilder", "/System/Volumes/Data" + home, "/private/tmp",
                         "/private/var/a", "/var/a", "", "/System/Volumes/Data"});
        for (std::size_t tree = 0; tree < trees / homes.size(); ++tree) {
            LinkedPaths files;
            for (std::size_t link = dice.below(7); link > 0; --link) {
                files.links[files.resolvingSymbolicLinks(dice.path())] =
                    dice.below(2) == 0 ? dice.path() + "/" : dice.relativePath();
            }
            files.links.erase("/");
            const std::vector<std::string> further = {home + "/Bilder", dice.path() + "/."};
            const SafetyGuard guard(home, files, further);
            const GuardModel model([&](const std::string& path) { return files.target(path); },
                                   home, further);
            SCOPED_TRACE("seed " + std::to_string(seed) + ", home " + home + ", tree " +
                         std::to_string(tree) + ", further " + further.back() +
                         describe(files.links));
            for (int question = 0; question < questions; ++question) {
                comparison.ask(guard, model, dice);
            }
            ASSERT_FALSE(testing::Test::HasFailure());
        }
    }
    comparison.expectEveryVerdict(trees * questions / 50);
}

TEST(SafetyGuardAgainstModel, AgreesOnTreesOnDisk)
{
    namespace fs = std::filesystem;
    constexpr int trees = 60;
    constexpr int questions = 60;
    Comparison comparison;
    int realPaths = 0;
    for (std::size_t seed = firstSeed; seed < firstSeed + trees; ++seed) {
        const CleanableHome sample;
        const std::string root = sample.folder.path();
        const std::string home = sample.folder.makeFolder("home");
        Dice dice(seed,
                  {root, home, home + "/Library", home + "/Library/Caches", home + "/Documents"});
        std::string links;
        for (int i = 0; i < 40; ++i) {
            // What is in the way of an entry, or outside by way of a link, is not made.
            const std::string path = home + dice.tail(1 + dice.below(3));
            const std::string target = dice.below(2) == 0 ? dice.path() : dice.relativePath();
            std::error_code error;
            const std::string parent = fs::weakly_canonical(fs::path(path).parent_path(), error);
            if (error || parent.rfind(root, 0) != 0) {
                continue;
            }
            fs::create_directories(parent, error);
            if (dice.below(2) == 0) {
                fs::create_directory(path, error);
            } else {
                fs::create_symlink(target, path, error);
                if (!error) {
                    links.append("\n  ").append(path).append(" -> ").append(target);
                }
            }
        }
        const std::vector<std::string> further = {home + "/Bilder"};
        const SafetyGuard guard(home, *sample.files, further);
        const GuardModel model(
            [](const std::string& path) {
                std::error_code error;
                const fs::path target = fs::read_symlink(path, error);
                return error ? std::nullopt : std::optional(target.string());
            },
            home, further);
        SCOPED_TRACE("seed " + std::to_string(seed) + links);
        for (int question = 0; question < questions; ++question) {
            const std::string candidate = comparison.ask(guard, model, dice);
            // Where the system itself knows the answer, there is no other.
            std::error_code error;
            const std::string real = fs::canonical(candidate, error);
            if (!error) {
                ++realPaths;
                EXPECT_EQ(sample.files->resolvingSymbolicLinks(candidate), real) << candidate;
            }
        }
        ASSERT_FALSE(testing::Test::HasFailure());
    }
    comparison.expectEveryVerdict(trees * questions / 100);
    EXPECT_GT(realPaths, trees * questions / 10);
}

} // namespace CleanCoreTests
