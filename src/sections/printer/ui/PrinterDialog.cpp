#include "sections/printer/ui/PrinterDialog.h"
#include "shell/QtText.h"

#include "core/FileUtil.h"
#include "shell/Accessible.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QVBoxLayout>

namespace rqshell {

namespace {

using namespace rq::printertext;

// The editor with the Qt dialog it opens; the catalog beside the program.
class PrinterQtEditor : public rq::PrinterSectionEditor {
public:
    explicit PrinterQtEditor(const EditorEnv& env)
        : rq::PrinterSectionEditor(env.project.printer,
                                   rq::joinPath(env.programDir, rq::PrinterCatalog::kFileName),
                                   host_, env.project.doc.history()),
          host_(env.dialogParent, env.sink) {}

private:
    PrinterQtDialogHost host_;
};

} // namespace

CPrintConfigDialog::CPrintConfigDialog(const rq::PrinterCatalog& catalog, rq::MessageSink& sink,
                                       QWidget* parent)
    : QDialog(parent), sink_(sink) {
    setWindowTitle(QString::fromUtf8(kCaption));
    auto* outer = new QVBoxLayout(this);
    auto* box = new QGroupBox(QString::fromUtf8(kBox), this);
    auto* form = new QFormLayout(box);
    printer_ = new QComboBox(box);
    for (const rq::PrinterEntry& p : catalog.printers)
        printer_->addItem(qs(p.name));
    resolution_ = new QComboBox(box);
    for (const rq::ResolutionEntry& r : catalog.resolutions)
        resolution_->addItem(qs(r.description));
    paper_ = new QComboBox(box);
    for (const rq::PaperEntry& p : catalog.papers)
        paper_->addItem(qs(p.description));
    top_ = new QLineEdit(box);
    left_ = new QLineEdit(box);
    scaling_ = new QLineEdit(box);
    form->addRow(QString::fromUtf8(kPrinterType), printer_);
    form->addRow(QString::fromUtf8(kResolution), resolution_);
    form->addRow(QString::fromUtf8(kPaperType), paper_);
    form->addRow(QString::fromUtf8(kTopMargin), top_);
    form->addRow(QString::fromUtf8(kLeftMargin), left_);
    form->addRow(QString::fromUtf8(kScaling), scaling_);
    outer->addWidget(box);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    outer->addWidget(buttons);
    nameFieldsByLabels(this);
}

void CPrintConfigDialog::setForm(const rq::PrinterForm& f) {
    printer_->setCurrentIndex(f.printer < printer_->count() ? f.printer : -1);
    resolution_->setCurrentIndex(f.resolution < resolution_->count() ? f.resolution : -1);
    paper_->setCurrentIndex(f.paper < paper_->count() ? f.paper : -1);
    top_->setText(qs(f.topMargin));
    left_->setText(qs(f.leftMargin));
    scaling_->setText(qs(f.scaling));
}

rq::PrinterForm CPrintConfigDialog::form() const {
    rq::PrinterForm f;
    f.printer = printer_->currentIndex();
    f.resolution = resolution_->currentIndex();
    f.paper = paper_->currentIndex();
    f.topMargin = str(top_->text());
    f.leftMargin = str(left_->text());
    f.scaling = str(scaling_->text());
    return f;
}

void CPrintConfigDialog::accept() {
    if (auto message = rq::validatePrinterForm(form())) {
        sink_.showMessage(*message, rq::MessageIcon::Stop);
        return;
    }
    QDialog::accept();
}

bool PrinterQtDialogHost::printDialog(rq::PrinterForm& form, const rq::PrinterCatalog& catalog) {
    CPrintConfigDialog d(catalog, sink_, parent_);
    d.setForm(form);
    if (d.exec() != QDialog::Accepted)
        return false;
    form = d.form();
    return true;
}

std::unique_ptr<rq::SectionEditor> makePrinterEditor(const EditorEnv& env) {
    return std::make_unique<PrinterQtEditor>(env);
}

} // namespace rqshell
