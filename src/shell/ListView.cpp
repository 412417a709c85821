#include "shell/ListView.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <algorithm>

namespace rqshell {

void SectionListModel::show(std::vector<ListColumn> columns, RowCount rows, Cell cell) {
    beginResetModel();
    columns_ = std::move(columns);
    rows_ = std::move(rows);
    cell_ = std::move(cell);
    rowCount_ = rows_ ? rows_() : 0;
    endResetModel();
}

void SectionListModel::clear() {
    beginResetModel();
    columns_.clear();
    rows_ = nullptr;
    cell_ = nullptr;
    rowCount_ = 0;
    endResetModel();
}

void SectionListModel::refresh() {
    beginResetModel();
    rowCount_ = rows_ ? rows_() : 0;
    endResetModel();
}

QString SectionListModel::text(int row, int column) const {
    if (!cell_ || row < 0 || static_cast<std::size_t>(row) >= rowCount_ || column < 0 ||
        column >= static_cast<int>(columns_.size()))
        return {};
    std::string_view t = cell_(static_cast<std::size_t>(row), column);
    return QString::fromUtf8(t.data(), static_cast<qsizetype>(t.size()));
}

int SectionListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rowCount_);
}

int SectionListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant SectionListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    if (role == Qt::DisplayRole)
        return text(index.row(), index.column());
    if (role == Qt::TextAlignmentRole)
        return int(Qt::AlignCenter);
    return {};
}

QVariant SectionListModel::headerData(int section, Qt::Orientation o, int role) const {
    if (o != Qt::Horizontal || section < 0 || section >= static_cast<int>(columns_.size()))
        return {};
    if (role == Qt::DisplayRole)
        return columns_[static_cast<std::size_t>(section)].title;
    if (role == Qt::TextAlignmentRole)
        return int(Qt::AlignCenter);
    return {};
}

CRQPDevView::CRQPDevView(QWidget* parent) : QTableView(parent), model_(new SectionListModel(this)) {
    setModel(model_);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setShowGrid(false);
    setWordWrap(false);
    setContextMenuPolicy(Qt::CustomContextMenu);
    verticalHeader()->hide();
    // Fixed row heights let the view place any of 100,000 rows without measuring.
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    horizontalHeader()->setDefaultAlignment(Qt::AlignCenter);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setStretchLastSection(true);
    setAccessibleName(QStringLiteral("list"));
    connect(this, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& pos) { Q_EMIT rightClicked(viewport()->mapToGlobal(pos)); });
    connect(this, &QAbstractItemView::doubleClicked, this, [this] { Q_EMIT rowDoubleClicked(); });
}

void CRQPDevView::applyColumnWidths(bool fit) {
    const auto& cols = model_->columns();
    for (int i = 0; i < static_cast<int>(cols.size()); ++i) {
        int w = cols[static_cast<std::size_t>(i)].width;
        setColumnHidden(i, w == 0);
        if (w <= 0)
            continue;
        if (fit) {
            // The header and the rows in view decide; a long list is not measured
            // row by row.
            int content = std::max(sizeHintForColumn(i), horizontalHeader()->sectionSizeHint(i));
            w = std::max(w, content);
        }
        setColumnWidth(i, w);
    }
}

void CRQPDevView::show(std::vector<ListColumn> columns, SectionListModel::RowCount rows,
                       SectionListModel::Cell cell, int kind) {
    // The widths the user set survive a refresh of the same kind of list; another
    // section's list of the same kind number has other titles and is laid out anew.
    const bool sameColumns =
        kind == shownKind_ &&
        std::equal(columns.begin(), columns.end(), model_->columns().begin(),
                   model_->columns().end(),
                   [](const ListColumn& a, const ListColumn& b) { return a.title == b.title; });
    model_->show(std::move(columns), std::move(rows), std::move(cell));
    if (!sameColumns)
        applyColumnWidths(true);
    shownKind_ = kind;
}

void CRQPDevView::showEmpty() {
    model_->clear();
    shownKind_ = -1;
}

void CRQPDevView::refresh() {
    model_->refresh();
}

void CRQPDevView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Insert:
    case Qt::Key_Delete:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (event->modifiers() == Qt::NoModifier || event->modifiers() == Qt::KeypadModifier) {
            Q_EMIT keyCommand(event->key());
            event->accept();
            return;
        }
        break;
    default:
        break;
    }
    QTableView::keyPressEvent(event);
}

std::vector<std::size_t> CRQPDevView::selectedRows() const {
    std::vector<std::size_t> rows;
    if (!selectionModel())
        return rows;
    for (const QModelIndex& i : selectionModel()->selectedRows())
        rows.push_back(static_cast<std::size_t>(i.row()));
    std::sort(rows.begin(), rows.end());
    return rows;
}

} // namespace rqshell
