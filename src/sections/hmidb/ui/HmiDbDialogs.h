#pragma once
// The Qt dialogs of the HMI database editor: "IO Data Setting" and "Memory Data
// Setting". Each exposes its fields through a form (setForm / form) and never
// changes the model; OK runs the form's validator, shows the first failing message
// through the sink and keeps the dialog open. Groups are named in the real-time
// database's "Setting Data Group" dialog.

#include "core/MessageSink.h"
#include "sections/hmidb/HmiDbCommands.h"
#include "sections/rtdb/RtdbSection.h"

#include <QDialog>

class QComboBox;
class QLineEdit;

namespace rqshell {

class CRtdbPickField;

// "IO Data Setting": the database and variable names are typed or filled by the
// pick button through "Realtime Database Browse" (every data type offered).
class CIoDataDialog : public QDialog {
    Q_OBJECT
public:
    // The pick button browses the project's databases and `system` (may be null).
    CIoDataDialog(const rq::RtdbSection& project, const rq::RtdbSection* system,
                  rq::MessageSink& sink, QWidget* parent = nullptr);
    void setForm(const rq::IoDataForm& form);
    // The fields as they stand; a period that holds no integer reads as 0.
    rq::IoDataForm form() const;
    void accept() override;

    QLineEdit* nameEdit() const { return name_; }
    QLineEdit* databaseEdit() const;
    QLineEdit* variableEdit() const;
    QLineEdit* periodEdit() const { return period_; }
    CRtdbPickField* pickField() const { return pick_; }

private:
    rq::MessageSink& sink_;
    QLineEdit* name_;
    CRtdbPickField* pick_;
    QLineEdit* period_;
};

// "Memory Data Setting": a type of fixed size locks the length at its size.
class CMemoryDataDialog : public QDialog {
    Q_OBJECT
public:
    explicit CMemoryDataDialog(rq::MessageSink& sink, QWidget* parent = nullptr);
    void setForm(const rq::MemoryDataForm& form);
    // The fields as they stand; a length that holds no integer reads as 0.
    rq::MemoryDataForm form() const;
    void accept() override;

    QLineEdit* nameEdit() const { return name_; }
    QComboBox* typeBox() const { return type_; }
    QLineEdit* lengthEdit() const { return length_; }
    QLineEdit* initEdit() const { return init_; }

private:
    void onTypeChanged(int index);

    rq::MessageSink& sink_;
    QLineEdit* name_;
    QComboBox* type_;
    QLineEdit* length_;
    QLineEdit* init_;
};

// The dialogs as the HMI database commands ask for them.
class HmiDbQtDialogHost : public rq::HmiDbDialogHost {
public:
    HmiDbQtDialogHost(QWidget* parent, rq::MessageSink& sink, const rq::RtdbSection& project,
                      const rq::RtdbSection* system)
        : parent_(parent), sink_(sink), project_(project), system_(system) {}
    bool groupDialog(rq::HmiGroupForm& form) override;
    bool ioDataDialog(rq::IoDataForm& form) override;
    bool memoryDataDialog(rq::MemoryDataForm& form) override;

private:
    QWidget* parent_;
    rq::MessageSink& sink_;
    const rq::RtdbSection& project_;
    const rq::RtdbSection* system_;
};

} // namespace rqshell
