// Opening and saving a large project beside `xmllint --noout` over the same files,
// in the same run: 100,000 real-time data items in nested groups, 1,000 devices of
// 50 data points, 10,000 alarm data and 10,000 history data.
//
//   bench_project [--keep DIR]     generate, measure, print the ratios
//   bench_project open DIR         (child) open the project once
//   bench_project save DIR         (child) open, then print the time of one save

#include "core/FileUtil.h"
#include "core/MessageSink.h"
#include "project/Project.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

namespace {

constexpr int kDatabases = 4, kGroups = 10, kSubGroups = 5, kItemsPerSub = 500; // 100,000
constexpr int kLinks = 20, kDevicesPerLink = 50, kPointsPerDevice = 50;         // 1,000 x 50
constexpr int kAlarmGroups = 10, kAlarmsPerGroup = 1000;                        // 10,000
constexpr int kHistoryRecords = 10, kHistoryPerRecord = 1000;                   // 10,000

std::string itemName(int sub, int i) {
    return "Var_" + std::to_string(sub) + "_" + std::to_string(i);
}

void put(const fs::path& file, const std::string& text) {
    std::string error;
    if (!rq::writeFileAtomic(file.string(), text, &error)) {
        std::fprintf(stderr, "cannot write %s: %s\n", file.c_str(), error.c_str());
        std::exit(1);
    }
}

void generate(const fs::path& dir) {
    fs::create_directories(dir);
    const std::string H = "<?xml version=\"1.0\" ?>\r\n";
    put(dir / "rqrun.xml", H + "<rqrun name=\"big\" description=\"benchmark\" "
                               "devicename=\"RQ-HMI1024\">\r\n\t<slaveip addr=\"127.0.0.1\"/>\r\n"
                               "\t<compile defines=\"\" libs=\"\" libs_linux=\"\" include=\"\"/>"
                               "\r\n</rqrun>\r\n");
    std::string s = H + "<rtdbs>\r\n";
    for (int d = 0; d < kDatabases; ++d) {
        s += "<rtdb name=\"db" + std::to_string(d) + "\" sync=\"1\" >\r\n";
        for (int g = 0; g < kGroups; ++g) {
            s += "\t<datagroup name=\"g" + std::to_string(g) + "\">\r\n";
            for (int k = 0; k < kSubGroups; ++k) {
                int sub = g * kSubGroups + k;
                s += "\t\t<datagroup name=\"s" + std::to_string(sub) + "\">\r\n";
                for (int i = 0; i < kItemsPerSub; ++i)
                    s += "\t\t\t<data name=\"" + itemName(sub, i) +
                         "\" type=\"float\" length=\"4\" init=\"0\" description=\"measured "
                         "value of the plant\" />\r\n";
                s += "\t\t</datagroup>\r\n";
            }
            s += "\t</datagroup>\r\n";
        }
        s += "</rtdb>\r\n";
    }
    put(dir / "rtdb.xml", s + "</rtdbs>\r\n");
    put(dir / "hmidb.xml", H + "<hmidb name=\"hmi\" period_unit=\"ms\">\r\n\t<datagroup "
                               "name=\"io\">\r\n\t</datagroup>\r\n\t<datagroup name=\"memory\">"
                               "\r\n\t</datagroup>\r\n</hmidb>\r\n");
    put(dir / "hmiwindow.xml", H + "<hmiwindow>\r\n</hmiwindow>\r\n");

    s = H + "<devices>\r\n";
    int ref = 0;
    auto nextRef = [&] {
        int sub = (ref / kItemsPerSub) % (kGroups * kSubGroups), i = ref % kItemsPerSub;
        ++ref;
        return itemName(sub, i);
    };
    for (int l = 0; l < kLinks; ++l) {
        s += "\t<link name=\"link" + std::to_string(l) +
             "\" period=\"500\" status_var=\"\" control_var=\"\" enable=\"1\" redundtype=\"master\""
             " masterlink=\"\" timeout=\"500\" params=\"\" driver=\"tcpclient\" "
             "server_ip=\"10.0.0." +
             std::to_string(l) + "\" server_port=\"502\">\r\n";
        for (int d = 0; d < kDevicesPerLink; ++d) {
            s += "\t\t<device name=\"dev" + std::to_string(d) +
                 "\" address=\"1\" driver=\"modbustcp\" manufacturer=\"\" product=\"Generic Modbus"
                 " TCP server\" params=\"\" status_var=\"\" control_var=\"\" enable=\"1\">\r\n";
            for (int p = 0; p < kPointsPerDevice; ++p)
                s += "\t\t\t<data type=\"holding register float\" address=\"" +
                     std::to_string(40001 + 2 * p) + "\" dataname=\"db1." + nextRef() +
                     "\" status_var=\"\" group=\"0\" mode=\"read\" enable=\"1\"/>\r\n";
            s += "\t\t</device>\r\n";
        }
        s += "\t</link>\r\n";
    }
    put(dir / "device.xml", s + "</devices>\r\n");

    s = H + "<alarm>\r\n\t<alarmlog size=\"1000\" />\r\n";
    for (int g = 0; g < kAlarmGroups; ++g) {
        s += "\t<alarmgroup name=\"ag" + std::to_string(g) + "\" >\r\n";
        for (int a = 0; a < kAlarmsPerGroup; ++a) {
            s += "\t\t<data dbname=\"db2\" dataname=\"" + nextRef() +
                 "\" priority=\"1\" status_var=\"\">\r\n"
                 "\t\t\t<High enable_var=\"\" value_var=\"90\" info=\"value high\" "
                 "restore_info=\"value normal\" />\r\n"
                 "\t\t\t<Low enable_var=\"\" value_var=\"10\" info=\"value low\" "
                 "restore_info=\"value normal\" />\r\n\t\t</data>\r\n";
        }
        s += "\t</alarmgroup>\r\n";
    }
    put(dir / "alarm.xml", s + "</alarm>\r\n");

    s = H + "<rqhistory>\r\n";
    for (int r = 0; r < kHistoryRecords; ++r) {
        s += "\t<historydb name=\"h" + std::to_string(r) +
             "\" period=\"1000\" path=\"flash\" remaindays=\"1\" indexperiod=\"600\">\r\n"
             "\t\t<logdata>\r\n";
        for (int h = 0; h < kHistoryPerRecord; ++h)
            s += "\t\t\t<data dbname=\"db3\" dataname=\"" + nextRef() +
                 "\" type=\"period\" periodvalue=\"1000\" queryvarname=\"\" "
                 "description=\"trend\"/>\r\n";
        s += "\t\t</logdata>\r\n\t</historydb>\r\n";
    }
    put(dir / "history.xml", s + "</rqhistory>\r\n");
}

struct ChildResult {
    double seconds = 0;
    long maxRssKiB = 0;
    std::string out;
};

// Runs a program and measures its wall time and peak resident memory.
ChildResult runChild(const std::vector<std::string>& argv) {
    int fds[2];
    if (pipe(fds) != 0)
        std::exit(1);
    auto start = Clock::now();
    pid_t pid = fork();
    if (pid == 0) {
        dup2(fds[1], 1);
        int devnull = ::open("/dev/null", O_WRONLY);
        dup2(devnull, 2);
        close(fds[0]);
        std::vector<char*> args;
        for (const auto& a : argv)
            args.push_back(const_cast<char*>(a.c_str()));
        args.push_back(nullptr);
        execvp(args[0], args.data());
        _exit(127);
    }
    close(fds[1]);
    ChildResult r;
    char buf[4096];
    ssize_t n;
    while ((n = read(fds[0], buf, sizeof buf)) > 0)
        r.out.append(buf, static_cast<size_t>(n));
    close(fds[0]);
    int status = 0;
    struct rusage ru {};
    wait4(pid, &status, 0, &ru);
    r.seconds = std::chrono::duration<double>(Clock::now() - start).count();
    r.maxRssKiB = ru.ru_maxrss;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::fprintf(stderr, "%s failed\n", argv[0].c_str());
        std::exit(1);
    }
    return r;
}

