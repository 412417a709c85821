// Import of a spreadsheet file of 100,000 real-time data rows against the open of
// the same project (target: at most 2 times). The project is the example project
// with a real-time database of 100 groups of 1,000 data. Three figures, each the
// median of several rounds run interleaved:
//   open       opening the project (what every command does first);
//   same       rqpcli import of the project's own export: open, parse, merge,
//              nothing to write;
//   changed    the same with 1,000 rows changed and 1,000 added: open, parse,
//              merge, one undo step, rtdb.xml written and read back.
// Prints the figures and the ratios to open; the exit status is 1 when a ratio is
// above 2.

#include "BenchTiming.h"
#include "core/FileUtil.h"
#include "core/MessageSink.h"
#include "exchange/ProjectExchange.h"
#include "project/Project.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

using bench::Clock;
using bench::median;
using bench::ms;
constexpr int kGroups = 100, kPerGroup = 1000, kRuns = 5;
constexpr double kTargetRatio = 2;

// What rqpcli import does: open, read the file, merge, write.
bool import(const rq::Catalogs& catalogs, const std::string& dir, const std::string& csv) {
    rq::SilentSink sink;
    rq::Project p(catalogs, sink);
    std::string error, text;
    if (!p.doc.open(dir, &error) || !rq::readWholeFile(csv, text, &error))
        return false;
    const rq::ImportResult r = rq::importSection(p, "rtdb", text, {});
    return r.merge.ok() && r.error.empty();
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: bench_exchange DEMO_DIR\n");
        return 64;
    }
    rq::Catalogs catalogs;
    catalogs.loadFrom(rq::programDirectory());
    const fs::path work =
        fs::temp_directory_path() / ("bench_exchange_" + std::to_string(::getpid()));
    fs::remove_all(work);
    fs::create_directories(work);
    const std::string dir = (work / "demo").string();
    fs::copy(argv[1], dir, fs::copy_options::recursive);

    // The project: 100,000 data in 100 groups of the database "plant".
    std::string same, changed, rtdbFile, error;
    {
        rq::SilentSink sink;
        rq::Project p(catalogs, sink);
        if (!p.doc.open(dir, &error)) {
            std::fprintf(stderr, "%s\n", error.c_str());
            return 1;
        }
        rq::DataNode& db = *p.rtdb.findDatabase("plant");
        for (int g = 0; g < kGroups; ++g) {
            rq::DataNode& group = db.addGroup("bulk" + std::to_string(g));
            for (int i = 0; i < kPerGroup; ++i)
                group.addItem(rq::DataItem::makeData("V" + std::to_string(g * kPerGroup + i),
                                                     "float", "4", "0",
                                                     "value " + std::to_string(i)));
        }
        if (!p.doc.saveSection(1, dir, &error)) {
            std::fprintf(stderr, "%s\n", error.c_str());
            return 1;
        }
        same = rq::exportTable(*rq::makeSectionTable(p, "rtdb"));
    }
    rq::readWholeFile(dir + "/rtdb.xml", rtdbFile, &error);
    // 1,000 rows changed (a new initial value), 1,000 added.
    changed = same;
    std::size_t at = 0; // the rows come in order: each is looked for after the last
    for (int k = 0; k < 1000; ++k) {
        const std::string from = ",V" + std::to_string(k * 97) + ",float,4,0,";
        at = changed.find(from, at);
        changed.replace(at, from.size(), ",V" + std::to_string(k * 97) + ",float,4,1,");
    }
    for (int k = 0; k < 1000; ++k)
        changed += "plant,bulk7,N" + std::to_string(k) + ",float,4,0,,new\r\n";
    const std::string sameCsv = (work / "same.csv").string();
    const std::string changedCsv = (work / "changed.csv").string();
    rq::writeFileAtomic(sameCsv, same, &error);
    rq::writeFileAtomic(changedCsv, changed, &error);

    std::vector<double> open, unchanged, withChanges;
    for (int run = 0; run < kRuns; ++run) {
        Clock::time_point a = Clock::now();
        {
            rq::SilentSink sink;
            rq::Project p(catalogs, sink);
            if (!p.doc.open(dir, &error))
                return 1;
        }
        Clock::time_point b = Clock::now();
        if (!import(catalogs, dir, sameCsv))
            return 1;
        Clock::time_point c = Clock::now();
        if (!import(catalogs, dir, changedCsv))
            return 1;
        Clock::time_point d = Clock::now();
        open.push_back(ms(a, b));
        unchanged.push_back(ms(b, c));
        withChanges.push_back(ms(c, d));
        rq::writeFileAtomic(dir + "/rtdb.xml", rtdbFile, &error);
    }
    fs::remove_all(work);
    const double o = median(open), s = median(unchanged), w = median(withChanges);
    std::printf("rows %d, file %zu bytes\n", kGroups * kPerGroup, same.size());
    std::printf("open %.1f ms\n", o);
    std::printf("import of its own export %.1f ms: %.2f x open (target %.0f): %s\n", s, s / o,
                kTargetRatio, s / o <= kTargetRatio ? "met" : "MISSED");
    std::printf("import with 1,000 changed and 1,000 added rows %.1f ms: %.2f x open (target "
                "%.0f): %s\n",
                w, w / o, kTargetRatio, w / o <= kTargetRatio ? "met" : "MISSED");
    return s / o <= kTargetRatio && w / o <= kTargetRatio ? 0 : 1;
}
