#pragma once
// "Window Setting": group box "Window Information" with the window's name, title
// and file name and the three check boxes. It shows a form and never changes the
// model; OK runs the form's validator, shows the first failing message through the
// sink and keeps the dialog open.

#include "core/MessageSink.h"
#include "sections/hmiwindow/HmiWindowCommands.h"

#include <QDialog>

class QCheckBox;
class QLineEdit;

namespace rqshell {

class CWindowSettingDialog : public QDialog {
    Q_OBJECT
public:
    explicit CWindowSettingDialog(rq::MessageSink& sink, QWidget* parent = nullptr);
    void setForm(const rq::WindowForm& form);
    rq::WindowForm form() const;
    void accept() override;

    QLineEdit* nameEdit() const { return name_; }
    QLineEdit* titleEdit() const { return caption_; }
    QLineEdit* fileEdit() const { return file_; }
    QCheckBox* createFileBox() const { return createFile_; }
    QCheckBox* startupBox() const { return startup_; }
    QCheckBox* disableBox() const { return disable_; }

private:
    rq::MessageSink& sink_;
    QLineEdit* name_;
    QLineEdit* caption_;
    QLineEdit* file_;
    QCheckBox* createFile_;
    QCheckBox* startup_;
    QCheckBox* disable_;
};

class WindowQtDialogHost : public rq::WindowDialogHost {
public:
    WindowQtDialogHost(QWidget* parent, rq::MessageSink& sink) : parent_(parent), sink_(sink) {}
    bool windowDialog(rq::WindowForm& form) override;

private:
    QWidget* parent_;
    rq::MessageSink& sink_;
};

} // namespace rqshell
