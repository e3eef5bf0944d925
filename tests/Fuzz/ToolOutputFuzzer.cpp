#include "CleanCore/CloudDrive/GitAnnex/AnnexRecord.h"
#include "CleanCore/CloudDrive/GitAnnex/GitConfig.h"
#include "CleanCore/CloudDrive/SyncClient/ClientMessage.h"
#include "CleanCore/Commands/CommandAreas.h"
#include "CleanCore/Commands/Parsing/ToolText.h"

#include <algorithm>
#include <cstdlib>

namespace {

void require(bool holds)
{
    if (!holds) {
        std::abort();
    }
}

/// The texts between bytes that no tool's output has, exactly `count`.
std::vector<std::string> outputs(std::string_view data, std::size_t count)
{
    std::vector<std::string> texts(count);
    for (std::string& text : texts) {
        text = data.substr(0, data.find('\xff'));
        data.remove_prefix(std::min(text.size() + 1, data.size()));
    }
    return texts;
}

} // namespace

// Whatever a tool prints, the items of its area have sizes that make sense and can be cleaned.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string_view data(reinterpret_cast<const char*>(bytes), size);
    require(CleanCore::ToolText::parseSize(data) >= 0);
    for (const CleanCore::CommandArea& area : CleanCore::commandAreas()) {
        for (const CleanCore::ScannedItem& item : area.items(outputs(data, area.listings.size()))) {
            require(item.sizeBytes >= 0);
            require(item.modifiedAt == CleanCore::distantPast);
            if (area.clearingArguments != nullptr) {
                require(!area.clearingArguments(item.path).empty());
            }
        }
    }
    const auto record = CleanCore::parseAnnexRecord(data);
    require(!record || (record->bytes >= 0 && record->arrived.value_or(0) >= 0));
    static_cast<void>(CleanCore::parseGitConfig(data));
    const CleanCore::ClientMessage message = CleanCore::parseClientMessage(data);
    static_cast<void>(CleanCore::parseFileStatus(message.argument));
    require(!CleanCore::isSpeakable(data) || data.find('\n') == std::string_view::npos);
    return 0;
}
