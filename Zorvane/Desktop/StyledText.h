#pragma once

#include <QString>

namespace Zorvane {

/// `text` for a Text item with textFormat StyledText: what stands between double asterisks is bold,
/// and nothing else in it is taken for markup.
[[nodiscard]] QString styledText(const QString& text);

/// `text` without the double asterisks.
[[nodiscard]] QString plainText(QString text);

} // namespace Zorvane
