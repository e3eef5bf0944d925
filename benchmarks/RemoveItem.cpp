// Removes one entry of a folder as a clean does: remove-item HOME BASE NAME
//
// HOME says whose entries may go; it must hold BASE, so that nothing else is ever in reach.

#include "CleanCore/FileSystem/Removing/LinuxRemoval.h"
#include "CleanCore/Support/PathText.h"
#include "CleanCore/Support/TaskPool.h"

#include <cstdio>
#include <cstring>
#include <memory>

int main(int argc, char** argv)
{
    using namespace CleanCore;
    if (argc != 4) {
        std::fprintf(stderr, "usage: remove-item HOME BASE NAME\n");
        return 2;
    }
    const std::string home = argv[1];
    const std::string base = argv[2];
    LinuxRemoval removal(home, {}, home, std::make_shared<TaskPool>());
    const RemovalOutcome outcome = removal.remove(base, PathText::join(base, argv[3]), {});
    if (outcome.error != 0) {
        std::fprintf(stderr, "remove-item: %s\n", std::strerror(outcome.error));
        return 1;
    }
    return 0;
}
