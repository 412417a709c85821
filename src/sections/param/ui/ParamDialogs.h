#pragma once
// "Parameter Setting": the database and data names, read-only and filled by the
// pick button through "Realtime Database Browse", and the initial value. It shows
// a form and never changes the model; OK runs the form's validator, shows the
// first failing message through the sink and keeps the dialog open.

#include "core/MessageSink.h"
#include "sections/param/ParamCommands.h"
#include "sections/rtdb/RtdbSection.h"

#include <QDialog>

class QLineEdit;
class QPushButton;

namespace rqshell {

class CParamDialog : public QDialog {
    Q_OBJECT
public:
    // The pick button browses the project's databases and `system` (may be null).
    CParamDialog(const rq::RtdbSection& project, const rq::RtdbSection* system,
                 rq::MessageSink& sink, QWidget* parent = nullptr);
    void setForm(const rq::ParamForm& form);
    rq::ParamForm form() const;
    void accept() override;

    // What the pick button does: the browse dialog, then the two names take the
    // choice (Cancel keeps them).
    void pick();

    QLineEdit* databaseEdit() const { return dbname_; }
    QLineEdit* dataEdit() const { return dataname_; }
    QLineEdit* valueEdit() const { return value_; }
    QPushButton* pickButton() const { return pick_; }

private:
    const rq::RtdbSection& project_;
    const rq::RtdbSection* system_;
    rq::MessageSink& sink_;
    QLineEdit* dbname_;
    QLineEdit* dataname_;
    QLineEdit* value_;
    QPushButton* pick_;
};

class ParamQtDialogHost : public rq::ParamDialogHost {
public:
    ParamQtDialogHost(QWidget* parent, rq::MessageSink& sink, const rq::RtdbSection& project,
                      const rq::RtdbSection* system)
        : parent_(parent), sink_(sink), project_(project), system_(system) {}
    bool paramDialog(rq::ParamForm& form) override;

private:
    QWidget* parent_;
    rq::MessageSink& sink_;
    const rq::RtdbSection& project_;
    const rq::RtdbSection* system_;
};

} // namespace rqshell
