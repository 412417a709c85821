#include "shell/NodeImages.h"

#include <QBitmap>
#include <QPainter>
#include <QPixmap>
#include <QPolygon>
#include <vector>

namespace rqshell {

namespace {

const QColor kMagenta(255, 0, 255);

void drawCylinder(QPainter& p, QColor body) {
    p.setPen(QColor(40, 40, 90));
    p.setBrush(body);
    p.drawRect(3, 4, 10, 9);
    p.drawEllipse(3, 10, 10, 4);
    p.setBrush(body.lighter(130));
    p.drawEllipse(3, 2, 10, 4);
}

void drawFolder(QPainter& p, QColor c) {
    p.setPen(QColor(120, 90, 0));
    p.setBrush(c);
    p.drawRect(1, 5, 14, 9);
    p.drawRect(1, 3, 6, 2);
}

void drawImage(QPainter& p, int index) {
    p.setRenderHint(QPainter::Antialiasing, false);
    switch (index) {
    case image::kLadder: // two rails and rungs
        p.setPen(QPen(QColor(0, 0, 0), 1));
        p.drawLine(3, 1, 3, 14);
        p.drawLine(12, 1, 12, 14);
        p.setPen(QColor(0, 110, 0));
        for (int y = 3; y <= 12; y += 3)
            p.drawLine(4, y, 11, y);
        break;
    case image::kDataGroup:
        drawFolder(p, QColor(250, 215, 90));
        break;
    case image::kRecord: // a sheet with lines
        p.setPen(QColor(60, 60, 60));
        p.setBrush(Qt::white);
        p.drawRect(2, 1, 11, 14);
        p.setPen(QColor(0, 90, 200));
        for (int y = 4; y <= 12; y += 3)
            p.drawLine(4, y, 11, y);
        break;
    case image::kDatabase:
        drawCylinder(p, QColor(90, 140, 230));
        break;
    case image::kProject: // a blue box with a lid
        p.setPen(QColor(20, 40, 100));
        p.setBrush(QColor(70, 110, 200));
        p.drawRect(1, 5, 14, 10);
        p.setBrush(QColor(140, 170, 240));
        p.drawRect(0, 2, 15, 3);
        break;
    case image::kRedundant: // two overlapping boxes
        p.setPen(QColor(90, 20, 20));
        p.setBrush(QColor(220, 120, 120));
        p.drawRect(1, 1, 9, 9);
        p.setBrush(QColor(240, 170, 170));
        p.drawRect(5, 5, 9, 9);
        break;
    case image::kData: // a small cell
        p.setPen(QColor(40, 40, 40));
        p.setBrush(QColor(200, 230, 200));
        p.drawRect(3, 4, 9, 7);
        break;
    case image::kParameter: // a slider
        p.setPen(QColor(40, 40, 40));
        p.drawLine(2, 8, 13, 8);
        p.setBrush(QColor(240, 160, 40));
        p.drawRect(6, 4, 3, 8);
        break;
    case image::kSystem:
        drawCylinder(p, QColor(150, 150, 150));
        break;
    case image::kAlarm: { // a bell
        p.setPen(QColor(120, 0, 0));
        p.setBrush(QColor(230, 40, 40));
        QPolygon bell;
        bell << QPoint(8, 1) << QPoint(12, 5) << QPoint(13, 12) << QPoint(2, 12) << QPoint(3, 5);
        p.drawPolygon(bell);
        p.drawRect(6, 13, 3, 2);
        break;
    }
    case image::kHistory: // a clock
        p.setPen(QColor(30, 30, 30));
        p.setBrush(Qt::white);
        p.drawEllipse(1, 1, 13, 13);
        p.drawLine(7, 7, 7, 3);
        p.drawLine(7, 7, 11, 7);
        break;
    case image::kHmi: // a panel with a screen
        p.setPen(QColor(30, 30, 30));
        p.setBrush(QColor(170, 170, 170));
        p.drawRect(0, 2, 15, 12);
        p.setBrush(QColor(40, 170, 220));
        p.drawRect(2, 4, 9, 8);
        break;
    case image::kWindows: // a window with a title bar
        p.setPen(QColor(30, 30, 30));
        p.setBrush(Qt::white);
        p.drawRect(1, 2, 13, 12);
        p.setBrush(QColor(30, 60, 170));
        p.drawRect(1, 2, 13, 3);
        break;
    case image::kFunctionBlock: // a block with pins
        p.setPen(QColor(30, 30, 30));
        p.setBrush(QColor(250, 240, 150));
        p.drawRect(4, 2, 7, 11);
        for (int y = 4; y <= 11; y += 3) {
            p.drawLine(1, y, 3, y);
            p.drawLine(12, y, 14, y);
        }
        break;
    case image::kDevice: // a box with LEDs
        p.setPen(QColor(30, 30, 30));
        p.setBrush(QColor(120, 120, 120));
        p.drawRect(1, 4, 14, 8);
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0, 220, 0));
        p.drawRect(3, 7, 2, 2);
        p.setBrush(QColor(250, 200, 0));
        p.drawRect(7, 7, 2, 2);
        break;
    case image::kModule: // a page with "C"
        p.setPen(QColor(40, 40, 40));
        p.setBrush(Qt::white);
        p.drawRect(2, 1, 11, 14);
        p.setPen(QPen(QColor(0, 0, 160), 2));
        p.drawArc(4, 4, 7, 8, 45 * 16, 270 * 16);
        break;
    default: // images 0, 12, 13: a plain node mark
        p.setPen(QColor(80, 80, 80));
        p.setBrush(QColor(220, 220, 220));
        p.drawRect(4, 4, 7, 7);
        break;
    }
}

} // namespace

QImage nodeImageStrip() {
    QImage strip(16 * image::kCount, 16, QImage::Format_RGB32);
    strip.fill(kMagenta);
    QPainter p(&strip);
    for (int i = 0; i < image::kCount; ++i) {
        p.save();
        p.translate(16 * i, 0);
        p.setClipRect(0, 0, 16, 16);
        drawImage(p, i);
        p.restore();
    }
    return strip;
}

QIcon nodeIcon(int index) {
    static const std::vector<QIcon> icons = [] {
        QPixmap strip = QPixmap::fromImage(nodeImageStrip());
        strip.setMask(strip.createMaskFromColor(kMagenta, Qt::MaskInColor));
        std::vector<QIcon> v;
        for (int i = 0; i < image::kCount; ++i)
            v.emplace_back(strip.copy(16 * i, 0, 16, 16));
        return v;
    }();
    if (index < 0 || index >= image::kCount)
        return {};
    return icons[static_cast<std::size_t>(index)];
}

} // namespace rqshell
