#include "CleanCore/CloudDrive/ICloudEvictor.h"
#include "CleanCore/CloudDrive/TreeCount.h"
#include "CleanCore/FileSystem/LinuxFileManager.h"
#include "CleanCore/Startup/HomeEnvironment.h"
#include "CleanCore/Support/TaskPool.h"
#include "tests/Support/CloudFolders.h"

#include <atomic>
#include <chrono>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <sys/stat.h>

namespace CleanCoreTests {
namespace {

using CleanCore::CloudRefusal;
using CleanCore::ICloudAppBundle;
using CleanCore::ICloudEvictor;
using CleanCore::ICloudItem;
using CleanCore::LinuxFileManager;
using CleanCore::UserFolders;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace fs = std::filesystem;

constexpr auto distantDeadline = ICloudEvictor::Deadline::max();

std::int64_t allocated(const std::string& path)
{
    return statusOf(path).st_blocks * 512;
}

/// A disk and a cloud drive: remembers what was asked for, and empties the free space meanwhile if
/// told to.
class ScriptedFileManager : public LinuxFileManager, public CleanCore::CloudDrive
{
public:
    explicit ScriptedFileManager(const std::string& home)
        : LinuxFileManager(UserFolders::confinedTo(home), home, nullptr)
    {
    }

    std::vector<CloudRefusal> fetch(const std::string& /*path*/) const override { return {}; }

    std::vector<CloudRefusal> release(const std::string& path) const override
    {
        requests.push_back(path);
        free += growthPerRequest;
        if (emptiesFiles) {
            for (const auto& entry : fs::recursive_directory_iterator(path)) {
                const bool isKept = entry.path().string().find("Kept.app") != std::string::npos;
                if (entry.is_regular_file() && !isKept) {
                    const auto length = entry.file_size();
                    fs::resize_file(entry.path(), 0);
                    fs::resize_file(entry.path(), length);
                }
            }
        }
        return refuses ? std::vector<CloudRefusal>{{path, {}}} : std::vector<CloudRefusal>();
    }

    std::optional<std::int64_t> availableCapacity(const std::string&) const override
    {
        return knowsFreeSpace ? std::optional(free) : std::nullopt;
    }

    mutable std::vector<std::string> requests;
    mutable std::int64_t free = 1'000'000;
    std::int64_t growthPerRequest = 0;
    bool refuses = false;
    bool emptiesFiles = false;
    bool knowsFreeSpace = true;
};

class ICloudEvictorTests : public testing::Test
{
protected:
    ICloudEvictor evictor(ICloudEvictor::Clock clock = std::chrono::steady_clock::now) const
    {
        return {folders.container, files, files, nullptr, std::move(clock)};
    }
    ICloudItem measured(std::string_view name) const
    {
        return evictor().measureChild(folders.local(name)).item;
    }
    void makeFile(std::string_view name, std::size_t length) const
    {
        folders.home.makeFile("drive/" + std::string(name), bytes(length));
    }
    void makeEmptyFiles(const std::string& folder, int count) const
    {
        for (int i = 0; i < count; ++i) {
            folders.home.makeFile("drive/" + folder + "/" + std::to_string(i), "");
        }
    }

