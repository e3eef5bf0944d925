#include "Zorvane/Desktop/ByteCountFormatter.h"

#include "CleanCore/Support/ByteCount.h"

namespace Zorvane {

ByteCountFormatter::ByteCountFormatter(const QLocale& locale) : m_locale(locale)
{
    m_locale.setNumberOptions(QLocale::OmitGroupSeparator);
}

QString ByteCountFormatter::string(std::int64_t bytes) const
{
    return QString::fromStdString(
        CleanCore::formatByteCount(bytes, m_locale.decimalPoint().toStdString()));
}

QString ByteCountFormatter::count(std::int64_t number) const
{
    return m_locale.toString(static_cast<qlonglong>(number));
}

} // namespace Zorvane
