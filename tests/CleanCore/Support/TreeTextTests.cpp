#include "tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <sys/stat.h>

namespace CleanCoreTests {

TEST(TemporaryFolder, HoldsTheTreeThatItWasToldToMake)
{
    const TemporaryFolder folder;
    const std::string tree = "'a b''c:\n/x':0 a-b/data:5k b/empty/ dangling->'no where' in->~/b "
                             "pipe| sealed/=0500 sealed/file=0400 twin:5k \xff";
    folder.make("twin:5k@1d1ns \xff@-2s a-b/data==twin b/ b/empty/ pipe| in->elsewhere",
                CleanCore::Timestamp());
    folder.remove("a-b");
    folder.make("sealed/=0500 sealed/file=0400 dangling->'no where' a-b/data:5k in->~/b "
                "'a b''c:\n/x':0");
    EXPECT_EQ(folder.tree(), tree);
    EXPECT_EQ(folder.tree("sealed"), "file=0400");
    struct stat status = {};
    ASSERT_EQ(::stat(folder.path("twin").c_str(), &status), 0);
    EXPECT_EQ(status.st_mtim.tv_sec, -24 * 3600 - 1);
    EXPECT_EQ(status.st_mtim.tv_nsec, 999'999'999);
    ASSERT_EQ(::stat(folder.path("\xff").c_str(), &status), 0);
    EXPECT_EQ(status.st_mtim.tv_sec, 2);
    for (const char* const wrong : {"'a", "a@", "a@5", "a:x", "a=8", "a|b", "->x", "a:5k5"}) {
        EXPECT_THROW(folder.make(wrong), std::invalid_argument) << wrong;
    }
}

} // namespace CleanCoreTests
