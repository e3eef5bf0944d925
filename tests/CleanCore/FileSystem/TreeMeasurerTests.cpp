#include "CleanCore/FileSystem/Walking/TreeMeasurer.h"

#include "CleanCore/FileSystem/Walking/FolderStack.h"
#include "CleanCore/Support/PathText.h"
#include "CleanCore/Support/TaskPool.h"
#include "tests/Support/RandomTree.h"
#include "tests/Support/TemporaryFolder.h"

#include <algorithm>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace CleanCoreTests {

using namespace CleanCore;
using Strings = std::vector<std::string>;

namespace {

/// Bytes, and the time of the newest change.
using Model = std::pair<std::int64_t, Timestamp>;

/// An entry with what is in it, path by path, as slowly and simply as can be.
Model modelOf(const std::string& path, bool isItem = true)
{
    struct stat status = {};
    if (::lstat(path.c_str(), &status) != 0 || (!isItem && S_ISLNK(status.st_mode))) {
        return {0, distantPast};
    }
    Model model(
        isItem && (S_ISDIR(status.st_mode) || S_ISLNK(status.st_mode)) ? 0 : status.st_blocks * 512,
        Timestamp(std::chrono::seconds(status.st_mtim.tv_sec) +
                  std::chrono::nanoseconds(status.st_mtim.tv_nsec)));
    DIR* const stream = S_ISDIR(status.st_mode) ? ::opendir(path.c_str()) : nullptr;
    while (const dirent* const entry = stream != nullptr ? ::readdir(stream) : nullptr) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..") {
            const auto [bytes, newest] = modelOf(PathText::join(path, name), false);
            model = {model.first + bytes, std::max(model.second, newest)};
        }
    }
    if (stream != nullptr) {
        ::closedir(stream);
    }
    return model;
}

std::vector<Model> measure(const std::string& folder, const Strings& names, unsigned workers,
                           const std::stop_token& stop = {})
{
    FileDescriptor directory(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const TreeMeasurer measurer(std::make_shared<TaskPool>(workers));
    std::vector<Model> models;
    for (const EntryMeasure& entry : measurer.measure(std::move(directory), names, stop)) {
        models.emplace_back(entry.sizeBytes, entry.latestModification);
    }
    return models;
}

void expectAsModelled(const std::string& folder, const Strings& names)
{
    std::vector<Model> expected;
    for (const std::string& name : names) {
        expected.push_back(modelOf(PathText::join(folder, name)));
    }
    for (const unsigned workers : {1U, 2U, 8U}) {
        EXPECT_EQ(measure(folder, names, workers), expected) << workers << " workers";
    }
}

} // namespace

TEST(TreeMeasurer, AgreesWithASimpleWalkOnRandomTrees)
{
    for (unsigned seed = 0; seed < 12; ++seed) {
        SCOPED_TRACE(seed);
        const TemporaryFolder root;
        Strings names = makeRandomTree(root, seed);
        names.insert(names.begin() + 1, "not there");
        expectAsModelled(root.path(), names);
        const std::string above = PathText::parent(root.path());
        const Strings item = {root.path().substr(above.size() + 1)};
        expectAsModelled(above, item);
        std::stop_source stop;
        stop.request_stop();
        EXPECT_EQ(measure(above, item, 2, stop.get_token()),
                  (std::vector<Model>{{0, distantPast}}));
    }
}

TEST(TreeMeasurer, DividesAFlatFolderAmongItsWorkers)
{
    const TemporaryFolder root;
    root.make("file flat/inner/");
    constexpr int count = 20'000;
    for (int i = 0; i < count; ++i) {
        std::filesystem::create_hard_link(
            root.path("file"), root.path("flat/a-name-of-some-length-" + std::to_string(i)));
    }
    root.setTime("file", 2'000'000'000, 1);
    expectAsModelled(root.path(), {"flat"});
    EXPECT_GE(modelOf(root.path("flat")).first, count * 512);
}

TEST(FolderStack, DoesNotGoOnWhereAFolderWasMovedTo)
{
    for (const bool isMoved : {false, true}) {
        const TemporaryFolder root;
        root.make("a/b/c/ elsewhere/");
        FolderStack stack(2);
        for (const char* const path : {"", "a", "a/b", "a/b/c"}) {
            FileDescriptor folder(
                ::open(root.path(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
            EntryStatus status;
            ASSERT_EQ(readStatus(folder.get(), "", status), 0);
            stack.push(std::move(folder), status);
        }
        if (isMoved) {
            root.move("a/b/c", "elsewhere/c");
        }
        EXPECT_EQ(stack.pop(), !isMoved);
        EXPECT_EQ(stack.isEmpty(), isMoved);
    }
}

TEST(TreeMeasurer, GoesDeeperThanPathsAndDescriptorsReach)
{
    const TemporaryFolder root;
    std::int64_t expected = 0;
    const auto add = [&](int folder, const char* name) {
        struct stat status = {};
        ASSERT_EQ(::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW), 0);
        expected += status.st_blocks * 512;
    };
    // One chain of folders that is too long for a path, and others beside it, so that every worker
    // is deep in one at the same time.
    for (int chain = 0; chain < 17; ++chain) {
        const std::string name(chain == 0 ? 100 : 1, 'd');
        FileDescriptor folder(::open(root.makeFolder("item/" + std::to_string(chain)).c_str(),
                                     O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        add(folder.get(), ".");
        for (int level = 0; level < (chain == 0 ? 600 : 100); ++level) {
            const FileDescriptor file(
                ::openat(folder.get(), "file", O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
            ASSERT_EQ(::write(file.get(), "x", 1), 1);
            add(folder.get(), "file");
            ASSERT_EQ(::mkdirat(folder.get(), name.c_str(), 0700), 0);
            add(folder.get(), name.c_str());
            folder = FileDescriptor(
                ::openat(folder.get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        }
    }
    rlimit before = {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit lowered = {160, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &lowered), 0);
    for (const unsigned workers : {1U, 2U, 8U}) {
        EXPECT_EQ(measure(root.path(), {"item"}, workers).at(0).first, expected) << workers;
    }
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
    // Too deep for what removes the other temporary folders.
    EXPECT_EQ(std::system(("rm -rf '" + root.path("item") + "'").c_str()), 0);
}

} // namespace CleanCoreTests
