#pragma once

#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/Support/FileDescriptor.h"

#include <string>

namespace CleanCore {

/// Walks everything below `folder`, which `path` names; see FileManager::visitTree. Holds a bounded
/// number of descriptors at any depth, and one path that grows and shrinks with it.
void walkTree(FileDescriptor folder, const std::string& path, const TreeVisitor& visit);

} // namespace CleanCore
