// Preloaded into the window's program: whoever opens a way to the network ends it, and its workers'
// clock may be put forward.

#define _GNU_SOURCE
#include <stdio.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

int socket(int domain, int type, int protocol)
{
    if (domain == AF_INET || domain == AF_INET6) {
        fputs("the program uses the network\n", stderr);
        abort();
    }
    return (int)syscall(SYS_socket, domain, type, protocol);
}

// While the file named by ZORVANE_TEST_LATE is there, it is 91 seconds later for every thread but
// the first.
int clock_gettime(clockid_t clock, struct timespec* time)
{
    const long result = syscall(SYS_clock_gettime, clock, time);
    const char* const late = getenv("ZORVANE_TEST_LATE");
    if (result == 0 && clock == CLOCK_MONOTONIC && late != NULL && gettid() != getpid() &&
        access(late, F_OK) == 0) {
        time->tv_sec += 91;
    }
    return (int)result;
}
