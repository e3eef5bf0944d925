#pragma once

#include <atomic>
#include <filesystem>
#include <fstream>
#include <map>
#include <mutex>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace CleanCoreTests {

/// A sync client's socket with one folder, which does what it is asked for on the disk. To be set
/// up before start(); its files are in `folder`.
class ScriptedSyncClient
{
public:
    ScriptedSyncClient(std::string socketFolder, std::string folder)
        : m_socket(std::move(socketFolder) + "/socket"), m_folder(std::move(folder))
    {
    }
    ScriptedSyncClient(const ScriptedSyncClient&) = delete;
    ~ScriptedSyncClient()
    {
        ::shutdown(m_listening, SHUT_RDWR);
        ::shutdown(m_connection, SHUT_RDWR);
    }

    bool hasPlaceholders = true;
    bool isSilent = false;
    /// Answers nothing and goes on talking of something else.
    bool onlyTalks = false;
    /// Takes requests and does nothing.
    bool isIdle = false;
    bool keepsNames = false;
    /// The command at which it dies, unasked ones included; empty for none.
    std::string diesAt = {};
    /// Statuses by the last component of the path; others are OK.
    std::map<std::string, std::string> statuses = {};
    /// What it was asked for, each with the file's path in the folder.
    [[nodiscard]] std::vector<std::string> asked() const
    {
        const std::lock_guard lock(m_mutex);
        return m_asked;
    }

    void start()
    {
        m_listening = ::socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address = {AF_UNIX, {}};
        m_socket.copy(address.sun_path, sizeof address.sun_path - 1);
        ::bind(m_listening, reinterpret_cast<const sockaddr*>(&address), sizeof address);
        ::listen(m_listening, 8);
        m_thread = std::jthread([this] {
            while (serve(m_connection = ::accept(m_listening, nullptr, nullptr))) {
                ::close(m_connection);
            }
            ::close(m_listening);
            ::close(m_connection);
        });
    }

private:
    /// Returns false once it is dead.
    bool serve(int connection)
    {
        say(connection, "REGISTER_PATH:" + m_folder + "\nUPDATE_VIEW:" + m_folder + "\n");
        std::string text;
        for (char byte = 0; ::read(connection, &byte, 1) == 1;) {
            if (byte != '\n') {
                text += byte;
                continue;
            }
            const std::string command = text.substr(0, text.find(':'));
            if (command == diesAt) {
                return false;
            }
            answer(connection, command, text.substr(command.size() + 1));
            text.clear();
        }
        return connection >= 0;
    }
    /// In pieces that end anywhere.
    static void say(int connection, std::string text)
    {
        for (; !text.empty(); text.erase(0, 7)) {
            ::send(connection, text.data(), std::min<std::size_t>(7, text.size()), MSG_NOSIGNAL);
        }
    }
    void answer(int connection, const std::string& command, const std::string& argument)
    {
        while (onlyTalks && ::send(connection, "UPDATE_VIEW:/x\n", 15, MSG_NOSIGNAL) == 15) {
        }
        if (isSilent || onlyTalks) {
            return;
        }
        if (command == "VERSION") {
            say(connection, "VERSION:3.7.3git:1.1\n");
        } else if (command == "GET_MENU_ITEMS") {
            say(connection, std::string("GET_MENU_ITEMS:BEGIN\nMENU_ITEM:SHARE::x\n") +
                                (hasPlaceholders ? "MENU_ITEM:MAKE_ONLINE_ONLY:d:x\n" : "") +
                                "GET_MENU_ITEMS:END\n");
        } else if (command == "RETRIEVE_FILE_STATUS") {
            const auto status = statuses.find(argument.substr(argument.rfind('/') + 1));
            say(connection, "STATUS:OK:" + m_folder + "/unasked\nSTATUS:" +
                                (status == statuses.end() ? "OK+SWM" : status->second) + ":" +
                                argument + "\n");
        } else {
            for (std::size_t begin = 0; begin <= argument.size();) {
                const std::size_t end = std::min(argument.find('\x1e', begin), argument.size());
                move(command, argument.substr(begin, end - begin));
                begin = end + 1;
            }
        }
    }
    void move(const std::string& command, const std::string& path)
    {
        {
            const std::lock_guard lock(m_mutex);
            m_asked.push_back(command + ' ' + path.substr(m_folder.size() + 1));
        }
        const std::string suffix = keepsNames ? "" : ".nextcloud";
        if (isIdle) {
            return;
        }
        const bool isRelease = command == "MAKE_ONLINE_ONLY";
        const std::string other =
            isRelease ? path + suffix : path.substr(0, path.size() - suffix.size());
        std::ofstream(path + "~") << (isRelease ? " " : "content again");
        if (isRelease && keepsNames) {

            ::setxattr((path + "~").c_str(), "user.nextcloud.hydrate_exec", "x", 1, 0);
        }
        std::filesystem::rename(path + "~", other);
        if (other != path) {
            std::filesystem::remove(path);
        }
    }

    std::string m_socket;
    std::string m_folder;
    mutable std::mutex m_mutex;
    std::vector<std::string> m_asked;
    std::atomic<int> m_listening = -1;
    std::atomic<int> m_connection = -1;
    std::jthread m_thread;
};

} // namespace CleanCoreTests
