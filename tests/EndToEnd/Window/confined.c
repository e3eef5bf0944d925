// Preloaded into the window's program: whoever opens a way to the network ends it.

#define _GNU_SOURCE
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

int socket(int domain, int type, int protocol)
{
    if (domain == AF_INET || domain == AF_INET6) {
        abort();
    }
    return (int)syscall(SYS_socket, domain, type, protocol);
}
