#include "Zorvane/Desktop/DisplayText.h"

#include "CleanCore/Support/EscapedText.h"
#include "CleanCore/Support/PathText.h"

namespace Zorvane {

QString displayText(std::string_view bytes)
{
    return QString::fromStdString(CleanCore::escaped(bytes, CleanCore::EscapeNotation::brackets));
}

QString displayName(std::string_view path)
{
    return displayText(CleanCore::PathText::lastComponent(path));
}

} // namespace Zorvane
