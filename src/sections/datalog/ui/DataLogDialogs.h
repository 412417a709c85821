#pragma once
// The two "Realtime Data Record" dialogs of the data log editor: a log's settings
// and a log's variable. Each shows a form and never changes the model; OK runs the
// form's validator, shows the first failing message through the sink and keeps
// the dialog open. Real-time references are picked through "Realtime Database
// Browse" (CRtdbPickField).

#include "core/MessageSink.h"
#include "sections/datalog/DataLogCommands.h"
#include "sections/rtdb/RtdbSection.h"

#include <QDialog>

class QLineEdit;

namespace rqshell {

class CRtdbPickField;

// A log: name, period, period variable, size, for a whole-database log the
// database ("Realtime Database:", the database of the variable picked), and the
// control variable ("DB.DATA").
class CDataLogDialog : public QDialog {
    Q_OBJECT
public:
    // The pick buttons browse the project's databases and `system` (may be null).
    CDataLogDialog(rq::DataLogKind kind, const rq::RtdbSection& project,
                   const rq::RtdbSection* system, rq::MessageSink& sink, QWidget* parent = nullptr);
    void setForm(const rq::DataLogForm& form);
    rq::DataLogForm form() const;
    void accept() override;

    QLineEdit* nameEdit() const { return name_; }
    QLineEdit* periodEdit() const { return period_; }
    QLineEdit* periodVarEdit() const { return periodVar_; }
    QLineEdit* sizeEdit() const { return size_; }
    CRtdbPickField* databaseField() const { return database_; } // null for chosen variables
    CRtdbPickField* controlField() const { return control_; }

private:
    rq::DataLogKind kind_;
    rq::MessageSink& sink_;
    QLineEdit* name_;
    QLineEdit* period_;
    QLineEdit* periodVar_;
    QLineEdit* size_;
    CRtdbPickField* database_ = nullptr;
    CRtdbPickField* control_;
};

// A variable of a log: "Realtime Data:" and "Database Name:", with one pick button.
class CLogDataDialog : public QDialog {
    Q_OBJECT
public:
    CLogDataDialog(const rq::RtdbSection& project, const rq::RtdbSection* system,
                   rq::MessageSink& sink, QWidget* parent = nullptr);
    void setForm(const rq::LogDataForm& form);
    rq::LogDataForm form() const;
    void accept() override;

    CRtdbPickField* dataField() const { return data_; }

private:
    rq::MessageSink& sink_;
    CRtdbPickField* data_;
};

class DataLogQtDialogHost : public rq::DataLogDialogHost {
public:
    DataLogQtDialogHost(QWidget* parent, rq::MessageSink& sink, const rq::RtdbSection& project,
                        const rq::RtdbSection* system)
        : parent_(parent), sink_(sink), project_(project), system_(system) {}
    bool logDialog(rq::DataLogForm& form) override;
    bool logDataDialog(rq::LogDataForm& form) override;

private:
    QWidget* parent_;
    rq::MessageSink& sink_;
    const rq::RtdbSection& project_;
    const rq::RtdbSection* system_;
};

} // namespace rqshell
