#include "tests/Support/CloudFolders.h"

#include <filesystem>
#include <fstream>
#include <sstream>

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
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

void appendTo(const std::string& path, std::string_view content)
{
    std::ofstream(path, std::ios::binary | std::ios::app) << content;
}

struct stat statusOf(const std::string& path)
{
    struct stat status = {};
    ::lstat(path.c_str(), &status);
    return status;
}

CloudFolders::CloudFolders(const std::string& below)
    : home(below), container(home.makeFolder("drive")), mirror(home.makeFolder("mirror"))
{
}

CleanCore::StandInDrive CloudFolders::drive() const
{
    constexpr std::int64_t stepBytes = 8192;
    return {home.path(), container, mirror, stepBytes};
}

std::string CloudFolders::local(std::string_view relative) const
{
    return container + '/' + std::string(relative);
}

std::string CloudFolders::copy(std::string_view relative) const
{
    return mirror + '/' + std::string(relative);
}

void CloudFolders::makePair(std::string_view relative, std::string_view content) const
{
    const std::string name(relative);
    home.makeFile("drive/" + name, content);
    home.makeFile("mirror/" + name, content);
    home.setTime("drive/" + name, 1'600'000'000, 123'456'789);
    home.setTime("mirror/" + name, 1'600'000'100);
}

void CloudFolders::makeCloudOnly(std::string_view relative, std::string_view content) const
{
    const std::string name(relative);
    home.makeFile("mirror/" + name, content);
    std::filesystem::resize_file(home.makeFile("drive/" + name, ""), content.size());
    home.setTime("drive/" + name, 1'600'000'100);
    home.setTime("mirror/" + name, 1'600'000'100);
}

} // namespace CleanCoreTests
