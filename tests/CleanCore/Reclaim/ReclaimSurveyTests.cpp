#include "CleanCore/FileSystem/LinuxFileManager.h"
#include "CleanCore/Reclaim/LinuxVolumeFacts.h"
#include "CleanCore/Reclaim/ReclaimSum.h"
#include "CleanCore/Reclaim/ReclaimSurvey.h"
#include "CleanCore/Reclaim/Shortfall.h"
#include "CleanCore/Support/TaskPool.h"
#include "tests/Support/Table.h"
#include "tests/Support/TemporaryFolder.h"

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>

namespace CleanCoreTests {

using namespace CleanCore;

namespace {

constexpr std::int64_t block = 4096;

/// Files as their names tell, in blocks: "s8+4" is shared and "z8+4" compressed, both from block 8
/// on, 4 blocks long ("sz": both); "p4" is plain, "i" inline; "o" in front: open elsewhere.
class NamedFacts : public LinuxVolumeFacts
{
public:
    VolumeTraits traits(int folder) const override
    {
        VolumeTraits traits = LinuxVolumeFacts::traits(folder);
        traits.allocation = allocation;
        traits.bytesOfRecord = bytesOfRecord;
        return traits;
    }
    void readSpace(int /*folder*/, const char* name, std::int64_t /*allocatedBytes*/,
                   const VolumeTraits& /*traits*/, const std::stop_token& /*stop*/,
                   FileSpace& space) const override
    {
        space = {};
        std::string_view kinds(name, std::string_view(name).find_first_of("0123456789,"));
        space.isTold = allocation != VolumeTraits::Allocation::untold;
        space.isOpenElsewhere = kinds.starts_with('o');
        space.hasInlineData = kinds.ends_with('i');
        unsigned start = 0;
        unsigned length = 0;
        if (std::sscanf(name + kinds.size(), "%u+%u", &start, &length) == 2) {
            space.extents = {{start * std::uint64_t{block}, length * block,
                              kinds.find('s') != kinds.npos, kinds.find('z') != kinds.npos}};
        } else if (kinds.ends_with('p')) {
            space.plainBytes = start * block;
        }
    }
    std::map<FileKey, std::set<std::string>>
    programsUsing(const std::set<FileKey>& files) const override
    {
        return {{*files.begin(), {"editor"}}};
    }

    VolumeTraits::Allocation allocation = VolumeTraits::Allocation::byExtents;
    std::int64_t bytesOfRecord = 0;
};

std::string text(const Reclaim& reclaim)
{
    const auto blocks = [](std::int64_t bytes) { return std::to_string(bytes / block); };
    std::string text = blocks(reclaim.certainBytes) + '-' + blocks(reclaim.possibleBytes);
    for (const ReclaimShare& share : reclaim.causes) {
        text += ' ' + std::string(name(share.cause)) + ':' + blocks(share.bytes);
        for (const std::string& program : share.programs) {
            text += '(' + program + ')';
        }
    }
    return text;
}

struct Home : TemporaryFolder
{
    // Folders there take no blocks of their own.
    Home() : TemporaryFolder("/dev/shm") {}

