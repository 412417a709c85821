// The deployment dialogs driven as a user would, against an emulated device on its
// own loopback address: every result message, the buttons while a job runs, and
// the faults of the device.

#include "shell/DeployDialogs.h"
#include "deploy/transfer/TransferTestSupport.h"
#include "deploy/transfer/UpgradePackages.h"
#include "project/Project.h"
#include "sections/modules/ui/ModuleDialog.h"
#include "shell/ListView.h"
#include "shell/MainWindow.h"
#include "shell/ProjectTree.h"

#include "ShellApp.h"

#include <QCheckBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QToolBar>
#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

using rq::EmulatorFault;
using xfer::Device;
namespace fs = std::filesystem;

constexpr const char* kType = "RQ-HMI1024";

// Lets the dialog run until `done` holds; false after `ms`.
bool runUntil(const std::function<bool()>& done, int ms = 30000) {
    QElapsedTimer t;
    t.start();
    while (!done()) {
        if (t.elapsed() > ms)
            return false;
        QApplication::processEvents(QEventLoop::AllEvents, 5);
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

struct DeployDialogs : ::testing::Test {
    DeployDialogs() {
        rqtest::shellApp();
        catalogs.loadFrom(rqtest::programDir());
        project = std::make_unique<rq::Project>(catalogs, silent);
        xfer::makeProject(dir.path());
        rq::ProjectModel& m = project->model();
        m.name = "p";
        m.projectDirectory = dir.str();
        m.hmiType = &catalogs.hmi.entries().front();
        // A silent device costs one second here, not five.
        rq::ProtocolLimits quick = saved;
        quick.receiveWaitSeconds = 1;
        rq::setProtocolLimits(quick);
    }
    ~DeployDialogs() override { rq::setProtocolLimits(saved); }
    // The text of the message box the dialog showed, after waiting for it.
    std::string message(std::size_t index = 0) {
        if (!runUntil([&] { return sink.entries.size() > index; }))
            return "(no message)";
        return sink.entries[index].text;
    }

    // A 24-bit bitmap of this size; its path.
    QString bitmap(int w, int h) {
        const int stride = (w * 3 + 3) / 4 * 4;
        std::string b(54 + std::size_t(stride) * h, '\0');
        auto put32 = [&](int at, uint32_t v) {
            for (int i = 0; i < 4; ++i)
                b[at + i] = char(v >> (8 * i));
        };
        b[0] = 'B', b[1] = 'M';
        put32(2, uint32_t(b.size()));
        put32(10, 54);
        put32(14, 40);
        put32(18, uint32_t(w));
        put32(22, uint32_t(h));
        b[26] = 1, b[28] = 24;
        const std::string path = dir.file("logo" + std::to_string(w) + ".bmp");
        rqtest::writeFile(path, b);
        return QString::fromStdString(path);
    }

    rq::ProtocolLimits saved = rq::protocolLimits();
    rqtest::TempDir dir;
    rq::Catalogs catalogs;
    rq::SilentSink silent;
    rqtest::RecordingSink sink;
    std::unique_ptr<rq::Project> project;
};

TEST_F(DeployDialogs, CompileShowsTheToolchainResultAndKeepsButtonsOffMeanwhile) {
    rqtest::writeFile(dir.path() / "f.c", "int f(void) { return 1; }\n");
    rqshell::CCompileDialog d(project->doc, sink);
    d.setFields({"-DX=1", "", "", "\"%PRJ_DIR%/f.c\" "});
    d.compileButton()->click();
    EXPECT_EQ(d.statusLine()->text(), "Compiling, waiting...");
    ASSERT_TRUE(runUntil([&] { return d.compiling(); }));
    EXPECT_FALSE(d.compileButton()->isEnabled());
    EXPECT_FALSE(d.cancelButton()->isEnabled());
    ASSERT_TRUE(runUntil([&] { return !d.compiling(); }, 60000));
    EXPECT_EQ(d.statusLine()->text(), "Compile complete, output information:");
    EXPECT_EQ(d.outputBox()->toPlainText().toStdString(), rq::kDefaultCompileOutput);
    EXPECT_TRUE(d.compileButton()->isEnabled());
    EXPECT_TRUE(fs::exists(dir.path() / "libhmiuserfun.so"));
    EXPECT_TRUE(sink.entries.empty());

    project->model().projectDirectory.clear();
    d.compileButton()->click();
    EXPECT_EQ(message(), rq::kMsgNoProjectDirectory);
}

TEST_F(DeployDialogs, ClosingTheWindowStopsARunningCompile) {
    // A source that is a named pipe keeps the compiler waiting until it is stopped.
    ASSERT_EQ(::mkfifo(dir.file("wait.c").c_str(), 0600), 0);
    rqshell::CCompileDialog d(project->doc, sink);
    d.setFields({"", "", "", "\"%PRJ_DIR%/wait.c\" "});
    d.show();
    d.compileButton()->click();
    ASSERT_TRUE(runUntil([&] { return d.compiling(); }));
    QElapsedTimer took;
    took.start();
    d.close();
    ASSERT_TRUE(runUntil([&] { return !d.compiling(); }, 5000));
    EXPECT_LT(took.elapsed(), 3000);
    EXPECT_FALSE(d.isVisible());
    EXPECT_FALSE(rq::ProcessRunner::running());
}

TEST_F(DeployDialogs, DownloadBuildsThePackageAndDownloadsIt) {
    Device device("127.47.0.1", kType);
    rqshell::CDownloadDialog d(project->doc, rqtest::programDir(), sink);
    d.readiness = {5, 50, 0};
    d.ipField()->setText(QString::fromStdString(device.ip));
    d.downloadButton()->click();
    EXPECT_EQ(message(0), "download package does not exist, please create download package!");
    d.createPackageButton()->click();
    EXPECT_FALSE(d.cancelButton()->isEnabled()); // a script is not cancelled
    EXPECT_EQ(message(1), "Create download package successfully!");
    d.downloadButton()->click();
    EXPECT_TRUE(d.cancelButton()->isEnabled());
    EXPECT_FALSE(d.quitButton()->isEnabled());
    EXPECT_FALSE(d.createPackageButton()->isEnabled());
    EXPECT_EQ(message(2), "Project download successfully!");
    EXPECT_TRUE(d.quitButton()->isEnabled());
    EXPECT_TRUE(d.statusLine()->isHidden()); // the status line goes at the end
    EXPECT_TRUE(fs::exists(device.file("/home/app/rqupdate.rqp")));
    // A device without a version file got the program directory's upgrade first.
    auto upgrade = rq::newestUpgradePackage(rqtest::programDir());
    ASSERT_TRUE(upgrade);
    EXPECT_NE(
        rqtest::readFile(device.file("/home/app/version")).find(std::to_string(upgrade->date)),
        std::string::npos);

    d.ipField()->clear();
    d.clockButton()->click();
    EXPECT_EQ(message(3), "Please input corresponding HMI IP address!");
    d.ipField()->setText(QString::fromStdString(device.ip));
    d.clockButton()->click();
    EXPECT_EQ(message(4), "Adjust time successfully!");
}

TEST_F(DeployDialogs, UploadAsksForItsPathAndOpensTheUploadedProject) {
    // A device that holds this project, downloaded by the job.
    Device device("127.47.2.1", kType);
    project->model().downloadPassword = "pw";
    ASSERT_TRUE(rq::BuildPackageJob(rq::DeployProject::from(project->model()), rqtest::programDir(),
                                    nullptr)
                    .run()
                    .succeeded);
    rq::ProjectDownloadJob down(rq::DeployProject::from(project->model()), device.ip,
                                rqtest::programDir(), nullptr);
    down.readiness = {5, 50, 0};
    ASSERT_TRUE(down.run().succeeded);

    rqtest::TempDir target;
    rqshell::CUploadDialog d(dir.str(), device.ip, rqtest::programDir(), sink);
    std::string opened;
    d.uploaded = [&](const std::string& t) { opened = t; };
    d.uploadButton()->click();
    EXPECT_EQ(message(0), "Please choose the path of uploading project!");

    // The folder browser fills the path; the current project's own folder asks first.
    d.browseFolder = [&](const std::string& title) -> std::optional<std::string> {
        EXPECT_EQ(title, rq::kTitleParentFolder);
        return dir.str();
    };
    QPushButton* browse = nullptr;
    for (QPushButton* b : d.findChildren<QPushButton*>())
        if (b->accessibleName() == "Browse project path")
            browse = b;
    ASSERT_TRUE(browse);
    browse->click();
    EXPECT_EQ(d.pathField()->text().toStdString(), dir.str());
    sink.answers = {false};
    d.uploadButton()->click();
    EXPECT_EQ(message(1), "Are you sure to overwrite with current project? ");
    EXPECT_TRUE(sink.entries[1].question);

    d.pathField()->setText(QString::fromStdString(target.str()));
    d.passwordField()->setText("wrong");
    d.uploadButton()->click();
    EXPECT_EQ(message(2), "Project file decompress fail!");
    EXPECT_TRUE(opened.empty());

    d.passwordField()->setText("pw");
    d.uploadButton()->click();
    EXPECT_EQ(message(3), "Upload successfully!");
    EXPECT_EQ(opened, target.str());
    EXPECT_TRUE(fs::exists(target.path() / "rqrun.xml"));
}

TEST_F(DeployDialogs, UpgradePackageChecksItsFieldsAndDownloads) {
    rqshell::CUpgradeDialog d("", sink);
    d.downloadButton()->click();
    EXPECT_EQ(message(0), "Please input corresponding HMI IP address!");
    d.ipField()->setText("127.47.3.1");
    d.downloadButton()->click();
    EXPECT_EQ(message(1), "Please choose download file!");
    d.fileField()->setText(QString::fromStdString(dir.file("none.rqp")));
    d.downloadButton()->click();
    EXPECT_EQ(message(2), "Download file does not exist, please choose download file!");

    // The program directory's upgrade package is taken.
    auto upgrade = rq::newestUpgradePackage(rqtest::programDir());
    ASSERT_TRUE(upgrade);
    Device device("127.47.3.6", kType, "20200101");
    d.fileField()->setText(QString::fromStdString(upgrade->path));
    d.ipField()->setText(QString::fromStdString(device.ip));
    d.downloadButton()->click();
    EXPECT_EQ(message(3), "Upgrade package download successfully! ");
}

TEST_F(DeployDialogs, StartupImageChecksTheBitmapAndDownloadsIt) {
    Device device("127.47.4.1", kType);
    rqshell::CLogoDialog d(project->model(), rqtest::programDir(), sink);
    d.readiness = {5, 50, 50};
    d.ipField()->setText(QString::fromStdString(device.ip));
    d.downloadButton()->click();
    EXPECT_EQ(message(0), "Please choose image file!");

    // A 24-bit bitmap of the wrong width, then one of the type's 1024 x 768.
    d.imageField()->setText(bitmap(800, 768));
    d.downloadButton()->click();
    EXPECT_EQ(message(1), "bmp width is error, need 1024 pixel!");
    d.imageField()->setText(bitmap(1024, 768));
    d.downloadButton()->click();
    EXPECT_EQ(message(2), "Download startup image successfully!");
    EXPECT_TRUE(fs::exists(device.file("/tmp/rqupdate.rqp")));
}

// Each dialog's action against a device that fails in its own way: the message
// it shows, and its button back for the next try.
TEST_F(DeployDialogs, EveryDialogNamesTheFaultOfTheDevice) {
    ASSERT_TRUE(rq::BuildPackageJob(rq::DeployProject::from(project->model()), rqtest::programDir(),
                                    nullptr)
                    .run()
                    .succeeded);
    rqtest::TempDir target;
    rqshell::CDownloadDialog download(project->doc, rqtest::programDir(), sink);
    download.readiness = {2, 50, 0};
    rqshell::CUploadDialog upload(dir.str(), "", rqtest::programDir(), sink);
    upload.pathField()->setText(QString::fromStdString(target.str()));
    rqshell::CUpgradeDialog upgrade("", sink);
    rqtest::writeFile(dir.path() / "up.rqp", std::string(4096, 'u'));
    upgrade.fileField()->setText(QString::fromStdString(dir.file("up.rqp")));
    rqshell::CLogoDialog logo(project->model(), rqtest::programDir(), sink);
    logo.readiness = {5, 50, 50};
    logo.imageField()->setText(bitmap(1024, 768));
    rqshell::CMonitorDialog monitor("", rqtest::programDir(), sink);
    struct Action {
        QLineEdit* ip;
        QPushButton* button;
    };
    const Action down{download.ipField(), download.downloadButton()},
        clock{download.ipField(), download.clockButton()},
        up{upload.ipField(), upload.uploadButton()},
        package{upgrade.ipField(), upgrade.downloadButton()},
        image{logo.ipField(), logo.downloadButton()},
        monitoring{monitor.ipField(), monitor.monitoringButton()};
    const char* const downloadError = "Project download fail, communicating with slave error!";
    const char* const upError = "Upload fail, communication error!";
    const char* const packageError =
        "Upgrade package download fail, communicating with slave error!";
    const char* const imageError = "Download startup image fail, communication error!";
    struct Case {
        Action action;
        EmulatorFault fault;
        const char* text;
        const char* type = kType;
    };
    const Case cases[] = {
        {down, EmulatorFault::Refuse, "Project download fail,can not connect slave!"},
        {down, EmulatorFault::Silent, downloadError},
        {down, EmulatorFault::Cut, downloadError},
        {down, EmulatorFault::BadLength, downloadError},
        {down, EmulatorFault::Busy, downloadError},
        {down, EmulatorFault::None, "HMI type is not match, please select other type!",
         "rq-hmi1024"},
        {clock, EmulatorFault::Refuse, "Adjust time fail, can not connect slave!"},
        {clock, EmulatorFault::Silent, "Adjust time fail, communication error!"},
        {clock, EmulatorFault::Cut, "Adjust time fail, communication error!"},
        {clock, EmulatorFault::BadLength, "Adjust time fail, communication error!"},
        {up, EmulatorFault::Refuse, "Upload fail, can not connect slave HMI!"},
        {up, EmulatorFault::Silent, upError},
        {up, EmulatorFault::Cut, upError},
        {up, EmulatorFault::BadLength, upError},
        // The emulator refuses a package that does not unwrap: a communication error.
        {package, EmulatorFault::None, packageError},
        {package, EmulatorFault::Refuse, "Upgrade package download fail, can not connect slave!"},
        {package, EmulatorFault::Cut, packageError},
        {package, EmulatorFault::BadLength, packageError},
        {package, EmulatorFault::Silent, packageError},
        {image, EmulatorFault::Refuse, "Download startup image fail, can not connect slave!"},
        {image, EmulatorFault::Silent, imageError},
        {image, EmulatorFault::Cut, imageError},
        {image, EmulatorFault::BadLength, imageError},
        {image, EmulatorFault::Busy, imageError},
        // Starting the monitor service is a put: its faults give the upgrade texts.
        {monitoring, EmulatorFault::Refuse,
         "Upgrade package download fail, can not connect slave!"},
        {monitoring, EmulatorFault::Silent, packageError},
    };
    std::size_t n = 0;
    for (const Case& c : cases) {
        const std::string ip = "127.47.1." + std::to_string(n + 1);
        SCOPED_TRACE(ip);
        Device device(ip, c.type, {}, 0, c.fault);
        c.action.ip->setText(QString::fromStdString(ip));
        c.action.button->click();
        EXPECT_EQ(message(n++), c.text);
        EXPECT_TRUE(runUntil([&] { return c.action.button->isEnabled(); }));
    }
}

TEST_F(DeployDialogs, MonitorFillsTheFiguresOnEveryTick) {
    Device device("127.47.5.1", kType);
    rqshell::CMonitorDialog d(device.ip, rqtest::programDir(), sink);
    EXPECT_EQ(d.timer()->interval(), 2000);
    d.timer()->setInterval(50);
    d.monitoringButton()->click();
    EXPECT_FALSE(d.monitoringButton()->isEnabled());
    ASSERT_TRUE(runUntil([&] { return !d.figureFields().front()->text().isEmpty(); }));
    for (QLineEdit* f : d.figureFields())
        EXPECT_FALSE(f->text().isEmpty()) << f->accessibleName().toStdString();
    EXPECT_TRUE(d.figureFields().front()->text().endsWith('K'));
    EXPECT_TRUE(d.figureFields()[4]->text().contains('.'));
    EXPECT_TRUE(device.emulator->monitorRunning());

    // The device goes away: the figures are cleared.
    device.emulator->stop();
    ASSERT_TRUE(runUntil([&] { return d.figureFields().front()->text().isEmpty(); }));
    d.quitButton()->click();
    ASSERT_TRUE(runUntil([&] { return !d.isVisible() && !d.pollUnderWay(); }));
    EXPECT_TRUE(sink.entries.empty());

    // A busy device (its update port never ready) is monitored as any other.
    Device busy("127.47.5.9", kType, {}, 0, EmulatorFault::Busy);
    rqshell::CMonitorDialog b(busy.ip, rqtest::programDir(), sink);
    b.timer()->setInterval(50);
    b.monitoringButton()->click();
    EXPECT_TRUE(runUntil([&] { return !b.figureFields().front()->text().isEmpty(); }));
}

TEST_F(DeployDialogs, EveryToolCommandHasItsDialogAndAnUploadIsOpened) {
    rqshell::CMainFrame frame(catalogs, rqtest::programDir(), &sink);
    // Every button but Undo and Redo, which wait for a step of the history.
    for (QAction* a : frame.toolBar()->actions())
        if (!a->isSeparator() && a->data().toInt() != rq::cmd::kUndo &&
            a->data().toInt() != rq::cmd::kRedo) {
            EXPECT_TRUE(a->isEnabled()) << a->text().toStdString();
        }
    const std::pair<int, const char*> dialogs[] = {
        {rq::cmd::kCompile, "Compile"},
        {rq::cmd::kDownloadProject, "Download Project"},
        {rq::cmd::kUploadProject, "Upload Project"},
        {rq::cmd::kDownloadPackage, "Download Package"},
        {rq::cmd::kDownloadStartupImage, "Download Startup Image"},
        {rq::cmd::kMonitor, "Running Monitoring"},
    };
    for (auto [command, caption] : dialogs) {
        EXPECT_TRUE(frame.action(command)->isEnabled()) << caption;
        std::unique_ptr<QDialog> d = frame.makeDeployDialog(command);
        ASSERT_TRUE(d) << caption;
        EXPECT_EQ(d->windowTitle().toStdString(), caption);
    }

    // An uploaded project replaces the open one.
    rqtest::TempDir uploaded;
    const char* src = std::getenv("RQ_SOURCE_DIR");
    fs::copy(std::string(src ? src : ".") + "/data/examples/demo", uploaded.path(),
             fs::copy_options::recursive);
    frame.openUploadedProject(uploaded.str());
    EXPECT_EQ(frame.project().model().projectDirectory, uploaded.str());
    EXPECT_EQ(frame.project().model().name, "demo");
    // An upload over the open project's own folder was agreed to: its unsaved state
    // is not offered for saving over what was just uploaded (no question comes).
    frame.project().model().name = "edited";
    frame.project().model().modified = true;
    frame.openUploadedProject(uploaded.str());
    EXPECT_EQ(frame.project().model().name, "demo");
    EXPECT_FALSE(frame.project().model().modified);
    EXPECT_EQ(rqtest::readFile(uploaded.path() / "rqrun.xml").find("edited"), std::string::npos);
}

// A device that takes a put's content slowly (64 KiB every 5 ms) and tells whether
// the connection ended before the whole content had come.
struct SlowDevice {
    int listener = -1;
    std::thread thread;
    std::atomic<uint64_t> received{0};
    std::atomic<bool> closedEarly{false};

    explicit SlowDevice(const char* address) {
        listener = ::socket(AF_INET, SOCK_STREAM, 0);
        int one = 1;
        ::setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &one, sizeof one);
        sockaddr_in a{};
        a.sin_family = AF_INET;
        a.sin_port = htons(rq::kFilePort);
        a.sin_addr.s_addr = ::inet_addr(address);
        EXPECT_EQ(::bind(listener, reinterpret_cast<sockaddr*>(&a), sizeof a), 0);
        ::listen(listener, 1);
        thread = std::thread([this] {
            int c = ::accept(listener, nullptr, nullptr);
            if (c < 0)
                return;
            // A small receive buffer keeps the client's sends waiting on this reader.
            int small = 64 * 1024;
            ::setsockopt(c, SOL_SOCKET, SO_RCVBUF, &small, sizeof small);
            std::vector<char> buf(64 * 1024);
            for (;;) {
                ssize_t n = ::recv(c, buf.data(), buf.size(), 0);
                if (n <= 0) {
                    closedEarly = received < (64u << 20);
                    break;
                }
                received += uint64_t(n);
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            }
            ::close(c);
        });
    }
    ~SlowDevice() {
        ::shutdown(listener, SHUT_RDWR);
        ::close(listener);
        thread.join();
    }
};

TEST_F(DeployDialogs, CancelStopsA64MiBPutAtOnceAndTheWindowStaysResponsive) {
    const std::string big = dir.file("big.rqp");
    rqtest::writeFile(big, std::string(64u << 20, 'x'));
    SlowDevice device("127.47.6.1");
    rqshell::CUpgradeDialog d("127.47.6.1", sink);
    d.fileField()->setText(QString::fromStdString(big));

    // A heartbeat on the window's thread: the longest gap between its ticks.
    QTimer beat;
    beat.setInterval(5);
    QElapsedTimer since;
    qint64 longest = 0;
    QObject::connect(&beat, &QTimer::timeout,
                     [&] { longest = std::max(longest, since.restart()); });
    since.start();
    beat.start();
    d.downloadButton()->click();
    EXPECT_FALSE(d.downloadButton()->isEnabled());
    EXPECT_TRUE(d.cancelButton()->isEnabled());
    ASSERT_TRUE(runUntil([&] { return d.progressBar()->value() >= 5; }));
    EXPECT_LT(d.progressBar()->value(), 100);
    EXPECT_NE(d.progressText()->text().indexOf("of 64.0 MiB"), -1)
        << d.progressText()->text().toStdString();
    beat.stop();
    EXPECT_LT(longest, 100) << "the window's thread was held";

    QElapsedTimer cancelTook;
    cancelTook.start();
    d.cancelButton()->click();
    ASSERT_TRUE(runUntil([&] { return !d.busy(); }, 5000));
    EXPECT_LT(cancelTook.elapsed(), 1000);
    EXPECT_EQ(d.progressText()->text(), "Cancelled");
    EXPECT_TRUE(d.downloadButton()->isEnabled());
    EXPECT_TRUE(sink.entries.empty()); // a cancel shows no message
    EXPECT_TRUE(runUntil([&] { return device.closedEarly.load(); }, 2000));
    EXPECT_EQ(fs::file_size(big), 64u << 20); // the local file as it was
}

// Runs `command` from the main window's menu; `drive` works the modal dialog it opens.
template <class Dialog>
void runModal(rqshell::CMainFrame& frame, int command, std::function<void(Dialog&)> drive) {
    bool driven = false;
    QTimer::singleShot(0, [&] {
        auto* d = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        ASSERT_TRUE(d) << command;
        drive(*d);
        driven = true;
        static_cast<QDialog*>(d)->reject();
    });
    frame.runCommand(command);
    EXPECT_TRUE(driven) << command;
}

TEST_F(DeployDialogs, FromTheMainWindowCompileDownloadAndBackByUpload) {
    Device device("127.47.7.1", kType);
    rqtest::TempDir work, back;
    const char* src = std::getenv("RQ_SOURCE_DIR");
    fs::copy(std::string(src ? src : ".") + "/data/examples/demo", work.path() / "demo",
             fs::copy_options::recursive);
    rqshell::CMainFrame frame(catalogs, rqtest::programDir(), &sink);
    ASSERT_TRUE(frame.openProjectDirectory(QString::fromStdString(work.file("demo"))));
    frame.project().model().slaveIp = device.ip;

    runModal<rqshell::CCompileDialog>(frame, rq::cmd::kCompile, [&](rqshell::CCompileDialog& d) {
        d.compileButton()->click();
        ASSERT_TRUE(runUntil([&] { return d.compiling(); }));
        ASSERT_TRUE(runUntil([&] { return !d.compiling(); }, 60000));
    });
    runModal<rqshell::CDownloadDialog>(frame, rq::cmd::kDownloadProject,
                                       [&](rqshell::CDownloadDialog& d) {
                                           d.createPackageButton()->click();
                                           message(0);
                                           d.downloadButton()->click();
                                           message(1);
                                       });
    EXPECT_EQ(sink.texts(), (std::vector<std::string>{"Create download package successfully!",
                                                      "Project download successfully!"}));
    runModal<rqshell::CUploadDialog>(frame, rq::cmd::kUploadProject,
                                     [&](rqshell::CUploadDialog& d) {
                                         d.pathField()->setText(QString::fromStdString(back.str()));
                                         d.uploadButton()->click();
                                         message(2);
                                     });
    EXPECT_EQ(sink.texts().back(), "Upload successfully!");
    EXPECT_EQ(frame.project().model().projectDirectory, back.str());
    EXPECT_EQ(frame.project().model().name, "demo");
}

// A toolchain of the test's own in place of the program directory: RqGenMdl.sh
// prints what it got, waits for the file "go" in the project, then reports a
// warning on standard error.
struct FakeToolchain {
    explicit FakeToolchain(bool withScript) {
        if (const char* home = std::getenv("RQPDEV_HOME"))
            saved = home;
        if (withScript) {
            rqtest::writeFile(dir.path() / "RqGenMdl.sh",
                              "#!/bin/sh\nprintf 'module %s [%s]\\n' \"$MdlName\" \"$LDFLAGS\"\n"
                              "while [ ! -e \"$PRJ_DIR/go\" ]; do sleep 0.02; done\n"
                              "echo 'warning: unused x' >&2\n");
            ::chmod(dir.file("RqGenMdl.sh").c_str(), 0755);
        }
        ::setenv("RQPDEV_HOME", dir.str().c_str(), 1);
    }
    ~FakeToolchain() { ::setenv("RQPDEV_HOME", saved.c_str(), 1); }
    rqtest::TempDir dir;
    std::string saved;
};

TEST_F(DeployDialogs, ModuleSettingChecksAndShowsTheCompileAtItsEnd) {
    FakeToolchain toolchain(true);
    rqshell::CModuleDialog d(project->model(), sink);
    EXPECT_EQ(d.windowTitle(), "Module Setting");
    EXPECT_EQ(d.nameEdit()->accessibleName(), "Module Name:");
    EXPECT_TRUE(d.statusLine()->text().isEmpty());
    d.show();
    // The checks of Compile and of OK, in order; a refused OK keeps the dialog.
    d.setForm({"", "-DX", "", "", false});
    d.compileButton()->click();
    d.sourcesEdit()->setText("x");
    d.compileButton()->click();
    d.addSourceFiles({"%PRJ_DIR%/a.c", "/b c.c"});
    d.okButton()->click();
    EXPECT_TRUE(d.isVisible());
    d.nameEdit()->setText("pump");
    project->model().projectDirectory.clear();
    d.compileButton()->click();
    EXPECT_EQ(sink.texts(),
              (std::vector<std::string>{"module name is empty,please input module name!",
                                        "module name is empty,please input module name!",
                                        "module name is empty,please input module name!",
                                        rq::kNoProjectDirectoryMessage}));
    project->model().projectDirectory = dir.str();
    d.sourcesEdit()->clear();
    d.compileButton()->click();
    EXPECT_EQ(sink.texts().back(), "source file is empty,please input source name!");
    EXPECT_FALSE(d.compiling());

    // The compile: buttons off while it runs, nothing shown before its end, then
    // standard output followed by standard error.
    d.addSourceFiles({"%PRJ_DIR%/a.c"});
    d.compileButton()->click();
    EXPECT_EQ(d.statusLine()->text(), "Compiling, waiting...");
    ASSERT_TRUE(runUntil([&] { return d.compiling(); }));
    for (QPushButton* b : {d.okButton(), d.cancelButton(), d.compileButton()})
        EXPECT_FALSE(b->isEnabled());
    d.okButton()->click();
    EXPECT_TRUE(d.isVisible());
    EXPECT_TRUE(d.outputBox()->toPlainText().isEmpty());
    rqtest::writeFile(dir.path() / "go", "");
    ASSERT_TRUE(runUntil([&] { return !d.compiling(); }));
    EXPECT_EQ(d.outputBox()->toPlainText().toStdString(),
              "module pump [ \"" + dir.str() + "/a.c\" ]\nwarning: unused x\n");
    EXPECT_EQ(d.statusLine()->text(), "Compile complete, output information:");
    EXPECT_TRUE(d.okButton()->isEnabled());

    // Escape while it runs stops it and keeps what was typed.
    fs::remove(dir.path() / "go");
    d.compileButton()->click();
    ASSERT_TRUE(runUntil([&] { return d.compiling(); }));
    d.reject();
    ASSERT_TRUE(runUntil([&] { return !d.compiling(); }, 5000));
    EXPECT_TRUE(d.isVisible());
    EXPECT_EQ(d.form().name, "pump");
    EXPECT_FALSE(rq::ProcessRunner::running());
    d.disableBox()->setChecked(true);
    d.okButton()->click();
    EXPECT_EQ(d.result(), QDialog::Accepted);
    EXPECT_EQ(d.form(), (rq::ModuleForm{"pump", "-DX", "\"%PRJ_DIR%/a.c\" ", "", true}));
}

TEST_F(DeployDialogs, ModuleCompileReportsAMissingToolchainScript) {
    FakeToolchain toolchain(false);
    rqshell::CModuleDialog d(project->model(), sink);
    d.setForm({"pump", "", "\"a.c\" ", "", false});
    d.compileButton()->click();
    ASSERT_TRUE(runUntil([&] { return d.compiling(); }));
    ASSERT_TRUE(runUntil([&] { return !d.compiling(); }));
    EXPECT_NE(d.outputBox()->toPlainText().indexOf("RqGenMdl.sh"), -1)
        << d.outputBox()->toPlainText().toStdString();
    EXPECT_NE(d.outputBox()->toPlainText().toStdString(), rq::kDefaultCompileOutput);
}

// The module list of the main window, edited through the real dialog.
TEST_F(DeployDialogs, ModulesListThroughTheMainWindow) {
    rqtest::TempDir work;
    const char* src = std::getenv("RQ_SOURCE_DIR");
    fs::copy(std::string(src ? src : ".") + "/data/examples/demo", work.path() / "demo",
             fs::copy_options::recursive);
    rqshell::CMainFrame frame(catalogs, rqtest::programDir(), &sink);
    ASSERT_TRUE(frame.openProjectDirectory(QString::fromStdString(work.file("demo"))));
    const std::string before = rqtest::readFile(work.path() / "demo" / "modules.xml");
    frame.tree().setCurrentItem(frame.tree().fixedNode(rqshell::FixedNode::Module));
    rqshell::SectionListModel& list = frame.view().listModel();
    ASSERT_EQ(list.columnCount(), 5);
    ASSERT_EQ(list.rowCount(), 1);
    EXPECT_EQ(list.text(0, 4), "Enable");

    auto drive = [&](std::function<void(rqshell::CModuleDialog&)> f) {
        QTimer::singleShot(0, [&, f] {
            auto* d = qobject_cast<rqshell::CModuleDialog*>(QApplication::activeModalWidget());
            ASSERT_TRUE(d);
            f(*d);
            if (d->isVisible())
                d->reject();
        });
    };
    drive([](rqshell::CModuleDialog& d) {
        d.setForm({"pid", "", "\"pid.c\" ", "kp=2", true});
        d.okButton()->click();
    });
    frame.runCommand(rq::cmd::kAddModule);
    ASSERT_EQ(list.rowCount(), 2);
    EXPECT_EQ(list.text(1, 4), "Disable");
    frame.view().selectRow(1);
    drive([](rqshell::CModuleDialog& d) {
        EXPECT_EQ(d.form().params, "kp=2");
        d.disableBox()->setChecked(false);
        d.okButton()->click();
    });
    frame.runCommand(rq::cmd::kModifyModule);
    EXPECT_EQ(list.text(1, 4), "Enable");
    EXPECT_EQ(frame.action(rq::cmd::kUndo)->text(), "Undo Modify Module");
    frame.runCommand(rq::cmd::kSave);
    const std::string saved = rqtest::readFile(work.path() / "demo" / "modules.xml");
    EXPECT_NE(saved.find("\t<module name=\"pid\" defines=\"\" srcfiles=\"&quot;pid.c&quot; \" "
                         "params=\"kp=2\" enable=\"1\"/>\r\n</modules>\r\n"),
              std::string::npos);
    frame.runCommand(rq::cmd::kUndo);
    frame.runCommand(rq::cmd::kUndo);
    EXPECT_EQ(list.rowCount(), 1);
    frame.runCommand(rq::cmd::kSave);
    EXPECT_EQ(rqtest::readFile(work.path() / "demo" / "modules.xml"), before);
}

TEST_F(DeployDialogs, PasswordEntriesMustAgree) {
    rqshell::CPasswordDialog d(project->model(), sink);
    d.firstField()->setText("a");
    d.secondField()->setText("b");
    d.accept();
    EXPECT_EQ(message(0), "input password error, please input again!");
    EXPECT_EQ(d.result(), QDialog::Rejected);
    EXPECT_TRUE(project->model().downloadPassword.empty());
    d.secondField()->setText("a");
    d.accept();
    EXPECT_EQ(d.result(), QDialog::Accepted);
    EXPECT_EQ(project->model().downloadPassword, "a");
    EXPECT_TRUE(project->model().modified);
}

} // namespace
