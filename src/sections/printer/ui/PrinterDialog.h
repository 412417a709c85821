#pragma once
// "Print Configuration" and the printer editor as the main window registers it.

#include "core/MessageSink.h"
#include "sections/printer/PrinterEditor.h"
#include "shell/EditorEnv.h"

#include <QDialog>

#include <memory>

class QComboBox;
class QLineEdit;

namespace rqshell {

class CPrintConfigDialog : public QDialog {
    Q_OBJECT
public:
    CPrintConfigDialog(const rq::PrinterCatalog& catalog, rq::MessageSink& sink,
                       QWidget* parent = nullptr);
    void setForm(const rq::PrinterForm& form);
    rq::PrinterForm form() const;
    void accept() override;

    QComboBox* printerBox() const { return printer_; }
    QComboBox* resolutionBox() const { return resolution_; }
    QComboBox* paperBox() const { return paper_; }
    QLineEdit* topMarginEdit() const { return top_; }

private:
    rq::MessageSink& sink_;
    QComboBox* printer_;
    QComboBox* resolution_;
    QComboBox* paper_;
    QLineEdit* top_;
    QLineEdit* left_;
    QLineEdit* scaling_;
};

class PrinterQtDialogHost : public rq::PrinterDialogHost {
public:
    PrinterQtDialogHost(QWidget* parent, rq::MessageSink& sink) : parent_(parent), sink_(sink) {}
    bool printDialog(rq::PrinterForm& form, const rq::PrinterCatalog& catalog) override;

private:
    QWidget* parent_;
    rq::MessageSink& sink_;
};

std::unique_ptr<rq::SectionEditor> makePrinterEditor(const EditorEnv& env);

} // namespace rqshell
