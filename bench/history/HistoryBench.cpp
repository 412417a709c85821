// Undo and redo of one batch add of 100,000 data items, through the project's
// history, into a database that holds 100,000 items already (target: 0.2 s each).
// The batch is added by the real command with a scripted dialog; each figure is
// the median of several undo and redo rounds. Prints the figures and whether the
// targets are met; the exit status is 1 when one is missed.

#include "BenchTiming.h"
#include "core/MessageSink.h"
#include "project/Project.h"
#include "sections/rtdb/RtdbCommands.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace {

using bench::Clock;
using bench::median;
using bench::ms;
constexpr int kItems = 100000;
constexpr int kRuns = 7;

// "Batch Data Setting" answered with Batch1 .. Batch100000, float.
struct BatchDialogs : rq::RtdbDialogHost {
    bool databaseDialog(rq::DatabaseForm&) override { return false; }
    bool dataGroupDialog(rq::DataGroupForm&) override { return false; }
    bool dataDialog(rq::DataForm&) override { return false; }
    bool batchDataDialog(rq::BatchDataForm& f) override {
        f.data.name = "Batch";
        f.data.typeIndex = 7;
        f.data.length = 4;
        f.data.description = "batch item";
        f.from = 1;
        f.to = kItems;
        return true;
    }
};

} // namespace

int main() {
    rq::Catalogs catalogs;
    rq::SilentSink sink;
    rq::Project p(catalogs, sink);
    rq::DataNode& db = p.rtdb.root().addDatabase("big");
    for (int i = 0; i < kItems; ++i)
        db.addItem(rq::DataItem::makeData("Var_" + std::to_string(i), "float", "4", "0", ""));

    BatchDialogs dialogs;
    const rq::RtdbEditor ed{p.rtdb, dialogs, sink, p.doc.history()};
    auto t0 = Clock::now();
    if (!rq::batchAddData(ed, &db).changed || db.itemCount() != 2u * kItems) {
        std::fprintf(stderr, "the batch was not added\n");
        return 2;
    }
    const double add = ms(t0, Clock::now());

    std::vector<double> undos, redos;
    for (int i = 0; i < kRuns; ++i) {
        auto a = Clock::now();
        p.doc.undo();
        auto b = Clock::now();
        p.doc.redo();
        auto c = Clock::now();
        undos.push_back(ms(a, b));
        redos.push_back(ms(b, c));
    }
    const bool whole = db.itemCount() == 2u * kItems && db.nameInUse("Batch100000");
    const double undo = median(undos), redo = median(redos);
    std::printf("batch add of %d items          %.1f ms\n", kItems, add);
    std::printf("undo of the batch               %.1f ms   (target <= 200 ms)  %s\n", undo,
                undo <= 200 ? "met" : "MISSED");
    std::printf("redo of the batch               %.1f ms   (target <= 200 ms)  %s\n", redo,
                redo <= 200 ? "met" : "MISSED");
    return whole && undo <= 200 && redo <= 200 ? 0 : 1;
}
