#include "shell/Application.h"

#include "core/Catalogs.h"
#include "core/FileUtil.h"
#include "core/InstanceRequest.h"
#include "project/Project.h"
#include "project/ProjectFlows.h"
#include "shell/MainWindow.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QLinearGradient>
#include <QLocalSocket>
#include <QPainter>
#include <QSplashScreen>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <memory>
#include <thread>

namespace rqshell {

SingleInstance::SingleInstance(QString name) : name_(std::move(name)) {
    connect(&server_, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* s = server_.nextPendingConnection()) {
            // The request may arrive in pieces: it counts once its line is whole.
            auto received = std::make_shared<QByteArray>();
            auto answer = [this, s, received] {
                received->append(s->readAll());
                std::optional<rq::InstanceCall> call = rq::parseInstanceRequest(
                    std::string_view(received->constData(), size_t(received->size())));
                if (!call)
                    return;
                received->clear();
                Q_EMIT activateRequested();
                if (call->open)
                    Q_EMIT openRequested(QString::fromStdString(*call->open));
                s->write("ok\n");
                s->disconnectFromServer();
            };
            connect(s, &QLocalSocket::readyRead, this, answer);
            connect(s, &QLocalSocket::disconnected, s, &QObject::deleteLater);
            if (s->bytesAvailable())
                answer();
        }
    });
}

bool SingleInstance::claim(const QString& openDirectory) {
    {
        QLocalSocket probe;
        probe.connectToServer(name_);
        if (probe.waitForConnected(1000)) {
            probe.write(QByteArray::fromStdString(
                rq::instanceRequest(openDirectory.toUtf8().toStdString())));
            probe.waitForBytesWritten(1000);
            probe.waitForReadyRead(2000);
            return false;
        }
    }
    // Nobody answers: a name left by a start that ended abnormally is removed.
    QLocalServer::removeServer(name_);
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    if (!server_.listen(name_))
        std::fprintf(stderr, "rqpdev: cannot listen on %s: %s\n", qPrintable(name_),
                     qPrintable(server_.errorString()));
    return true;
}

QPixmap splashPixmap() {
    // 263 x 174 dialog units at the usual 1.5 pixels per unit.
    QPixmap pm(395, 283);
    QPainter p(&pm);
    QLinearGradient g(0, 0, 0, pm.height());
    g.setColorAt(0, QColor(30, 60, 140));
    g.setColorAt(1, QColor(10, 20, 60));
    p.fillRect(pm.rect(), g);
    p.setPen(Qt::white);
    QFont title("Sans", 30, QFont::Bold);
    p.setFont(title);
    p.drawText(QRect(0, 70, pm.width(), 60), Qt::AlignCenter, "RQPDev");
    p.setFont(QFont("Sans", 11));
    p.drawText(QRect(0, 135, pm.width(), 30), Qt::AlignCenter,
               "HMI and soft-controller engineering tool");
    p.setPen(QColor(160, 180, 230));
    p.drawRect(pm.rect().adjusted(0, 0, -1, -1));
    return pm;
}

void runWhileWaiting(const std::function<void()>& work, int atLeastMs) {
    QEventLoop wait;
    bool waited = atLeastMs <= 0, done = false;
    auto quitWhenBoth = [&] {
        if (waited && done)
            wait.quit();
    };
    QTimer::singleShot(std::max(atLeastMs, 0), &wait, [&] {
        waited = true;
        quitWhenBoth();
    });
    std::exception_ptr failure;
    std::thread worker([&] {
        try {
            work();
        } catch (...) {
            failure = std::current_exception();
        }
        // Told to this thread's loop, which alone touches `done`.
        QMetaObject::invokeMethod(
            &wait,
            [&] {
                done = true;
                quitWhenBoth();
            },
            Qt::QueuedConnection);
    });
    wait.exec();
    worker.join();
    if (failure)
        std::rethrow_exception(failure);
}

int runApplication(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setOrganizationName("Tessarine");
    QApplication::setApplicationName("RQPDev");
    QStringList args = QApplication::arguments().mid(1);
    const bool noSplash = args.removeAll("--no-splash") > 0;

    // 1. One instance per user. A later start hands its project directory (made
    // absolute here, where it was typed) to the running one, which opens it.
    const QString projectArgument =
        args.isEmpty() ? QString() : QFileInfo(args.first()).absoluteFilePath();
    SingleInstance instance;
    if (!instance.claim(projectArgument))
        return 0;
    // Until the window exists, what later starts ask for is kept for it.
    QStringList handedOver;
    const QMetaObject::Connection keep =
        QObject::connect(&instance, &SingleInstance::openRequested, &instance,
                         [&handedOver](const QString& dir) { handedOver << dir; });

    // 2. Sockets need no start-up call on this platform.
    // 3. Settings live under "Tessarine" (QSettings in CMainFrame).
    // 4. The catalogs beside the program; a missing file leaves its catalog empty.
    rq::Catalogs catalogs;
    const std::string programDir = rq::programDirectory();
    catalogs.loadFrom(programDir);

    // 5. A directory argument opens that project. It is read on a worker thread,
    // into a project of its own, while the splash shows for its 1000 ms (longer
    // when the read takes longer); the window takes the project over and shows
    // what its readers said, as an open from the window shows it.
    rq::OpenAhead ahead;
    std::unique_ptr<rq::Project> project;
    std::function<void()> read = [] {};
    if (!args.isEmpty()) {
        project = std::make_unique<rq::Project>(catalogs, ahead.messages);
        const std::string dir = QDir::fromNativeSeparators(args.first()).toUtf8().toStdString();
        read = [&ahead, &project, dir] { rq::readAhead(project->doc, dir, ahead); };
    }
    std::unique_ptr<QSplashScreen> splash;
    if (!noSplash) {
        splash = std::make_unique<QSplashScreen>(splashPixmap());
        splash->show();
    }
    runWhileWaiting(read, noSplash ? 0 : 1000);

    CMainFrame frame(catalogs, programDir, nullptr, nullptr, std::move(project));
    QObject::disconnect(keep);
    QObject::connect(&instance, &SingleInstance::activateRequested, &frame, [&frame] {
        frame.setWindowState((frame.windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
        frame.show();
        frame.raise();
        frame.activateWindow();
    });
    QObject::connect(&instance, &SingleInstance::openRequested, &frame,
                     [&frame](const QString& dir) { frame.openWhenIdle(dir); });
    frame.restoreLayout();
    if (!args.isEmpty())
        frame.finishOpen(ahead);
    frame.showMaximized();
    if (splash)
        splash->finish(&frame);
    // Handed over while the splash showed: opened after this start's own project.
    for (const QString& dir : handedOver)
        frame.openWhenIdle(dir);
    return app.exec();
}

} // namespace rqshell
