#include "sections/rtdb/ui/RtdbPickField.h"
#include "shell/QtText.h"

#include "sections/rtdb/ui/RtdbBrowseDialog.h"
#include "shell/Accessible.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

namespace rqshell {

namespace {} // namespace

CRtdbPickField::CRtdbPickField(const rq::RtdbSection& project, const rq::RtdbSection* system,
                               const QString& label, Form form, QWidget* parent)
    : QWidget(parent), project_(project), system_(system), form_(form) {
    const bool pair = form == Form::Pair || form == Form::PairRows;
    const QString name = accessibleText(label);
    edit_ = new QLineEdit(this);
    edit_->setAccessibleName(pair ? name + QStringLiteral(" database") : name);
    if (pair) {
        data_ = new QLineEdit(this);
        data_->setAccessibleName(name + QStringLiteral(" data"));
    }
    pick_ = new QPushButton(QStringLiteral("..."), this);
    pick_->setAccessibleName(QStringLiteral("Pick ") + name);
    pick_->setFixedWidth(pick_->fontMetrics().horizontalAdvance(QStringLiteral("....")) + 16);
    if (form == Form::PairRows) {
        auto* rows = new QGridLayout(this);
        rows->setContentsMargins(0, 0, 0, 0);
        rows->addWidget(data_, 0, 0);
        rows->addWidget(pick_, 0, 1);
        rows->addWidget(edit_, 1, 0);
        setFocusProxy(data_);
    } else {
        auto* row = new QHBoxLayout(this);
        row->setContentsMargins(0, 0, 0, 0);
        row->addWidget(edit_, 1);
        if (data_)
            row->addWidget(data_, 1);
        row->addWidget(pick_);
        setFocusProxy(edit_);
    }
    setAccessibleName(name);
    connect(pick_, &QPushButton::clicked, this, &CRtdbPickField::pick);
}

std::string CRtdbPickField::text() const {
    return str(edit_->text());
}

void CRtdbPickField::setText(const std::string& text) {
    edit_->setText(qs(text));
}

rq::DataRef CRtdbPickField::reference() const {
    return rq::DataRef{str(edit_->text()), data_ ? str(data_->text()) : std::string()};
}

void CRtdbPickField::setReference(const rq::DataRef& ref) {
    edit_->setText(qs(ref.dbname));
    if (data_)
        data_->setText(qs(ref.dataname));
}

void CRtdbPickField::pick() {
    Exclusions excluded{};
    if (exclusions_) {
        std::optional<Exclusions> e = exclusions_();
        if (!e)
            return;
        excluded = *e;
    }
    std::optional<rq::DataRef> ref = browseRealtimeData(window(), project_, system_, excluded);
    if (!ref)
        return;
    if (form_ == Form::Pair || form_ == Form::PairRows)
        setReference(*ref);
    else if (form_ == Form::Database)
        setText(ref->dbname);
    else
        setText(ref->dbname + "." + ref->dataname);
    Q_EMIT picked();
}

CRtdbPickField::Exclusions onlyType(int typeIndex) {
    CRtdbPickField::Exclusions e{};
    if (typeIndex < 0 || typeIndex >= rq::DataTypeTable::kCount)
        return e;
    e.fill(true);
    e[static_cast<std::size_t>(typeIndex)] = false;
    return e;
}

} // namespace rqshell
