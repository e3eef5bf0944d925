#pragma once

#include "tests/Zorvane/Support/TestWindow.h"

namespace ZorvaneTests {

/// A screen or sheet in one of its states.
struct Scene
{
    /// "SCREEN STATE".
    std::string name;
    /// How to get there, for play().
    std::string steps;
};

[[nodiscard]] std::vector<Scene> allScenes();
/// The smallest window that shows it.
[[nodiscard]] QSize smallestWindow(const Scene& scene);

[[nodiscard]] Strings split(const std::string& text, const std::string& separator);
/// Plays steps, each "VERB ARGUMENT, ARGUMENT…", separated by ";"; those before the window opens
/// set up the application. A size may have a unit; "hostile" stands for names as nobody would
/// choose them. Throws for an unknown verb.
void play(MainWindow& window, const std::string& steps);
/// The same, of the scene with that name.
void show(MainWindow& window, const std::string& scene);

} // namespace ZorvaneTests
