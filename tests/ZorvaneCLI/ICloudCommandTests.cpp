#include "CleanCore/FileSystem/LinuxFileManager.h"
#include "CleanCore/Startup/HomeEnvironment.h"
#include "CleanCore/Support/TaskPool.h"
#include "ZorvaneCLI/ICloudCommand.h"
#include "tests/Support/CloudFolders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>

namespace CleanCoreTests {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using ZorvaneCLI::CommandError;
using ZorvaneCLI::ExitStatus;
using ZorvaneCLI::ICloudAction;

/// Takes what is written to a stream.
class Captured
{
public:
    explicit Captured(std::ostream& stream)
        : m_stream(stream), m_original(stream.rdbuf(m_text.rdbuf()))
    {
    }
    Captured(const Captured&) = delete;
    Captured& operator=(const Captured&) = delete;
    ~Captured() { m_stream.rdbuf(m_original); }
    [[nodiscard]] std::string text() const { return m_text.str(); }

private:
    std::ostream& m_stream;
    std::ostringstream m_text;
    std::streambuf* m_original;
};

struct Result
{
    ExitStatus status = ExitStatus::done;
    std::string output;
    std::string errors;
};

class ICloudCommandTests : public testing::Test
{
protected:
    ICloudCommandTests()
    {
        environment.home = folders.home.path();
        environment.isConfined = true;
        environment.folders = CleanCore::UserFolders::confinedTo(environment.home);
        environment.pool = std::make_shared<CleanCore::TaskPool>(2);
        environment.fileManager = std::make_shared<CleanCore::LinuxFileManager>(
            environment.folders, environment.home, environment.pool);
        options.container = folders.container;
        options.mirror = folders.mirror;
        options.json = true;
    }

    Result run(ICloudAction action, std::vector<std::string> paths = {})
    {
        options.action = action;
        options.paths = std::move(paths);
        const Captured output(std::cout);
        const Captured errors(std::cerr);
        const ExitStatus status = runICloud(options, environment, stop.get_token());
        return {status, output.text(), errors.text()};
    }

