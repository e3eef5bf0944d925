#include "tests/Zorvane/Scenes/Scene.h"

#include <iterator>
#include <stdexcept>

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

Scene sceneNamed(const std::string& screen, const std::string& state)
{
    for (const Scene& scene : allScenes()) {
        if (scene.screen == screen && scene.state == state) {
            return scene;
        }
    }
    throw std::out_of_range("no scene " + screen + ' ' + state);
}

} // namespace ZorvaneTests
