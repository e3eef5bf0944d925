#pragma once

#include "CleanCore/Support/FileDescriptor.h"

#include <QSocketNotifier>

namespace Zorvane {

/// Turns SIGTERM, SIGINT and SIGHUP into QSocketNotifier::activated on the thread that makes it.
/// There is one per process, and it needs the application object. A second signal ends the process
/// at once. The signals are handled rather than blocked: programs that Qt starts would inherit a
/// block.
class TerminationSignals
{
public:
    TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    ~TerminationSignals();

    [[nodiscard]] const QSocketNotifier& notifier() const { return m_notifier; }

private:
    CleanCore::FileDescriptor m_event;
    QSocketNotifier m_notifier;
};

} // namespace Zorvane
