#pragma once
// The alarm editor's dialogs and the editor as the main window registers it.

#include "core/MessageSink.h"
#include "sections/alarm/AlarmEditor.h"
#include "shell/EditorEnv.h"

#include <QDialog>

#include <memory>

class QLineEdit;

namespace rqshell {

// "Alarm Configuration": the alarm buffer size.
class CAlarmConfigDialog : public QDialog {
    Q_OBJECT
public:
    explicit CAlarmConfigDialog(rq::MessageSink& sink, QWidget* parent = nullptr);
    void setForm(const rq::AlarmConfigForm& form);
    rq::AlarmConfigForm form() const;
    void accept() override;

    QLineEdit* sizeEdit() const { return size_; }

private:
    rq::MessageSink& sink_;
    QLineEdit* size_;
};

class AlarmQtDialogHost : public rq::AlarmDialogHost {
public:
    AlarmQtDialogHost(QWidget* parent, rq::MessageSink& sink) : parent_(parent), sink_(sink) {}
    bool configDialog(rq::AlarmConfigForm& form) override;

private:
    QWidget* parent_;
    rq::MessageSink& sink_;
};

std::unique_ptr<rq::SectionEditor> makeAlarmEditor(const EditorEnv& env);

} // namespace rqshell
