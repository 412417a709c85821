#pragma once
// "Realtime Database Browse": picks one real-time variable of the project's
// databases or of the system database. Used by every editor that refers to
// real-time data; the caller may exclude data types and reads the result on OK.

#include "core/DataTypes.h"
#include "sections/rtdb/RtdbBrowseModel.h"

#include <QDialog>

#include <array>
#include <memory>
#include <optional>
#include <string>

class QTreeWidget;
class QTreeWidgetItem;
class QTableView;

namespace rqshell {

class BrowseTableModel;

class CRtdbBrowseDialog : public QDialog {
    Q_OBJECT
public:
    // `system` may be null. The dialog reads both sections, never changes them.
    CRtdbBrowseDialog(const rq::RtdbSection& project, const rq::RtdbSection* system,
                      QWidget* parent = nullptr);
    ~CRtdbBrowseDialog() override;

    // Exclusion flags, one per row of the data type table, all clear at first.
    void setExcluded(int typeIndex, bool excluded);
    bool excluded(int typeIndex) const { return model_.excluded(typeIndex); }

    // After OK: the selected row's database name and variable name.
    std::optional<rq::DataRef> reference() const { return result_; }

    // For tests and screenshots.
    QTreeWidget* tree() const { return tree_; }
    QTableView* list() const { return list_; }
    void selectNode(const rq::DataNode* node);

    void accept() override;

private:
    void fillTree();
    void addNodes(QTreeWidgetItem* parent, const rq::DataNode& node, bool system);
    void onTreeSelection();

    rq::RtdbBrowseModel model_;
    std::unique_ptr<BrowseTableModel> table_;
    QTreeWidget* tree_;
    QTableView* list_;
    std::optional<rq::DataRef> result_;
};

// The system database (conffile/rtdb.xml) of the program directory, read on first
// use and kept for the run; null when it cannot be read.
const rq::RtdbSection* systemDatabase(const std::string& programDir);

// Shows the browse dialog over the project's databases and the system database of
// the program directory; the chosen variable, or nothing on Cancel.
std::optional<rq::DataRef> browseRealtimeData(QWidget* parent, const rq::RtdbSection& project,
                                              const rq::RtdbSection* system,
                                              const std::array<bool, 11>& excludedTypes = {});

} // namespace rqshell
