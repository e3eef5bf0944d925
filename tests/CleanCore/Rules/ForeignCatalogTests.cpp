#include "CleanCore/Rules/ForeignCatalog.h"

#include "CleanCore/Rules/RulesCatalog.h"
#include "tests/Support/ScriptedDisk.h"

#include <gtest/gtest.h>
#include <sstream>

namespace CleanCoreTests {

using namespace CleanCore;

TEST(ForeignCatalog, RefusesBasesThatHoldMoreThanLeftoversOfTheOwner)
{
    ScriptedDisk files;
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
    const struct
    {
        const char* home;
        const char* refused;
        const char* taken;
    } rows[] = {
        {"/home/me",
         "~ ~/ ~/innocent ~/x/.. /data/homes /data / /* ~/dotfiles ~/local-again ~/.local "
         "/innocent /usr/lib/x /etc /var/lib/apt /run/user/1000 /opt /opt/app /srv/data "
         "/root/.cache /home/other /home/other/.cache /var/tmpx",
         "/homes/x /media/me/disk ~/.cache/x ~/innocent-2 /data/homes/me/.config/app /tmp /tmp/x "
         "/var/tmp /var/tmp/x /var/crash /usrlocal/x $DARWIN_USER_CACHE_DIR"},
        {"/plain", "~/.config ~/.local ~/.local/share",
         "~/.config/app ~/.local/app ~/.local/share/app"},
        {"/root", "~", "/root/.cache"},
        {"/home/staff/me", "/home/staff", "/home/staff/me/x"},
        {"/var/home/me", "/var/home/other", "/var/home/me/x"},
        {"/me", "/me", "/me/x"},
        {"/", "/usr/share /home/other/x /srv/x", "/media/disk"},
        {"/usr/sbin", "/usr/sbin/x", ""},
        {"/var", "/var/lib/x", ""},
        {"/var/lib/service", "/var/lib/service/x", ""},
        {"/dev", "/dev/shm", ""},
        {"/home", "/home/other/x", ""},
        {"/var/home", "/var/home/other/x", ""},
    };
    const auto expect = [&](const char* home, const char* bases, bool isRefused) {
        std::istringstream words(bases);
        for (std::string base; words >> base;) {
            RulesCatalog catalog;
            catalog.rules.resize(2);
            catalog.rules[0].kind = RuleKind::command;
            catalog.rules[0].basePaths = {"/etc"};
            catalog.rules[1].basePaths = {"/media/disk", base};
            EXPECT_EQ(refusedBase(catalog, home, files).has_value(), isRefused)
                << base << " in " << home;
        }
    };
    for (const auto& [home, refused, taken] : rows) {
        expect(home, refused, true);
        expect(home, taken, false);
    }
}

} // namespace CleanCoreTests
