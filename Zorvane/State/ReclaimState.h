#pragma once

#include "CleanCore/Cleaning/ReclaimBook.h"
#include "CleanCore/Cleaning/SelectionState.h"
#include "CleanCore/Reclaim/Reclaim.h"
#include "Zorvane/State/Environment.h"

#include <QObject>
#include <cstddef>
#include <memory>
#include <optional>
#include <stop_token>

namespace CleanCore {
class ReclaimSurvey;
} // namespace CleanCore

namespace Zorvane {

class MainThreadQueue;

/// How much free space the removal of the chosen items brings. It is found out in the background,
/// for what is chosen, and kept item by item until the next results. Main thread only.
class ReclaimState : public QObject
{
    Q_OBJECT
public:
    /// `environment` outlives the state. The runner of `queue` does not run tasks after it.
    ReclaimState(const Environment& environment, std::shared_ptr<MainThreadQueue> queue);
    ~ReclaimState() override;

    /// Starts afresh with the results of a scan.
    void begin(const CleanCore::SelectionState& selection);
    /// The choice among the same results is a different one now.
    void choose(const CleanCore::SelectionState& selection);
    /// Ends the work. The findings stay.
    void stop();

    /// Nothing while it is being found out.
    [[nodiscard]] const std::optional<CleanCore::Reclaim>& ofSelection() const;
    /// Nothing for an item that was not chosen yet. `selection` is one of the same results.
    [[nodiscard]] std::optional<CleanCore::Reclaim>
    ofItem(const CleanCore::SelectionState& selection, std::size_t category,
           std::size_t item) const;

    /// What a clean needs to go on from here.
    [[nodiscard]] const CleanCore::ReclaimBook& book() const { return m_book; }
    [[nodiscard]] std::shared_ptr<const CleanCore::ReclaimSurvey> survey() const
    {
        return m_survey;
    }

signals:
    /// The figure of the selection.
    void changed();
    /// Those of items that were chosen for the first time.
    void itemsChanged();

private:
    void work(CleanCore::SelectionState selection);

    const Environment& m_environment;
    const std::shared_ptr<MainThreadQueue> m_queue;
    std::shared_ptr<const CleanCore::ReclaimSurvey> m_survey;
    CleanCore::ReclaimBook m_book;
    std::optional<CleanCore::Reclaim> m_ofSelection;
    /// Stops the work that is under way; null without any. Findings of other work are ignored.
    std::shared_ptr<std::stop_source> m_work;
    /// To be looked at after that.
    std::optional<CleanCore::SelectionState> m_next;
};

} // namespace Zorvane
