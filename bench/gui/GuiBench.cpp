// The workspace on a project whose one database holds 100,000 data items and
// whose one device has 10,000 data points:
//   - selecting the database node until its list is painted (target: 100 ms);
//   - selecting the device node until its list is painted (target: 100 ms);
//   - scrolling that list a page at a time;
//   - opening the project in the main window against the headless open of the
//     same directory (target: at most 1.3 times).
// Each figure is the median of several runs. Prints the figures and whether the
// targets are met; the exit status is 1 when one is missed.

#include "BenchTiming.h"
#include "core/FileUtil.h"
#include "project/Project.h"
#include "shell/ListView.h"
#include "shell/MainWindow.h"
#include "shell/ProjectTree.h"

#include <QApplication>
#include <QScrollBar>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

using bench::Clock;
using bench::median;
using bench::ms;
constexpr int kItems = 100000;
constexpr int kPoints = 10000;
constexpr int kRuns = 7;

double measure(const std::function<void()>& prepare, const std::function<void()>& work) {
    std::vector<double> times;
    for (int i = 0; i < kRuns; ++i) {
        prepare();
        auto t0 = Clock::now();
        work();
        times.push_back(ms(t0, Clock::now()));
    }
    return median(times);
}

void settle() {
    for (int i = 0; i < 3; ++i)
        QApplication::processEvents();
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir config;
    qputenv("XDG_CONFIG_HOME", config.path().toUtf8());
    QApplication app(argc, argv);

    rq::Catalogs catalogs;
    catalogs.loadFrom(rq::programDirectory());
    rq::SilentSink sink;

    QTemporaryDir work;
    const std::string dir = (work.path() + "/big").toStdString();
    {
        rq::Project p(catalogs, sink);
        p.model().name = "big";
        p.model().projectDirectory = dir;
        p.model().hmiType = catalogs.hmi.entries().empty() ? nullptr : &catalogs.hmi.entries()[0];
        rq::DataNode& db = p.rtdb.root().addDatabase("big");
        db.reserveItems(kItems);
        for (int i = 0; i < kItems; ++i)
            db.addItem(rq::DataItem::makeData("Var_" + std::to_string(i), "float", "4", "0",
                                              "item " + std::to_string(i)));
        rq::LinkCommonFields common;
        common.name = "bus";
        rq::LinkItem* link = p.device.addLink(rq::LinkKind::Serial, common, {}, sink);
        rq::DeviceItem device;
        device.name = "big";
        device.address = "1";
        device.driver = "modbusrtu";
        device.enable = "1";
        for (int i = 0; i < kPoints; ++i)
            device.data.push_back(rq::DeviceDataItem{"holding register", std::to_string(40001 + i),
                                                     "big.Var_" + std::to_string(i), "",
                                                     "Circularly reading", "0", "1"});
        rq::DeviceSection::addDevice(*link, std::move(device), sink);
        rq::makeDirectory(dir);
        if (!p.doc.saveAll().ok()) {
            std::fprintf(stderr, "cannot write the benchmark project\n");
            return 2;
        }
    }

    rqshell::CMainFrame frame(catalogs, rq::programDirectory(), &sink);
    frame.resize(1200, 800);
    frame.show();
    settle();
    // Headless and window opens alternate, so that a change of load on the machine
    // touches both alike.
    std::vector<double> headlessRuns, guiRuns;
    for (int i = 0; i < kRuns; ++i) {
        auto t0 = Clock::now();
        {
            rq::Project p(catalogs, sink);
            std::string error;
            if (!p.doc.open(dir, &error))
                std::fprintf(stderr, "open failed: %s\n", error.c_str());
        }
        auto t1 = Clock::now();
        frame.openProjectDirectory(QString::fromStdString(dir));
        settle();
        auto t2 = Clock::now();
        headlessRuns.push_back(ms(t0, t1));
        guiRuns.push_back(ms(t1, t2));
    }
    const double headless = median(headlessRuns);
    const double gui = median(guiRuns);

    rqshell::CPrjTree& tree = frame.tree();
    QTreeWidgetItem* section = tree.fixedNode(rqshell::FixedNode::RealtimeDatabase);
    QTreeWidgetItem* dbItem = section->child(0);
    rqshell::CRQPDevView& view = frame.view();
    double select = measure(
        [&] {
            tree.setCurrentItem(section);
            settle();
        },
        [&] {
            tree.setCurrentItem(dbItem);
            view.viewport()->repaint();
            settle();
        });
    const int rows = view.model()->rowCount();

    QTreeWidgetItem* deviceItem = tree.fixedNode(rqshell::FixedNode::Device)->child(0)->child(0);
    double selectDevice = measure(
        [&] {
            tree.setCurrentItem(section);
            settle();
        },
        [&] {
            tree.setCurrentItem(deviceItem);
            view.viewport()->repaint();
            settle();
        });
    const int points = view.model()->rowCount();

    QScrollBar* bar = view.verticalScrollBar();
    double page = measure(
                      [&] {
                          bar->setValue(bar->maximum() / 2);
                          settle();
                      },
                      [&] {
                          for (int i = 0; i < 20; ++i) {
                              bar->setValue(bar->value() + bar->pageStep());
                              view.viewport()->repaint();
                          }
                      }) /
                  20;

    const double ratio = gui / headless;
    std::printf("rows listed                     %d\n", rows);
    std::printf("select database node            %.1f ms   (target <= 100 ms)  %s\n", select,
                select <= 100 ? "met" : "MISSED");
    std::printf("points listed                   %d\n", points);
    std::printf("select device node              %.1f ms   (target <= 100 ms)  %s\n", selectDevice,
                selectDevice <= 100 ? "met" : "MISSED");
    std::printf("scroll one page                 %.2f ms\n", page);
    std::printf("open, headless                  %.1f ms\n", headless);
    std::printf("open, main window               %.1f ms\n", gui);
    std::printf("main window / headless          %.2f     (target <= 1.30)    %s\n", ratio,
                ratio <= 1.3 ? "met" : "MISSED");
    return rows == kItems && points == kPoints && select <= 100 && selectDevice <= 100 &&
                   ratio <= 1.3
               ? 0
               : 1;
}
