#pragma once
// The Qt dialogs of the history records: "History Data Configuration" (one
// history record) and "History Data Record" (one recorded variable). They show a
// form and never change the model; OK runs the form's validator, shows the first
// failing message through the sink and keeps the dialog open.

#include "core/MessageSink.h"
#include "sections/history/HistoryCommands.h"
#include "sections/rtdb/ui/RtdbPickField.h"

#include <QDialog>

class QComboBox;
class QLineEdit;
class QPushButton;

namespace rqshell {

class CHistoryConfigDialog : public QDialog {
    Q_OBJECT
public:
    explicit CHistoryConfigDialog(rq::MessageSink& sink, QWidget* parent = nullptr);
    void setForm(const rq::HistoryRecordForm& form);
    rq::HistoryRecordForm form() const;
    void accept() override;

    QLineEdit* nameEdit() const { return name_; }
    QComboBox* locationBox() const { return location_; }

private:
    rq::MessageSink& sink_;
    QLineEdit* name_;
    QLineEdit* period_;
    QComboBox* location_;
    QLineEdit* remaindays_;
    QLineEdit* indexperiod_;
};

// The variable's names are filled by the pick button of "Realtime Data Name:"
// only; "Spring Variable:" and "Query Variable:" take "DB.DATA" from their own
// pick buttons or as typed. Of the three value fields only the one of the chosen
// record type is enabled; the others keep what they hold.
class CHistoryDataDialog : public QDialog {
    Q_OBJECT
public:
    // The pick buttons browse the project's databases and `system` (may be null).
    CHistoryDataDialog(const rq::RtdbSection& project, const rq::RtdbSection* system,
                       rq::MessageSink& sink, QWidget* parent = nullptr);
    void setForm(const rq::HistoryDataForm& form);
    rq::HistoryDataForm form() const;
    void accept() override;

    CRtdbPickField* dataField() const { return data_; }
    QComboBox* kindBox() const { return kind_; }
    QLineEdit* periodEdit() const { return periodvalue_; }
    QLineEdit* changeEdit() const { return changevalue_; }
    CRtdbPickField* triggerField() const { return trigger_; }
    CRtdbPickField* queryField() const { return query_; }

private:
    void kindChosen(int kind);

    rq::MessageSink& sink_;
    CRtdbPickField* data_;
    QComboBox* kind_;
    QLineEdit* periodvalue_;
    QLineEdit* changevalue_;
    CRtdbPickField* trigger_;
    CRtdbPickField* query_;
    QLineEdit* description_;
};

class HistoryQtDialogHost : public rq::HistoryDialogHost {
public:
    HistoryQtDialogHost(QWidget* parent, rq::MessageSink& sink, const rq::RtdbSection& project,
                        const rq::RtdbSection* system)
        : parent_(parent), sink_(sink), project_(project), system_(system) {}
    bool recordDialog(rq::HistoryRecordForm& form) override;
    bool dataDialog(rq::HistoryDataForm& form) override;

private:
    QWidget* parent_;
    rq::MessageSink& sink_;
    const rq::RtdbSection& project_;
    const rq::RtdbSection* system_;
};

} // namespace rqshell
