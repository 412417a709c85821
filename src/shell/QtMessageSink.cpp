#include "shell/QtMessageSink.h"

#include <QApplication>
#include <QMessageBox>

namespace rqshell {

namespace {

QMessageBox::Icon iconOf(rq::MessageIcon icon) {
    switch (icon) {
    case rq::MessageIcon::Stop:
        return QMessageBox::Critical;
    case rq::MessageIcon::Information:
        return QMessageBox::Information;
    case rq::MessageIcon::Question:
        return QMessageBox::Question;
    case rq::MessageIcon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

QString title() {
    return QApplication::applicationName();
}

} // namespace

void QtMessageSink::showMessage(const std::string& text, rq::MessageIcon icon) {
    QMessageBox box(iconOf(icon), title(), QString::fromUtf8(text), QMessageBox::Ok, parent_);
    box.exec();
}

bool QtMessageSink::askOkCancel(const std::string& text) {
    QMessageBox box(QMessageBox::Question, title(), QString::fromUtf8(text),
                    QMessageBox::Ok | QMessageBox::Cancel, parent_);
    box.setDefaultButton(QMessageBox::Ok);
    return box.exec() == QMessageBox::Ok;
}

bool QtMessageSink::askYesNo(const std::string& text, rq::MessageIcon icon, bool defaultNo) {
    QMessageBox box(iconOf(icon), title(), QString::fromUtf8(text),
                    QMessageBox::Yes | QMessageBox::No, parent_);
    box.setDefaultButton(defaultNo ? QMessageBox::No : QMessageBox::Yes);
    return box.exec() == QMessageBox::Yes;
}

} // namespace rqshell
