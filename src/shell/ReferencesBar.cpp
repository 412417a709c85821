#include "shell/ReferencesBar.h"

#include "shell/QtText.h"

#include <QHeaderView>
#include <QLabel>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace rqshell {

namespace {

const QString kNothing = QStringLiteral("No data chosen: use Find References on a data row.");

} // namespace

CReferencesBar::CReferencesBar(QWidget* parent)
    : QDockWidget(QStringLiteral("References"), parent) {
    setObjectName("CReferencesBar");
    setAccessibleName(windowTitle());
    auto* body = new QWidget(this);
    auto* layout = new QVBoxLayout(body);
    layout->setContentsMargins(4, 4, 4, 4);
    summary_ = new QLabel(kNothing, body);
    summary_->setAccessibleName(summary_->text());
    summary_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    list_ = new QTreeWidget(body);
    list_->setAccessibleName(QStringLiteral("uses"));
    list_->setColumnCount(3);
    list_->setHeaderLabels(
        {QStringLiteral("file"), QStringLiteral("where"), QStringLiteral("attribute")});
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    list_->setAlternatingRowColors(true);
    list_->header()->setStretchLastSection(true);
    layout->addWidget(summary_);
    layout->addWidget(list_);
    setWidget(body);

    auto activate = [this](QTreeWidgetItem* item) {
        if (item)
            Q_EMIT useActivated(list_->indexOfTopLevelItem(item));
    };
    connect(list_, &QTreeWidget::itemDoubleClicked, this, activate);
    connect(list_, &QTreeWidget::itemActivated, this, activate);
}

void CReferencesBar::showUses(const std::string& item, std::vector<Use> uses,
                              std::uint64_t revision) {
    item_ = item;
    revision_ = revision;
    uses_ = std::move(uses);
    list_->clear();
    QList<QTreeWidgetItem*> rows;
    rows.reserve(qsizetype(uses_.size()));
    for (const Use& u : uses_)
        rows.push_back(new QTreeWidgetItem({qs(u.file), qs(u.where), qs(u.attribute)}));
    list_->addTopLevelItems(rows);
    for (int c = 0; c < 2; ++c)
        list_->resizeColumnToContents(c);
    const std::size_t n = uses_.size();
    summary_->setText(qs(n == 0 ? "\"" + item + "\" is not used."
                                : "\"" + item + "\" is used in " + std::to_string(n) +
                                      (n == 1 ? " place." : " places.")));
    summary_->setAccessibleName(summary_->text());
}

void CReferencesBar::clearUses() {
    item_.clear();
    uses_.clear();
    list_->clear();
    summary_->setText(kNothing);
    summary_->setAccessibleName(kNothing);
}

} // namespace rqshell
