#pragma once
// The one QApplication of the shell tests, with settings kept out of the user's own.

#include "support/TestSupport.h"

#include <QApplication>

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

} // namespace rqtest
