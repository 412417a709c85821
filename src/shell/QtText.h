#pragma once
// Text between the toolkit-free library (UTF-8 std::string) and Qt (QString).

#include <QString>
#include <string>

namespace rqshell {

inline QString qs(const std::string& s) {
    return QString::fromUtf8(s.data(), qsizetype(s.size()));
}
inline QString qs(const char* s) {
    return QString::fromUtf8(s);
}
inline std::string str(const QString& s) {
    return s.toUtf8().toStdString();
}

} // namespace rqshell
