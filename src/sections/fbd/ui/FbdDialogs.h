#pragma once
// The function block editor's dialogs: "FBD Configuration" (the block's name, its
// class and member kind from the class catalog) and "FBD Parameter Setting" (the
// real-time data a parameter is bound to, picked through "Realtime Database
// Browse"). They show a form and never change the model; OK runs the form's
// validator, shows the first failing message through the sink and keeps the
// dialog open.

#include "core/MessageSink.h"
#include "sections/fbd/FbdCommands.h"
#include "sections/rtdb/RtdbSection.h"

#include <QDialog>

class QComboBox;
class QLineEdit;

namespace rqshell {

class CRtdbPickField;

class CFbdConfigDialog : public QDialog {
    Q_OBJECT
public:
    explicit CFbdConfigDialog(rq::MessageSink& sink, QWidget* parent = nullptr);
    // The class can be chosen only when the form adds a block; the member kinds
    // offered are those of the chosen class.
    void setForm(const rq::FbdBlockForm& form);
    rq::FbdBlockForm form() const;
    void accept() override;

    QLineEdit* nameEdit() const { return name_; }
    QComboBox* typeBox() const { return type_; }
    QComboBox* subTypeBox() const { return subType_; }

private:
    void fillSubTypes();

    rq::MessageSink& sink_;
    QLineEdit* name_;
    QComboBox* type_;
    QComboBox* subType_;
    bool adding_ = true;
};

class CFbdParamDialog : public QDialog {
    Q_OBJECT
public:
    // The pick button browses the project's databases and `system` (may be null).
    CFbdParamDialog(const rq::RtdbSection& project, const rq::RtdbSection* system,
                    rq::MessageSink& sink, QWidget* parent = nullptr);
    // The enabling parameter offers boolean ("bit") data only.
    void setForm(const rq::FbdParamForm& form);
    rq::FbdParamForm form() const;
    void accept() override;

    QLineEdit* nameEdit() const { return name_; }
    CRtdbPickField* dataField() const { return data_; }

private:
    rq::MessageSink& sink_;
    QLineEdit* name_;
    CRtdbPickField* data_;
    bool booleanOnly_ = false;
};

class FbdQtDialogHost : public rq::FbdDialogHost {
public:
    FbdQtDialogHost(QWidget* parent, rq::MessageSink& sink, const rq::RtdbSection& project,
                    const rq::RtdbSection* system)
        : parent_(parent), sink_(sink), project_(project), system_(system) {}
    bool blockDialog(rq::FbdBlockForm& form) override;
    bool paramDialog(rq::FbdParamForm& form) override;

private:
    QWidget* parent_;
    rq::MessageSink& sink_;
    const rq::RtdbSection& project_;
    const rq::RtdbSection* system_;
};

} // namespace rqshell
