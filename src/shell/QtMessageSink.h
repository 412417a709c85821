#pragma once
// Message boxes for the toolkit-free library's messages and questions.

#include "core/MessageSink.h"

class QWidget;

namespace rqshell {

class QtMessageSink : public rq::MessageSink {
public:
    explicit QtMessageSink(QWidget* parent = nullptr) : parent_(parent) {}
    void setParent(QWidget* parent) { parent_ = parent; }
    void showMessage(const std::string& text, rq::MessageIcon icon) override;
    bool askOkCancel(const std::string& text) override;
    bool askYesNo(const std::string& text, rq::MessageIcon icon, bool defaultNo) override;

private:
    QWidget* parent_;
};

} // namespace rqshell
