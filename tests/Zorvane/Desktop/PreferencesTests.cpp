#include "Zorvane/Desktop/Preferences.h"
#include "tests/Support/TemporaryFolder.h"

#include <QFile>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace ZorvaneTests {
namespace {

using CleanCoreTests::TemporaryFolder;
using Zorvane::Preferences;

QString in(const TemporaryFolder& folder, const char* name)
{
    return QString::fromStdString(folder.path(name));
}

TEST(PreferencesTest, KeepsTheVersionExactlyAndMakesItsFolder)
{
    const TemporaryFolder folder;
    const Preferences preferences(in(folder, "new/folder/preferences.ini"));
    EXPECT_FALSE(preferences.acceptedTermsVersion());
    for (const char* version : {"0.1", "0.1 ", "a=b;c,\"d\"", "1.0"}) {
        preferences.storeAcceptedTerms(QString::fromUtf8(version), QDateTime::currentDateTime());
        EXPECT_EQ(preferences.acceptedTermsVersion(), QString::fromUtf8(version));
    }
}

TEST(PreferencesTest, ReplacesTheFileInsteadOfWritingIntoIt)
{
    const TemporaryFolder folder;
    const Preferences preferences(in(folder, "preferences.ini"));
    preferences.storeAcceptedTerms(QStringLiteral("1"), QDateTime::currentDateTime());
    // Whoever has the old file open keeps the old values, whole.
    ASSERT_EQ(::link(folder.path("preferences.ini").c_str(), folder.path("old.ini").c_str()), 0);
    preferences.storeAcceptedTerms(QStringLiteral("2"), QDateTime::currentDateTime());
    EXPECT_EQ(Preferences(in(folder, "old.ini")).acceptedTermsVersion(), QStringLiteral("1"));
    EXPECT_EQ(preferences.acceptedTermsVersion(), QStringLiteral("2"));
}

TEST(PreferencesTest, AFileThatIsNoneOfOursCountsAsEmpty)
{
    const TemporaryFolder folder;
    folder.makeFile("garbage.ini", std::string("\0\xFF[[[\n=\n", 8));
    EXPECT_FALSE(Preferences(in(folder, "garbage.ini")).acceptedTermsVersion());
    folder.makeFolder("folder.ini");
    EXPECT_FALSE(Preferences(in(folder, "folder.ini")).acceptedTermsVersion());
}

TEST(PreferencesTest, AFileThatCannotBeReplacedStaysAsItIs)
{
    const TemporaryFolder folder;
    const Preferences preferences(in(folder, "locked/preferences.ini"));
    preferences.storeAcceptedTerms(QStringLiteral("1"), QDateTime::currentDateTime());
    const std::string before = CleanCoreTests::snapshot(folder.path("locked"));
    folder.setMode("locked", 0500);
    preferences.storeAcceptedTerms(QStringLiteral("2"), QDateTime::currentDateTime());
    EXPECT_EQ(CleanCoreTests::snapshot(folder.path("locked")), before);
}

} // namespace
} // namespace ZorvaneTests
