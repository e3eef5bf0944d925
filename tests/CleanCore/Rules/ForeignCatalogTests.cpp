#include "CleanCore/Rules/ForeignCatalog.h"

#include "CleanCore/Rules/RulesCatalog.h"
#include "tests/Support/ScriptedFileManager.h"

#include <gtest/gtest.h>

namespace {

using namespace CleanCore;

RulesCatalog catalogOf(const std::string& base, RuleKind kind = RuleKind::fileSystem)
{
    CleaningRule harmless;
    harmless.kind = RuleKind::fileSystem;
    harmless.basePaths = {"~/.cache"};
    CleaningRule rule;
    rule.kind = kind;
    rule.basePaths = {base};
    return {1, {harmless, rule}};
}

TEST(ForeignCatalog, RefusesBasesThatHoldMoreThanLeftovers)
{
    CleanCoreTests::ScriptedFileManager files;
    files.links = {{"/home/me", "/data/homes/me"},
                   {"/home/me/.cache", "/data/homes/me/.cache"},
                   {"/home/me/.cache/x", "/data/homes/me/.cache/x"},
                   {"/home/me/innocent-2", "/data/homes/me/innocent-2"},
                   {"/home/me/.local", "/data/elsewhere/local"},
                   {"/data/homes/me/.local", "/data/elsewhere/local"},
                   {"/home/me/innocent", "/data/homes/me"},
                   {"/home/me/x/..", "/data/homes/me"},
                   {"/home/me/dotfiles", "/data/homes/me/.config"},
                   {"/home/me/local-again", "/data/elsewhere/local"},
                   {"/innocent", "/usr/share/doc"}};
    files.folders["/"] = {{"etc", "usr"}, 0};
    files.folders["/etc"] = {};
    files.folders["/usr"] = {};

    const auto isRefused = [&](const char* base) {
        return refusedBase(catalogOf(base), "/home/me", files).has_value();
    };
    for (const char* const base : {"~",
                                   "~/",
                                   "~/innocent",
                                   "~/x/..",
                                   "/data/homes",
                                   "/data",
                                   "/",
                                   "/*",
                                   "~/dotfiles",
                                   "~/local-again",
                                   "~/.local",
                                   "/innocent",
                                   "/usr/lib/x",
                                   "/etc",
                                   "/var/lib/apt",
                                   "/run/user/1000",
                                   "/opt",
                                   "/opt/app",
                                   "/srv/data",
                                   "/root/.cache",
                                   "/home/other",
                                   "/home/other/.cache",
                                   "/var/tmpx"}) {
        EXPECT_TRUE(isRefused(base)) << base;
    }
    for (const char* const base :
         {"/homes/x", "/media/me/disk", "~/.cache/x", "~/innocent-2", "/data/homes/me/.config/app",
          "/tmp", "/tmp/x", "/var/tmp", "/var/tmp/x", "/var/crash", "/usrlocal/x",
          "$DARWIN_USER_CACHE_DIR"}) {
        EXPECT_FALSE(isRefused(base)) << base;
    }
    for (const char* const name : {"/.config", "/.local", "/.local/share"}) {
        EXPECT_TRUE(refusedBase(catalogOf("~" + std::string(name)), "/plain", files)) << name;
        EXPECT_FALSE(refusedBase(catalogOf("~" + std::string(name) + "/app"), "/plain", files));
    }
    EXPECT_FALSE(refusedBase(catalogOf("/etc", RuleKind::command), "/home/me", files));
}

TEST(ForeignCatalog, TakesWhatLiesInAHomeForItsOwnOnlyInAPersonsHome)
{
    const CleanCoreTests::ScriptedFileManager files;
    const struct
    {
        const char* home;
        const char* base;
        bool isRefused;
    } cases[] = {
        {"/root", "/root/.cache", false},
        {"/home/me", "/home/me/x", false},
        {"/home/staff/me", "/home/staff/me/x", false},
        {"/var/home/me", "/var/home/me/x", false},
        {"/me", "/me/x", false},
        {"/", "/usr/share", true},
        {"/", "/home/other/x", true},
        {"/", "/srv/x", true},
        {"/", "/media/disk", false},
        {"/usr/sbin", "/usr/sbin/x", true},
        {"/var", "/var/lib/x", true},
        {"/var/lib/service", "/var/lib/service/x", true},
        {"/dev", "/dev/shm", true},
        {"/home", "/home/other/x", true},
        {"/var/home", "/var/home/other/x", true},
    };
    for (const auto& [home, base, isRefused] : cases) {
        RulesCatalog catalog = catalogOf(base);
        // The other rule's base is in the home itself.
        catalog.rules.erase(catalog.rules.begin());
        EXPECT_EQ(refusedBase(catalog, home, files).has_value(), isRefused)
            << base << " in " << home;
    }
}

} // namespace
