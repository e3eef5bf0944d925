#include "Zorvane/Desktop/ByteCountFormatter.h"
#include "Zorvane/Desktop/DisplayText.h"
#include "Zorvane/Desktop/StyledText.h"
#include "Zorvane/Desktop/UpdateFeed.h"
#include "Zorvane/Desktop/UpdaterController.h"
#include "Zorvane/Desktop/UserAccount.h"
#include "tests/Support/Table.h"

#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

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
        {Zorvane::displayName("/a/b\n/"), "b⟨U+000A⟩"},
        {styled("a **b** c **d**"), "a <b>b</b> c <b>d</b>"},
        {styled("<i>&**x**"), "&lt;i&gt;&amp;<b>x</b>"},
        {styled("**a** b** c"), "<b>a</b> b c"},
        {Zorvane::plainText(QStringLiteral("**a** <b>")), "a <b>"},
        {person("Ada Lovelace"), "Ada"},
        {person(" Ada"), ""},
        {person(""), "login"},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(text.toStdString(), expected);
    }
}

TEST(Desktop, UpdateFeedsAreWholeSafeAndNewer)
{
    for (const auto& row : CleanCoreTests::table(R"(
"0.10.0" | https://example.org/get | 0.9.0 | newer
"0.1.0"  | https://example.org/get | 0.1   | no
"0.1"    | https://example.org/get | 0.1.0 | no
1.2      | https://example.org/get | 0     | no
"new"    | https://example.org/get | 0     | no
"1.2"    | http://example.org/get  | 0     | no
"1.2"    | file:///bin/sh          | 0     | no
"1.2"    | https:///nowhere        | 0     | no
)")) {
        const auto cell = [&](std::size_t i) { return QString::fromStdString(row[i]).trimmed(); };
        const auto feed =
            UpdateFeed::parse(QStringLiteral(R"({"notes": "", "version": %1, "link": "%2"})")
                                  .arg(cell(0), cell(1))
                                  .toUtf8());
        EXPECT_EQ(feed && feed->isNewerThan(cell(2)), row[3] == "newer") << row[0] << row[1];
    }
    for (const char* part : {"", "{", R"({"version": "1.2", "link": "https://example.org/"})"}) {
        EXPECT_FALSE(UpdateFeed::parse(part)) << part;
    }
}

TEST(Desktop, ChecksForUpdatesOnlyAtASafeFeed)
{
    for (const char* feed : {"", "http://example.org/feed.json", "file:///etc/passwd"}) {
        UpdaterController updater(QUrl(QString::fromUtf8(feed)), QStringLiteral("0.1"));
        updater.checkForUpdates();
        EXPECT_FALSE(updater.canCheckForUpdates() || updater.isShown()) << feed;
    }
}

} // namespace
} // namespace ZorvaneTests
