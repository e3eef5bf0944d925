// What others do to the tree while it is removed must never reach what was not chosen.

#include "CleanCore/Cleaning/CleanEngine.h"
#include "CleanCore/FileSystem/LinuxFileManager.h"
#include "tests/Support/RemovalFixture.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace CleanCoreTests {
namespace {

using namespace CleanCore;

/// What is exchanged, over and over, with a link to the protected folder.
struct Swap
{
    const char* target;
    const char* removed;
};

void PrintTo(const Swap& swap, std::ostream* stream)
{
    *stream << swap.target;
}

class SwapRace : public RemovalFixture, public testing::WithParamInterface<Swap>
{
protected:
    /// Puts back whatever the removal has taken, so that there is always something to exchange.
    void restore() const
    {
        for (const char* folder :
             {"/.cache/parent/entry/deep/deeper", "/.cache/entry/deep/deeper"}) {
            std::error_code ignored;
            std::filesystem::create_directories(home.path() + folder, ignored);
            for (const char* name : {"/0", "/1", "/canary"}) {
                ::close(::open((home.path() + folder + name).c_str(),
                               O_CREAT | O_WRONLY | O_CLOEXEC | O_NOFOLLOW, 0644));
            }
        }
    }

    void exchangeUntil(std::size_t wanted)
    {
        const std::string target = home.path(GetParam().target);
        const std::string decoy = home.path(".decoy");
        while (swaps < wanted) {
            if (::renameat2(AT_FDCWD, target.c_str(), AT_FDCWD, decoy.c_str(), RENAME_EXCHANGE) ==
                0) {
                ++swaps;
            } else {
                static_cast<void>(::symlink(documents.c_str(), decoy.c_str()));
                static_cast<void>(::mkdir(target.c_str(), 0755));
            }
        }
    }

    std::atomic<std::size_t> swaps = 0;
};

TEST_P(SwapRace, NeverReachesTheProtectedFolder)
{
    const std::size_t wanted = scaled(20'000, 400'000);
    restore();
    home.makeLink(".decoy", documents);
    const auto fileManager = std::make_shared<LinuxFileManager>(
        UserFolders{home.path(), base, base, {}}, std::nullopt, pool());
    const CleanEngine engine(home.path(), fileManager);
    const auto removal = beginRemoval();
    const std::string path = home.path(GetParam().removed);
    CleaningRule rule;
    rule.basePaths = {"~/.cache"};

    std::thread attacker([&] { exchangeUntil(wanted); });
    std::size_t removed = 0;
    for (std::size_t round = 0; swaps < wanted; ++round) {
        restore();
        if (round % 2 == 0) {
            // With the guard, as a clean does it.
            const CleaningSelection selections[] = {{rule, {{path}}}};
            removed += engine.clean(selections, false).removed.size();
        } else {
            // Without it: the removal alone has to hold.
            removed += removal->remove(base, path, std::nullopt).error == 0 ? 1 : 0;
        }
        if (round % 64 == 0) {
            expectCanaries();
        }
        if (HasFailure()) {
            break;
        }
    }
    swaps = wanted;
    attacker.join();
    expectCanaries();
    EXPECT_GT(removed, 0U) << "nothing was ever removed, so nothing was tried";
}

INSTANTIATE_TEST_SUITE_P(Removal, SwapRace,
                         testing::Values(Swap{".cache/entry", ".cache/entry"},
                                         Swap{".cache/parent", ".cache/parent/entry"},
                                         Swap{".cache/entry/deep/deeper", ".cache/entry"},
                                         Swap{".cache/entry/deep", ".cache/entry"},
                                         Swap{".cache", ".cache/entry"}));

class RemovalRace : public RemovalFixture
{
protected:
    RemovalRace() : RemovalFixture("/dev/shm") {}

    struct MovedAway
    {
        int error = 0;
        std::size_t atMove = 0;
        std::size_t survivors = 0;
    };

