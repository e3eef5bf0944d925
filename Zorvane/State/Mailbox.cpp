#include "Zorvane/State/Mailbox.h"

#include <QPointer>
#include <cerrno>
#include <cstdint>
#include <sys/eventfd.h>
#include <system_error>
#include <utility>

namespace Zorvane {

Mailbox::Mailbox() : m_wakeUp(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (!m_wakeUp.isOpen()) {
        throw std::system_error(errno, std::generic_category(), "eventfd");
    }
}

void Mailbox::post(Letter letter)
{
    const std::lock_guard lock(m_mutex);
    if (m_isClosed) {
        return;
    }
    m_letters.push_back(std::move(letter));
    if (m_letters.size() == 1) {
        // The counter cannot overflow: it is set to zero with the last letter that is taken.
        const std::uint64_t one = 1;
        [[maybe_unused]] const auto written = ::write(m_wakeUp.get(), &one, sizeof one);
    }
}

std::optional<Mailbox::Letter> Mailbox::takeFirst()
{
    const std::lock_guard lock(m_mutex);
    if (m_letters.empty()) {
        return std::nullopt;
    }
    std::optional<Letter> first(std::move(m_letters.front()));
    m_letters.pop_front();
    if (m_letters.empty()) {
        std::uint64_t count = 0;
        [[maybe_unused]] const auto read = ::read(m_wakeUp.get(), &count, sizeof count);
    }
    return first;
}

void Mailbox::close()
{
    std::deque<Letter> dropped;
    const std::lock_guard lock(m_mutex);
    m_isClosed = true;
    dropped.swap(m_letters);
}

MailboxReader::MailboxReader(std::shared_ptr<Mailbox> mailbox, QObject* parent)
    : QObject(parent), m_mailbox(std::move(mailbox)),
      m_notifier(m_mailbox->m_wakeUp.get(), QSocketNotifier::Read)
{
    connect(&m_notifier, &QSocketNotifier::activated, this, &MailboxReader::runLetters);
}

MailboxReader::~MailboxReader()
{
    m_mailbox->close();
}

void MailboxReader::runLetters()
{
    // A letter may end the application's state, and this reader with it.
    const QPointer<MailboxReader> self(this);
    const auto end = std::chrono::steady_clock::now() + patience;
    do {
        const std::optional<Mailbox::Letter> letter = m_mailbox->takeFirst();
        if (!letter) {
            return;
        }
        (*letter)();
    } while (self && std::chrono::steady_clock::now() < end);
}

} // namespace Zorvane
