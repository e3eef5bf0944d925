#include "CleanCore/Scanning/ResultList.h"

#include <gtest/gtest.h>

namespace {

using namespace CleanCore;

CategoryResult result(const std::string& id, const std::vector<std::int64_t>& sizes,
                      bool hadAccessErrors = false)
{
    CategoryResult made;
    made.rule.id = id;
    made.hadAccessErrors = hadAccessErrors;
    made.items.reserve(sizes.size());
    for (const std::int64_t size : sizes) {
        made.items.push_back({"/" + id + std::to_string(made.items.size()), size});
    }
    return made;
}

TEST(ResultList, LeavesOutWhatIsEmptyAndSortsTheRestByTotal)
{
    const auto list =
        resultList({result("empty", {}), result("tie-1", {3, 4}), result("unreadable", {}, true),
                    result("zero", {0}), result("large", {10}), result("tie-2", {7}),
                    result("partly", {1}, true), result("tie-3", {5, 1, 1}),
                    result("beyond-32-bits", {3'000'000'000, 3'000'000'000})});
    std::vector<std::string> ids;
    ids.reserve(list.size());
    for (const CategoryResult& entry : list) {
        ids.push_back(entry.rule.id);
    }
    EXPECT_EQ(ids, (std::vector<std::string>{"beyond-32-bits", "large", "tie-1", "tie-2", "tie-3",
                                             "partly", "unreadable", "zero"}));
    EXPECT_EQ(list[4].items.size(), 3U);
    EXPECT_TRUE(resultList({}).empty());
}

} // namespace
