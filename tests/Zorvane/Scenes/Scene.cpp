#include "tests/Zorvane/Scenes/Scene.h"

namespace ZorvaneTests {

namespace {

/// "SCREEN STATE | STEPS"
const char* const scenes = R"(
terms first-run | declined; open
permission missing | open
ready with-permission | access; open
ready without-permission | ready
scanning rule | area dev-npm, safe, a, a=12480M; area other, safe, b, b=1; hold b; ready; scan
results empty | results
results typical | typical; access; results
results expanded | typical; access; results; expand dev-npm; expand cache-browsers
results unreadable-area | typical; unreadable cache-thumbnails; results; expand cache-thumbnails
results huge-figures | area cache-user, safe, a, a=largest; area dev-npm, safe, b, a=499995T, b=499995T; area whatsapp-media, review, c, a=499995G; results; expand cache-user
results hostile-names | area trash-user, review, Trash, hostile=10M; user <b>Augusta Ada King</b>; results; expand trash-user
results long-titles | area cache-long, safe, a, a=999990M, b=40M; long cache-long; unreadable cache-bad; long cache-bad; area other-long, review, b, a=7M; long other-long; results; expand cache-long
results cleaning | typical; results; hold; cleaning
results closing | typical; results; hold; cleaning; close
confirmation review-areas | typical; results; select dev-gradle; select trash-user; select whatsapp-media; select tm-local-snapshots; confirm
confirmation many-areas | area cache-a, safe, fa, a=900M; area cache-b, safe, fb, a=899M; area cache-c, safe, fc, a=898M; area cache-d, safe, fd, a=897M; area cache-e, safe, fe, a=896M; area cache-f, safe, ff, a=895M; area cache-g, safe, fg, a=894M; area cache-h, safe, fh, a=893M; area cache-i, safe, fi, a=892M; area cache-j, safe, fj, a=891M; area cache-k, safe, fk, a=890M; area cache-l, safe, fl, a=889M; area whatsapp-media, review, r, b=2M; area dev-gradle, review, s, b=1M; results; select whatsapp-media; select dev-gradle; confirm
confirmation long-titles | area cache-long, safe, a, a=999990M; long cache-long; area other-long, review, b, a=largest; long other-long; results; select other-long; confirm
report nothing-skipped | typical; free 3120M; results; clean
report details | area temp-npm, safe, npm, hostile=10M, a=9M, b=8M, c=7M; busy npm; protect npm/c; results; clean; details
report huge-figures | area cache-a, safe, a, a=largest, b=2; free largest; results; clean
icloud measuring | cloud Photos, 4, 1G; cloud Design, 3200, 6250M; hold Photos; results; sheet; measured 1
icloud empty | results; sheet; measured
icloud selected | drive; results; sheet; measured; tick Photos; tick Design
icloud freed | drive; free 18448M; results; sheet; measured; tick Photos; tick Scans; release
icloud nothing-freed | drive; results; sheet; measured; tick Scans; release
icloud hostile-names | cloud hostile, 2, 6M, hostile.app=3M; results; sheet; measured; tick a
icloud huge-figures | cloud Everything, 6, 9000000T, Giant.app=100000T; results; sheet; measured; tick Everything
shell menu | access; open; menu
shell about | access; open; menu; about
shell update-offered | access; open; update Finds the caches of more managers.
shell update-long | access; open; update long
)";

} // namespace

Strings split(const std::string& text, const std::string& separator)
{
    Strings parts;
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t to = std::min(text.find(separator, from), text.size());
        parts.push_back(text.substr(from, to - from));
        from = to + separator.size();
    }
    return parts;
}

std::vector<Scene> allScenes()
{
    std::vector<Scene> all;
    for (const std::string& row : split(scenes + 1, "\n")) {
        const Strings parts = split(row, " | ");
        all.push_back({parts[0], parts[1]});
    }
    return all;
}

QSize smallestWindow(const Scene& scene)
{
    const bool isLarge = std::ranges::any_of(
        Strings{"results", "confirmation", "report", "icloud"},
        [&](const std::string& screen) { return scene.name.starts_with(screen); });
    return isLarge ? QSize(900, 640) : QSize(520, 640);
}

void show(MainWindow& window, const std::string& scene)
{
    const auto all = allScenes();
    play(window, std::ranges::find(all, scene, &Scene::name)->steps);
}

} // namespace ZorvaneTests
