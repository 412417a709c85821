// Opening projects of 1,000 to 1,000,000 real-time data items as whole processes,
// each figure beside its anchor measured in the same run, runs interleaved so that
// other load on the machine touches both alike:
//   - open:        `rqpcli info DIR`    against `xmllint --noout rtdb.xml`;
//   - open + save: `rqpcli resave DIR`  against `xmllint --output /dev/null rtdb.xml`;
//   - peak memory (maxrss of wait4) of `rqpcli info DIR` against xmllint --noout's;
//   - `rqpdev DIR` until its main window is mapped, splash included, against
//     `rqpcli info DIR` (100,000 items and more, only with an X display: run.sh
//     starts Xvfb).
// Prints the medians, the ratios and the growth per item since the size before,
// each size as soon as it is measured.
//
//   bench_open [--million] [--runs N] [--keep DIR] [--spread] [--sizes N,N,...]
//     --million  adds the 1,000,000-item project (about 100 MiB of rtdb.xml)
//     --spread   puts as many device points, alarms and history data as items
//                beside them (several big files: the parallel open)
//     --sizes    other project sizes than 1,000, 10,000 and 100,000 items
//   bench_open threads N DIR   (child) opens DIR with N threads (0: automatic)

#include "BenchTiming.h"
#include "core/FileUtil.h"
#include "core/MessageSink.h"
#include "project/Project.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#ifdef RQ_BENCH_X11
#include <X11/Xlib.h>
#include <poll.h>
#endif

namespace fs = std::filesystem;
using bench::Clock;
using bench::median;
using bench::ms;

