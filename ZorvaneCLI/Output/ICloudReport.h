#pragma once

#include "CleanCore/CloudDrive/CloudRequests.h"
#include "CleanCore/CloudDrive/ICloudEvictor.h"

#include <string>
#include <vector>

/// What the command for cloud drives prints. Results go to standard output; refusals go to standard
/// error unless they are part of the JSON.
namespace ZorvaneCLI::ICloudReport {

enum class Form { text, json };

struct FoundDrive
{
    std::string name;
    std::vector<CleanCore::CloudContainer> containers;
};

void printDrives(const std::vector<FoundDrive>& drives, Form form);
void printList(const std::vector<CleanCore::ICloudMeasure>& results, Form form);
void printRelease(const CleanCore::ICloudEvictor::EvictReport& report, Form form);
void printFetch(const CleanCore::ICloudEvictor::FetchReport& report, Form form);

/// On standard error: why a folder of a drive is closed.
void printClosed(const CleanCore::CloudContainer& container);

} // namespace ZorvaneCLI::ICloudReport
