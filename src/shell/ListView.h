#pragma once
// The main view (CRQPDevView): a report-style list with full-row selection over a
// model that reads the selected node's records by index. A section fills it through
// show(); no widget exists per row.

#include <QAbstractTableModel>
#include <QTableView>

#include <functional>
#include <string_view>
#include <vector>

namespace rqshell {

struct ListColumn {
    QString title;
    int width = 100; // 0 = hidden
};

class SectionListModel : public QAbstractTableModel {
    Q_OBJECT
public:
    using RowCount = std::function<std::size_t()>;
    using Cell = std::function<std::string_view(std::size_t row, int column)>;

    explicit SectionListModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}

    // Shows `rows()` rows of the given columns; `cell` gives each text. The model
    // keeps no copy of the records.
    void show(std::vector<ListColumn> columns, RowCount rows, Cell cell);
    // No columns and no rows: the empty main view.
    void clear();
    // The record set changed under the same columns: the rows are read again.
    void refresh();

    const std::vector<ListColumn>& columns() const { return columns_; }
    QString text(int row, int column) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation o, int role) const override;

private:
    std::vector<ListColumn> columns_;
    RowCount rows_;
    Cell cell_;
    std::size_t rowCount_ = 0;
};

class CRQPDevView : public QTableView {
    Q_OBJECT
public:
    explicit CRQPDevView(QWidget* parent = nullptr);

    SectionListModel& listModel() { return *model_; }
    // `kind`: the kind of node shown; when it differs from the last one the columns
    // are set again and fitted to their content (never narrower than declared).
    void show(std::vector<ListColumn> columns, SectionListModel::RowCount rows,
              SectionListModel::Cell cell, int kind = 0);
    void showEmpty();
    void refresh();
    // Selected rows in increasing order.
    std::vector<std::size_t> selectedRows() const;

Q_SIGNALS:
    void rightClicked(const QPoint& globalPos);
    void rowDoubleClicked();
    // Insert, Enter or Delete pressed in the list.
    void keyCommand(int key);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void applyColumnWidths(bool fit);
    int shownKind_ = -1;
    SectionListModel* model_;
};

} // namespace rqshell
