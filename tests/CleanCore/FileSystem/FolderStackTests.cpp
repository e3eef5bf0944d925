#include "CleanCore/FileSystem/Walking/FolderStack.h"

#include "tests/Support/TemporaryFolder.h"

#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>

namespace {

using namespace CleanCore;
using CleanCoreTests::TemporaryFolder;

void push(FolderStack& stack, const std::string& path)
{
    FileDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    EntryStatus status;
    ASSERT_EQ(readStatus(folder.get(), "", status), 0);
    stack.push(std::move(folder), status);
}

std::size_t openFolders(FolderStack& stack)
{
    std::size_t count = 0;
    for (std::size_t i = 0; i < stack.depth(); ++i) {
        count += stack.at(i).folder.isOpen() ? 1 : 0;
    }
    return count;
}

TEST(FolderStack, HoldsAFewDescriptorsAndComesBackToTheSameFolders)
{
    const TemporaryFolder root;
    for (const std::size_t limit : {0U, 2U, 3U, 5U}) {
        FolderStack stack(limit);
        std::string path = root.path();
        push(stack, path);
        for (int i = 0; i < 12; ++i) {
            path += "/d";
            std::filesystem::create_directory(path);
            push(stack, path);
            EXPECT_LE(openFolders(stack), std::max<std::size_t>(limit, 2));
        }
        for (; stack.depth() > 1; path.resize(path.size() - 2)) {
            EntryStatus expected;
            ASSERT_EQ(readStatus(AT_FDCWD, path.c_str(), expected), 0);
            EntryStatus actual;
            ASSERT_EQ(readStatus(stack.top().folder.get(), "", actual), 0);
            EXPECT_EQ(actual.identity, expected.identity);
            ASSERT_TRUE(stack.pop());
            EXPECT_LE(openFolders(stack), std::max<std::size_t>(limit, 2));
        }
        EXPECT_TRUE(stack.pop());
        EXPECT_TRUE(stack.isEmpty());
    }
}

TEST(FolderStack, DoesNotFollowAFolderThatWasMovedMeanwhile)
{
    const TemporaryFolder root;
    root.makeFolder("a/b/c");
    root.makeFolder("elsewhere");
    FolderStack stack(2);
    for (const char* const path : {"", "a", "a/b", "a/b/c"}) {
        push(stack, root.path(path));
    }
    std::filesystem::rename(root.path("a/b/c"), root.path("elsewhere/c"));
    EXPECT_FALSE(stack.pop());
    EXPECT_TRUE(stack.isEmpty());
}

} // namespace
