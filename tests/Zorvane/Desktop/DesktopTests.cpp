#include "Zorvane/Desktop/ByteCountFormatter.h"
#include "Zorvane/Desktop/DisplayText.h"
#include "Zorvane/Desktop/Preferences.h"
#include "Zorvane/Desktop/StyledText.h"
#include "Zorvane/Desktop/UpdateFeed.h"
#include "Zorvane/Desktop/UpdaterController.h"
#include "Zorvane/Desktop/UserAccount.h"
#include "tests/Support/TemporaryFolder.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace ZorvaneTests {
namespace {

using Zorvane::Preferences;
using Zorvane::UpdateFeed;
using Zorvane::UpdaterController;

TEST(Desktop, Texts)
{
    const Zorvane::ByteCountFormatter german(QLocale(QLocale::German, QLocale::Germany));
    const auto person = [](const char* name) {
        return Zorvane::UserAccount{QString::fromUtf8(name), QStringLiteral("login")}.userName();
    };
    const auto styled = [](const char* text) {
        return Zorvane::styledText(QString::fromUtf8(text));
    };
    const std::pair<QString, const char*> cases[] = {
        {german.string(1'234'567), "1,2 MB"},
        {german.count(1'234'567), "1234567"},
        {Zorvane::displayName("/a/b\n/"), "b⟨U+000A⟩"},
        {styled("a **b** c **d**"), "a <b>b</b> c <b>d</b>"},
        {styled("<i>&**x**"), "&lt;i&gt;&amp;<b>x</b>"},
        {styled("**a** b** c"), "<b>a</b> b c"},
        {Zorvane::plainText(QStringLiteral("**a** <b>")), "a <b>"},
        {person("Ada Lovelace"), "Ada"},
        {person("Ada"), "Ada"},
        {person(" Ada"), ""},
        {person(""), "login"},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(text.toStdString(), expected);
    }
}

TEST(Desktop, PreferencesAreReplacedWholeOrNotAtAll)
{
    const CleanCoreTests::TemporaryFolder folder;
    const auto in = [&](const char* name) {
        return Preferences(QString::fromStdString(folder.path(name)));
    };
    const Preferences preferences = in("new/preferences.ini");
    EXPECT_FALSE(preferences.acceptedTermsVersion());
    for (const char* version : {"0.1 ", "a=b;c,\"d\"", "1.0"}) {
        preferences.storeAcceptedTerms(QString::fromUtf8(version), QDateTime::currentDateTime());
        EXPECT_EQ(preferences.acceptedTermsVersion(), QString::fromUtf8(version));
    }
    // Whoever has the old file open keeps the old values, whole.
    ASSERT_EQ(::link(folder.path("new/preferences.ini").c_str(), folder.path("old.ini").c_str()),
              0);
    preferences.storeAcceptedTerms(QStringLiteral("2"), {});
    EXPECT_EQ(in("old.ini").acceptedTermsVersion(), QStringLiteral("1.0"));
    const std::string before = CleanCoreTests::snapshot(folder.path("new"));
    folder.setMode("new", 0500);
    preferences.storeAcceptedTerms(QStringLiteral("3"), {});
    EXPECT_EQ(CleanCoreTests::snapshot(folder.path("new")), before);
    folder.makeFile("garbage.ini", std::string("\0\xFF[[[\n=\n", 8));
    EXPECT_FALSE(in("garbage.ini").acceptedTermsVersion());
}

TEST(Desktop, UpdateFeedsAreWholeSafeAndNewer)
{
    const struct
    {
        const char* version;
        const char* link;
        const char* installed;
        bool isNewer;
    } cases[] = {
        {R"("0.2")", "https://example.org/get", "0.1.9", true},
        {R"("0.10.0")", "https://example.org/get", "0.9.0", true},
        {R"("0.1.0")", "https://example.org/get", "0.1", false},
        {R"("0.1")", "https://example.org/get", "0.1.0", false},
        {"1.2", "https://example.org/get", "0", false},
        {R"("new")", "https://example.org/get", "0", false},
        {R"("1.2")", "http://example.org/get", "0", false},
        {R"("1.2")", "file:///bin/sh", "0", false},
        {R"("1.2")", "https:///nowhere", "0", false},
        {R"("1.2")", "javascript:alert", "0", false},
    };
    for (const auto& [version, link, installed, isNewer] : cases) {
        const auto feed = UpdateFeed::parse(QByteArray(R"({"notes": "", "version": )") + version +
                                            R"(, "link": ")" + link + "\"}");
        EXPECT_EQ(feed && feed->isNewerThan(QString::fromUtf8(installed)), isNewer)
            << version << link;
    }
    for (const char* part : {"", "{", R"({"version": "1.2", "link": "https://example.org/"})"}) {
        EXPECT_FALSE(UpdateFeed::parse(part)) << part;
    }
}

TEST(Desktop, ChecksForUpdatesOnlyAtASafeFeed)
{
    for (const char* feed : {"", "http://example.org/feed.json", "file:///etc/passwd", "::"}) {
        UpdaterController updater(QUrl(QString::fromUtf8(feed)), QStringLiteral("0.1"));
        updater.checkForUpdates();
        EXPECT_FALSE(updater.canCheckForUpdates() || updater.isShown()) << feed;
    }
    // Nobody listens at this port of this machine.
    UpdaterController updater(QUrl(QStringLiteral("https://127.0.0.1:1/feed.json")),
                              QStringLiteral("0.1"));
    updater.checkForUpdates();
    EXPECT_TRUE(updater.isShown() && updater.isChecking() && !updater.canCheckForUpdates());
    waitUntil([&] { return !updater.isChecking(); });
    EXPECT_TRUE(updater.message().contains(QStringLiteral("failed")) && !updater.offersUpdate());
    updater.checkForUpdates();
    updater.dismiss();
    EXPECT_TRUE(!updater.isShown() && !updater.isChecking() && updater.canCheckForUpdates());
}

} // namespace
} // namespace ZorvaneTests
