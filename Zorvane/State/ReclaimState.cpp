#include "Zorvane/State/ReclaimState.h"

#include "CleanCore/Reclaim/ReclaimSurvey.h"
#include "CleanCore/Support/TaskPool.h"
#include "Zorvane/State/MainThreadQueue.h"

#include <utility>

namespace Zorvane {

ReclaimState::ReclaimState(const Environment& environment, std::shared_ptr<MainThreadQueue> queue)
    : m_environment(environment), m_queue(std::move(queue)),
      m_survey(environment.home.reclaimSurvey())
{
}

ReclaimState::~ReclaimState()
{
    if (m_work) {
        m_work->request_stop();
    }
}

const std::optional<CleanCore::Reclaim>& ReclaimState::ofSelection() const
{
    return m_ofSelection;
}

std::optional<CleanCore::Reclaim> ReclaimState::ofItem(const CleanCore::SelectionState& selection,
                                                       std::size_t category, std::size_t item) const
{
    return m_book.ofItem(selection, category, item);
}

void ReclaimState::begin(const CleanCore::SelectionState& selection)
{
    stop();
    m_survey = m_environment.home.reclaimSurvey();
    m_book = {};
    choose(selection);
}

void ReclaimState::choose(const CleanCore::SelectionState& selection)
{
    m_ofSelection.reset();
    if (m_work) {
        m_next = selection;
    } else {
        work(selection);
    }
    emit changed();
}

void ReclaimState::stop()
{
    if (m_work) {
        m_work->request_stop();
        m_work = nullptr;
    }
    m_next.reset();
}

void ReclaimState::work(CleanCore::SelectionState selection)
{
    m_work = std::make_shared<std::stop_source>();
    // It may hang in the kernel, so all that it uses is its own or shared.
    m_environment.home.pool->submit([this, work = m_work, queue = m_queue, survey = m_survey,
                                     book = m_book, selection = std::move(selection)]() mutable {
        const bool hasNews = book.examine(selection, *survey, work->get_token());
        CleanCore::Reclaim found = book.ofSelection(selection);
        queue->post(
            [this, work, hasNews, book = std::move(book), found = std::move(found)]() mutable {
                if (m_work != work) {
                    return;
                }
                m_work = nullptr;
                m_book = std::move(book);
                if (m_next) {
                    this->work(*std::exchange(m_next, std::nullopt));
                } else {
                    m_ofSelection = std::move(found);
                }
                emit changed();
                if (hasNews) {
                    emit itemsChanged();
                }
            });
    });
}

} // namespace Zorvane
