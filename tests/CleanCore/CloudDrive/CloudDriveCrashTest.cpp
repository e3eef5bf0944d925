#include "tests/Support/CloudFolders.h"
#include "tests/Support/FailingCall.h"
#include "tests/Support/Setting.h"

#include <algorithm>
#include <chrono>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iostream>
#include <random>
#include <vector>

namespace CleanCoreTests {
namespace {

using CleanCore::StandInDrive;
using testing::IsEmpty;

/// A tree of files of many lengths, from none to several steps.
class Tree
{
public:
    Tree(const CloudFolders& folders, int files) : m_folders(folders)
    {
        std::mt19937 random(7);
        for (int i = 0; i < files; ++i) {
            const std::string name = "Tree/" + std::to_string(i % 17) + "/" + std::to_string(i);
            const std::size_t length = i % 50 == 0 ? 0 : random() % 40'000;
            m_files.push_back({name, bytes(length, static_cast<unsigned>(i)), 0});
            folders.makePair(name, m_files.back().content);
            m_files.back().blocks = statusOf(folders.local(name)).st_blocks;
        }
    }

    /// How the files were found after a process was killed.
    struct State
    {
        int placeholders = 0;
        int parts = 0;
        int withoutTheirTime = 0;
    };

    /// Every file has to be in full in the mirror, and of the local one every byte that is still
    /// there has to be right.
    void expectNothingLost(State& sum) const
    {
        for (const File& file : m_files) {
            ASSERT_TRUE(contentOf(m_folders.copy(file.name)) == file.content)
                << "the mirror was written to: " << file.name;
            const std::string local = contentOf(m_folders.local(file.name));
            const struct stat status = statusOf(m_folders.local(file.name));
            sum.withoutTheirTime += status.st_mtim.tv_sec == fileTime ? 0 : 1;
            if (local == file.content) {
                continue;
            }
            ASSERT_EQ(local.size(), file.content.size()) << file.name;
            ASSERT_TRUE(std::equal(local.begin(), local.end(), file.content.begin(),
                                   [](char a, char b) { return a == '\0' || a == b; }))
                << file.name;
            ++(status.st_blocks == 0 ? sum.placeholders : sum.parts);
        }
    }

    void expectAllReleased() const
    {
        for (const File& file : m_files) {
            ASSERT_EQ(statusOf(m_folders.local(file.name)).st_blocks, 0) << file.name;
        }
    }

    void expectAsItWas() const
    {
        for (const File& file : m_files) {
            const struct stat status = statusOf(m_folders.local(file.name));
            ASSERT_TRUE(contentOf(m_folders.local(file.name)) == file.content) << file.name;
            ASSERT_EQ(status.st_blocks, file.blocks) << file.name;
            ASSERT_EQ(status.st_mtim.tv_sec, fileTime) << file.name;
            ASSERT_EQ(status.st_mtim.tv_nsec, 123'456'789) << file.name;
        }
    }

private:
    static constexpr std::time_t fileTime = 1'600'000'000;
    struct File
    {
        std::string name;
        std::string content;
        blkcnt_t blocks;
    };
    const CloudFolders& m_folders;
    std::vector<File> m_files;
};

std::ostream& operator<<(std::ostream& stream, const Tree::State& state)
{
    return stream << state.placeholders << " placeholders, " << state.parts << " parts of files, "
                  << state.withoutTheirTime << " files without their time";
}

/// ZORVANE_CRASH_FILES, ZORVANE_CRASH_MOMENTS and ZORVANE_CRASH_SEED make it a longer or another
/// run.
TEST(CloudDriveCrashTest, nothingIsLostWheneverAReleaseOrAFetchIsKilled)
{
    const int files = setting("ZORVANE_CRASH_FILES", 300);
    const int moments = setting("ZORVANE_CRASH_MOMENTS", 20);
    std::mt19937_64 random(static_cast<unsigned>(setting("ZORVANE_CRASH_SEED", 1)));
    const CloudFolders folders(reliabilityFolder());
    const Tree tree(folders, files);
    const std::string path = folders.local("Tree");
    const StandInDrive drive = folders.drive();

    // Each is timed while it is done in full, so that the moments spread over all of it.
    long releaseTime = 0;
    long fetchTime = 0;
    const auto timed = [](long& time, const auto& work) {
        const auto begin = std::chrono::steady_clock::now();
        work();
        time = std::chrono::nanoseconds(std::chrono::steady_clock::now() - begin).count();
    };
    timed(releaseTime, [&] { ASSERT_THAT(drive.release(path), IsEmpty()); });
    timed(fetchTime, [&] { ASSERT_THAT(drive.fetch(path), IsEmpty()); });
    ASSERT_NO_FATAL_FAILURE(tree.expectAsItWas());

    int releasesKilled = 0;
    int fetchesKilled = 0;
    Tree::State afterReleases;
    Tree::State afterFetches;
    const auto moment = [&](long time) {
        return 1 + static_cast<long>(random() % static_cast<unsigned long>(time));
    };
    for (int i = 0; i < moments; ++i) {
        releasesKilled +=
            runUntilKilled(moment(releaseTime), [&] { static_cast<void>(drive.release(path)); });
        ASSERT_NO_FATAL_FAILURE(tree.expectNothingLost(afterReleases));
        ASSERT_THAT(drive.release(path), IsEmpty());
        ASSERT_NO_FATAL_FAILURE(tree.expectAllReleased());

        fetchesKilled +=
            runUntilKilled(moment(fetchTime), [&] { static_cast<void>(drive.fetch(path)); });
        ASSERT_NO_FATAL_FAILURE(tree.expectNothingLost(afterFetches));
        // Every other time a release comes between, which has to cope with half-fetched files.
        if (i % 2 == 0) {
            static_cast<void>(runUntilKilled(moment(releaseTime),
                                             [&] { static_cast<void>(drive.release(path)); }));
            ASSERT_NO_FATAL_FAILURE(tree.expectNothingLost(afterFetches));
        }
        ASSERT_THAT(drive.fetch(path), IsEmpty());
        ASSERT_NO_FATAL_FAILURE(tree.expectAsItWas());
    }
    std::cout << files << " files: " << releasesKilled << " of " << moments << " releases killed ("
              << afterReleases << "), " << fetchesKilled << " fetches killed (" << afterFetches
              << ")\n";
    EXPECT_GT(releasesKilled, moments / 4);
    EXPECT_GT(fetchesKilled, moments / 4);
}

} // namespace
} // namespace CleanCoreTests
