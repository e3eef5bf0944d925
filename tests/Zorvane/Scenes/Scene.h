#pragma once

#include "tests/Zorvane/Support/TestWindow.h"

namespace ZorvaneTests {

/// The screens and sheets in their states: "SCREEN STATE".
[[nodiscard]] Strings allScenes();
/// Plays statements: what a person or the program does, and before the window opens also those that
/// set up its application. Throws for an unknown verb.
void play(MainWindow& window, const std::string& steps);
/// Plays what leads to a scene.
void show(MainWindow& window, const std::string& scene);

} // namespace ZorvaneTests
