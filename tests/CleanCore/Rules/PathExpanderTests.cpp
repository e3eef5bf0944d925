#include "CleanCore/Rules/PathExpander.h"

#include "tests/Support/CleanableHome.h"
#include "tests/Support/ScriptedDisk.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace CleanCoreTests {

using namespace CleanCore;
using Strings = std::vector<std::string>;

TEST(PathExpander, ExpandsEachKindOfPatternAndTellsWhatItCouldNotLookAt)
{
    ScriptedDisk files;
    // In no order, and with an entry that is gone by the time it is looked for.
    files.folders["/home/me/apps"] = {{"b", "gone", ".hidden", "B", "*"}, 0};
    for (const char* const name : {".hidden", "B"}) {
        files.folders["/home/me/apps/" + std::string(name)] = {{"x"}, 0};
    }
    for (const char* const path : {"b", "*", "b/Cache", "*/Cache"}) {
        files.folders["/home/me/apps/" + std::string(path)] = {{"2", "1"}, 0};
    }
    for (const char* const path : {"/home/me/apps/b/Cache/1", "/home/me/apps/*/Cache/2",
                                   "/home/me/log*", "/home", "/big/match/Cache"}) {
        files.folders[path] = {};
    }
    files.folders["/"] = {{"home"}, 0};
    files.folders["/sealed"] = {{"a"}, EACCES};
    files.folders["/no-descriptor"] = {{}, EMFILE};
    files.folders["/no-memory"] = {{}, ENOMEM};
    files.measures["/home/me/plain-file"] = {};
    for (std::size_t i = 0; i <= 2 * PathExpander::repeatLimit; ++i) {
        files.folders["/big"].names.push_back(std::to_string(i));
    }
    files.folders["/big"].names.emplace_back("match");
    files.folders["/big/match"] = {{"Cache"}, 0};

    const std::string here = std::filesystem::current_path();
    const struct
    {
        Strings patterns;
        Strings bases;
        bool isCutShort = false;
    } rows[] = {
        {{"~", "~/"}, {"/home/me", "/home/me"}},
        {{"~//", "~//ok", "~///a/b/"}, {"/home/me", "/home/me/ok", "/home/me/a/b/"}},
        {{"/absolute/./as/../written/"}, {"/absolute/./as/../written/"}},
        {{"~other/x", "$HOME/x", "relative"},
         {here + "/~other/x", here + "/$HOME/x", here + "/relative"}},
        {{"$DARWIN_USER_CACHE_DIR", "$DARWIN_USER_TEMP_DIR"}, {"/per-user/cache", "/per-user/tmp"}},
        {{"$DARWIN_USER_TEMP_DIR/x", "$darwin_user_temp_dir", " $DARWIN_USER_TEMP_DIR"},
         {here + "/$DARWIN_USER_TEMP_DIR/x", here + "/$darwin_user_temp_dir",
          here + "/ $DARWIN_USER_TEMP_DIR"}},
        {{"~/apps/*"},
         {"/home/me/apps/*", "/home/me/apps/.hidden", "/home/me/apps/B", "/home/me/apps/b"}},
        {{"~//apps/*/Cache"}, {"/home/me/apps/*/Cache", "/home/me/apps/b/Cache"}},
        {{"~/apps/*/Cache/*"}, {"/home/me/apps/*/Cache/2", "/home/me/apps/b/Cache/1"}},
        {{"~/log*", "~/lo*"}, {"/home/me/log*"}},
        {{"/*"}, {"/home"}},
        {{"~/missing/*", "/sealed/*", "~/plain-file/*"}, {}},
        {{"~/b", "~/a", "~/b"}, {"/home/me/b", "/home/me/a", "/home/me/b"}},
        {{"/big/*/Cache", "/big/*/*"}, {"/big/match/Cache", "/big/match/Cache"}},
        {{"/no-descriptor/*", "/x"}, {"/x"}, true},
        {{"/no-memory/*/x"}, {}, true},
    };
    for (const auto& [patterns, bases, isCutShort] : rows) {
        const auto found = PathExpander::expansion(patterns, "/home/me", files);
        EXPECT_EQ(found.bases, bases) << patterns.front();
        EXPECT_EQ(found.isCutShort, isCutShort) << patterns.front();
    }
    // In the path of home a "*" is a name.
    EXPECT_EQ(PathExpander::expandAll(Strings{"~/Cache/*"}, "/home/me/apps/*", files),
              Strings{"/home/me/apps/*/Cache/2"});
}

TEST(PathExpander, FollowsLinksAndComesToAnEndWhereTheyLeadBack)
{
    const CleanableHome home(
        "apps/real/Cache/ apps/file/Cache apps/linked/Cache->../real "
        "apps/dangling/Cache->nowhere apps/none/ "
        "loop/a->. loop/b->. loop/c->. loop/d->. loop/e->. loop/f->. loop/g->.");
    EXPECT_EQ(PathExpander::expandAll(Strings{"~/apps/*/Cache"}, home.path(), *home.files),
              (Strings{home.path("apps/file/Cache"), home.path("apps/linked/Cache"),
                       home.path("apps/real/Cache")}));

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

TEST(PathExpander, SurvivesACurrentFolderThatIsGone)
{
    const CleanableHome home("current/");
    const std::string before = std::filesystem::current_path();
    std::filesystem::current_path(home.path("current"));
    home.remove("current");
    for (const char* const pattern : {"relative", "", ".", "relative/*"}) {
        for (const std::string& base :
             PathExpander::expandAll(Strings{pattern}, home.path(), *home.files)) {
            EXPECT_FALSE(home.files->exists(base)) << base;
        }
    }
    std::filesystem::current_path(before);
}

} // namespace CleanCoreTests