namespace {

const std::string H = "<?xml version=\"1.0\" ?>\r\n";

void put(const fs::path& file, const std::string& text) {
    std::string error;
    if (!rq::writeFileAtomic(file.string(), text, &error)) {
        std::fprintf(stderr, "cannot write %s: %s\n", file.c_str(), error.c_str());
        std::exit(1);
    }
}

// `items` data in 4 databases, groups of 10 subgroups of 500 items each.
void generate(const fs::path& dir, int items, bool spread) {
    fs::create_directories(dir);
    put(dir / "rqrun.xml", H + "<rqrun name=\"big\" description=\"benchmark\" "
                               "devicename=\"RQ-HMI1024\">\r\n\t<slaveip addr=\"127.0.0.1\"/>\r\n"
                               "\t<compile defines=\"\" libs=\"\" libs_linux=\"\" include=\"\"/>"
                               "\r\n</rqrun>\r\n");
    std::string s = H + "<rtdbs>\r\n";
    const int perDb = (items + 3) / 4;
    int made = 0;
    for (int d = 0; d < 4; ++d) {
        s += "<rtdb name=\"db" + std::to_string(d) + "\" sync=\"1\" >\r\n";
        for (int sub = 0; made < items && sub * 500 < perDb; ++sub) {
            if (sub % 10 == 0)
                s += "\t<datagroup name=\"g" + std::to_string(sub / 10) + "\">\r\n";
            s += "\t\t<datagroup name=\"s" + std::to_string(sub) + "\">\r\n";
            for (int i = 0; i < 500 && sub * 500 + i < perDb && made < items; ++i, ++made)
                s += "\t\t\t<data name=\"Var_" + std::to_string(sub) + "_" + std::to_string(i) +
                     "\" type=\"float\" length=\"4\" init=\"0\" description=\"measured "
                     "value of the plant\" />\r\n";
            s += "\t\t</datagroup>\r\n";
            if (sub % 10 == 9 || made >= items || (sub + 1) * 500 >= perDb)
                s += "\t</datagroup>\r\n";
        }
        s += "</rtdb>\r\n";
    }
    put(dir / "rtdb.xml", s + "</rtdbs>\r\n");
    put(dir / "hmidb.xml", H + "<hmidb name=\"hmi\" period_unit=\"ms\">\r\n\t<datagroup "
                               "name=\"io\">\r\n\t</datagroup>\r\n\t<datagroup name=\"memory\">"
                               "\r\n\t</datagroup>\r\n</hmidb>\r\n");
    put(dir / "hmiwindow.xml", H + "<hmiwindow>\r\n</hmiwindow>\r\n");
    if (!spread)
        return;
    auto ref = [](int k) {
        return "Var_" + std::to_string((k / 500) % 50) + "_" + std::to_string(k % 500);
    };
    s = H + "<devices>\r\n";
    for (int k = 0, l = 0; k < items; ++l) {
        s += "\t<link name=\"link" + std::to_string(l) +
             "\" period=\"500\" status_var=\"\" control_var=\"\" enable=\"1\" redundtype=\"master\""
             " masterlink=\"\" timeout=\"500\" params=\"\" driver=\"tcpclient\" "
             "server_ip=\"10.0.0.1\" server_port=\"502\">\r\n";
        for (int d = 0; d < 50 && k < items; ++d) {
            s += "\t\t<device name=\"dev" + std::to_string(d) +
                 "\" address=\"1\" driver=\"modbustcp\" manufacturer=\"\" product=\"Generic Modbus"
                 " TCP server\" params=\"\" status_var=\"\" control_var=\"\" enable=\"1\">\r\n";
            for (int p = 0; p < 50 && k < items; ++p, ++k)
                s += "\t\t\t<data type=\"holding register float\" address=\"" +
                     std::to_string(40001 + 2 * p) + "\" dataname=\"db1." + ref(k) +
                     "\" status_var=\"\" group=\"0\" mode=\"read\" enable=\"1\"/>\r\n";
            s += "\t\t</device>\r\n";
        }
        s += "\t</link>\r\n";
    }
    put(dir / "device.xml", s + "</devices>\r\n");
    s = H + "<alarm>\r\n\t<alarmlog size=\"1000\" />\r\n";
    for (int k = 0, g = 0; k < items; ++g) {
        s += "\t<alarmgroup name=\"ag" + std::to_string(g) + "\" >\r\n";
        for (int a = 0; a < 1000 && k < items; ++a, ++k)
            s += "\t\t<data dbname=\"db2\" dataname=\"" + ref(k) +
                 "\" priority=\"1\" status_var=\"\">\r\n"
                 "\t\t\t<High enable_var=\"\" value_var=\"90\" info=\"value high\" "
                 "restore_info=\"value normal\" />\r\n\t\t</data>\r\n";
        s += "\t</alarmgroup>\r\n";
    }
    put(dir / "alarm.xml", s + "</alarm>\r\n");
    s = H + "<rqhistory>\r\n";
    for (int k = 0, r = 0; k < items; ++r) {
        s += "\t<historydb name=\"h" + std::to_string(r) +
             "\" period=\"1000\" path=\"flash\" remaindays=\"1\" indexperiod=\"600\">\r\n"
             "\t\t<logdata>\r\n";
        for (int h = 0; h < 1000 && k < items; ++h, ++k)
            s += "\t\t\t<data dbname=\"db3\" dataname=\"" + ref(k) +
                 "\" type=\"period\" periodvalue=\"1000\" queryvarname=\"\" "
                 "description=\"trend\"/>\r\n";
        s += "\t\t</logdata>\r\n\t</historydb>\r\n";
    }
    put(dir / "history.xml", s + "</rqhistory>\r\n");
}

struct ChildResult {
    double seconds = 0; // wall time
    double cpu = 0;     // user + system time
    long maxRssKiB = 0;
};

pid_t spawn(const std::vector<std::string>& argv, const std::vector<std::string>& env = {}) {
    pid_t pid = fork();
    if (pid == 0) {
        int devnull = ::open("/dev/null", O_WRONLY);
        dup2(devnull, 1);
        dup2(devnull, 2);
        for (const std::string& e : env)
            putenv(const_cast<char*>(e.c_str()));
        std::vector<char*> args;
        for (const auto& a : argv)
            args.push_back(const_cast<char*>(a.c_str()));
        args.push_back(nullptr);
        execvp(args[0], args.data());
        _exit(127);
    }
    return pid;
}

ChildResult finish(pid_t pid, Clock::time_point start, const std::string& what, bool killed) {
    int status = 0;
    struct rusage ru {};
    wait4(pid, &status, 0, &ru);
    ChildResult r;
    r.seconds = std::chrono::duration<double>(Clock::now() - start).count();
    r.cpu =
        ru.ru_utime.tv_sec + ru.ru_stime.tv_sec + (ru.ru_utime.tv_usec + ru.ru_stime.tv_usec) / 1e6;
    r.maxRssKiB = ru.ru_maxrss;
    if (!killed && (!WIFEXITED(status) || WEXITSTATUS(status) != 0)) {
        std::fprintf(stderr, "%s failed\n", what.c_str());
        std::exit(1);
    }
    return r;
}

// A whole process: wall time until it ends and its peak resident memory.
ChildResult run(const std::vector<std::string>& argv) {
    auto start = Clock::now();
    return finish(spawn(argv), start, argv[0], false);
}

#ifdef RQ_BENCH_X11
// How long rqpdev may take to show its main window before the run is given up.
constexpr double kWindowTimeout = 300;

// `rqpdev DIR` until its main window (title "... - RQPDev") is mapped, in a fresh
// settings, runtime and temporary directory so that no other instance answers.
double untilWindowShown(Display* x, const std::string& rqpdev, const std::string& dir,
                        bool splash) {
    const fs::path home =
        fs::temp_directory_path() / ("rq-bench-open-x-" + std::to_string(getpid()));
    fs::remove_all(home);
    fs::create_directories(home);
    std::vector<std::string> env = {"XDG_CONFIG_HOME=" + home.string(),
                                    "XDG_RUNTIME_DIR=" + home.string(), "TMPDIR=" + home.string(),
                                    "QT_QPA_PLATFORM=xcb"};
    std::vector<std::string> argv = {rqpdev};
    if (!splash)
        argv.push_back("--no-splash");
    argv.push_back(dir);
    XSync(x, True); // forget the events of earlier runs
    auto start = Clock::now();
    pid_t pid = spawn(argv, env);
    auto elapsed = [&] { return std::chrono::duration<double>(Clock::now() - start).count(); };
    double shown = -1;
    while (shown < 0) {
        // Wait for X events at most a tenth of a second at a time, so that the
        // time-out holds even when no event arrives at all.
        if (!XPending(x)) {
            struct pollfd p = {ConnectionNumber(x), POLLIN, 0};
            ::poll(&p, 1, 100);
        }
        if (elapsed() > kWindowTimeout) {
            std::fprintf(stderr, "rqpdev showed no main window within %.0f s\n", kWindowTimeout);
            kill(pid, SIGKILL);
            std::exit(1);
        }
        int status = 0;
        if (waitpid(pid, &status, WNOHANG) == pid) {
            std::fprintf(stderr, "rqpdev ended before its main window showed\n");
            std::exit(1);
        }
        while (shown < 0 && XPending(x)) {
            XEvent e;
            XNextEvent(x, &e);
            if (e.type != MapNotify)
                continue;
            char* name = nullptr;
            if (XFetchName(x, e.xmap.window, &name) && name) {
                if (std::strstr(name, " - RQPDev"))
                    shown = elapsed();
                XFree(name);
            }
        }
    }
    kill(pid, SIGTERM);
    finish(pid, start, rqpdev, true);
    fs::remove_all(home);
    return shown;
}
#endif

struct Row {
    int items = 0;
    double mib = 0;
    double infoWall = 0, lintWall = 0;
    double oneThread = 0, twoThreads = 0, automatic = 0;
    double info = 0, lint = 0, resave = 0, lintOut = 0, infoRss = 0, lintRss = 0;
    double window = 0, windowInfo = 0, windowNoSplash = 0;
};

// One size's figures, and their growth per item since the size before.
void printRow(const Row& r, bool spread, const Row* before) {
    std::printf("%9d %7.1f | %7.3f %7.3f %5.2f | %7.3f %7.3f %5.2f | %8.0f %8.0f %5.2f | %7.3f "
                "%7.3f %5.2f\n",
                r.items, r.mib, r.info, r.lint, r.info / r.lint, r.resave, r.lintOut,
                r.resave / r.lintOut, r.infoRss, r.lintRss, r.infoRss / r.lintRss, r.infoWall,
                r.lintWall, r.infoWall / r.lintWall);
    if (r.window > 0)
        std::printf("    rqpdev %d items until the window shows (wall): %.3f s with the splash, "
                    "%.3f s without; rqpcli info %.3f s; ratio %.2f with, %.2f without\n",
                    r.items, r.window, r.windowNoSplash, r.windowInfo, r.window / r.windowInfo,
                    r.windowNoSplash / r.windowInfo);
    if (spread)
        std::printf("    open of %d items in four files (wall): one thread %.3f s, two %.3f s, "
                    "automatic %.3f s\n",
                    r.items, r.oneThread, r.twoThreads, r.automatic);
    if (before) {
        const Row& a = *before;
        const double n = r.items - a.items;
        std::printf("    growth per item since %d: info %6.2f us  resave %6.2f us  xmllint %6.2f "
                    "us  |  peak memory info %6.0f B  xmllint %6.0f B\n",
                    a.items, (r.info - a.info) / n * 1e6, (r.resave - a.resave) / n * 1e6,
                    (r.lint - a.lint) / n * 1e6, (r.infoRss - a.infoRss) * 1024 / n,
                    (r.lintRss - a.lintRss) * 1024 / n);
    }
    std::fflush(stdout);
}

int openOnce(unsigned threads, const std::string& dir) {
    rq::Catalogs catalogs;
    catalogs.loadFrom(rq::programDirectory());
    rq::SilentSink sink;
    rq::Project p(catalogs, sink);
    p.doc.setOpenThreads(threads);
    std::string error;
    if (!p.doc.open(dir, &error, rq::OpenPurpose::Inspect)) {
        std::fprintf(stderr, "%s\n", error.c_str());
        return 1;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 4 && std::string(argv[1]) == "threads")
        return openOnce(static_cast<unsigned>(std::atoi(argv[2])), argv[3]);
    bool million = false, spread = false;
    std::vector<int> sizes = {1000, 10000, 100000};
    int runs = 5;
    fs::path base;
    for (int i = 1; i < argc; ++i) {
        std::string a = argv[i];
        if (a == "--million")
            million = true;
        else if (a == "--spread")
            spread = true;
        else if (a == "--sizes" && i + 1 < argc) {
            sizes.clear();
            for (std::string list = argv[++i]; !list.empty();) {
                auto comma = list.find(',');
                sizes.push_back(std::atoi(list.substr(0, comma).c_str()));
                list = comma == std::string::npos ? "" : list.substr(comma + 1);
            }
        } else if (a == "--runs" && i + 1 < argc)
            runs = std::max(1, std::atoi(argv[++i]));
        else if (a == "--keep" && i + 1 < argc)
            base = argv[++i];
        else {
            std::fprintf(stderr, "usage: bench_open [--million] [--spread] [--runs N] [--keep DIR] "
                                 "[--sizes N,N,...]\n"
                                 "       bench_open threads N DIR\n");
            return 2;
        }
    }
    if (million)
        sizes.push_back(1000000);
    const bool keep = !base.empty();
    if (!keep)
        base = fs::temp_directory_path() / ("rq-bench-open-" + std::to_string(getpid()));
    const fs::path bin = fs::read_symlink("/proc/self/exe").parent_path();
    const std::string self = (bin / "bench_open").string();
    const std::string rqpcli = (bin / "rqpcli").string(), rqpdev = (bin / "rqpdev").string();
#ifdef RQ_BENCH_X11
    Display* x = fs::exists(rqpdev) ? XOpenDisplay(nullptr) : nullptr;
    if (x)
        XSelectInput(x, DefaultRootWindow(x), SubstructureNotifyMask);
    else
        std::printf("no X display or no rqpdev: the window figure is left out\n");
#else
    std::printf("built without X11: the window figure is left out\n");
#endif

    std::printf("medians of %d interleaved runs (1,000,000 items: at most 3)%s; times are CPU "
                "(user + system) seconds, the wall time of info and xmllint --noout beside; each "
                "size is printed as soon as it is measured\n",
                runs, spread ? ", device/alarm/history as big as the database" : "");
    std::printf("%9s %7s | %7s %7s %5s | %7s %7s %5s | %8s %8s %5s | %7s %7s %5s\n", "items", "MiB",
                "info s", "lint s", "ratio", "resave", "lint-o", "ratio", "info KiB", "lint KiB",
                "ratio", "wall i", "wall l", "ratio");
    std::fflush(stdout);
    std::vector<Row> rows;
    for (int items : sizes) {
        const fs::path dir = base / std::to_string(items);
        const std::string d = dir.string(), rtdb = (dir / "rtdb.xml").string();
        generate(dir, items, spread);
        run({rqpcli, "resave", d}); // the files as the writers write them
        Row row;
        row.items = items;
        row.mib = fs::file_size(dir / "rtdb.xml") / 1048576.0;
        const int n = items >= 1000000 ? std::min(runs, 3) : runs;
        std::vector<double> one, two, automatic, infoWall, lintWall, info, lint, resave, lintOut,
            infoRss, lintRss, win, winInfo, winBare;
        for (int r = 0; r < n; ++r) {
            ChildResult l = run({"xmllint", "--noout", rtdb});
            ChildResult i = run({rqpcli, "info", d});
            ChildResult lo = run({"xmllint", "--output", "/dev/null", rtdb});
            ChildResult s = run({rqpcli, "resave", d});
            lint.push_back(l.cpu);
            info.push_back(i.cpu);
            lintOut.push_back(lo.cpu);
            resave.push_back(s.cpu);
            infoWall.push_back(i.seconds);
            lintWall.push_back(l.seconds);
            lintRss.push_back(static_cast<double>(l.maxRssKiB));
            infoRss.push_back(static_cast<double>(i.maxRssKiB));
            if (spread) {
                one.push_back(run({self, "threads", "1", d}).seconds);
                two.push_back(run({self, "threads", "2", d}).seconds);
                automatic.push_back(run({self, "threads", "0", d}).seconds);
            }
#ifdef RQ_BENCH_X11
            if (x && items >= 100000) {
                win.push_back(untilWindowShown(x, rqpdev, d, true));
                winInfo.push_back(run({rqpcli, "info", d}).seconds);
                winBare.push_back(untilWindowShown(x, rqpdev, d, false));
            }
#endif
        }
        row.oneThread = median(one);
        row.twoThreads = median(two);
        row.automatic = median(automatic);
        row.infoWall = median(infoWall);
        row.lintWall = median(lintWall);
        row.info = median(info);
        row.lint = median(lint);
        row.resave = median(resave);
        row.lintOut = median(lintOut);
        row.infoRss = median(infoRss);
        row.lintRss = median(lintRss);
        row.window = median(win);
        row.windowInfo = median(winInfo);
        row.windowNoSplash = median(winBare);
        rows.push_back(row);
        printRow(row, spread, rows.size() > 1 ? &rows[rows.size() - 2] : nullptr);
    }
    if (!keep)
        fs::remove_all(base);
    return 0;
}
