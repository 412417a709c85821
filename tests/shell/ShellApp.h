#pragma once
// The one QApplication of the shell tests, with settings kept out of the user's own,
// and the steps the shell tests take as a user would.

#include "sections/rtdb/ui/RtdbBrowseDialog.h"
#include "support/TestSupport.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTableView>
#include <QTimer>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace rqtest {

inline QApplication& shellApp() {
    static TempDir config;
    static int argc = 1;
    static char name[] = "test_shell";
    static char* argv[] = {name, nullptr};
    static QApplication* a = [] {
        qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString(config.str()));
        return new QApplication(argc, argv);
    }();
    return *a;
}

inline void press(QWidget& w, int key) {
    QKeyEvent e(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(&w, &e);
}

// Answers the browse dialog that the next pick button opens: `row` of `node`'s list.
inline void pickNext(const rq::DataNode* node, int row = 0) {
    QTimer::singleShot(0, [node, row] {
        auto* b = qobject_cast<rqshell::CRtdbBrowseDialog*>(QApplication::activeModalWidget());
        if (!b) {
            ADD_FAILURE() << "no browse dialog";
            return;
        }
        b->selectNode(node);
        b->list()->selectRow(row);
        b->accept();
    });
}

// A copy of the demo project in `dir`, to be edited; its directory.
inline std::string copyDemo(const TempDir& dir, const std::string& name = "demo") {
    const char* source = std::getenv("RQ_SOURCE_DIR");
    std::filesystem::copy(std::string(source ? source : ".") + "/data/examples/demo",
                          dir.path() / name, std::filesystem::copy_options::recursive);
    return dir.file(name);
}

} // namespace rqtest
