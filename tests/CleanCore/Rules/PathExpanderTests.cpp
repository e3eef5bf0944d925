#include "CleanCore/Rules/PathExpander.h"

#include "tests/Support/CleanableHome.h"
#include "tests/Support/ScriptedDisk.h"
#include "tests/Support/Table.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace CleanCoreTests {

using namespace CleanCore;
using Strings = std::vector<std::string>;

TEST(PathExpander, ExpandsEachKindOfPatternAndTellsWhatItCouldNotLookAt)
{
    ScriptedDisk files;
    // In no order, and with an entry that is gone by the time it is looked for.
    files.folders["/home/me/apps"] = {{"b", "gone", ".hidden", "*"}, 0};
    for (const char* const path : {"b", "*", "b/Cache", "*/Cache", ".hidden"}) {
        files.folders["/home/me/apps/" + std::string(path)] = {{"2", "1"}, 0};
    }
    for (const char* const path : {"apps/b/Cache/1", "apps/*/Cache/2", "log*"}) {
        files.folders["/home/me/" + std::string(path)] = {};
    }
    files.folders["/"] = {{"sealed"}, 0};
    files.folders["/sealed"] = {{"a"}, EACCES};
    files.folders["/no-descriptor"] = {{}, EMFILE};
    for (std::size_t i = 0; i <= 2 * PathExpander::repeatLimit; ++i) {
        files.folders["/big"].names.push_back(std::to_string(i));
    }
    files.add("/big", "match", 0);

    const std::string here = std::filesystem::current_path();
    // Patterns, and the bases that they stand for; "!" says that not all could be looked at.
    const std::pair<const char*, std::string> rows[] = {
        {"~ ~/ ~//ok ~///a/b/", "/home/me /home/me /home/me/ok /home/me/a/b/"},
        {"/absolute/./as/../written/", "/absolute/./as/../written/"},
        {"~other/x $HOME/x", here + "/~other/x " + here + "/$HOME/x"},
        {"$DARWIN_USER_CACHE_DIR $DARWIN_USER_TEMP_DIR", "/per-user/cache /per-user/tmp"},
        {"$DARWIN_USER_TEMP_DIR/x", here + "/$DARWIN_USER_TEMP_DIR/x"},
        {"~//apps/*", "/home/me/apps/* /home/me/apps/.hidden /home/me/apps/b"},
        {"~/apps/*/Cache/*", "/home/me/apps/*/Cache/2 /home/me/apps/b/Cache/1"},
        {"~/log* ~/lo*", "/home/me/log*"},
        {"/*", "/sealed"},
        {"~/missing/* /sealed/* ~/b ~/a ~/b", "/home/me/b /home/me/a /home/me/b"},
        {"/big/* /big/*", "/big/match /big/match"},
        {"/no-descriptor/*/y /x", "/x !"},
    };
    for (const auto& [patterns, bases] : rows) {
        const auto found = PathExpander::expansion(words(patterns), "/home/me", files);
        Strings marked = found.bases;
        marked.insert(marked.end(), found.isCutShort ? 1 : 0, "!");
        EXPECT_EQ(marked, words(bases)) << patterns;
    }
    // In the path of home a "*" is a name.
    EXPECT_EQ(PathExpander::expandAll(Strings{"~/Cache/*"}, "/home/me/apps/*", files),
              Strings{"/home/me/apps/*/Cache/2"});
}

TEST(PathExpander, FollowsLinksAndComesToAnEndWhereTheyLeadBack)
{
    const CleanableHome home(
        "apps/file/Cache apps/linked/Cache->../file apps/dangling/Cache->nowhere apps/none/ "
        "loop/a->. loop/b->. loop/c->. loop/d->. loop/e->. loop/f->. loop/g->.");
    EXPECT_EQ(PathExpander::expandAll(Strings{"~/apps/*/Cache"}, home.path(), *home.files),
              (Strings{home.path("apps/file/Cache"), home.path("apps/linked/Cache")}));

    const Strings patterns = {"~/loop/*/*/*/*/*/*/*/*/*/*/*/*", "~/loop/*"};
    const auto [bases, isCutShort] = PathExpander::expansion(patterns, home.path(), *home.files);
    EXPECT_LE(bases.size(), PathExpander::repeatLimit + std::size_t{12} * 8);
    EXPECT_EQ(bases.back(), home.path("loop/g"));
    EXPECT_TRUE(isCutShort);
    // Twice through the same folder is nothing to be cut short for.
    EXPECT_FALSE(
        PathExpander::expansion(Strings{"~/loop/*/*"}, home.path(), *home.files).isCutShort);

    std::stop_source stop;
    stop.request_stop();
    EXPECT_TRUE(
        PathExpander::expandAll(patterns, home.path(), *home.files, stop.get_token()).empty());
}

} // namespace CleanCoreTests
