#include "CleanCore/Rules/PathExpander.h"

#include "CleanCore/FileSystem/LinkResolver.h"
#include "CleanCore/FileSystem/LinuxFileManager.h"
#include "CleanCore/Support/TaskPool.h"
#include "tests/Support/ScriptedFileManager.h"
#include "tests/Support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace {

using namespace CleanCore;
using CleanCoreTests::ScriptedFileManager;
using CleanCoreTests::TemporaryFolder;
using Strings = std::vector<std::string>;

TEST(PathExpander, ExpandsEachKindOfPattern)
{
    ScriptedFileManager files;
    // In no order, and with an entry that is gone by the time it is looked for.
    files.folders["/home/me/apps"] = {{"b", "gone", ".hidden", "B", "*"}, 0};
    for (const char* const name : {"b", ".hidden", "B", "*"}) {
        files.folders["/home/me/apps/" + std::string(name)] = {{"x"}, 0};
    }
    files.folders["/home/me/apps/b/Cache"] = {{"2", "1"}, 0};
    files.folders["/home/me/apps/*/Cache"] = {{"3"}, 0};
    for (const char* const path : {"b/Cache/1", "b/Cache/2", "*/Cache/3"}) {
        files.folders["/home/me/apps/" + std::string(path)] = {};
    }
    files.folders["/home/me/log*"] = {};
    files.folders["/sealed"] = {{"a"}, EACCES};
    files.measures["/home/me/plain-file"] = {};
    files.folders["/"] = {{"home"}, 0};
    files.folders["/home"] = {};

    const std::string here = std::filesystem::current_path();
    const struct
    {
        Strings patterns;
        Strings bases;
    } cases[] = {
        {{"~"}, {"/home/me"}},
        {{"~/"}, {"/home/me"}},
        {{"~//", "~//ok", "~///a/b/"}, {"/home/me", "/home/me/ok", "/home/me/a/b/"}},
        {{"~//apps/b/Cache/*"}, {"/home/me/apps/b/Cache/1", "/home/me/apps/b/Cache/2"}},
        {{"~/not/there"}, {"/home/me/not/there"}},
        {{"/absolute/./as/../written/"}, {"/absolute/./as/../written/"}},
        {{"~other/x", "$HOME/x"}, {here + "/~other/x", here + "/$HOME/x"}},
        {{"relative"}, {here + "/relative"}},
        {{"$DARWIN_USER_CACHE_DIR", "$DARWIN_USER_TEMP_DIR"}, {"/per-user/cache", "/per-user/tmp"}},
        {{"$DARWIN_USER_TEMP_DIR/x", "$darwin_user_temp_dir", " $DARWIN_USER_TEMP_DIR"},
         {here + "/$DARWIN_USER_TEMP_DIR/x", here + "/$darwin_user_temp_dir",
          here + "/ $DARWIN_USER_TEMP_DIR"}},
        {{"~/apps/*"},
         {"/home/me/apps/*", "/home/me/apps/.hidden", "/home/me/apps/B", "/home/me/apps/b"}},
        {{"~/apps/*/Cache"}, {"/home/me/apps/*/Cache", "/home/me/apps/b/Cache"}},
        {{"~/apps/*/Cache/*"},
         {"/home/me/apps/*/Cache/3", "/home/me/apps/b/Cache/1", "/home/me/apps/b/Cache/2"}},
        {{"~/log*", "~/lo*"}, {"/home/me/log*"}},
        {{"/*"}, {"/home"}},
        {{"~/missing/*", "/sealed/*", "~/plain-file/*"}, {}},
        {{"~/b", "~/a", "~/b"}, {"/home/me/b", "/home/me/a", "/home/me/b"}},
        {{}, {}},
    };
    for (const auto& [patterns, bases] : cases) {
        EXPECT_EQ(PathExpander::expandAll(patterns, "/home/me", files), bases)
            << (patterns.empty() ? "no pattern" : patterns.front());
    }
}

