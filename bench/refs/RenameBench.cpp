// Renaming one real-time data item with every use, as `rqpcli rename` does, in the
// project of RefsProject.h written to a temporary directory: the project is opened,
// then renameRealtimeData renames the item and its uses and writes the files that
// change (rtdb.xml, device.xml, param.xml and the others that use it). The rounds
// rename Var_7 to Renamed_7 and back. Target: open and rename together 1 s (the
// rename alone is printed too). Each figure is the median of several rounds; the
// exit status is 1 when the target is missed.

#include "BenchTiming.h"
#include "RefsProject.h"
#include "core/MessageSink.h"
#include "project/Project.h"
#include "project/ProjectRename.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using bench::Clock;
using bench::median;
using bench::ms;
constexpr int kRuns = 5;
constexpr double kTargetMs = 1000;

} // namespace

int main() {
    const char* home = std::getenv("RQPDEV_HOME");
    rq::Catalogs catalogs;
    catalogs.loadFrom(home ? home : ".");
    if (catalogs.hmi.entries().empty()) {
        std::fprintf(stderr, "no HMI device catalog: set RQPDEV_HOME to the program directory\n");
        return 2;
    }
    rq::SilentSink sink;
    namespace fs = std::filesystem;
    const fs::path dir = fs::temp_directory_path() / ("bench_rename." + std::to_string(::getpid()));
    fs::create_directories(dir);
    {
        rq::Project project(catalogs, sink);
        project.doc.clear();
        refsbench::fill(project);
        project.model().name = "bench";
        project.model().hmiType = &catalogs.hmi.entries().front();
        project.model().projectDirectory = dir.string();
        if (!project.doc.saveAll().complete()) {
            std::fprintf(stderr, "cannot write the project to %s\n", dir.c_str());
            return 2;
        }
    }

    {
        // Once through open and save, as 'rqpcli resave' does: the files then hold
        // what a save writes (the readers' defaults filled in).
        rq::Project project(catalogs, sink);
        std::string error;
        if (!project.doc.open(dir.string(), &error) || !project.doc.saveAll().complete()) {
            std::fprintf(stderr, "cannot resave the project: %s\n", error.c_str());
            return 2;
        }
    }

    std::vector<double> open, rename, total;
    std::size_t uses = 0;
    for (int run = 0; run < kRuns; ++run) {
        const std::string from = run % 2 ? "Renamed_7" : refsbench::item(7);
        const std::string to = run % 2 ? refsbench::item(7) : "Renamed_7";
        Clock::time_point a = Clock::now();
        rq::Project project(catalogs, sink);
        std::string error;
        if (!project.doc.open(dir.string(), &error)) {
            std::fprintf(stderr, "cannot open the project: %s\n", error.c_str());
            return 2;
        }
        Clock::time_point b = Clock::now();
        if (auto message = rq::renameRealtimeData(project, "plant", from, to)) {
            std::fprintf(stderr, "rename refused: %s\n", message->c_str());
            return 2;
        }
        Clock::time_point c = Clock::now();
        uses = project.references.usesOf("plant", to).size();
        open.push_back(ms(a, b));
        rename.push_back(ms(b, c));
        total.push_back(ms(a, c));
    }
    fs::remove_all(dir);
    const double t = median(total);
    std::printf("items %d, uses of the renamed item %zu\n", refsbench::kItems, uses);
    std::printf("open %.1f ms, rename %.1f ms, together %.1f ms (target %.0f ms): %s\n",
                median(open), median(rename), t, kTargetMs, t <= kTargetMs ? "met" : "MISSED");
    return t <= kTargetMs ? 0 : 1;
}
