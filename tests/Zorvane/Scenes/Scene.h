#pragma once

#include "tests/Zorvane/Support/MainWindow.h"

#include <functional>
#include <string>
#include <vector>

namespace ZorvaneTests {

/// A screen or sheet in one of its states.
struct Scene
{
    std::string screen;
    std::string state;
    /// Writes the application down, opens the window and brings it into the state.
    std::function<void(MainWindow&)> show;
    /// Whether it stands for its screen where there is no time for all states.
    bool isRepresentative = false;
};

using Scenes = std::vector<Scene>;

[[nodiscard]] Scenes firstRunScenes();
[[nodiscard]] Scenes resultsScenes();
[[nodiscard]] Scenes cleaningScenes();
[[nodiscard]] Scenes icloudScenes();
[[nodiscard]] Scenes shellScenes();

/// The title of an area as the window shows it.
[[nodiscard]] QString title(const MainWindow& window, const std::string& ruleId);

/// The smallest window that shows it.
[[nodiscard]] QSize smallestWindow(const Scene& scene);

/// All of them.
[[nodiscard]] Scenes allScenes();
/// Throws when there is none.
[[nodiscard]] Scene sceneNamed(const std::string& screen, const std::string& state);

} // namespace ZorvaneTests
