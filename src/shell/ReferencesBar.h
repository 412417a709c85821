#pragma once
// The "References" dock: the uses of one real-time data item (Find References on a
// data row), one line per use with its file, place and attribute. A double-click
// on a line asks the main window to go to that record.

#include <QDockWidget>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

class QLabel;
class QTreeWidget;

namespace rqshell {

class CReferencesBar : public QDockWidget {
    Q_OBJECT
public:
    // One use, and where its section's editor shows it (RefUse).
    struct Use {
        std::string file, where, attribute;
        const void* node = nullptr;
        std::ptrdiff_t row = -1;
    };

    explicit CReferencesBar(QWidget* parent = nullptr);

    // Shows the uses of ITEM as they are at the project's revision `revision`.
    void showUses(const std::string& item, std::vector<Use> uses, std::uint64_t revision);
    // Nothing shown (the project was closed or another one opened).
    void clearUses();

    // The item shown; empty when none.
    const std::string& item() const { return item_; }
    std::uint64_t revision() const { return revision_; }
    const std::vector<Use>& uses() const { return uses_; }
    QTreeWidget& list() const { return *list_; }
    QLabel& summary() const { return *summary_; }

Q_SIGNALS:
    // A line was double-clicked (or Enter pressed on it): the index in uses().
    void useActivated(int index);

private:
    QLabel* summary_;
    QTreeWidget* list_;
    std::string item_;
    std::uint64_t revision_ = 0;
    std::vector<Use> uses_;
};

} // namespace rqshell
