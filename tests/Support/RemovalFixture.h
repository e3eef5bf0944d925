#pragma once

#include "CleanCore/FileSystem/Removing/LinuxRemoval.h"
#include "tests/Support/Setting.h"
#include "tests/Support/TemporaryFolder.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace CleanCoreTests {

/// A home with a base ".cache" to clean and a protected folder "Documents" whose canaries must
/// survive whatever happens.
class RemovalFixture : public testing::Test
{
protected:
    explicit RemovalFixture(const std::string& below = "/tmp");

    /// A removal as a clean begins it. Made anew it reads the protected folders' identities anew.
    [[nodiscard]] std::unique_ptr<CleanCore::LinuxRemoval>
    beginRemoval(CleanCore::PinMethod method = CleanCore::PinMethod::kernelResolution) const;

    /// The errno that removing `relative` (below home) from the base ends with; 0 for success.
    [[nodiscard]] int remove(const std::string& relative) const;

    /// Fails the test unless every canary is there as it was. (An attack may have put more beside.)
    void expectCanaries() const;

    TemporaryFolder home;
    const std::string base = home.makeFolder(".cache");
    const std::string documents = home.makeFolder("Documents");

private:
    std::vector<std::string> m_canaries;
};

/// Runs `body` in a child process.
void inChildProcess(const std::function<void()>& body);

/// Runs `body` in a child process in user and mount namespaces of its own, where it may mount, and
/// fails the test if anything in it failed. The test must not have started a thread.
void inMountNamespace(const std::function<void()>& body);

/// Takes from this process what lets it pass over permissions in its own namespaces.
void dropCapabilities();

void bindMount(const std::string& what, const std::string& where);

/// Makes `count` empty files "0", "1", … in a new folder.
void makeFiles(const TemporaryFolder& folder, const std::string& relative, std::size_t count);

} // namespace CleanCoreTests
