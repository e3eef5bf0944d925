#include "CleanCore/Cleaning/ReclaimBook.h"

#include "CleanCore/Cleaning/SelectionReclaim.h"
#include "CleanCore/Reclaim/ReclaimSum.h"
#include "CleanCore/Reclaim/ReclaimSurvey.h"

#include <utility>

namespace CleanCore {

bool ReclaimBook::examine(const SelectionState& selection, const ReclaimSurvey& survey,
                          const std::stop_token& stop)
{
    const std::vector<CategoryResult>& results = selection.results();
    m_findings.resize(results.size());
    bool hasNews = false;
    for (std::size_t category = 0; category < results.size(); ++category) {
        const std::vector<ScannedItem>& items = results[category].items;
        if (results[category].rule.kind != RuleKind::fileSystem) {
            continue;
        }
        std::vector<std::string_view> missing;
        std::vector<std::size_t> positions;
        for (std::size_t item = 0; item < items.size(); ++item) {
            if (selection.isSelected(category, item) &&
                needsExamining(items[item], findings(category, item))) {
                missing.push_back(items[item].path);
                positions.push_back(item);
            }
        }
        if (missing.empty() || stop.stop_requested()) {
            continue;
        }
        std::vector<ReclaimFindings> examined = survey.examine(missing, stop);
        std::vector<ReclaimFindings> all;
        if (m_findings[category]) {
            all = *m_findings[category];
        }
        all.resize(items.size());
        for (std::size_t i = 0; i < positions.size(); ++i) {
            hasNews = hasNews || examined[i].isExamined;
            all[positions[i]] = std::move(examined[i]);
        }
        m_findings[category] = std::make_shared<const std::vector<ReclaimFindings>>(std::move(all));
    }
    return hasNews;
}

Reclaim ReclaimBook::ofSelection(const SelectionState& selection) const
{
    ReclaimSum sum;
    for (std::size_t category = 0; category < selection.results().size(); ++category) {
        const CategoryResult& result = selection.results()[category];
        for (std::size_t item = 0; item < result.items.size(); ++item) {
            if (selection.isSelected(category, item)) {
                addToSum(sum, result.rule.kind, result.isShownOnly, result.items[item],
                         findings(category, item));
            }
        }
    }
    return sum.result();
}

std::optional<Reclaim> ReclaimBook::ofItem(const SelectionState& selection, std::size_t category,
                                           std::size_t item) const
{
    const CategoryResult& result = selection.results()[category];
    const ReclaimFindings found = findings(category, item);
    if (result.rule.kind == RuleKind::fileSystem && needsExamining(result.items[item], found)) {
        return std::nullopt;
    }
    ReclaimSum sum;
    addToSum(sum, result.rule.kind, result.isShownOnly, result.items[item], found);
    return sum.result();
}

std::vector<CleaningSelection> ReclaimBook::selections(const SelectionState& selection) const
{
    std::vector<CleaningSelection> selections = selection.selections();
    auto next = selections.begin();
    for (std::size_t category = 0; category < selection.results().size(); ++category) {
        if (selection.selectedCount(category) == 0) {
            continue;
        }
        for (std::size_t item = 0; item < selection.results()[category].items.size(); ++item) {
            if (selection.isSelected(category, item)) {
                next->findings.push_back(findings(category, item));
            }
        }
        ++next;
    }
    return selections;
}

ReclaimFindings ReclaimBook::findings(std::size_t category, std::size_t item) const
{
    if (category < m_findings.size() && m_findings[category]) {
        return (*m_findings[category])[item];
    }
    return {};
}

} // namespace CleanCore
