#include "shell/Accessible.h"

#include <QLabel>
#include <QWidget>

namespace rqshell {

QString accessibleText(const QString& label) {
    QString t = label;
    t.replace(QStringLiteral("&&"), QStringLiteral("\x01"));
    t.remove(QLatin1Char('&'));
    t.replace(QStringLiteral("\x01"), QStringLiteral("&"));
    return t;
}

void nameFieldsByLabels(QWidget* root) {
    for (QLabel* label : root->findChildren<QLabel*>()) {
        QWidget* buddy = label->buddy();
        if (buddy && buddy->accessibleName().isEmpty())
            buddy->setAccessibleName(accessibleText(label->text()));
    }
}

} // namespace rqshell
