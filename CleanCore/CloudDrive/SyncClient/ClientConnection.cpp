#include "CleanCore/CloudDrive/SyncClient/ClientConnection.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace CleanCore {

namespace {

using namespace std::chrono_literals;

/// How long a stop request may stay unnoticed.
constexpr auto stopInterval = 100ms;
/// More than any client says in one line; a path has at most 4,096 bytes.
constexpr std::size_t longestLine = 1'048'576;

bool isOwn(int socket)
{
    ucred peer = {};
    socklen_t length = sizeof peer;
    return ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0 &&
           peer.uid == ::getuid();
}

} // namespace

std::optional<ClientConnection::Fault> ClientConnection::open(const std::string& folder,
                                                              const std::string& name)
{
    const FileDescriptor place(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    m_socket = FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!place.isOpen() || !m_socket.isOpen()) {
        return Fault::gone;
    }
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    // The address has room for short paths only.
    const std::string path = "/proc/self/fd/" + std::to_string(place.get()) + '/' + name;
    if (path.size() >= sizeof address.sun_path) {
        return Fault::gone;
    }
    std::memcpy(address.sun_path, path.data(), path.size());
    if (::connect(m_socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) !=
        0) {
        return Fault::gone;
    }
    return isOwn(m_socket.get()) ? std::nullopt : std::optional(Fault::foreign);
}

std::optional<ClientConnection::Fault> ClientConnection::waitFor(short events,
                                                                 Clock::time_point deadline) const
{
    while (true) {
        if (m_stop.stop_requested()) {
            return Fault::stopped;
        }
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
            std::min<Clock::duration>(deadline - Clock::now(), stopInterval));
        if (left.count() < 0) {
            return Fault::silent;
        }
        pollfd watched = {m_socket.get(), events, 0};
        const int ready = ::poll(&watched, 1, static_cast<int>(left.count()));
        if (ready > 0) {
            return std::nullopt;
        }
        if (ready < 0 && errno != EINTR) {
            return Fault::gone;
        }
        if (left.count() == 0) {
            return Fault::silent;
        }
    }
}

std::optional<ClientConnection::Fault> ClientConnection::send(std::string_view text,
                                                              Clock::time_point deadline)
{
    while (!text.empty()) {
        const ssize_t count = ::send(m_socket.get(), text.data(), text.size(), MSG_NOSIGNAL);
        if (count >= 0) {
            text.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno != EAGAIN && errno != EINTR) {
            return Fault::gone;
        } else if (const auto fault = waitFor(POLLOUT, deadline)) {
            return fault;
        }
    }
    return std::nullopt;
}

std::optional<ClientMessage> ClientConnection::receive(Clock::time_point deadline)
{
    while (true) {
        if (const std::size_t end = m_received.find('\n', m_read); end != std::string::npos) {
            const auto line = std::string_view(m_received).substr(m_read, end - m_read);
            ClientMessage message = parseClientMessage(line);
            m_read = end + 1;
            m_fault = Fault::silent;
            return Clock::now() < deadline ? std::optional(std::move(message)) : std::nullopt;
        }
        m_received.erase(0, std::exchange(m_read, 0));
        if (const auto fault = waitFor(POLLIN, deadline)) {
            m_fault = *fault;
            return std::nullopt;
        }
        if (!readMore()) {
            m_fault = Fault::gone;
            return std::nullopt;
        }
    }
}

bool ClientConnection::readMore()
{
    std::array<char, 65'536> buffer = {};
    const ssize_t count = ::recv(m_socket.get(), buffer.data(), buffer.size(), 0);
    if (count < 0) {
        return errno == EINTR || errno == EAGAIN;
    }
    m_received.append(buffer.data(), static_cast<std::size_t>(count));
    return count > 0 && m_received.size() <= longestLine;
}

} // namespace CleanCore
