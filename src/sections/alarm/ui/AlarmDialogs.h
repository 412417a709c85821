#pragma once
// The alarm editor's dialogs and the editor as the main window registers it. The
// dialogs show a form and never change the model; OK runs the form's validator,
// shows the first failing message through the sink and keeps the dialog open.

#include "core/MessageSink.h"
#include "sections/alarm/AlarmEditor.h"
#include "sections/rtdb/RtdbSection.h"
#include "shell/EditorEnv.h"

#include <QDialog>

#include <array>
#include <memory>

class QLineEdit;

namespace rqshell {

class CRtdbPickField;

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

// "Setting Alarm Group": the group's name.
class CAlarmGroupDialog : public QDialog {
    Q_OBJECT
public:
    explicit CAlarmGroupDialog(rq::MessageSink& sink, QWidget* parent = nullptr);
    void setForm(const rq::AlarmGroupForm& form);
    rq::AlarmGroupForm form() const;
    void accept() override;

    QLineEdit* nameEdit() const { return name_; }

private:
    rq::MessageSink& sink_;
    QLineEdit* name_;
};

// "Alarm Data Information": the real-time data (database and data name, read-only,
// from the pick button), priority and status variable, and the six condition
// rows. Every variable and limit is a real-time reference with its pick button.
class CAlarmDataDialog : public QDialog {
    Q_OBJECT
public:
    // The pick buttons browse the project's databases and `system` (may be null).
    CAlarmDataDialog(const rq::RtdbSection& project, const rq::RtdbSection* system,
                     rq::MessageSink& sink, QWidget* parent = nullptr);
    void setForm(const rq::AlarmDataForm& form);
    rq::AlarmDataForm form() const;
    void accept() override;

    // The data pair: edit() is the database name, dataEdit() the data name.
    CRtdbPickField* dataField() const { return data_; }
    QLineEdit* priorityEdit() const { return priority_; }
    CRtdbPickField* statusField() const { return status_; }
    struct Row {
        CRtdbPickField* variable = nullptr;
        QLineEdit* text = nullptr;
        CRtdbPickField* limit = nullptr; // analog rows only
        QLineEdit* restoreText = nullptr;
    };
    const Row& row(int slot) const { return rows_[static_cast<std::size_t>(slot)]; }

private:
    rq::MessageSink& sink_;
    CRtdbPickField* data_;
    QLineEdit* priority_;
    CRtdbPickField* status_;
    std::array<Row, rq::kAlarmSlotCount> rows_;
};

class AlarmQtDialogHost : public rq::AlarmDialogHost {
public:
    AlarmQtDialogHost(QWidget* parent, rq::MessageSink& sink, const rq::RtdbSection& project,
                      const rq::RtdbSection* system)
        : parent_(parent), sink_(sink), project_(project), system_(system) {}
    bool configDialog(rq::AlarmConfigForm& form) override;
    bool groupDialog(rq::AlarmGroupForm& form) override;
    bool dataDialog(rq::AlarmDataForm& form) override;

private:
    QWidget* parent_;
    rq::MessageSink& sink_;
    const rq::RtdbSection& project_;
    const rq::RtdbSection* system_;
};

std::unique_ptr<rq::SectionEditor> makeAlarmEditor(const EditorEnv& env);

} // namespace rqshell
