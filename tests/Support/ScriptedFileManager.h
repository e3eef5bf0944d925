#pragma once

#include "tests/Support/ScriptedDisk.h"

namespace CleanCoreTests {

using ScriptedFileManager = ScriptedDisk;

} // namespace CleanCoreTests
