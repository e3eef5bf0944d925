// What others do to the tree while it is removed must never reach what was not chosen. Trees that
// are very deep or very wide go like any other.

#include "tests/Support/RemovalFixture.h"

#include <atomic>
#include <fcntl.h>
#include <filesystem>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace CleanCoreTests {
namespace {

class RemovalRace : public RemovalFixture
{
protected:
    // In memory, where a folder has a link from each of its subfolders, and where no journal makes
    // a very deep tree take a minute to go.
    RemovalRace() : RemovalFixture("/dev/shm") {}

    /// Puts back whatever the removal has taken, so that there is always something to remove.
    void refill() const
    {
        for (const char* folder :
             {".cache/parent/entry/deep/deeper/", ".cache/entry/deep/deeper/"}) {
            std::error_code ignored;
            std::filesystem::create_directories(home.path(folder), ignored);
            for (const char* name : {"0", "1", "canary"}) {
                ::close(::open(home.path(std::string(folder) + name).c_str(),
                               O_CREAT | O_WRONLY | O_CLOEXEC | O_NOFOLLOW, 0644));
            }
        }
    }

    [[nodiscard]] static std::size_t countSubfolders(const std::string& folder)
    {
        std::error_code isGone;
        const auto links = std::filesystem::hard_link_count(folder, isGone);
        return isGone ? 0 : links - 2;
    }
};

/// What is exchanged, over and over, with a link to the protected folder, and what is removed.
class SwapRace : public RemovalRace,
                 public testing::WithParamInterface<std::pair<std::string, std::string>>
{
protected:
    void exchangeUntil(std::size_t wanted)
    {
        const std::string target = home.path(GetParam().first);
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
    refill();
    home.makeLink(".decoy", documents);
    const auto removal = beginRemoval();
    const std::string path = home.path(GetParam().second);
    std::thread attacker([&] { exchangeUntil(wanted); });
    std::size_t removed = 0;
    for (std::size_t round = 0; swaps < wanted && !HasFailure(); ++round) {
        refill();
        removed += removal->remove(base, path, std::nullopt).error == 0 ? 1 : 0;
        if (round % 64 == 0) {
            expectCanaries();
        }
    }
    swaps = wanted;
    attacker.join();
    expectCanaries();
    EXPECT_GT(removed, 0U) << "nothing was ever removed, so nothing was tried";
}

INSTANTIATE_TEST_SUITE_P(Removal, SwapRace,
                         testing::Values(std::pair(".cache/entry", ".cache/entry"),
                                         std::pair(".cache/parent", ".cache/parent/entry"),
                                         std::pair(".cache/entry/deep/deeper", ".cache/entry"),
                                         std::pair(".cache/entry/deep", ".cache/entry"),
                                         std::pair(".cache", ".cache/entry")));

TEST_F(RemovalRace, WhatIsMovedAwayIsLeftAloneAndReportedIfItIsTheItem)
{
    // Each walk looks whether it is in place at least every 16 folders; a part that one of the two
    // gives away is a walk of its own.
    constexpr std::size_t mostAfterMove = std::size_t{2} * 4 * 17;
    const std::pair<const char*, std::string> moves[] = {{".cache/entry/sub", home.path("moved")},
                                                         {".cache/entry", documents + "/kept"}};
    for (const auto& [folder, destination] : moves) {
        const std::string path = home.path(folder);
        std::size_t roundsWithSurvivors = 0;
        for (std::size_t round = 0; round < scaled(5, 50); ++round) {
            for (int inner = 0; inner < 400; ++inner) {
                makeFiles(home, folder + ('/' + std::to_string(inner)), 10);
            }
            int error = 0;
            std::thread remover([&] { error = remove(".cache/entry"); });
            while (countSubfolders(path) > 380) {
            }
            std::filesystem::rename(path, destination);
            const std::size_t atMove = countSubfolders(destination);
            remover.join();
            const std::size_t survivors = countSubfolders(destination);
            EXPECT_LE(atMove - survivors, mostAfterMove) << folder;
            roundsWithSurvivors += survivors > 0 ? 1 : 0;
            EXPECT_TRUE(survivors == 0 || error != 0 || path != home.path(".cache/entry"));
            std::filesystem::remove_all(destination);
            std::filesystem::remove_all(home.path(".cache/entry"));
            expectCanaries();
        }
        EXPECT_GT(roundsWithSurvivors, 0U) << folder;
    }
}

TEST_F(RemovalRace, ADeepTreeNeedsFewDescriptors)
{
    // Made step by step: no path names the end of it.
    CleanCore::FileDescriptor folder(
        ::open(home.makeFolder(".cache/entry").c_str(), O_PATH | O_CLOEXEC));
    for (int depth = 0; depth < 10'000; ++depth) {
        ASSERT_EQ(::mkdirat(folder.get(), "beside", 0755), 0);
        ASSERT_EQ(::mkdirat(folder.get(), "d", 0755), 0);
        folder = CleanCore::FileDescriptor(::openat(folder.get(), "d", O_PATH | O_CLOEXEC));
    }
    inChildProcess([&] {
        const rlimit few = {32, 32};
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
        EXPECT_EQ(remove(".cache/entry"), 0);
    });
    EXPECT_FALSE(home.has(".cache/entry"));
}

TEST_F(RemovalRace, AFlatFolderIsReadInParts)
{
    makeFiles(home, ".cache/entry/files", scaled(50'000, 1'000'000));
    // Their names alone take 10 MB.
    for (std::size_t i = 0; i < 40'000; ++i) {
        std::filesystem::create_directory(
            home.path(".cache/entry/" + std::string(245, 'x') + std::to_string(i)));
    }
    EXPECT_EQ(remove(".cache/entry"), 0);
    EXPECT_FALSE(home.has(".cache/entry"));
}

} // namespace
} // namespace CleanCoreTests
