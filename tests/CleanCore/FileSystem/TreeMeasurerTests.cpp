#include "CleanCore/FileSystem/Walking/TreeMeasurer.h"

#include "CleanCore/Support/TaskPool.h"
#include "tests/Support/Table.h"
#include "tests/Support/TemporaryFolder.h"

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <fts.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace CleanCoreTests {
namespace {

using namespace CleanCore;

/// Bytes, and the time of the newest change.
using Model = std::pair<std::int64_t, Timestamp>;

/// An entry with all that is in it, as the C library walks it.
Model modelOf(std::string path)
{
    Model model(0, distantPast);
    char* const roots[] = {path.data(), nullptr};
    FTS* const walk = ::fts_open(roots, FTS_PHYSICAL, nullptr);
    while (const FTSENT* const entry = ::fts_read(walk)) {
        const struct stat& status = *entry->fts_statp;
        const bool isItem = entry->fts_level == FTS_ROOTLEVEL;
        const int kind = entry->fts_info;
        if (kind == FTS_DP || kind == FTS_DNR || kind == FTS_NS || (!isItem && kind == FTS_SL)) {
            continue;
        }
        model.first += isItem && (kind == FTS_D || kind == FTS_SL) ? 0 : status.st_blocks * 512;
        model.second =
            std::max(model.second, Timestamp(std::chrono::seconds(status.st_mtim.tv_sec) +
                                             std::chrono::nanoseconds(status.st_mtim.tv_nsec)));
    }
    ::fts_close(walk);
    return model;
}

TEST(TreeMeasurer, AgreesWithASimpleWalkOnTreesOfEveryShape)
{
    const TemporaryFolder root;
    root.make("file:20k@-8d empty:0@3d pipe|@-9d link->item@1d7ns dangling->nowhere "
              "item/newest/inside/file:9k@-99d5ns item/newest/inside/@-7d item/newest/@1d item/@2d "
              "item/twin==file item/pipe| item/out->~/flat@-200d item/sparse deep/ "
              "closed/=0 closed/file unlisted/=0300 unlisted/file unsearched/=0400 unsearched/file "
              "flat/inner/");
    std::filesystem::resize_file(root.path("item/sparse"), 40'000'000);
    for (int i = 0; i < 20'000; ++i) {
        std::filesystem::create_hard_link(
            root.path("file"), root.path("flat/a-name-of-some-length-" + std::to_string(i)));
    }
    // Chains with a file in each folder, one of them too long for a path, and so many that every
    // worker is deep in one at the same time.
    for (int chain = 0; chain < 17; ++chain) {
        FileDescriptor folder(::open(root.path("deep").c_str(), O_PATH | O_CLOEXEC));
        std::string name = std::to_string(chain);
        for (int level = 0; level < (chain == 0 ? 300 : 100); ++level) {
            ASSERT_EQ(::mkdirat(folder.get(), name.c_str(), 0700), 0);
            folder = FileDescriptor(::openat(folder.get(), name.c_str(), O_PATH | O_CLOEXEC));
            ASSERT_EQ(::linkat(AT_FDCWD, root.path("file").c_str(), folder.get(), "f", 0), 0);
            name = std::string(chain == 0 ? 100 : 1, 'd');
        }
    }
    const std::vector<std::string> names =
        words("file missing empty pipe link dangling item closed unlisted unsearched flat deep");
    const auto measure = [&](unsigned workers, const std::stop_token& stop) {
        FileDescriptor folder(::open(root.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        const TreeMeasurer measurer(std::make_shared<TaskPool>(workers));
        std::vector<Model> models;
        for (const EntryMeasure& entry : measurer.measure(std::move(folder), names, stop)) {
            models.emplace_back(entry.sizeBytes, entry.latestModification);
        }
        return models;
    };
    std::vector<Model> expected(names.size());
    std::ranges::transform(names, expected.begin(),
                           [&](const std::string& name) { return modelOf(root.path(name)); });
    rlimit limit = {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    const rlim_t before = std::exchange(limit.rlim_cur, 160);
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
    for (const unsigned workers : {1U, 2U, 8U}) {
        EXPECT_EQ(measure(workers, {}), expected) << workers << " workers";
    }
    limit.rlim_cur = before;
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(measure(2, stop.get_token()), std::vector<Model>(names.size(), {0, distantPast}));
    // Too deep for what removes the other temporary folders.
    EXPECT_EQ(std::system(("rm -rf '" + root.path("deep") + "'").c_str()), 0);
}

} // namespace
} // namespace CleanCoreTests
