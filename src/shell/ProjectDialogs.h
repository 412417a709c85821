#pragma once
// The project dialog ("Project Property"), the "Online Simulation" dialog and the
// about box. The dialogs expose their fields as forms; the project flows decide.

#include "core/HmiDeviceCatalog.h"
#include "project/ProjectFlows.h"

#include <QDialog>
#include <functional>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;

namespace rqshell {

class CProjectDialog : public QDialog {
    Q_OBJECT
public:
    CProjectDialog(const rq::HmiDeviceCatalog& catalog, rq::ProjectDialogMode mode,
                   QWidget* parent = nullptr);
    void setForm(const rq::ProjectForm& form);
    rq::ProjectForm form() const;
    // The check that OK runs; the dialog closes only when it returns true.
    void setAcceptCheck(std::function<bool(const rq::ProjectForm&)> check) {
        check_ = std::move(check);
    }
    void accept() override;

    QLabel* heading() const { return heading_; }
    QPushButton* browseButton() const { return browse_; }

private:
    void browse();

    std::function<bool(const rq::ProjectForm&)> check_;
    QLabel* heading_;
    QLineEdit* name_;
    QLineEdit* description_;
    QLineEdit* path_;
    QPushButton* browse_;
    QComboBox* hmi_;
    QLineEdit* ip_;
};

class COnlineSimulationDialog : public QDialog {
    Q_OBJECT
public:
    explicit COnlineSimulationDialog(QWidget* parent = nullptr);
    void setForm(const rq::OnlineSimulationForm& form);
    rq::OnlineSimulationForm form() const;
    // What "Run" does; true closes the dialog.
    void setRun(std::function<bool(const rq::OnlineSimulationForm&)> run) { run_ = std::move(run); }

    QPushButton* runButton() const { return runButton_; }

private:
    std::function<bool(const rq::OnlineSimulationForm&)> run_;
    QLineEdit* ip_;
    QSpinBox* port_;
    QSpinBox* overtime_;
    QSpinBox* period_;
    QPushButton* runButton_;
};

class CAboutDlg : public QDialog {
    Q_OBJECT
public:
    explicit CAboutDlg(QWidget* parent = nullptr);
};

} // namespace rqshell
