#include "tests/Zorvane/Scenes/Scene.h"

#include <iterator>

namespace ZorvaneTests {

Scenes allScenes()
{
    Scenes all;
    for (Scenes scenes :
         {firstRunScenes(), resultsScenes(), cleaningScenes(), icloudScenes(), shellScenes()}) {
        std::ranges::move(scenes, std::back_inserter(all));
    }
    return all;
}

} // namespace ZorvaneTests