    /// Moves `folder`, filled anew, away as soon as the removal of ".cache/entry" begins to show
    /// in it.
    [[nodiscard]] MovedAway moveAway(const std::string& folder, const std::string& destination)
    {
        for (int inner = 0; inner < 400; ++inner) {
            makeFiles(home, folder + '/' + std::to_string(inner), 10);
        }
        const std::string path = home.path(folder);
        const std::size_t before = countEntries(path);
        MovedAway result;
        std::thread remover([&] { result.error = remove(".cache/entry"); });
        while (countEntries(path) + 200 > before) {
        }
        if (::rename(path.c_str(), destination.c_str()) == 0) {
            result.atMove = countEntries(destination);
        }
        remover.join();
        result.survivors = countEntries(destination);
        EXPECT_FALSE(home.has(folder));
        std::filesystem::remove_all(destination);
        std::filesystem::remove_all(home.path(".cache/entry"));
        expectCanaries();
        return result;
    }
};

TEST_F(RemovalRace, AFolderMovedAwayTakesItsSubtreeOutOfTheWork)
{
    // Both walks look whether they are in place at least every 16 folders (of 10 files and
    // themselves), each with what it has in hand.
    constexpr std::size_t mostAfterMove = std::size_t{2} * 2 * 17 * 11;
    std::size_t roundsWithSurvivors = 0;
    for (std::size_t round = 0; round < scaled(5, 50); ++round) {
        const MovedAway moved = moveAway(".cache/entry/sub", home.path("moved"));
        EXPECT_LE(moved.atMove - moved.survivors, mostAfterMove);
        roundsWithSurvivors += moved.survivors > 0 ? 1 : 0;
    }
    EXPECT_GT(roundsWithSurvivors, 0U);
}

TEST_F(RemovalRace, AnItemMovedAwayIsLeftAloneAndReported)
{
    std::size_t reported = 0;
    for (std::size_t round = 0; round < scaled(5, 50); ++round) {
        const MovedAway moved = moveAway(".cache/entry", documents + "/kept");
        if (moved.survivors > 0) {
            EXPECT_NE(moved.error, 0);
            ++reported;
        }
    }
    EXPECT_GT(reported, 0U);
}

TEST_F(RemovalRace, AFolderThatIsRefilledEndsTheWorkSomehow)
{
    std::atomic<bool> isOver = false;
    makeFiles(home, ".cache/entry/sub", 100);
    std::thread writer([&] {
        for (std::size_t i = 0; !isOver; ++i) {
            const std::string sub = home.path(".cache/entry/sub");
            static_cast<void>(::mkdir(home.path(".cache/entry").c_str(), 0755));
            static_cast<void>(::mkdir(sub.c_str(), 0755));
            ::close(::open((sub + '/' + std::to_string(i)).c_str(), O_CREAT | O_WRONLY | O_CLOEXEC,
                           0644));
        }
    });
    for (std::size_t round = 0; round < scaled(200, 5'000); ++round) {
        static_cast<void>(remove(".cache/entry"));
    }
    isOver = true;
    writer.join();
    static_cast<void>(remove(".cache/entry"));
    EXPECT_FALSE(home.has(".cache/entry"));
    expectCanaries();
}

TEST_F(RemovalRace, TwoRemovalsOfOneTreeDoNotDisturbEachOther)
{
    ASSERT_TRUE(pool()) << "made before two threads ask for it";
    for (std::size_t round = 0; round < scaled(10, 200); ++round) {
        for (int folder = 0; folder < 50; ++folder) {
            makeFiles(home, ".cache/entry/" + std::to_string(folder), 20);
        }
        int errors[2] = {};
        std::thread other([&] { errors[1] = remove(".cache/entry"); });
        errors[0] = remove(".cache/entry");
        other.join();
        EXPECT_FALSE(home.has(".cache/entry")) << errors[0] << ' ' << errors[1];
        for (const int error : errors) {
            EXPECT_TRUE(error == 0 || error == ENOENT || error == ESTALE) << error;
        }
    }
    expectCanaries();
}

} // namespace
} // namespace CleanCoreTests
