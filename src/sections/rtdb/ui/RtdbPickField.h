#pragma once
// A real-time data reference field: a line edit (or two, database and data name)
// and a pick button that opens "Realtime Database Browse" over the project's and
// the system database, with the data types the caller excludes. Every editor that
// refers to real-time data uses it.
//
// One-text form: the field holds "DB.DATA". Pair form: two fields, the database
// name and the data name, as the sections that store `dbname` and `dataname` keep
// them, side by side; PairRows stacks them (data name above, the button beside it)
// for dialogs that label each on its own row. Database form: the database name of
// the chosen variable only.

#include "core/DataTypes.h"
#include "sections/rtdb/RtdbSection.h"

#include <QWidget>

#include <array>
#include <functional>
#include <optional>
#include <string>

class QLineEdit;
class QPushButton;

namespace rqshell {

class CRtdbPickField : public QWidget {
    Q_OBJECT
public:
    enum class Form { OneText, Pair, PairRows, Database };
    using Exclusions = std::array<bool, rq::DataTypeTable::kCount>;

    // `label` names the field for accessibility (the row's visible label).
    CRtdbPickField(const rq::RtdbSection& project, const rq::RtdbSection* system,
                   const QString& label, Form form = Form::OneText, QWidget* parent = nullptr);

    // The types not offered, asked each time the button is pressed; none by
    // default. A provider returning nothing keeps the button from opening (a
    // choice the reference depends on is missing).
    void setExclusions(std::function<std::optional<Exclusions>()> provider) {
        exclusions_ = std::move(provider);
    }

    // One-text and database form.
    std::string text() const;
    void setText(const std::string& text);
    // Pair forms.
    rq::DataRef reference() const;
    void setReference(const rq::DataRef& ref);

    QLineEdit* edit() const { return edit_; }
    QLineEdit* dataEdit() const { return data_; }
    QPushButton* pickButton() const { return pick_; }

    // What the button does: the browse dialog, then the fields take the choice.
    void pick();

Q_SIGNALS:
    void picked();

private:
    const rq::RtdbSection& project_;
    const rq::RtdbSection* system_;
    Form form_;
    QLineEdit* edit_;
    QLineEdit* data_ = nullptr;
    QPushButton* pick_;
    std::function<std::optional<Exclusions>()> exclusions_;
};

// Exclusions that offer one type row only (-1: every type).
CRtdbPickField::Exclusions onlyType(int typeIndex);

} // namespace rqshell
