#include "shell/TableExchangeUi.h"

#include "core/FileUtil.h"
#include "exchange/ProjectExchange.h"
#include "shell/Accessible.h"
#include "shell/QtText.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace rqshell {

std::string tableSectionOf(rq::SectionObject object) {
    switch (object) {
    case rq::SectionObject::Rtdb:
        return "rtdb";
    case rq::SectionObject::HmiDb:
        return "hmidb";
    case rq::SectionObject::Device:
        return "device";
    case rq::SectionObject::Param:
        return "param";
    case rq::SectionObject::DataLog:
        return "datalog";
    case rq::SectionObject::History:
        return "history";
    case rq::SectionObject::Alarm:
        return "alarm";
    default:
        return {};
    }
}

CImportMergeDialog::CImportMergeDialog(const rq::TableMerge& merge, const QString& file,
                                       QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(QStringLiteral("Import"));
    auto* layout = new QVBoxLayout(this);
    auto* fileLabel = new QLabel(file, this);
    fileLabel->setAccessibleName(QStringLiteral("File"));
    layout->addWidget(fileLabel);
    auto* counts = new QFormLayout;
    auto count = [&](const char* label, std::size_t n) {
        auto* value = new QLabel(QString::number(n), this);
        counts->addRow(QString::fromUtf8(label), value);
    };
    count("Added:", merge.added);
    count("Changed:", merge.changed);
    count("Unchanged:", merge.unchanged);
    if (merge.removed)
        count("Removed:", merge.removed);
    count("Refused:", merge.refused.size());
    layout->addLayout(counts);
    if (!merge.refused.empty()) {
        auto* refusedLabel = new QLabel(QStringLiteral("Refused rows (left out by Apply):"), this);
        layout->addWidget(refusedLabel);
        auto* table = new QTableWidget(int(merge.refused.size()), 2, this);
        table->setHorizontalHeaderLabels({QStringLiteral("Line"), QStringLiteral("Reason")});
        table->verticalHeader()->hide();
        table->setEditTriggers(QAbstractItemView::NoEditTriggers);
        table->setSelectionBehavior(QAbstractItemView::SelectRows);
        for (int r = 0; r < int(merge.refused.size()); ++r) {
            table->setItem(r, 0, new QTableWidgetItem(QString::number(merge.refused[r].line)));
            auto* reason = new QTableWidgetItem(qs(merge.refused[r].reason));
            reason->setToolTip(reason->text()); // a long reason stays readable in full
            table->setItem(r, 1, reason);
        }
        table->resizeColumnsToContents();
        table->horizontalHeader()->setStretchLastSection(true);
        table->setMinimumWidth(640);
        table->setAccessibleName(QStringLiteral("Refused rows"));
        layout->addWidget(table);
    }
    if (!merge.changes())
        layout->addWidget(new QLabel(QStringLiteral("Nothing to change."), this));
    auto* buttons = new QDialogButtonBox(this);
    QPushButton* apply = buttons->addButton(QStringLiteral("Apply"), QDialogButtonBox::AcceptRole);
    apply->setEnabled(merge.changes());
    apply->setDefault(merge.changes());
    buttons->addButton(QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    nameFieldsByLabels(this);
}

void exportSectionTable(QWidget* parent, rq::Project& project, const std::string& section,
                        rq::MessageSink& sink) {
    const QString file =
        QFileDialog::getSaveFileName(parent, QStringLiteral("Export"), qs(section + ".csv"),
                                     QStringLiteral("CSV files (*.csv);;All files (*)"));
    if (file.isEmpty())
        return;
    std::string error;
    const std::string text = rq::exportTable(*rq::makeSectionTable(project, section));
    if (!rq::writeFileAtomic(str(file), text, &error))
        sink.showMessage(str(file) + ": " + error, rq::MessageIcon::Stop);
}

bool importSectionTable(QWidget* parent, rq::Project& project, const std::string& section,
                        rq::MessageSink& sink) {
    const QString file =
        QFileDialog::getOpenFileName(parent, QStringLiteral("Import"), QString(),
                                     QStringLiteral("CSV files (*.csv);;All files (*)"));
    if (file.isEmpty())
        return false;
    std::string text, error;
    if (!rq::readWholeFile(str(file), text, &error)) {
        sink.showMessage(str(file) + ": " + error, rq::MessageIcon::Stop);
        return false;
    }
    rq::TableMerge merge = rq::mergeSectionText(project, section, text, false);
    if (!merge.ok()) {
        sink.showMessage(str(file) + ": " + merge.error, rq::MessageIcon::Stop);
        return false;
    }
    CImportMergeDialog dialog(merge, file, parent);
    if (dialog.exec() != QDialog::Accepted || !merge.changes())
        return false;
    project.doc.history().push(std::move(merge.step));
    return true;
}

} // namespace rqshell
