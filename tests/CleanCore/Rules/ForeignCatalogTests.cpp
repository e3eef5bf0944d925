#include "CleanCore/Rules/ForeignCatalog.h"

#include "CleanCore/Rules/RulesCatalog.h"
#include "tests/Support/ScriptedDisk.h"
#include "tests/Support/Table.h"

#include <gtest/gtest.h>

namespace CleanCoreTests {

using namespace CleanCore;

TEST(ForeignCatalog, RefusesBasesThatHoldMoreThanLeftoversOfTheOwner)
{
    ScriptedDisk files;
    files.links = {{"/home/me", "/data/homes/me"},
                   {"/home/me/.cache/x", "/data/homes/me/.cache/x"},
                   {"/data/homes/me/.local", "/data/elsewhere/local"},
                   {"/home/me/innocent", "/data/homes/me"},
                   {"/home/me/dotfiles", "/data/homes/me/.config"},
                   {"/home/me/local-again", "/data/elsewhere/local"},
                   {"/innocent", "/usr/share/doc"}};
    files.folders = {{"/", {{"etc", "usr"}, 0}}, {"/etc", {}}};
    // A home, bases that a catalog may not name there, and bases that it may.
    for (const std::vector<std::string>& row : table(R"(
/home/me | ~ ~/ ~/innocent /data/homes /data / /* ~/dotfiles ~/local-again /innocent /usr/lib/x
     /etc /run/user/1000 /opt/app /srv/data /root/.cache /home/other /home/other/.cache /var/tmpx
     | /homes/x /media/me/disk ~/.cache/x /data/homes/me/.config/app /tmp /tmp/x /var/tmp/x
     /var/crash /usrlocal/x $DARWIN_USER_CACHE_DIR
/plain | ~/.config ~/.local ~/.local/share | ~/.config/app ~/.local/app ~/.local/share/app
/root | ~ | /root/.cache
/home/staff/me | /home/staff | /home/staff/me/x
/var/home/me | /var/home/other | /var/home/me/x
/ | /usr/share /home/other/x | /media/disk
/usr/sbin | /usr/sbin/x |
/var/lib/service | /var/lib/service/x |
/home | /home/other/x |
/var/home | /var/home/other/x |
)")) {
        for (const std::size_t isTaken : {0U, 1U}) {
            for (const std::string& base : words(row.at(isTaken + 1))) {
                RulesCatalog catalog;
                catalog.rules.resize(2);
                catalog.rules[0].kind = RuleKind::command;
                catalog.rules[0].basePaths = {"/etc"};
                catalog.rules[1].basePaths = {"/media/disk", base};
                EXPECT_EQ(refusedBase(catalog, row[0], files).has_value(), isTaken == 0)
                    << base << " in " << row[0];
            }
        }
    }
}

} // namespace CleanCoreTests