int openOnce(const std::string& dir, bool timeSave) {
    rq::Catalogs catalogs;
    catalogs.loadFrom(rq::programDirectory());
    rq::SilentSink sink;
    rq::Project p(catalogs, sink);
    std::string error;
    if (!p.doc.open(dir, &error)) {
        std::fprintf(stderr, "%s\n", error.c_str());
        return 1;
    }
    if (timeSave) {
        auto start = Clock::now();
        rq::SaveReport r = p.doc.saveAll();
        double s = std::chrono::duration<double>(Clock::now() - start).count();
        if (!r.ok())
            return 1;
        std::printf("%.6f\n", s);
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::string(argv[1]) == "open")
        return openOnce(argv[2], false);
    if (argc == 3 && std::string(argv[1]) == "save")
        return openOnce(argv[2], true);
    fs::path dir =
        argc == 3 && std::string(argv[1]) == "--keep"
            ? fs::path(argv[2])
            : fs::temp_directory_path() / ("rq-bench-project-" + std::to_string(getpid()));
    generate(dir);
    std::vector<std::string> lint = {"xmllint", "--noout"};
    for (const char* f : {"rqrun.xml", "rtdb.xml", "hmidb.xml", "hmiwindow.xml", "device.xml",
                          "alarm.xml", "history.xml"})
        lint.push_back((dir / f).string());
    const std::string self = fs::read_symlink("/proc/self/exe").string();
    const int runs = 5;
    double lintBest = 1e9, openBest = 1e9, saveBest = 1e9;
    long lintRss = 0, openRss = 0;
    for (int i = 0; i < runs; ++i) {
        ChildResult l = runChild(lint);
        ChildResult o = runChild({self, "open", dir.string()});
        ChildResult s = runChild({self, "save", dir.string()});
        lintBest = std::min(lintBest, l.seconds);
        openBest = std::min(openBest, o.seconds);
        saveBest = std::min(saveBest, std::stod(s.out));
        lintRss = std::max(lintRss, l.maxRssKiB);
        openRss = std::max(openRss, o.maxRssKiB);
    }
    std::uintmax_t bytes = 0;
    for (const auto& e : fs::directory_iterator(dir))
        if (e.is_regular_file())
            bytes += e.file_size();
    std::printf("project: %.1f MiB in %s\n", bytes / 1048576.0, dir.c_str());
    std::printf("xmllint --noout: %8.3f s  peak %7ld KiB\n", lintBest, lintRss);
    std::printf("open:            %8.3f s  peak %7ld KiB\n", openBest, openRss);
    std::printf("save:            %8.3f s\n", saveBest);
    std::printf("ratio open/xmllint time   %.2f (target <= 1.5)\n", openBest / lintBest);
    std::printf("ratio save/xmllint time   %.2f (target <= 1.0)\n", saveBest / lintBest);
    std::printf("ratio open/xmllint memory %.2f (target <= 1.5)\n",
                static_cast<double>(openRss) / lintRss);
    if (argc != 3)
        fs::remove_all(dir);
    return 0;
}
