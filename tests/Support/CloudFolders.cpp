#include "tests/Support/CloudFolders.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace CleanCoreTests {

std::string bytes(std::size_t length, unsigned seed)
{
    std::string text(length, '\0');
    std::uint32_t state = seed * 2'654'435'761U + 1;
    for (char& byte : text) {
        state = state * 1'664'525U + 1'013'904'223U;
        byte = static_cast<char>(1 + (state >> 24) % 255);
    }
    return text;
}

std::string contentOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

struct stat statusOf(const std::string& path)
{
    struct stat status = {};
    ::lstat(path.c_str(), &status);
    return status;
}

void CloudFolders::makePair(const std::string& name, const std::string& content) const
{
    home.makeFile("drive/" + name, content);
    home.makeFile("mirror/" + name, content);
    home.setTime("drive/" + name, 1'600'000'000, 123'456'789);
    home.setTime("mirror/" + name, 1'600'000'100);
}

void CloudFolders::makeCloudOnly(const std::string& name, const std::string& content) const
{
    makePair(name, content);
    run("cd drive && truncate -s 0 '" + name + "' && truncate -s " +
        std::to_string(content.size()) + " '" + name + "' && touch -r '../mirror/" + name + "' '" +
        name + "'");
}

void CloudFolders::run(const std::string& command) const
{
    if (std::system(("cd '" + home.path() + "' && " + command).c_str()) != 0) {
        throw std::runtime_error(command);
    }
}

std::optional<std::size_t> releasedBytes(const std::string& path, const std::string& content,
                                         const std::string& uploaded)
{
    const std::string local = contentOf(path);
    std::size_t released = 0;
    bool isLost = local.size() != content.size();
    for (std::size_t i = 0; i < content.size() && !isLost; ++i) {
        released += local[i] == '\0' ? 1U : 0U;
        isLost = local[i] == '\0' ? i >= uploaded.size() || uploaded[i] != content[i]
                                  : local[i] != content[i];
    }
    return isLost ? std::nullopt : std::optional(released);
}

} // namespace CleanCoreTests
