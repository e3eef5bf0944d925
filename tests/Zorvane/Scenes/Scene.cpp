#include "tests/Zorvane/Scenes/Scene.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace ZorvaneTests {

QSize smallestWindow(const Scene& scene)
{
    // Of the other screens the results are below.
    const auto beforeResults = {"terms", "permission", "ready", "scanning", "shell"};
    const bool isBeforeResults =
        std::ranges::find(beforeResults, scene.screen) != beforeResults.end();
    return isBeforeResults ? QSize(520, 640) : QSize(900, 640);
}

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
