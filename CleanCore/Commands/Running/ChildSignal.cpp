#include "CleanCore/Commands/Running/ChildSignal.h"

#include <csignal>

namespace CleanCore {

void restoreChildSignal()
{
    struct sigaction action = {};
    if (::sigaction(SIGCHLD, nullptr, &action) == 0 && action.sa_handler == SIG_IGN) {
        std::signal(SIGCHLD, SIG_DFL);
    }
}

} // namespace CleanCore
