#pragma once
// The Qt dialogs of the real-time database editor. Each exposes its fields through
// a form (setForm / form) and never changes the model: the commands of
// RtdbCommands.h apply what an accepted dialog holds. A failed check of OK is
// shown through the message sink and keeps the dialog open.

#include "core/MessageSink.h"
#include "sections/rtdb/RtdbDialogHost.h"
#include "sections/rtdb/RtdbForms.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QLabel;

namespace rqshell {

// "Realtime Database Setting".
class CDatabaseDialog : public QDialog {
    Q_OBJECT
public:
    explicit CDatabaseDialog(QWidget* parent = nullptr);
    void setForm(const rq::DatabaseForm& form);
    rq::DatabaseForm form() const;

private:
    QLineEdit* name_;
    QCheckBox* sync_;
};

// "Setting Data Group".
class CDataGroupDialog : public QDialog {
    Q_OBJECT
public:
    explicit CDataGroupDialog(QWidget* parent = nullptr);
    void setForm(const rq::DataGroupForm& form);
    rq::DataGroupForm form() const;

private:
    QLineEdit* name_;
};

// "Data Setting", and with `batch` "Batch Data Setting" (the same fields plus From
// and To).
class CDataDialog : public QDialog {
    Q_OBJECT
public:
    CDataDialog(rq::MessageSink& sink, bool batch, QWidget* parent = nullptr);
    void setForm(const rq::DataForm& form);
    void setBatchForm(const rq::BatchDataForm& form);
    // The fields as they stand; a number field that holds no integer reads as 0.
    rq::DataForm form() const;
    rq::BatchDataForm batchForm() const;

    void accept() override;

    // For tests and screenshots.
    QLineEdit* nameEdit() const { return name_; }
    QComboBox* typeBox() const { return type_; }
    QLineEdit* lengthEdit() const { return length_; }
    QCheckBox* aliasCheck() const { return aliasCheck_; }
    QLineEdit* aliasEdit() const { return alias_; }

private:
    void onTypeChanged(int index);
    void onAliasToggled(bool on);

    rq::MessageSink& sink_;
    bool batch_;
    QLineEdit* name_;
    QComboBox* type_;
    QLineEdit* length_;
    QLineEdit* init_;
    QCheckBox* aliasCheck_;
    QLineEdit* alias_;
    QLineEdit* description_;
    QLineEdit* from_ = nullptr;
    QLineEdit* to_ = nullptr;
};

// The dialogs as the real-time database commands ask for them.
class RtdbQtDialogHost : public rq::RtdbDialogHost {
public:
    RtdbQtDialogHost(QWidget* parent, rq::MessageSink& sink) : parent_(parent), sink_(sink) {}
    bool databaseDialog(rq::DatabaseForm& form) override;
    bool dataGroupDialog(rq::DataGroupForm& form) override;
    bool dataDialog(rq::DataForm& form) override;
    bool batchDataDialog(rq::BatchDataForm& form) override;

private:
    QWidget* parent_;
    rq::MessageSink& sink_;
};

} // namespace rqshell
