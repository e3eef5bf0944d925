#include "tests/Zorvane/Scenes/Scene.h"

namespace ZorvaneTests {

const std::vector<Scene>& allScenes()
{
    static const std::vector<Scene> all = {
        {"terms first-run", "declined; open", true},
        {"permission missing", "open", true},
        {"ready with-permission", "access; open", true},
        {"ready without-permission", "ready", true},
        {"scanning preparing", "snapshots 2024-01-05-091500; hold tool; ready; scan"},
        {"scanning rule",
         "area dev-npm, safe, first, a=12480M; area cache-browsers, safe, second, a=1;"
         "hold sizing, second; ready; scan rule",
         true},
        {"scanning long-title",
         "area dev-npm, safe, first, a=999994T; area long, safe, second, a=1; long long;"
         "hold sizing, second; ready; scan rule"},
        {"results empty", "results", true},
        {"results typical", "typical; access; results", true},
        {"results expanded", "typical; access; results; expand dev-npm; expand cache-browsers",
         true},
        {"results tool-area", "snapshots 2024-01-05-091500, 2024-01-06-091500; results; "
                              "expand tm-local-snapshots"},
        {"results unreadable-area",
         "typical; unreadable cache-thumbnails; results; expand cache-thumbnails", true},
        {"results huge-figures",
         "area cache-user, safe, a, a=largest; area dev-npm, safe, b, a=499995T, b=499995T;"
         "area whatsapp-media, review, c, a=499995G; results; expand cache-user",
         true},
        {"results hostile-names",
         "area trash-user, review, Trash, hostile=10M; user <b>Ada</b>\n\u202EAugusta Ada King, "
         "Countess of Lovelace; results; expand trash-user"},
        {"results long-titles",
         "area cache-long, safe, a, a=999990M, b=40M; long cache-long; unreadable cache-bad; "
         "long cache-bad; area other-long, review, b, a=7M; long other-long; results; "
         "expand cache-long"},
        {"results three-to-one",
         "area cache-user, safe, a, a=75; area dev-npm, safe, b, a=25; results"},
        {"results nothing-selected", "typical; access; results; deselect"},
        {"results cleaning", "typical; hold removing; results; cleaning", true},
        {"results closing", "typical; hold removing; results; cleaning; close"},
        {"card measured", "drive; results; sheet; measured; back"},
        {"confirmation safe-only", "typical; results; confirm"},
        {"confirmation two-review-areas",
         "typical; results; select dev-gradle; select trash-user; confirm", true},
        {"confirmation acknowledged",
         "typical; results; select dev-gradle; select trash-user; confirm; acknowledge"},
        {"confirmation zero-bytes",
         "snapshots 2024-01-05-091500; results; select tm-local-snapshots; confirm"},
        {"confirmation long-titles",
         "area cache-long, safe, a, a=999990M; long cache-long; area other-long, review, b, "
         "a=largest; long other-long; results; select other-long; confirm"},
        {"confirmation many-areas",
         "bundled; results; select dev-gradle; select dev-maven; select trash-user; "
         "select whatsapp-media; select dev-ai-models; confirm",
         true},
        {"report nothing-skipped", "typical; free 3120M; results; clean", true},
        {"report both",
         "typical; busy .npm, _npx; busy .cache, evince; protect .cache/babl; results; clean"},
        {"report details",
         "area temp-npm, safe, npm, hostile=10M, a=9M, b=8M, c=7M; busy npm, hostile, a, b, c; "
         "results; clean; details",
         true},
        {"report huge-figures",
         "area cache-a, safe, a, a=largest, b=2; free largest; results; clean"},
        {"icloud measuring", "cloud Photos, 4, 1G; cloud Design, 4, 2G; hold measuring, Photos, "
                             "Design; results; sheet"},
        {"icloud measuring-with-figures",
         "cloud Photos, 4, 1G; cloud Design, 3200, 6250M; hold measuring, Photos; results; sheet; "
         "measured 1",
         true},
        {"icloud empty", "results; sheet; measured"},
        {"icloud nothing-selected", "drive; results; sheet; measured"},
        {"icloud selected", "drive; results; sheet; measured; tick Photos, Scans", true},
        {"icloud five-apps",
         "drive; cloud Tools, 3, 800M, Compressor with a very long name that does not fit into "
         "one line of it.app=2100M, Reader.app=77M; results; sheet; measured; tick Design, Tools",
         true},
        {"icloud busy-folder",
         "drive; cloud Music projects, 600, 1G; late Music projects; results; "
         "sheet; measured; tick Scans"},
        {"icloud releasing", "drive; hold releasing, Scans; results; sheet; measured; "
                             "tick Photos, Scans; releasing"},
        {"icloud freed",
         "drive; free 18448M; results; sheet; measured; tick Photos, Scans; release"},
        {"icloud nothing-freed", "drive; results; sheet; measured; tick Scans; release"},
        {"icloud hostile-names", "cloud-files hostile=6M; results; sheet; measured"},
        {"icloud huge-figures",
         "cloud Everything, 60000, 9000000T, Giant.app=100000T; results; sheet; measured; "
         "tick Everything"},
        {"shell menu", "access; open; menu", true},
        {"shell about", "access; open; menu; about"},
        {"shell update-offered", "access; open; update Finds the caches of more managers.", true},
        {"shell update-long", "access; open; update long"},
    };
    return all;
}

QSize smallestWindow(const Scene& scene)
{
    const std::string screen = scene.name.substr(0, scene.name.find(' '));
    const Strings small = {"terms", "permission", "ready", "scanning", "shell"};
    return std::ranges::find(small, screen) == small.end() ? QSize(900, 640) : QSize(520, 640);
}

void show(MainWindow& window, const std::string& scene)
{
    play(window, std::ranges::find(allScenes(), scene, &Scene::name)->steps);
}

} // namespace ZorvaneTests