    Reclaim examine(const std::string& names, std::shared_ptr<const VolumeFacts> facts,
                    std::int64_t recordLimit = 1000) const
    {
        const auto pool = std::make_shared<TaskPool>(3);
        const ReclaimSurvey survey(
            std::make_shared<LinuxFileManager>(UserFolders::confinedTo(path()), path(), pool),
            std::move(facts), pool, recordLimit);
        std::vector<std::string> paths;
        std::ranges::transform(words(names), std::back_inserter(paths),
                               [&](const std::string& name) { return path(name); });
        const std::vector<std::string_view> views(paths.begin(), paths.end());
        ReclaimSum sum;
        for (const ReclaimFindings& findings : survey.examine(views, {})) {
            sum.add(block, findings);
        }
        return sum.result();
    }
};

} // namespace

TEST(ReclaimSurvey, KnowsAChoiceByItsExtentsNamesAndUsers)
{
    for (const auto& row : table(R"(
# tree | chosen | gain in blocks, and why it is not more
a/p2:8k b/p1:4k | a b | 3-3
a/p2:8k | a missing | 2-3 unknown:1
# The same place counts once, a part of it as well; what is shared may stay.
a/s8+4:16k b/s8+4:16k | a | 0-4 sharedExtents:4
a/s8+4:16k b/s8+4:16k | a b | 0-4 sharedExtents:8
a/s8+4:16k b/s10+4:16k c/s20+1:4k | a b c | 0-7 sharedExtents:9
# A compressed extent ends before the next one, and has one block.
a/z8+32:128k b/z10+32:128k c/z40+8:32k | a b c | 3-40 compressed:69
a/z8+32:128k b/s9+1:4k | a b | 1-2 sharedExtents:1 compressed:31
a/z8+32:128k b/z8+16:64k c/z9+1:4k | a b c | 2-2 compressed:47
a/sz8+32:128k b/sz8+32:128k c/z12+1:4k | a b c | 1-5 sharedExtents:64
# Small data is in the records of the file system.
a/i0:100 b/p1:4k | a b | 1-1 inline:1
# A name outside keeps a file; inside, it counts once.
a/p2:8k a/p2x==a/p2 | a | 2-2 otherNames:2
a/p2:8k b/p2x==a/p2 c/p1:4k | a c | 1-1 otherNames:2
a/p2:8k b/p2==a/p2 | a b | 2-2 otherNames:2
a/s8+4:16k b/s8+4==a/s8+4 | a | 0-0 otherNames:4
a/s8+4:16k b/s8+4==a/s8+4 | a b | 0-4 otherNames:4 sharedExtents:4
# The record of an entry in the Trash goes with it, not that of another.
Trash/files/p2:8k Trash/info/p2.trashinfo:4k Trash/info/p3.trashinfo:4k | Trash/files/p2 | 4-4
files/p2:8k info/p2.trashinfo:4k | files/p2 | 2-2
# What is open comes back later, and has its own cause.
a/op2:8k b/p1:4k | a b | 1-3 openFiles:2(editor)
a/oz8+32:128k b/z10+1:4k | a b | 1-3 openFiles:32(editor)
a/op2:8k b/op2==a/op2 | a b | 0-2 otherNames:2 openFiles:2(editor)
)")) {
        const Home home;
        home.make(row[0]);
        EXPECT_EQ(text(home.examine(row[1], std::make_shared<NamedFacts>())), row[2]) << row[0];
    }
}

TEST(ReclaimSurvey, SaysWhatItIsNotToldAndStaysTrueWithoutRoom)
{
    const Home home;
    home.make("a/p2:8k a/p2x==a/p2 b/s8+4:16k b/p2y==a/p2 c/s8+4:16k c/z20+8:32k");
    const auto facts = std::make_shared<NamedFacts>();
    EXPECT_EQ(text(home.examine("a b c", facts)), "3-14 otherNames:4 sharedExtents:8 compressed:7");
    for (std::int64_t room = 0; room < 6; ++room) {
        // Everything that comes back lies in every answer.
        const Reclaim narrow = home.examine("a b c", facts, room);
        EXPECT_LE(narrow.certainBytes, 3 * block) << room;
        EXPECT_GE(narrow.possibleBytes, 14 * block) << room;
    }
    facts->bytesOfRecord = 8 * block;
    EXPECT_EQ(home.examine("a", facts).causes.back().cause, ReclaimCause::unknown);
    facts->allocation = VolumeTraits::Allocation::untold;
    facts->bytesOfRecord = 0;
    EXPECT_EQ(text(home.examine("c", facts)), "0-12 unknown:12");
}

TEST(ReclaimSurvey, FindsOutByItselfWhoHasAFileOpen)
{
    const Home home;
    home.make("a/shut:8k a/open:8k");
    const auto facts = std::make_shared<LinuxVolumeFacts>();
    EXPECT_EQ(text(home.examine("a", facts)), "4-4");
    const FileDescriptor file(::open(home.path("a/open").c_str(), O_RDONLY | O_CLOEXEC));
    EXPECT_EQ(text(home.examine("a", facts)), "2-4 openFiles:2");
    // A lease is not broken: its holder would be sent a signal.
    ASSERT_EQ(::fcntl(file.get(), F_SETSIG, SIGUSR1), 0);
    ASSERT_EQ(::fcntl(file.get(), F_SETLEASE, F_WRLCK), 0);
    EXPECT_EQ(text(home.examine("a", facts)), "2-4 openFiles:2");
}

TEST(Shortfall, IsExplainedByTheCausesAndTheRest)
{
    const Reclaim removed{40, 60, {{ReclaimCause::otherNames, 40}, {ReclaimCause::openFiles, 20}}};
    for (const auto& [gained, causes, unexplained] :
         std::vector<std::tuple<int, std::size_t, int>>{{100, 0, 0},
                                                        {99, 0, 0},
                                                        {98, 1, 0},
                                                        {60, 1, 0},
                                                        {40, 2, 0},
                                                        {39, 2, 0},
                                                        {30, 2, 10}}) {
        const Shortfall shortfall = shortfallOf(100, gained, removed);
        EXPECT_EQ(shortfall.causes.size(), causes) << gained;
        EXPECT_EQ(shortfall.unexplainedBytes, unexplained) << gained;
    }
}

} // namespace CleanCoreTests
