#pragma once
// "Redundant Configuration" and the redundancy editor as the main window registers
// it.

#include "core/MessageSink.h"
#include "sections/redundancy/RedundancyEditor.h"
#include "shell/EditorEnv.h"

#include <QDialog>

#include <array>
#include <memory>

class QComboBox;
class QLineEdit;

namespace rqshell {

class CRedundancyDialog : public QDialog {
    Q_OBJECT
public:
    CRedundancyDialog(rq::MessageSink& sink, QWidget* parent = nullptr);
    void setForm(const rq::RedundancyForm& form);
    rq::RedundancyForm form() const;
    void accept() override;

    QComboBox* roleBox() const { return role_; }
    QLineEdit* periodEdit() const { return period_; }
    QLineEdit* masterIpEdit(int pair) const { return masterIp_[pair]; }

private:
    rq::MessageSink& sink_;
    QComboBox* role_;
    QLineEdit* period_;
    QLineEdit* clockSync_;
    QLineEdit* timeout_;
    QLineEdit* masterPort_;
    QLineEdit* slavePort_;
    std::array<QLineEdit*, rq::kShownLinkPairs> masterIp_;
    std::array<QLineEdit*, rq::kShownLinkPairs> slaveIp_;
};

class RedundancyQtDialogHost : public rq::RedundancyDialogHost {
public:
    RedundancyQtDialogHost(QWidget* parent, rq::MessageSink& sink) : parent_(parent), sink_(sink) {}
    bool configDialog(rq::RedundancyForm& form) override;

private:
    QWidget* parent_;
    rq::MessageSink& sink_;
};

std::unique_ptr<rq::SectionEditor> makeRedundancyEditor(const EditorEnv& env);

} // namespace rqshell
