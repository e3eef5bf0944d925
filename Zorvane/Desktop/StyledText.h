#pragma once

#include <QString>

namespace Zorvane {

/// `text` for a Text item with textFormat StyledText. Passages between double asterisks are bold;
/// everything else is escaped.
[[nodiscard]] QString styledText(const QString& text);

/// `text` without the double asterisks.
[[nodiscard]] QString plainText(QString text);

} // namespace Zorvane
