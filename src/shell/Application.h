#pragma once
// Start-up of rqpdev: single instance, settings, catalogs, splash, main window.

#include <QLocalServer>
#include <QObject>
#include <QPixmap>

#include <functional>

namespace rqshell {

// One running rqpdev per user: the first start listens on the local socket
// "RQPDev_Main"; a later start asks it to raise its window (and to open the
// project directory it was given) and ends.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    static constexpr const char* kName = "RQPDev_Main";
    explicit SingleInstance(QString name = QString::fromLatin1(kName));
    // True when this start goes on; false when a running instance took the request
    // to come to the front and to open `openDirectory` (absolute; empty for none).
    // A name that exists but answers nobody is removed.
    bool claim(const QString& openDirectory = QString());

Q_SIGNALS:
    void activateRequested();
    void openRequested(const QString& directory);

private:
    QString name_;
    QLocalServer server_;
};

// The splash bitmap.
QPixmap splashPixmap();

// Runs `work` on a worker thread while this thread goes on handling its events
// (a splash keeps painting, another start is answered), and returns once `work`
// has ended and at least `atLeastMs` have passed. What `work` throws is thrown
// here.
void runWhileWaiting(const std::function<void()>& work, int atLeastMs);

// rqpdev [--no-splash] [PROJECT_DIRECTORY]
int runApplication(int argc, char** argv);

} // namespace rqshell
