#include "ZorvaneCLI/Output/ReclaimOutput.h"

#include "Words/ReclaimText.h"
#include "ZorvaneCLI/Output/ColumnTable.h"
#include "ZorvaneCLI/Output/PathJson.h"
#include "ZorvaneCLI/Output/TerminalText.h"

namespace ZorvaneCLI {

using CleanCore::Reclaim;
using CleanCore::ReclaimShare;

namespace {

std::string titleOf(const ReclaimShare& share, const Words::ReclaimCauseText& text)
{
    if (share.programs.empty() || text.titleWithPrograms == nullptr) {
        return text.title;
    }
    std::string programs;
    for (const std::string& program : share.programs) {
        programs += (programs.empty() ? "" : ", ") + escaped(program);
    }
    std::string title = text.titleWithPrograms;
    return title.replace(title.find("%1"), 2, programs);
}

std::string causesText(std::span<const ReclaimShare> causes, std::int64_t unexplainedBytes)
{
    using enum ColumnTable::Alignment;
    ColumnTable table({right, left});
    const auto add = [&](std::int64_t bytes, const std::string& title, const char* detail) {
        table.add({"  " + byteCount(bytes), title + ": " + detail});
    };
    for (const ReclaimShare& share : causes) {
        const Words::ReclaimCauseText text = Words::reclaimCauseText(share.cause);
        add(share.bytes, titleOf(share, text), text.detail);
    }
    if (unexplainedBytes > 0) {
        const Words::ReclaimCauseText text = Words::unexplainedText();
        add(unexplainedBytes, text.title, text.detail);
    }
    return table.text();
}

} // namespace

std::string rangeText(const Reclaim& reclaim)
{
    const std::string least = byteCount(reclaim.certainBytes);
    const std::string most = byteCount(reclaim.possibleBytes);
    return least == most ? least : least + " to " + most;
}

std::string gainRemark(const std::optional<Reclaim>& reclaim, std::int64_t sizeBytes)
{
    return reclaim && reclaim->isLessThan(sizeBytes) ? " (gives back " + rangeText(*reclaim) + ')'
                                                     : "";
}

std::string reclaimText(const std::string& lead, const Reclaim& reclaim)
{
    return lead + ' ' + rangeText(reclaim) + '\n' + causesText(reclaim.causes, 0);
}

std::string shortfallText(std::int64_t freedBytes, const CleanCore::Shortfall& shortfall)
{
    return shortfall.isEmpty() ? ""
                               : "Why that is less than " + byteCount(freedBytes) + ":\n" +
                                     causesText(shortfall.causes, shortfall.unexplainedBytes);
}

nlohmann::ordered_json causesJson(std::span<const ReclaimShare> causes)
{
    nlohmann::ordered_json array = nlohmann::ordered_json::array();
    for (const ReclaimShare& share : causes) {
        nlohmann::ordered_json json;
        json["cause"] = name(share.cause);
        json["bytes"] = share.bytes;
        for (const std::string& program : share.programs) {
            json["programs"].push_back(validUtf8(program));
        }
        array.push_back(std::move(json));
    }
    return array;
}

nlohmann::ordered_json reclaimJson(const Reclaim& reclaim)
{
    return {{"certainBytes", reclaim.certainBytes},
            {"possibleBytes", reclaim.possibleBytes},
            {"causes", causesJson(reclaim.causes)}};
}

} // namespace ZorvaneCLI
