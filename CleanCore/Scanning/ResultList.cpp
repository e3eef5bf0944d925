#include "CleanCore/Scanning/ResultList.h"

#include <algorithm>
#include <utility>

namespace CleanCore {

std::vector<CategoryResult> resultList(std::vector<CategoryResult> results)
{
    std::vector<std::pair<std::int64_t, CategoryResult>> sized;
    for (CategoryResult& result : results) {
        if (!result.items.empty() || result.hadAccessErrors || !result.reachedEntries.empty()) {
            const std::int64_t bytes = result.totalBytes();
            sized.emplace_back(bytes, std::move(result));
        }
    }
    std::stable_sort(sized.begin(), sized.end(),
                     [](const auto& a, const auto& b) { return a.first > b.first; });
    std::vector<CategoryResult> list;
    list.reserve(sized.size());
    for (auto& [bytes, result] : sized) {
        list.push_back(std::move(result));
    }
    return list;
}

} // namespace CleanCore
