#include "tests/Support/RandomTree.h"

#include <algorithm>
#include <filesystem>
#include <random>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace CleanCoreTests {

namespace {

class Builder
{
public:
    Builder(const TemporaryFolder& root, unsigned seed) : m_root(root), m_random(seed) {}

    std::vector<std::string> build()
    {
        std::vector<std::string> folders = {""};
        std::vector<std::string> files;
        for (int i = 0; i < 160; ++i) {
            const std::string& parent = folders[below(folders.size())];
            const std::string path = (parent.empty() ? "" : parent + '/') + name(i);
            if (below(4) == 0 && std::count(path.begin(), path.end(), '/') < 7) {
                m_root.makeFolder(path);
                folders.push_back(path);
            } else if (below(5) == 0 && !files.empty()) {
                std::filesystem::create_hard_link(m_root.path(files[below(files.size())]),
                                                  m_root.path(path));
            } else {
                makeEntry(path, files);
            }
            m_paths.push_back(path);
        }
        finish(folders);
        std::vector<std::string> names;
        for (const std::string& path : m_paths) {
            if (path.find('/') == std::string::npos) {
                names.push_back(path);
            }
        }
        return names;
    }

private:
    std::size_t below(std::size_t count) { return m_random() % count; }

    /// Every name ends in its number, so that no two are the same.
    std::string name(int number)
    {
        const std::string odd[] = {"plain",  ".hidden",   "two\nlines", "-rf",
                                   " space", "\xFF\xFE ", "e\u0301",    "\x1b[31m*"};
        const std::string end = '-' + std::to_string(number);
        return below(12) == 0 ? std::string(255 - end.size(), 'x') + end
                              : odd[below(std::size(odd))] + end;
    }

    void makeEntry(const std::string& path, std::vector<std::string>& files)
    {
        const std::string targets[] = {"/", ".", "..", "nowhere", m_root.path(), path};
        switch (below(8)) {
        case 0:
            m_root.makeLink(path, targets[below(std::size(targets))]);
            break;
        case 1:
            if (::mkfifo(m_root.path(path).c_str(), 0600) != 0) {
                throw std::system_error(errno, std::generic_category(), path);
            }
            break;
        case 2:
            m_root.makeFile(path, std::string(below(9000), 's'));
            std::filesystem::resize_file(m_root.path(path), 40'000'000 + below(1'000'000));
            files.push_back(path);
            break;
        default:
            m_root.makeFile(path, std::string(below(3) == 0 ? 0 : below(30'000), 'x'));
            files.push_back(path);
        }
    }

    /// Times and then modes, folders behind what is in them.
    void finish(const std::vector<std::string>& folders)
    {
        for (auto path = m_paths.rbegin(); path != m_paths.rend(); ++path) {
            const std::int64_t seconds =
                static_cast<std::int64_t>(below(4'000'000'000)) - 1'000'000;
            m_root.setTime(*path, seconds, static_cast<long>(below(1'000'000'000)));
        }
        const unsigned modes[] = {0, 0100, 0300, 0400, 0500, 0600};
        for (auto folder = folders.rbegin(); folder != folders.rend() - 1; ++folder) {
            if (below(4) == 0) {
                m_root.setMode(*folder, modes[below(std::size(modes))]);
            }
        }
    }

    const TemporaryFolder& m_root;
    std::mt19937 m_random;
    std::vector<std::string> m_paths;
};

} // namespace

std::vector<std::string> makeRandomTree(const TemporaryFolder& root, unsigned seed)
{
    return Builder(root, seed).build();
}

} // namespace CleanCoreTests
