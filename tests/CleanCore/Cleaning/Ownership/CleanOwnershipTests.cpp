#include "tests/Support/CleanableHome.h"

#include <gmock/gmock.h>
#include <system_error>
#include <unistd.h>

namespace CleanCoreTests {

using namespace CleanCore;

namespace {

constexpr uid_t homeOwner = 1000;
constexpr uid_t somebody = 1001;

void give(const TemporaryFolder& folder, const std::string& relative, uid_t owner)
{
    if (::lchown(folder.path(relative).c_str(), owner, owner) != 0) {
        throw std::system_error(errno, std::generic_category(), relative);
    }
}

/// A home that belongs to another user than the one who cleans it, who is root.
struct OwnedHome : CleanableHome
{
    OwnedHome() { give(folder, "", homeOwner); }
    void make(const std::string& relative, uid_t owner) const
    {
        folder.makeFile(relative);
        give(folder, relative, owner);
    }
};

} // namespace

TEST(CleaningOwnership, DecidesWhoseEntriesGo)
{
    const OwnedHome home;
    home.make(".cache/mine", homeOwner);
    home.make(".cache/theirs", somebody);
    home.make(".cache/root's", 0);
    home.folder.makeLink(".cache/link", "mine");
    EXPECT_EQ(home.outcomeOf(".cache/link"), "failed");
    give(home.folder, ".cache/link", homeOwner);
    EXPECT_EQ(home.outcomeOf(".cache/link"), "removed 0");
    EXPECT_EQ(home.outcomeOf(".cache/mine"), "removed all");
    EXPECT_EQ(home.outcomeOf(".cache/theirs"), "failed");
    EXPECT_EQ(home.outcomeOf(".cache/root's"), "failed");
    EXPECT_TRUE(home.folder.has(".cache/theirs"));
    EXPECT_TRUE(home.folder.has(".cache/root's"));
}

TEST(CleaningOwnership, OfATrashRecordDecidesWhetherItGoesAlong)
{
    const OwnedHome home;
    for (const auto& [name, owner] :
         {std::pair("mine", homeOwner), std::pair("theirs", somebody)}) {
        const std::string trash = ".local/share/Trash";
        home.make(trash + "/files/" + name, homeOwner);
        home.make(trash + "/info/" + name + ".trashinfo", owner);
        EXPECT_EQ(home.outcomeOf(trash + "/files/" + name, {"~/.local/share/Trash/files"}),
                  "removed all");
        EXPECT_EQ(home.folder.has(trash + "/info/" + name + ".trashinfo"), owner != homeOwner);
    }
}

} // namespace CleanCoreTests
