#pragma once

#include "CleanCore/Support/FileDescriptor.h"

#include <QObject>
#include <QSocketNotifier>
#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace Zorvane {

/// The one way from a worker to the main thread: letters, which are closures that hold all they
/// need by value, run there in the order in which they were posted. However many pile up, the main
/// thread gets to its other events every few milliseconds.
///
/// Workers hold the box by shared_ptr and may outlive its reader: what they post then is dropped.
/// Posting is safe from any thread and touches nothing of Qt's.
class Mailbox
{
public:
    using Letter = std::function<void()>;

    /// Throws std::system_error when the process has no descriptors left.
    Mailbox();

    void post(Letter letter);

private:
    friend class MailboxReader;
    /// The oldest letter, if there is one.
    [[nodiscard]] std::optional<Letter> takeFirst();
    void close();

    /// Readable while there are letters.
    CleanCore::FileDescriptor m_wakeUp;
    std::mutex m_mutex;
    std::deque<Letter> m_letters;
    bool m_isClosed = false;
};

/// Runs the letters of a mailbox on the thread that made the reader, which has an event loop. No
/// letter runs once the reader is gone.
class MailboxReader : public QObject
{
    Q_OBJECT
public:
    /// After this long other events get their turn. Half of what a frame has.
    static constexpr std::chrono::milliseconds patience{8};

    explicit MailboxReader(std::shared_ptr<Mailbox> mailbox, QObject* parent = nullptr);
    ~MailboxReader() override;

private:
    void runLetters();

    std::shared_ptr<Mailbox> m_mailbox;
    QSocketNotifier m_notifier;
};

} // namespace Zorvane