    CloudFolders folders;
    std::shared_ptr<ScriptedFileManager> files =
        std::make_shared<ScriptedFileManager>(folders.home.path());
};

TEST_F(ICloudEvictorTests, listsFilesAndFoldersButNothingHidden)
{
    EXPECT_THAT(evictor().topLevelChildren(), IsEmpty());
    EXPECT_THAT(evictor().listLocalCopies(), IsEmpty());
    makeFile(".hidden", 10);
    makeFile("b", 10);
    makeFile("a folder/.hidden", 10);
    makeFile("\xff\n", 10);
    EXPECT_THAT(
        evictor().topLevelChildren(),
        ElementsAre(folders.local("a folder"), folders.local("b"), folders.local("\xff\n")));
    EXPECT_EQ(measured("a folder").fileCount, 1);

    folders.home.setMode("drive", 0);
    EXPECT_THAT(evictor().topLevelChildren(), IsEmpty());
}

TEST_F(ICloudEvictorTests, measuresFilesLinksFoldersAndWhatIsOnlyInTheCloud)
{
    makeFile("file", 5000);
    makeFile("folder/one", 5000);
    makeFile("folder/sub/two", 9000);
    folders.home.makeLink("drive/folder/link", "one");
    folders.home.makeLink("drive/folder/link to folder", "sub");
    folders.home.makeLink("drive/link", "folder");
    folders.makeCloudOnly("cloud/one", bytes(5000));
    folders.makeCloudOnly("cloud/two", bytes(5000));

    EXPECT_EQ(measured("file"),
              (ICloudItem{folders.local("file"), allocated(folders.local("file")), 1, {}}));
    EXPECT_EQ(measured("folder"), (ICloudItem{folders.local("folder"),
                                              allocated(folders.local("folder/one")) +
                                                  allocated(folders.local("folder/sub/two")),
                                              2,
                                              {}}));
    EXPECT_EQ(measured("link"), (ICloudItem{folders.local("link"), 0, 0, {}}));
    EXPECT_EQ(measured("none"), (ICloudItem{folders.local("none"), 0, 0, {}}));
    EXPECT_EQ(measured("cloud"), (ICloudItem{folders.local("cloud"), 0, 2, {}}));

    folders.home.setMode("drive/folder/sub", 0);
    EXPECT_EQ(measured("folder").fileCount, 1) << "what cannot be read is passed over";
    folders.home.setMode("drive/folder", 0);
    EXPECT_EQ(measured("folder"), (ICloudItem{folders.local("folder"), 0, 0, {}}));
}

TEST_F(ICloudEvictorTests, findsTheOutermostDownloadedBundles)
{
    makeFile("Tools/Outer.app/Contents/binary", 9000);
    makeFile("Tools/Outer.app/Inner.app/helper", 5000);
    folders.makeCloudOnly("Tools/Outer.app/Contents/manual", bytes(5000));
    folders.makeCloudOnly("Tools/Absent.app/binary", bytes(5000));
    makeFile("Tools/Report.app.old/data", 5000);
    makeFile("Tools/Notes.APP/data", 5000);
    makeFile("Tools/.app/data", 5000);
    makeFile("Tools/Outer.app too/data", 5000);
    makeFile("Tools/file.app", 5000);
    makeFile("Tools/sub/\xff.app/binary", 5000);

    const ICloudItem item = measured("Tools");
    EXPECT_EQ(item.fileCount, 10);
    ASSERT_EQ(item.apps.size(), 2U);
    const bool isOuterFirst = item.apps[0].fileCount == 3;
    const ICloudAppBundle& outer = item.apps[isOuterFirst ? 0 : 1];
    const ICloudAppBundle& other = item.apps[isOuterFirst ? 1 : 0];
    EXPECT_EQ(outer.path, folders.local("Tools/Outer.app"));
    EXPECT_EQ(outer.fileCount, 3);
    EXPECT_EQ(outer.localBytes, allocated(outer.path + "/Contents/binary") +
                                    allocated(outer.path + "/Inner.app/helper"));
    EXPECT_THAT(outer.probePath,
                testing::AnyOf(outer.path + "/Contents/binary", outer.path + "/Inner.app/helper"));
    const std::string otherPath = folders.local("Tools/sub/\xff.app");
    EXPECT_EQ(other, (ICloudAppBundle{otherPath, allocated(otherPath + "/binary"), 1,
                                      otherPath + "/binary"}));
    EXPECT_EQ(item.releasableBytes(), item.localBytes - outer.localBytes - other.localBytes);
    EXPECT_EQ(item.releasableFileCount(), 6);
}

TEST(TreeCountTest, figuresBeyondTheLargestStayAtIt)
{
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    const CleanCore::EntryAttributes folder{CleanCore::EntryKind::folder, 0};
    const CleanCore::EntryAttributes file{CleanCore::EntryKind::file, most / 2 + 1};
    CleanCore::TreeCount count;
    count.add({"/drive/x/A.app", folder});
    count.add({"/drive/x/A.app/one", file});
    count.add({"/drive/x/A.app/two", file});
    count.add({"/drive/x/B.app", folder});
    count.add({"/drive/x/B.app/one", file});
    count.closeBundle();
    EXPECT_EQ(count.bytes, most);
    ASSERT_EQ(count.apps.size(), 2U);
    EXPECT_EQ(count.apps[0].localBytes, most);
    const ICloudItem item{"/drive/x", count.bytes, count.files, count.apps};
    EXPECT_EQ(item.appBytes(), most);
    EXPECT_EQ(item.releasableBytes(), 0);
}

TEST_F(ICloudEvictorTests, theDeadlineIsLookedAtBeforeAFolderAndEvery256Files)
{
    makeFile("file", 5000);
    makeEmptyFiles("folder", 600);
    const ICloudEvictor::Deadline deadline{};
    struct Case
    {
        int readingsInTime;
        std::int64_t files;
        bool timedOut;
    };
    for (const Case& c :
         {Case{0, 0, true}, Case{1, 256, true}, Case{2, 512, true}, Case{3, 600, false}}) {
        int readings = 0;
        std::vector<std::int64_t> reports;
        const auto late = evictor([&] {
            return deadline + std::chrono::nanoseconds(readings++ < c.readingsInTime ? 0 : 1);
        });
        const auto result =
            late.measureChild(folders.local("folder"), deadline,
                              [&](std::int64_t count, std::int64_t) { reports.push_back(count); });
        EXPECT_EQ(result.item.fileCount, c.files);
        EXPECT_EQ(result.timedOut, c.timedOut);
        EXPECT_EQ(reports.size(), c.timedOut ? 0U : 1U) << "nothing is reported after a timeout";

        readings = 0;
        EXPECT_FALSE(late.measureChild(folders.local("file"), deadline).timedOut);
        EXPECT_EQ(readings, 0) << "a file never times out";
    }
}

TEST_F(ICloudEvictorTests, aTimeoutClosesTheOpenBundle)
{
    makeFile("folder/Big.app/first", 5000);
    makeEmptyFiles("folder/Big.app", 300);
    int readings = 0;
    const ICloudEvictor::Deadline deadline{};
    const auto late = evictor([&] { return deadline + std::chrono::nanoseconds(readings++); });
    const auto result = late.measureChild(folders.local("folder"), deadline);
    EXPECT_TRUE(result.timedOut);
    EXPECT_EQ(result.item.fileCount, 256);
    // The one file that holds bytes may come after the 256th.
    EXPECT_EQ(result.item.apps.empty(), result.item.localBytes == 0);
}

TEST_F(ICloudEvictorTests, reportsProgressEvery2000FilesAndOnceAtTheEnd)
{
    makeEmptyFiles("folder", 2000);
    makeFile("file", 5000);
    std::vector<std::pair<std::int64_t, std::int64_t>> reports;
    const auto report = [&](std::int64_t count, std::int64_t size) {
        reports.emplace_back(count, size);
    };
    static_cast<void>(evictor().measureChild(folders.local("folder"), distantDeadline, report));
    EXPECT_THAT(reports, ElementsAre(Pair(2000, 0), Pair(2000, 0)));
    reports.clear();
    static_cast<void>(evictor().measureChild(folders.local("file"), distantDeadline, report));
    EXPECT_THAT(reports, IsEmpty());
    folders.home.makeFolder("drive/empty");
    static_cast<void>(evictor().measureChild(folders.local("empty"), distantDeadline, report));
    EXPECT_THAT(reports, ElementsAre(Pair(0, 0)));
}

TEST_F(ICloudEvictorTests, listsWhatIsDownloadedLargestFirstWithAndWithoutAPool)
{
    makeFile("a small", 5000);
    makeFile("b large/one", 50'000);
    makeFile("b large/two", 50'000);
    makeFile("c small", 5000);
    folders.makeCloudOnly("d cloud/one", bytes(5000));
    const auto items = evictor().listLocalCopies();
    ASSERT_EQ(items.size(), 3U);
    EXPECT_EQ(items[0].path, folders.local("b large"));
    EXPECT_EQ(items[1].path, folders.local("a small"));
    EXPECT_EQ(items[2].path, folders.local("c small"));

    const ICloudEvictor parallel(folders.container, files, files,
                                 std::make_shared<CleanCore::TaskPool>(4));
    EXPECT_EQ(parallel.listLocalCopies(), items);
}

TEST_F(ICloudEvictorTests, asksForEachItemInOrderAfterItsProgress)
{
    const auto none = evictor().evict({}, [](auto, auto, const auto&) { FAIL(); });
    EXPECT_EQ(none, ICloudEvictor::EvictReport());

    std::vector<ICloudItem> items;
    for (const char* name : {"c", "a", "b"}) {
        makeFile(name, 5000);
        items.push_back(measured(name));
    }
    files->growthPerRequest = 100;
    files->refuses = true;
    std::vector<std::string> seen;
    const auto report = evictor().evict(
        items, [&](std::int64_t index, std::int64_t total, const std::string& path) {
            seen.push_back(std::to_string(index) + "/" + std::to_string(total) + " " + path);
            EXPECT_EQ(files->requests.size(), static_cast<std::size_t>(index - 1));
        });
    const std::string c = folders.local("c");
    const std::string a = folders.local("a");
    const std::string b = folders.local("b");
    EXPECT_THAT(seen, ElementsAre("1/3 " + c, "2/3 " + a, "3/3 " + b));
    EXPECT_THAT(files->requests, ElementsAre(c, a, b));
    EXPECT_THAT(report.released, ElementsAre(c, a, b)) << "refused ones included";
    EXPECT_EQ(report.refused.size(), 3U);
    EXPECT_EQ(report.freedBytes, 300);
}

TEST_F(ICloudEvictorTests, leavesAloneWhatDoesNotLieInTheContainer)
{
    makeFile("inside", 5000);
    folders.home.makeFile("elsewhere/file");
    folders.home.makeFile("drive too/file");
    folders.home.makeFile("mirror/file");
    folders.home.makeLink("drive/link in", "inside");
    folders.home.makeLink("drive/link out", "../elsewhere");
    folders.home.makeLink("drive/link beside", "../drive too");
    const std::string app = folders.home.makeFile("drive too/A.app/binary");
    std::vector<ICloudItem> items;
    for (const std::string& path :
         {folders.local("inside"), folders.local("link in"), folders.local("link out"),
          folders.local("link beside"), folders.home.path("drive too/file"),
          folders.container + "/../mirror/file", folders.local("none")}) {
        items.push_back({path, 1, 1, {{"A.app", 1, 1, app}}});
    }
    const auto report = evictor().evict(items);
    EXPECT_THAT(report.released, ElementsAre(items[0].path, items[1].path, items[6].path));
    EXPECT_THAT(report.blocked,
                ElementsAre(items[2].path, items[3].path, items[4].path, items[5].path));
    EXPECT_EQ(files->requests, report.released) << "by the paths that were given";
    EXPECT_EQ(report.appsStillDownloaded.size(), 3U) << "no blocked item's";
}

TEST_F(ICloudEvictorTests, aContainerBehindALinkHoldsItsEntries)
{
    makeFile("file", 5000);
    folders.home.makeLink("way in", "drive");
    const ICloudEvictor linked(folders.home.path("way in"), files, files);
    const auto report = linked.evict(linked.listLocalCopies());
    EXPECT_THAT(report.released, ElementsAre(folders.home.path("way in/file")));
}

TEST_F(ICloudEvictorTests, tellsWhichBundlesAreStillDownloaded)
{
    makeFile("Tools/Gone.app/binary", 5000);
    makeFile("Tools/Kept.app/binary", 5000);
    makeFile("More/Larger Kept.app/binary", 50'000);
    makeFile("More/Removed.app/binary", 5000);
    const std::vector<ICloudItem> items = {measured("Tools"), measured("More")};
    fs::remove_all(folders.local("More/Removed.app"));
    files->emptiesFiles = true;

    const auto report = evictor().evict(items);
    ASSERT_EQ(report.appsStillDownloaded.size(), 2U);
    EXPECT_EQ(report.appsStillDownloaded[0].path, folders.local("More/Larger Kept.app"));
    EXPECT_EQ(report.appsStillDownloaded[1].path, folders.local("Tools/Kept.app"));
    EXPECT_EQ(report.appsStillBytes(),
              report.appsStillDownloaded[0].localBytes + report.appsStillDownloaded[1].localBytes);
}

TEST_F(ICloudEvictorTests, freedBytesAreNeverNegativeAndNothingWhenUnknown)
{
    makeFile("file", 5000);
    const std::vector<ICloudItem> items = {measured("file")};
    files->growthPerRequest = -5000;
    EXPECT_EQ(evictor().evict(items).freedBytes, 0);
    files->growthPerRequest = 5000;
    files->knowsFreeSpace = false;
    EXPECT_EQ(evictor().evict(items).freedBytes, 0);
}

TEST_F(ICloudEvictorTests, releasesThroughTheCloudDriveOfAConfinedHomeOnly)
{
    folders.makePair("Letters/one", bytes(20'000));
    CleanCore::HomeEnvironment environment;
    environment.home = folders.home.path();
    environment.folders = UserFolders::confinedTo(environment.home);
    for (const bool isConfined : {false, true}) {
        environment.isConfined = isConfined;
        const ICloudEvictor real(folders.container, files,
                                 environment.cloudDrive(folders.container, folders.mirror));
        const auto report = real.evict(real.listLocalCopies());
        EXPECT_THAT(report.released, ElementsAre(folders.local("Letters")));
        EXPECT_EQ(report.refused.empty(), isConfined);
        EXPECT_EQ(real.listLocalCopies().empty(), isConfined);
        EXPECT_EQ(real.measureChild(folders.local("Letters")).item.fileCount, 1);
    }
}

} // namespace
} // namespace CleanCoreTests
