#pragma once

#include "CleanCore/Support/FileDescriptor.h"

#include <QObject>
#include <QSocketNotifier>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace Zorvane {

/// The one way from a worker to the main thread: letters, which are closures that hold all they
/// need by value, run there in the order in which they were posted. Letters that pile up while the
/// main thread is busy cost it one wake-up.
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
    [[nodiscard]] std::vector<Letter> takeAll();
    void close();

    CleanCore::FileDescriptor m_wakeUp;
    std::mutex m_mutex;
    std::vector<Letter> m_letters;
    bool m_isClosed = false;
};

/// Runs the letters of a mailbox on the thread that made the reader, which has an event loop. No
/// letter runs once the reader is gone.
class MailboxReader : public QObject
{
    Q_OBJECT
public:
    explicit MailboxReader(std::shared_ptr<Mailbox> mailbox, QObject* parent = nullptr);
    ~MailboxReader() override;

private:
    void runLetters();

    std::shared_ptr<Mailbox> m_mailbox;
    QSocketNotifier m_notifier;
};

} // namespace Zorvane
