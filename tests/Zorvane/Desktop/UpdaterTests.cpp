#include "Zorvane/Desktop/UpdateFeed.h"
#include "Zorvane/Desktop/UpdaterController.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

using Zorvane::UpdateFeed;
using Zorvane::UpdaterController;

TEST(UpdateFeedTest, TakesOnlyWholeFeedsWithASafeLink)
{
    const auto parses = [](const char* json) { return UpdateFeed::parse(json).has_value(); };
    EXPECT_TRUE(parses(R"({"version":"1.2","notes":"New.","link":"https://example.org/get"})"));
    for (const char* json : {
             "",
             "{",
             R"({"notes":"","link":"https://example.org/"})",
             R"({"version":1.2,"notes":"","link":"https://example.org/"})",
             R"({"version":"new","notes":"","link":"https://example.org/"})",
             R"({"version":"1.2","link":"https://example.org/"})",
             R"({"version":"1.2","notes":""})",
             R"({"version":"1.2","notes":"","link":"http://example.org/"})",
             R"({"version":"1.2","notes":"","link":"file:///bin/sh"})",
             R"({"version":"1.2","notes":"","link":"https:///nowhere"})",
             R"({"version":"1.2","notes":"","link":"javascript:alert"})",
         }) {
        EXPECT_FALSE(parses(json)) << json;
    }
}

TEST(UpdateFeedTest, ComparesVersionsByTheirNumbers)
{
    const struct
    {
        const char* offered;
        const char* installed;
        bool isNewer;
    } cases[] = {
        {"0.2", "0.1.9", true},  {"0.10.0", "0.9.0", true}, {"1", "0.99", true},
        {"0.1.0", "0.1", false}, {"0.1", "0.1.0", false},   {"0.1.0", "0.1.0", false},
        {"0.0.9", "0.1", false},
    };
    for (const auto& [offered, installed, isNewer] : cases) {
        const UpdateFeed feed{QString::fromUtf8(offered), {}, {}};
        EXPECT_EQ(feed.isNewerThan(QString::fromUtf8(installed)), isNewer)
            << offered << " over " << installed;
    }
}

TEST(UpdaterControllerTest, ChecksOnlyWhereASafeFeedIsConfigured)
{
    for (const char* feed : {"", "http://example.org/feed.json", "file:///etc/passwd", "::"}) {
        UpdaterController updater(QUrl(QString::fromUtf8(feed)), QStringLiteral("0.1"));
        EXPECT_FALSE(updater.canCheckForUpdates()) << feed;
        updater.checkForUpdates();
        EXPECT_FALSE(updater.isShown()) << feed;
    }
}

TEST(UpdaterControllerTest, SaysSoWhenTheFeedCannotBeReached)
{
    // Nobody listens at this port of this machine.
    UpdaterController updater(QUrl(QStringLiteral("https://127.0.0.1:1/feed.json")),
                              QStringLiteral("0.1"));
    ASSERT_TRUE(updater.canCheckForUpdates());
    updater.checkForUpdates();
    EXPECT_TRUE(updater.isShown());
    EXPECT_TRUE(updater.isChecking());
    EXPECT_FALSE(updater.canCheckForUpdates());
    waitUntil([&] { return !updater.isChecking(); });
    EXPECT_FALSE(updater.offersUpdate());
    EXPECT_TRUE(updater.message().contains(QStringLiteral("failed")));
    updater.dismiss();
    EXPECT_FALSE(updater.isShown());

    updater.checkForUpdates();
    updater.dismiss();
    EXPECT_FALSE(updater.isChecking());
    EXPECT_TRUE(updater.canCheckForUpdates());
}

} // namespace
} // namespace ZorvaneTests
