#include "CleanCore/Support/FileDescriptor.h"
#include "tests/Support/CloudFolders.h"
#include "tests/Support/Setting.h"

#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <iostream>
#include <random>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace CleanCoreTests {
namespace {

using CleanCore::FileDescriptor;

namespace fs = std::filesystem;

/// What the writer tells the test, in memory that both see.
struct Report
{
    int placeholdersMet = 0;
    int partsMet = 0;
    char loss[512] = {};
};

/// A user at work in the container while it is released: changes files in every way, and knows
/// what each of them has to hold. Bytes are never zero, so that a zero is a byte given up.
class Writer
{
public:
    Writer(const CloudFolders& folders, int files, unsigned seed, Report& report)
        : m_folders(folders), m_report(report), m_random(seed),
          m_files(static_cast<std::size_t>(files))
    {
        for (int i = 0; i < files; ++i) {
            File& file = m_files[static_cast<std::size_t>(i)];
            file.name = file.mirrorName = "Work/" + std::to_string(i);
            file.content = file.uploaded = someBytes(60'000);
            folders.makePair(file.name, file.content);
        }
    }

    void work(int operations)
    {
        for (int i = 0; i < operations; ++i) {
            File& file = m_files[m_random() % m_files.size()];
            check(file);
            change(file);
        }
        for (const File& file : m_files) {
            check(file);
        }
    }

private:
    struct File
    {
        std::string name;
        std::string content;
        // What the mirror holds, and under which name.
        std::string uploaded;
        std::string mirrorName;
    };

    /// Every byte has to be here, or given up and in the mirror at the same place.
    void check(const File& file)
    {
        const std::string local = contentOf(m_folders.local(file.name));
        bool isLost = local.size() != file.content.size();
        std::size_t missing = 0;
        for (std::size_t i = 0; i < file.content.size() && !isLost; ++i) {
            const bool isInMirror = i < file.uploaded.size() && file.uploaded[i] == file.content[i];
            missing += local[i] == '\0' ? 1 : 0;
            isLost = local[i] != file.content[i] && !(local[i] == '\0' && isInMirror);
        }
        isLost = isLost || contentOf(m_folders.copy(file.mirrorName)) != file.uploaded;
        if (isLost) {
            throw std::runtime_error(file.name + " after " + m_lastChange);
        }
        m_report.placeholdersMet += missing > 0 && missing == local.size() ? 1 : 0;
        m_report.partsMet += missing > 0 && missing < local.size() ? 1 : 0;
    }

    void change(File& file)
    {
        const std::string path = m_folders.local(file.name);
        switch (m_random() % 8) {
        case 0:
            m_lastChange = "append";
            writeAt(path, file, file.content.size(), someBytes(5000));
            break;
        case 1:
            m_lastChange = "overwrite";
            writeAt(path, file, m_random() % (file.content.size() + 1), someBytes(9000));
            break;
        case 2:
            m_lastChange = "truncate";
            file.content.resize(file.content.size() / 2);
            require(::truncate(path.c_str(), static_cast<off_t>(file.content.size())) == 0);
            break;
        case 3:
            m_lastChange = "replace";
            file.content = someBytes(60'000);
            m_folders.home.makeFile("drive/.new", file.content);
            fs::rename(m_folders.local(".new"), path);
            break;
        case 4:
            m_lastChange = "rename";
            file.name = "Work/" + std::to_string(++m_names) + "-renamed";
            fs::rename(path, m_folders.local(file.name));
            break;
        case 5:
            m_lastChange = "hard link";
            fs::create_hard_link(path, m_folders.home.path("links-" + std::to_string(++m_names)));
            break;
        default:
            m_lastChange = "save";
            save(path, file);
        }
    }

    /// Writes the file anew, in place, and has it uploaded, so that it can be released again.
    void save(const std::string& path, File& file)
    {
        fs::remove(m_folders.copy(file.mirrorName));
        file.mirrorName = file.name;
        file.content = someBytes(60'000);
        if (statusOf(path).st_nlink > 1) {
            fs::remove(path);
        }
        m_folders.home.makeFile("drive/" + file.name, file.content);
        m_folders.home.makeFile("mirror/.upload", file.content);
        fs::rename(m_folders.copy(".upload"), m_folders.copy(file.name));
        file.uploaded = file.content;
    }

    void writeAt(const std::string& path, File& file, std::size_t offset, const std::string& text)
    {
        file.content.resize(std::max(file.content.size(), offset + text.size()));
        file.content.replace(offset, text.size(), text);
        const FileDescriptor opened(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
        require(::pwrite(opened.get(), text.data(), text.size(), static_cast<off_t>(offset)) ==
                static_cast<ssize_t>(text.size()));
    }

    std::string someBytes(std::size_t limit)
    {
        return bytes(1 + m_random() % limit, static_cast<unsigned>(m_random()));
    }

    void require(bool isDone) const
    {
        if (!isDone) {
            throw std::runtime_error(m_lastChange + ": " + std::strerror(errno));
        }
    }

    const CloudFolders& m_folders;
    Report& m_report;
    std::mt19937 m_random;
    std::vector<File> m_files;
    std::string m_lastChange = "nothing";
    int m_names = 0;
};

/// ZORVANE_CHANGE_OPERATIONS and ZORVANE_CHANGE_SEED make it a longer or another run.
TEST(CloudDriveChangeTest, nothingWrittenWhileFilesAreReleasedAndFetchedIsLost)
{
    const int operations = setting("ZORVANE_CHANGE_OPERATIONS", 1500);
    const CloudFolders folders(reliabilityFolder());
    void* const shared =
        ::mmap(nullptr, sizeof(Report), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(shared, MAP_FAILED);
    Report& report = *new (shared) Report;
    Writer writer(folders, 12, static_cast<unsigned>(setting("ZORVANE_CHANGE_SEED", 1)), report);

    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        try {
            writer.work(operations);
        } catch (const std::exception& error) {
            std::strncpy(report.loss, error.what(), sizeof report.loss - 1);
        }
        ::_exit(0);
    }
    int released = 0;
    int refused = 0;
    int status = 0;
    for (int round = 0; ::waitpid(child, &status, WNOHANG) == 0; ++round) {
        const std::string path = folders.local("Work");
        const auto refusals =
            round % 8 == 7 ? folders.drive().fetch(path) : folders.drive().release(path);
        refused += static_cast<int>(refusals.size());
        ++released;
    }
    EXPECT_EQ(status, 0);
    EXPECT_STREQ(report.loss, "");
    EXPECT_GT(report.placeholdersMet, operations / 100);
    std::cout << operations << " changes during " << released << " requests with " << refused
              << " refusals; found " << report.placeholdersMet << " placeholders and "
              << report.partsMet << " parts of files\n";
    ::munmap(shared, sizeof(Report));
}

} // namespace
} // namespace CleanCoreTests
