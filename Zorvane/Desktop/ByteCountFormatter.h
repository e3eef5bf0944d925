#pragma once

#include <QLocale>
#include <QString>
#include <cstdint>

namespace Zorvane {

/// Formats byte counts and plain counts for the window, in one locale. An immutable value.
class ByteCountFormatter
{
public:
    explicit ByteCountFormatter(const QLocale& locale);

    /// In decimal units: "Zero KB", "1 byte", "12 KB", "1.2 GB"; see CleanCore::formatByteCount().
    [[nodiscard]] QString string(std::int64_t bytes) const;

    /// A plain integer, without separators between its groups.
    [[nodiscard]] QString count(std::int64_t number) const;

private:
    QLocale m_locale;
};

} // namespace Zorvane
