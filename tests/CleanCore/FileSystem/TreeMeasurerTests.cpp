#include "CleanCore/FileSystem/Walking/TreeMeasurer.h"

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

namespace {

using namespace CleanCore;
using CleanCoreTests::TemporaryFolder;
using Strings = std::vector<std::string>;

constexpr unsigned poolSizes[] = {1, 2, 8};

struct Model
{
    std::int64_t bytes = 0;
    Timestamp newest = distantPast;
    bool operator==(const Model&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Model& model)
{
    return stream << model.bytes << " bytes, newest " << model.newest.time_since_epoch().count();
}

Timestamp modified(const struct stat& status)
{
    return Timestamp(std::chrono::seconds(status.st_mtim.tv_sec) +
                     std::chrono::nanoseconds(status.st_mtim.tv_nsec));
}

/// What is inside a folder, path by path, as slowly and simply as can be.
void addInside(const std::string& folder, Model& model)
{
    DIR* const stream = ::opendir(folder.c_str());
    if (stream == nullptr) {
        return;
    }
    while (const dirent* const entry = ::readdir(stream)) {
        const std::string name = entry->d_name;
        const std::string path = PathText::join(folder, name);
        struct stat status = {};
        if (name == "." || name == ".." || ::lstat(path.c_str(), &status) != 0 ||
            S_ISLNK(status.st_mode)) {
            continue;
        }
        model.bytes += status.st_blocks * 512;
        model.newest = std::max(model.newest, modified(status));
        if (S_ISDIR(status.st_mode)) {
            addInside(path, model);
        }
    }
    ::closedir(stream);
}

Model modelOf(const std::string& path)
{
    struct stat status = {};
    if (::lstat(path.c_str(), &status) != 0) {
        return {};
    }
    Model model{0, modified(status)};
    if (S_ISDIR(status.st_mode)) {
        addInside(path, model);
    } else if (!S_ISLNK(status.st_mode)) {
        model.bytes = status.st_blocks * 512;
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
        models.push_back({entry.sizeBytes, entry.latestModification});
    }
    return models;
}

void expectAsModelled(const std::string& folder, const Strings& names)
{
    for (const unsigned workers : poolSizes) {
        const std::vector<Model> measured = measure(folder, names, workers);
        ASSERT_EQ(measured.size(), names.size());
        for (std::size_t i = 0; i < names.size(); ++i) {
            EXPECT_EQ(measured[i], modelOf(folder + '/' + names[i]))
                << workers << " workers, " << testing::PrintToString(names[i]);
        }
    }
}

class TreeMeasurerOnRandomTrees : public testing::TestWithParam<unsigned>
{
};

TEST_P(TreeMeasurerOnRandomTrees, AgreesWithASimpleWalk)
{
    const TemporaryFolder root;
    Strings names = CleanCoreTests::makeRandomTree(root, GetParam());
    names.insert(names.begin() + 1, "not there");
    expectAsModelled(root.path(), names);
    expectAsModelled(std::filesystem::path(root.path()).parent_path(),
                     {std::filesystem::path(root.path()).filename()});
}

INSTANTIATE_TEST_SUITE_P(Seeds, TreeMeasurerOnRandomTrees, testing::Range(0U, 12U));

TEST(TreeMeasurer, DividesAFlatFolderAmongItsWorkers)
{
    const TemporaryFolder root;
    const std::string file = root.makeFile("file", "content");
    root.makeFolder("flat/inner");
    constexpr int count = 20'000;
    for (int i = 0; i < count; ++i) {
        const std::string name = root.path("flat/a-name-of-some-length-" + std::to_string(i));
        ASSERT_EQ(::link(file.c_str(), name.c_str()), 0);
    }
    root.setTime("file", 2'000'000'000, 1);
    expectAsModelled(root.path(), {"flat"});
    EXPECT_GE(modelOf(root.path("flat")).bytes, count * 512);
}

/// Makes folders inside each other, each with a file, without any path; returns what they take.
std::int64_t makeChain(int start, int levels, const std::string& name)
{
    std::int64_t bytes = 0;
    FileDescriptor folder(::fcntl(start, F_DUPFD_CLOEXEC, 0));
    const auto add = [&](const char* entry) {
        struct stat status = {};
        EXPECT_EQ(::fstatat(folder.get(), entry, &status, AT_SYMLINK_NOFOLLOW), 0);
        bytes += status.st_blocks * 512;
    };
    for (int i = 0; i < levels; ++i) {
        {
            const FileDescriptor file(
                ::openat(folder.get(), "file", O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
            EXPECT_EQ(::write(file.get(), "x", 1), 1);
        }
        add("file");
        EXPECT_EQ(::mkdirat(folder.get(), name.c_str(), 0700), 0);
        add(name.c_str());
        folder = FileDescriptor(
            ::openat(folder.get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    }
    return bytes;
}

/// Holds the process to a number of descriptors.
class DescriptorLimit
{
public:
    explicit DescriptorLimit(rlim_t limit)
    {
        ::getrlimit(RLIMIT_NOFILE, &m_before);
        const rlimit lowered = {limit, m_before.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &lowered);
    }
    DescriptorLimit(const DescriptorLimit&) = delete;
    DescriptorLimit& operator=(const DescriptorLimit&) = delete;
    ~DescriptorLimit() { ::setrlimit(RLIMIT_NOFILE, &m_before); }

private:
    rlimit m_before = {};
};

TEST(TreeMeasurer, GoesDeeperThanPathsAndDescriptorsReach)
{
    const TemporaryFolder root;
    const FileDescriptor top(
        ::open(root.makeFolder("item").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    std::int64_t expected = makeChain(top.get(), 600, std::string(100, 'd'));
    // Chains beside it, so that every worker is deep in one at the same time.
    for (int i = 0; i < 16; ++i) {
        const std::string name = "chain-" + std::to_string(i);
        const std::string path = root.makeFolder("item/" + name);
        const FileDescriptor chain(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        struct stat status = {};
        ASSERT_EQ(::stat(path.c_str(), &status), 0);
        expected += status.st_blocks * 512 + makeChain(chain.get(), 100, "d");
    }
    {
        const DescriptorLimit limit(160);
        for (const unsigned workers : poolSizes) {
            EXPECT_EQ(measure(root.path(), {"item"}, workers).at(0).bytes, expected) << workers;
        }
    }
    // Too deep for what removes the other temporary folders.
    EXPECT_EQ(std::system(("rm -rf '" + root.path("item") + "'").c_str()), 0);
}

TEST(TreeMeasurer, ComesBackWithoutMeasuringOnceItWasStopped)
{
    const TemporaryFolder root;
    CleanCoreTests::makeRandomTree(root, 1);
    std::stop_source stop;
    stop.request_stop();
    const Strings item = {std::filesystem::path(root.path()).filename()};
    for (const unsigned workers : poolSizes) {
        EXPECT_EQ(measure(std::filesystem::path(root.path()).parent_path(), item, workers,
                          stop.get_token()),
                  std::vector<Model>(1));
    }
}

} // namespace
