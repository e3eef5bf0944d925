#pragma once

#include <QStringList>

namespace ZorvaneTests {

/// Collects the warnings and errors that are logged while it exists, on any thread, instead of
/// having them printed. One at a time.
class Warnings
{
public:
    Warnings();
    ~Warnings();
    Warnings(const Warnings&) = delete;
    Warnings& operator=(const Warnings&) = delete;

    [[nodiscard]] QStringList texts() const;
};

} // namespace ZorvaneTests
