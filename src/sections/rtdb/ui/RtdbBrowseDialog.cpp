#include "sections/rtdb/ui/RtdbBrowseDialog.h"

#include "shell/NodeImages.h"

#include <QAbstractTableModel>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QSplitter>
#include <QTableView>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <map>

namespace rqshell {

class BrowseTableModel : public QAbstractTableModel {
public:
    explicit BrowseTableModel(const rq::RtdbBrowseModel& m) : m_(m) {}
    void reset() {
        beginResetModel();
        endResetModel();
    }
    int rowCount(const QModelIndex& p = {}) const override {
        return p.isValid() ? 0 : static_cast<int>(m_.rowCount());
    }
    int columnCount(const QModelIndex& p = {}) const override {
        return p.isValid() ? 0 : rq::kBrowseColumnCount;
    }
    QVariant data(const QModelIndex& i, int role) const override {
        if (!i.isValid() || role != Qt::DisplayRole)
            return {};
        std::string_view t = m_.cell(static_cast<std::size_t>(i.row()), i.column());
        return QString::fromUtf8(t.data(), qsizetype(t.size()));
    }
    QVariant headerData(int s, Qt::Orientation o, int role) const override {
        if (o != Qt::Horizontal || role != Qt::DisplayRole || s < 0 || s >= rq::kBrowseColumnCount)
            return {};
        return QString::fromUtf8(rq::kRtdbBrowseColumns[static_cast<std::size_t>(s)].title);
    }

private:
    const rq::RtdbBrowseModel& m_;
};

namespace {
constexpr int kNodeRole = Qt::UserRole + 1;
}

CRtdbBrowseDialog::CRtdbBrowseDialog(const rq::RtdbSection& project, const rq::RtdbSection* system,
                                     QWidget* parent)
    : QDialog(parent), model_(project, system), table_(std::make_unique<BrowseTableModel>(model_)) {
    setWindowTitle(QString::fromUtf8(rq::RtdbBrowseModel::kCaption));
    auto* outer = new QVBoxLayout(this);
    auto* split = new QSplitter(this);
    tree_ = new QTreeWidget(split);
    tree_->setHeaderHidden(true);
    tree_->setIconSize(QSize(16, 16));
    list_ = new QTableView(split);
    list_->setModel(table_.get());
    list_->setSelectionBehavior(QAbstractItemView::SelectRows);
    list_->setSelectionMode(QAbstractItemView::SingleSelection);
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->setShowGrid(true);
    list_->setMouseTracking(true); // hot tracking
    list_->setStyleSheet("QTableView::item:hover { background: palette(midlight); }");
    list_->verticalHeader()->hide();
    list_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    list_->verticalHeader()->setDefaultSectionSize(list_->fontMetrics().height() + 4);
    split->addWidget(tree_);
    split->addWidget(list_);
    split->setStretchFactor(1, 1);
    split->setSizes({180, 460});
    outer->addWidget(split);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    outer->addWidget(buttons);
    connect(tree_, &QTreeWidget::itemSelectionChanged, this, &CRtdbBrowseDialog::onTreeSelection);
    connect(list_, &QAbstractItemView::doubleClicked, this, &CRtdbBrowseDialog::accept);
    fillTree();
    resize(680, 400);
}

CRtdbBrowseDialog::~CRtdbBrowseDialog() = default;

void CRtdbBrowseDialog::addNodes(QTreeWidgetItem* parent, const rq::DataNode& node, bool system) {
    for (const auto& child : node.children()) {
        auto* item = new QTreeWidgetItem(parent);
        item->setText(0, QString::fromUtf8(child->name()));
        item->setIcon(0, nodeIcon(child->isDatabase() ? (system ? image::kSystem : image::kDatabase)
                                                      : image::kDataGroup));
        item->setData(
            0, kNodeRole,
            QVariant::fromValue(const_cast<void*>(static_cast<const void*>(child.get()))));
        addNodes(item, *child, system);
    }
}

void CRtdbBrowseDialog::fillTree() {
    tree_->clear();
    for (const auto& db : model_.projectRoot().children()) {
        auto* item = new QTreeWidgetItem(tree_);
        item->setText(0, QString::fromUtf8(db->name()));
        item->setIcon(0, nodeIcon(image::kDatabase));
        item->setData(0, kNodeRole,
                      QVariant::fromValue(const_cast<void*>(static_cast<const void*>(db.get()))));
        addNodes(item, *db, false);
    }
    auto* sys = new QTreeWidgetItem(tree_);
    sys->setText(0, QString::fromUtf8(rq::RtdbBrowseModel::kSystemRootText));
    sys->setIcon(0, nodeIcon(image::kSystem));
    if (const rq::DataNode* root = model_.systemRoot())
        addNodes(sys, *root, true);
    tree_->expandAll();
}

void CRtdbBrowseDialog::setExcluded(int typeIndex, bool excluded) {
    model_.setExcluded(typeIndex, excluded);
    model_.select(model_.selected());
    table_->reset();
}

void CRtdbBrowseDialog::onTreeSelection() {
    QTreeWidgetItem* item = tree_->currentItem();
    const auto* node =
        item ? static_cast<const rq::DataNode*>(item->data(0, kNodeRole).value<void*>()) : nullptr;
    model_.select(node);
    table_->reset();
    for (int c = 0; c < rq::kBrowseColumnCount; ++c) {
        int w = rq::kRtdbBrowseColumns[static_cast<std::size_t>(c)].width;
        list_->setColumnHidden(c, w == 0);
        if (w > 0)
            list_->setColumnWidth(c, w);
    }
}

void CRtdbBrowseDialog::selectNode(const rq::DataNode* node) {
    for (QTreeWidgetItemIterator it(tree_); *it; ++it) {
        if ((*it)->data(0, kNodeRole).value<void*>() == static_cast<const void*>(node)) {
            tree_->setCurrentItem(*it);
            return;
        }
    }
}

void CRtdbBrowseDialog::accept() {
    QModelIndexList rows = list_->selectionModel()->selectedRows();
    result_.reset();
    if (!rows.isEmpty())
        result_ = model_.reference(static_cast<std::size_t>(rows.first().row()));
    QDialog::accept();
}

const rq::RtdbSection* systemDatabase(const std::string& programDir) {
    static std::map<std::string, std::unique_ptr<const rq::RtdbSection>> loaded;
    auto it = loaded.find(programDir);
    if (it == loaded.end()) {
        rq::SilentSink sink;
        rq::ReadContext ctx{sink, nullptr, nullptr, {}};
        it = loaded.emplace(programDir, rq::loadSystemDatabase(programDir, ctx)).first;
    }
    return it->second.get();
}

std::optional<rq::DataRef> browseRealtimeData(QWidget* parent, const rq::RtdbSection& project,
                                              const rq::RtdbSection* system,
                                              const std::array<bool, 11>& excludedTypes) {
    CRtdbBrowseDialog d(project, system, parent);
    for (int i = 0; i < 11; ++i)
        if (excludedTypes[static_cast<std::size_t>(i)])
            d.setExcluded(i, true);
    if (d.exec() != QDialog::Accepted)
        return std::nullopt;
    return d.reference();
}

} // namespace rqshell