TEST(PathExpander, CountsALinkAsAMatchOnlyIfItsTargetExists)
{
    const TemporaryFolder home;
    home.makeFolder("apps/real/Cache");
    home.makeFile("apps/file/Cache");
    home.makeLink("apps/linked/Cache", home.path("apps/real/Cache"));
    home.makeLink("apps/dangling/Cache", "nowhere");
    home.makeFolder("apps/none");
    const LinuxFileManager files({}, std::nullopt, std::make_shared<TaskPool>(1));

    EXPECT_EQ(PathExpander::expandAll(Strings{"~/apps/*/Cache"}, home.path(), files),
              (Strings{home.path("apps/file/Cache"), home.path("apps/linked/Cache"),
                       home.path("apps/real/Cache")}));
}

TEST(PathExpander, ComesToAnEndInFoldersOfLinksThatLeadBack)
{
    const TemporaryFolder home;
    for (const char* const name : {"a", "b", "c", "d", "e", "f", "g", "h"}) {
        home.makeLink("loop/" + std::string(name), ".");
    }
    const LinuxFileManager files({}, std::nullopt, std::make_shared<TaskPool>(1));
    const Strings patterns = {"~/loop/*/*/*/*/*/*/*/*/*/*/*/*", "~/loop/*"};

    const auto [bases, isCutShort] = PathExpander::expansion(patterns, home.path(), files);
    EXPECT_LE(bases.size(), PathExpander::repeatLimit + std::size_t{12} * 8);
    EXPECT_EQ(bases.back(), home.path("loop/h"));
    EXPECT_TRUE(isCutShort);
    // Twice through the same folder is nothing to be cut short for.
    EXPECT_FALSE(PathExpander::expansion(Strings{"~/loop/*/*"}, home.path(), files).isCutShort);

    std::stop_source stop;
    stop.request_stop();
    EXPECT_TRUE(PathExpander::expandAll(patterns, home.path(), files, stop.get_token()).empty());
}

TEST(PathExpander, FindsAMatchAmongAnyNumberOfOthersAndTellsWhatItCouldNotLookAt)
{
    ScriptedFileManager files;
    Strings& names = files.folders["/big"].names;
    for (std::size_t i = 0; i <= 2 * PathExpander::repeatLimit; ++i) {
        names.push_back(std::to_string(i));
    }
    names.emplace_back("match");
    files.folders["/big/match"] = {{"Cache"}, 0};
    files.folders["/big/match/Cache"] = {};
    files.folders["/sealed"] = {{}, EACCES};
    files.folders["/no-descriptor"] = {{}, EMFILE};
    files.folders["/no-memory"] = {{}, ENOMEM};

    const struct
    {
        const char* pattern;
        Strings bases;
        bool isCutShort;
    } cases[] = {
        {"/big/*/Cache", {"/big/match/Cache"}, false},
        {"/big/*/*", {"/big/match/Cache"}, false},
        {"/missing/*", {}, false},
        {"/sealed/*", {}, false},
        {"/no-descriptor/*", {}, true},
        {"/no-memory/*/x", {}, true},
    };
    for (const auto& [pattern, expected, isCutShort] : cases) {
        const auto found = PathExpander::expansion(Strings{pattern, "/big"}, "/home/me", files);
        Strings bases = expected;
        bases.emplace_back("/big");
        EXPECT_EQ(found.bases, bases) << pattern;
        EXPECT_EQ(found.isCutShort, isCutShort) << pattern;
    }
}

TEST(PathExpander, SurvivesACurrentFolderThatIsGone)
{
    const TemporaryFolder folder;
    const std::string before = std::filesystem::current_path();
    std::filesystem::current_path(folder.makeFolder("current"));
    std::filesystem::remove(folder.path("current"));
    const LinuxFileManager files({}, folder.path(), std::make_shared<TaskPool>(1));

    for (const char* const pattern : {"relative", "", "."}) {
        for (const std::string& base :
             PathExpander::expandAll(Strings{pattern}, folder.path(), files)) {
            EXPECT_FALSE(files.exists(base)) << base;
        }
    }
    EXPECT_TRUE(PathExpander::expandAll(Strings{"relative/*"}, folder.path(), files).empty());

    std::filesystem::current_path(before);
}

} // namespace