    CloudFolders folders;
    CleanCore::HomeEnvironment environment;
    ZorvaneCLI::ICloudOptions options;
    std::stop_source stop;
};

TEST_F(ICloudCommandTests, listReleaseListFetchListComesBackToTheFirstFigures)
{
    folders.makePair("Letters/one", bytes(20'000));
    folders.makePair("Letters/Pad.app/binary", bytes(9000));
    folders.makePair("note", bytes(5000));
    const Result first = run(ICloudAction::list);
    EXPECT_EQ(first.status, ExitStatus::done);
    const json items = json::parse(first.output)["items"];
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0]["path"], folders.local("Letters"));
    EXPECT_EQ(items[0]["localBytes"], 32'768);
    EXPECT_EQ(items[0]["releasableBytes"], 20'480);
    EXPECT_EQ(items[0]["releasableFileCount"], 1);
    EXPECT_EQ(items[0]["apps"][0]["probePath"], folders.local("Letters/Pad.app/binary"));
    EXPECT_EQ(items[0]["timedOut"], false);

    const Result release = run(ICloudAction::release, {folders.local("Letters")});
    EXPECT_EQ(release.status, ExitStatus::done);
    const json report = json::parse(release.output);
    EXPECT_EQ(report["released"], json::array({folders.local("Letters")}));
    EXPECT_TRUE(report["refused"].empty());
    EXPECT_TRUE(report["blocked"].empty());
    EXPECT_EQ(report["appsStillDownloaded"][0]["localBytes"], 12'288);
    EXPECT_EQ(
        json::parse(
            run(ICloudAction::list, {folders.local("Letters")}).output)["items"][0]["localBytes"],
        12'288);

    const Result fetch = run(ICloudAction::fetch, {folders.local("Letters")});
    EXPECT_EQ(fetch.status, ExitStatus::done);
    EXPECT_EQ(json::parse(fetch.output)["fetched"], json::array({folders.local("Letters")}));
    EXPECT_EQ(run(ICloudAction::list).output, first.output);
}

TEST_F(ICloudCommandTests, aRefusalIsToldAndMakesTheStatus1)
{
    folders.makePair("file\n", bytes(9000));
    appendTo(folders.local("file\n"), "more");
    const std::string path = folders.local("file\n");
    const Result asJson = run(ICloudAction::release, {path, path});
    EXPECT_EQ(asJson.status, ExitStatus::incomplete);
    const json report = json::parse(asJson.output);
    EXPECT_EQ(report["released"], json::array({path}));
    EXPECT_EQ(report["refused"][0]["path"], path);
    EXPECT_EQ(report["refused"][0]["reason"], "the mirror's copy differs");

    options.json = false;
    const Result asText = run(ICloudAction::release, {path});
    EXPECT_EQ(asText.status, ExitStatus::incomplete);
    EXPECT_THAT(asText.errors, HasSubstr("file\\n: the mirror's copy differs"));

    options.mirror.reset();
    EXPECT_THAT(run(ICloudAction::release, {path}).errors, HasSubstr("no mirror"));
    environment.isConfined = false;
    EXPECT_THAT(run(ICloudAction::fetch, {path}).errors, HasSubstr("only in another home"));
}

TEST_F(ICloudCommandTests, onlyListedPathsAreTaken)
{
    folders.makePair("folder/file", bytes(9000));
    folders.makePair(".hidden", bytes(9000));
    const std::string before = snapshot(folders.home.path());
    for (const std::string& path :
         {std::string(), folders.local("folder/file"), folders.local("folder/"),
          folders.local(".hidden"), folders.container, folders.mirror + "/folder",
          folders.container + "/./folder", std::string("folder")}) {
        for (const ICloudAction action :
             {ICloudAction::list, ICloudAction::release, ICloudAction::fetch}) {
            try {
                static_cast<void>(run(action, {folders.local("folder"), path}));
                FAIL() << path;
            } catch (const CommandError& error) {
                EXPECT_EQ(error.status(), ExitStatus::wrongUsage);
            }
        }
    }
    EXPECT_THROW(static_cast<void>(run(ICloudAction::release)), CommandError);
    EXPECT_EQ(snapshot(folders.home.path()), before);
}

TEST_F(ICloudCommandTests, aPathThatIsNotUtf8IsShownAndTakenExactly)
{
    folders.makePair("\xff", bytes(9000));
    const json item = json::parse(run(ICloudAction::list).output)["items"][0];
    EXPECT_EQ(item["path"], folders.local("\xEF\xBF\xBD"));
    EXPECT_TRUE(item.contains("pathBytes"));
    const Result release = run(ICloudAction::release, {folders.local("\xff")});
    EXPECT_EQ(release.status, ExitStatus::done);
    EXPECT_EQ(json::parse(release.output)["released"][0]["pathBytes"], item["pathBytes"]);
}

TEST_F(ICloudCommandTests, theContainerIsByDefaultTheOneInTheHomeAndMayBeMissing)
{
    options.container.reset();
    const Result missing = run(ICloudAction::list);
    EXPECT_EQ(missing.status, ExitStatus::incomplete);
    EXPECT_TRUE(json::parse(missing.output)["items"].empty());
    folders.home.makeFile("Library/Mobile Documents/com~apple~CloudDocs/note");
    const Result found = run(ICloudAction::list);
    EXPECT_EQ(found.status, ExitStatus::done);
    EXPECT_EQ(json::parse(found.output)["items"].size(), 1U);

    options.container = folders.home.path() + "/Library/Mobile Documents/com~apple~CloudDocs/note";
    const Result file = run(ICloudAction::list);
    EXPECT_EQ(file.status, ExitStatus::incomplete);
    EXPECT_THAT(file.errors, HasSubstr("there is no cloud drive"));
}

TEST_F(ICloudCommandTests, anInterruptionLeavesWhatWasNotBegun)
{
    folders.makePair("Letters/one", bytes(20'000));
    const std::string before = snapshot(folders.home.path());
    stop.request_stop();
    for (const ICloudAction action :
         {ICloudAction::list, ICloudAction::release, ICloudAction::fetch}) {
        const Result result = run(action, {folders.local("Letters")});
        EXPECT_EQ(result.status, ExitStatus::interrupted);
        const json document = json::parse(result.output);
        EXPECT_TRUE(document.value("released", json::array()).empty());
        EXPECT_TRUE(document.value("fetched", json::array()).empty());
    }
    EXPECT_EQ(snapshot(folders.home.path()), before);
}

} // namespace
} // namespace CleanCoreTests
