#include "sections/device/ui/DeviceDialogs.h"
#include "shell/QtText.h"

#include "shell/Accessible.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QTabWidget>
#include <QVBoxLayout>

namespace rqshell {

namespace {

using namespace rq::devicetext;

template <std::size_t N> QComboBox* choiceBox(const std::array<const char*, N>& items, QWidget* p) {
    auto* box = new QComboBox(p);
    for (const char* t : items)
        box->addItem(qs(t));
    return box;
}

// Selects the entry of that text; a text the list does not hold is added, so that
// what the file holds is shown and kept.
void selectText(QComboBox* box, const std::string& text) {
    int i = box->findText(qs(text));
    if (i < 0 && !text.empty()) {
        box->addItem(qs(text));
        i = box->count() - 1;
    }
    box->setCurrentIndex(i);
}

// A number field: the text as a number, -1 when it is none.
long long numberOf(const QLineEdit* edit) {
    bool ok = false;
    qlonglong v = edit->text().trimmed().toLongLong(&ok);
    return ok ? v : -1;
}

QDialogButtonBox* okCancel(QDialog* d) {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, d);
    QObject::connect(buttons, &QDialogButtonBox::accepted, d, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, d, &QDialog::reject);
    return buttons;
}

} // namespace

// ---- link sheets ----

CDeviceLinkPropSheet::CDeviceLinkPropSheet(rq::LinkKind kind, const QString& title,
                                           RealtimeSource rt, rq::MessageSink& sink,
                                           QWidget* parent)
    : QDialog(parent), kind_(kind), sink_(sink) {
    switch (kind) {
    case rq::LinkKind::Serial:
        setObjectName("CDeviceComLinkPropSheet");
        break;
    case rq::LinkKind::TcpClient:
        setObjectName("CDeviceTcpClientLinkPropSheet");
        break;
    case rq::LinkKind::TcpServer:
        setObjectName("CDeviceTcpServerLinkPropSheet");
        break;
    default:
        setObjectName("CDeviceNoneLinkPropSheet");
        break;
    }
    setWindowTitle(title);
    auto* outer = new QVBoxLayout(this);
    tabs_ = new QTabWidget(this);
    tabs_->setAccessibleName(title);
    tabs_->addTab(basicPage(rt), qs(kBasicPage));
    if (kind == rq::LinkKind::Serial)
        tabs_->addTab(serialPage(), qs(kSerialPage));
    else if (kind == rq::LinkKind::TcpClient)
        tabs_->addTab(tcpClientPage(), qs(kTcpClientPage));
    else if (kind == rq::LinkKind::TcpServer)
        tabs_->addTab(tcpServerPage(), qs(kTcpServerPage));
    outer->addWidget(tabs_);
    outer->addWidget(okCancel(this));
    setForm(rq::newLinkForm(kind));
    nameFieldsByLabels(this);
    setMinimumWidth(440);
}

QWidget* CDeviceLinkPropSheet::basicPage(RealtimeSource rt) {
    auto* page = new QWidget(this);
    page->setObjectName("CDeviceLinkPropPage");
    auto* form = new QFormLayout(page);
    name_ = new QLineEdit(page);
    period_ = new QLineEdit(page);
    redundancy_ = choiceBox(kRedundantChoices, page);
    masterlink_ = new QLineEdit(page);
    timeout_ = new QLineEdit(page);
    params_ = new QLineEdit(page);
    status_ = new CRtdbPickField(rt.project, rt.system, qs(kStatusVar),
                                 CRtdbPickField::Form::OneText, page);
    control_ = new CRtdbPickField(rt.project, rt.system, qs(kControlVar),
                                  CRtdbPickField::Form::OneText, page);
    disabled_ = new QCheckBox(qs(kDisableLink), page);
    form->addRow(qs(kLinkName), name_);
    form->addRow(qs(kPeriod), period_);
    form->addRow(qs(kRedundant), redundancy_);
    form->addRow(qs(kMasterLink), masterlink_);
    form->addRow(qs(kTimeout), timeout_);
    form->addRow(qs(kParams), params_);
    form->addRow(qs(kStatusVar), status_);
    form->addRow(qs(kControlVar), control_);
    form->addRow(QString(), disabled_);
    return page;
}

QWidget* CDeviceLinkPropSheet::serialPage() {
    auto* page = new QWidget(this);
    page->setObjectName("CDeviceComLinkPropPage");
    auto* form = new QFormLayout(page);
    devname_ = choiceBox(kSerialDevices, page);
    devname_->setEditable(true); // any typed text is taken
    baudrate_ = choiceBox(kBaudRates, page);
    dataBits_ = choiceBox(kDataBitChoices, page);
    stopBits_ = choiceBox(kStopBitChoices, page);
    parity_ = choiceBox(kParityChoices, page);
    form->addRow(qs(kSerialDevice), devname_);
    form->addRow(qs(kBaudRate), baudrate_);
    form->addRow(qs(kDataBits), dataBits_);
    form->addRow(qs(kStopBits), stopBits_);
    form->addRow(qs(kParity), parity_);
    return page;
}

QWidget* CDeviceLinkPropSheet::tcpClientPage() {
    auto* page = new QWidget(this);
    page->setObjectName("CDeviceTcpClientLinkPropPage");
    auto* form = new QFormLayout(page);
    serverIp_ = new QLineEdit(page);
    serverPort_ = new QLineEdit(page);
    form->addRow(qs(kServerIp), serverIp_);
    form->addRow(qs(kServerPort), serverPort_);
    return page;
}

QWidget* CDeviceLinkPropSheet::tcpServerPage() {
    auto* page = new QWidget(this);
    page->setObjectName("CDeviceTcpServerLinkPropPage");
    auto* form = new QFormLayout(page);
    listenPort_ = new QLineEdit(page);
    form->addRow(qs(kServerPort), listenPort_);
    return page;
}

void CDeviceLinkPropSheet::setForm(const rq::LinkForm& f) {
    name_->setText(qs(f.name));
    period_->setText(qs(f.period));
    redundancy_->setCurrentIndex(f.redundancy == 1 ? 1 : 0);
    masterlink_->setText(qs(f.masterlink));
    timeout_->setText(qs(f.timeout));
    params_->setText(qs(f.params));
    status_->setText(f.status_var);
    control_->setText(f.control_var);
    disabled_->setChecked(f.disabled);
    if (devname_) {
        devname_->setEditText(qs(f.devname));
        selectText(baudrate_, f.baudrate);
        selectText(dataBits_, f.data_bits);
        selectText(stopBits_, f.stop_bits);
        selectText(parity_, f.parity);
    }
    if (serverIp_) {
        serverIp_->setText(qs(f.server_ip));
        serverPort_->setText(QString::number(f.server_port));
    }
    if (listenPort_)
        listenPort_->setText(QString::number(f.listen_port));
}

rq::LinkForm CDeviceLinkPropSheet::form() const {
    rq::LinkForm f = rq::newLinkForm(kind_);
    f.name = str(name_->text());
    f.period = str(period_->text());
    f.redundancy = redundancy_->currentIndex() == 1 ? 1 : 0;
    f.masterlink = str(masterlink_->text());
    f.timeout = str(timeout_->text());
    f.params = str(params_->text());
    f.status_var = status_->text();
    f.control_var = control_->text();
    f.disabled = disabled_->isChecked();
    if (devname_) {
        f.devname = str(devname_->currentText());
        f.baudrate = str(baudrate_->currentText());
        f.data_bits = str(dataBits_->currentText());
        f.stop_bits = str(stopBits_->currentText());
        f.parity = str(parity_->currentText());
    }
    if (serverIp_) {
        f.server_ip = str(serverIp_->text());
        f.server_port = numberOf(serverPort_);
    }
    if (listenPort_)
        f.listen_port = numberOf(listenPort_);
    return f;
}

void CDeviceLinkPropSheet::accept() {
    if (auto message = rq::validateLinkForm(form())) {
        sink_.showMessage(*message, rq::MessageIcon::Stop);
        return;
    }
    QDialog::accept();
}

// ---- Device Information ----

CDeviceInfoDialog::CDeviceInfoDialog(const rq::DeviceChoices& choices, RealtimeSource rt,
                                     rq::MessageSink& sink, QWidget* parent)
    : QDialog(parent), choices_(choices), sink_(sink) {
    setWindowTitle(qs(kDeviceCaption));
    auto* outer = new QVBoxLayout(this);
    auto* box = new QGroupBox(qs(kDeviceBox), this);
    auto* form = new QFormLayout(box);
    name_ = new QLineEdit(box);
    address_ = new QLineEdit(box);
    driver_ = new QComboBox(box);
    for (const rq::IoDeviceDriver* d : choices_.drivers())
        driver_->addItem(qs(d->description));
    manufacturer_ = new QLineEdit(box);
    product_ = new QComboBox(box);
    range_ = new QComboBox(box);
    params_ = new QLineEdit(box);
    status_ = new CRtdbPickField(rt.project, rt.system, qs(kStatusVar),
                                 CRtdbPickField::Form::OneText, box);
    control_ = new CRtdbPickField(rt.project, rt.system, qs(kControlVar),
                                  CRtdbPickField::Form::OneText, box);
    disabled_ = new QCheckBox(qs(kDisableDevice), box);
    form->addRow(qs(kDeviceName), name_);
    form->addRow(qs(kDeviceAddress), address_);
    form->addRow(qs(kDeviceDriver), driver_);
    form->addRow(qs(kManufacturer), manufacturer_);
    form->addRow(qs(kProduct), product_);
    form->addRow(qs(kRange), range_);
    form->addRow(qs(kParams), params_);
    form->addRow(qs(kStatusVar), status_);
    form->addRow(qs(kControlVar), control_);
    form->addRow(QString(), disabled_);
    outer->addWidget(box);
    outer->addWidget(okCancel(this));
    connect(driver_, &QComboBox::activated, this, &CDeviceInfoDialog::onDriverChanged);
    connect(product_, &QComboBox::activated, this, [this] { fillRanges(0); });
    setForm(rq::newDeviceForm());
    nameFieldsByLabels(this);
    setMinimumWidth(440);
}

void CDeviceInfoDialog::fillProducts(int product) {
    product_->clear();
    for (const rq::IoProduct* p : choices_.products(driver_->currentIndex()))
        product_->addItem(qs(p->name));
    product_->setCurrentIndex(product < product_->count() ? product : -1);
}

void CDeviceInfoDialog::fillRanges(int cfgType) {
    range_->clear();
    const int driver = driver_->currentIndex();
    for (const rq::IoCfgType* t : choices_.cfgTypes(driver, product_->currentIndex()))
        range_->addItem(qs(t->display));
    range_->setCurrentIndex(cfgType < range_->count() ? cfgType : -1);
    const bool ferolt = choices_.isFerolt(driver);
    range_->setEnabled(ferolt);
    params_->setEnabled(!ferolt);
}

void CDeviceInfoDialog::onDriverChanged(int index) {
    rq::DeviceForm f = form();
    f.driver = index;
    rq::applyDriverSelection(choices_, f);
    manufacturer_->setText(qs(f.manufacturer));
    fillProducts(f.product);
    fillRanges(f.cfgType);
}

void CDeviceInfoDialog::setForm(const rq::DeviceForm& f) {
    name_->setText(qs(f.name));
    address_->setText(qs(f.address));
    driver_->setCurrentIndex(f.driver < driver_->count() ? f.driver : -1);
    manufacturer_->setText(qs(f.manufacturer));
    fillProducts(f.product);
    fillRanges(f.cfgType);
    params_->setText(qs(f.params));
    status_->setText(f.status_var);
    control_->setText(f.control_var);
    disabled_->setChecked(f.disabled);
}

rq::DeviceForm CDeviceInfoDialog::form() const {
    rq::DeviceForm f;
    f.name = str(name_->text());
    f.address = str(address_->text());
    f.driver = driver_->currentIndex();
    f.manufacturer = str(manufacturer_->text());
    f.product = product_->currentIndex();
    f.cfgType = range_->currentIndex();
    f.params = str(params_->text());
    f.status_var = status_->text();
    f.control_var = control_->text();
    f.disabled = disabled_->isChecked();
    return f;
}

void CDeviceInfoDialog::accept() {
    if (auto message = rq::validateDeviceForm(form())) {
        sink_.showMessage(*message, rq::MessageIcon::Stop);
        return;
    }
    QDialog::accept();
}

// ---- Device Data Setting ----

CDeviceDataDialog::CDeviceDataDialog(const rq::IoDriverCatalog& catalog,
                                     const rq::DeviceItem& device, RealtimeSource rt,
                                     rq::MessageSink& sink, QWidget* parent)
    : QDialog(parent), catalog_(catalog), device_(device), sink_(sink) {
    setWindowTitle(qs(kDataCaption));
    auto* outer = new QVBoxLayout(this);
    auto* box = new QGroupBox(qs(kDataBox), this);
    auto* form = new QFormLayout(box);
    type_ = new QComboBox(box);
    for (const rq::IoDataType* t : catalog_.ListDataTypes(device_.driver))
        type_->addItem(qs(t->name));
    address_ = new QLineEdit(box);
    data_ = new CRtdbPickField(rt.project, rt.system, qs(kRealtimeData),
                               CRtdbPickField::Form::OneText, box);
    // Filled by the pick button only, which works once a data type is chosen and
    // offers the real-time type that the catalog pairs with it.
    data_->edit()->setReadOnly(true);
    data_->setExclusions([this]() -> std::optional<CRtdbPickField::Exclusions> {
        if (type_->currentIndex() < 0)
            return std::nullopt;
        return onlyType(rq::pairedRealtimeType(catalog_, device_, type_->currentIndex()));
    });
    status_ = new CRtdbPickField(rt.project, rt.system, qs(kStatusVar),
                                 CRtdbPickField::Form::OneText, box);
    mode_ = new QComboBox(box);
    for (const rq::DataModeRow& m : rq::kDataModes)
        mode_->addItem(qs(m.shown));
    group_ = new QComboBox(box);
    for (int i = 0; i < 8; ++i)
        group_->addItem(QString::number(i));
    ungroup_ = new QCheckBox(qs(kUngroup), box);
    disabled_ = new QCheckBox(qs(kDisableData), box);
    form->addRow(qs(kDataType), type_);
    form->addRow(qs(kDataAddress), address_);
    form->addRow(qs(kRealtimeData), data_);
    form->addRow(qs(kStatusVar), status_);
    form->addRow(qs(kAccessType), mode_);
    form->addRow(qs(kDataGroup), group_);
    form->addRow(QString(), ungroup_);
    form->addRow(QString(), disabled_);
    outer->addWidget(box);
    outer->addWidget(okCancel(this));
    setForm(rq::newDeviceDataForm());
    nameFieldsByLabels(this);
    setMinimumWidth(440);
}

void CDeviceDataDialog::setForm(const rq::DeviceDataForm& f) {
    type_->setCurrentIndex(f.type < type_->count() ? f.type : -1);
    address_->setText(qs(f.address));
    data_->setText(f.dataname);
    status_->setText(f.status_var);
    mode_->setCurrentIndex(f.mode);
    group_->setCurrentIndex(f.group);
    ungroup_->setChecked(f.ungroup);
    disabled_->setChecked(f.disabled);
}

rq::DeviceDataForm CDeviceDataDialog::form() const {
    rq::DeviceDataForm f;
    f.type = type_->currentIndex();
    f.address = str(address_->text());
    f.dataname = data_->text();
    f.status_var = status_->text();
    f.mode = mode_->currentIndex();
    f.group = group_->currentIndex();
    f.ungroup = ungroup_->isChecked();
    f.disabled = disabled_->isChecked();
    return f;
}

void CDeviceDataDialog::accept() {
    if (auto message = rq::validateDeviceDataForm(form())) {
        sink_.showMessage(*message, rq::MessageIcon::Stop);
        return;
    }
    QDialog::accept();
}

// ---- host ----

bool DeviceQtDialogHost::linkDialog(rq::LinkForm& form, const std::string& title) {
    CDeviceLinkPropSheet d(form.kind, qs(title), rt_, sink_, parent_);
    d.setForm(form);
    if (d.exec() != QDialog::Accepted)
        return false;
    form = d.form();
    return true;
}

bool DeviceQtDialogHost::deviceDialog(rq::DeviceForm& form, const rq::DeviceChoices& choices) {
    CDeviceInfoDialog d(choices, rt_, sink_, parent_);
    d.setForm(form);
    if (d.exec() != QDialog::Accepted)
        return false;
    form = d.form();
    return true;
}

bool DeviceQtDialogHost::dataDialog(rq::DeviceDataForm& form, const rq::DeviceItem& device) {
    CDeviceDataDialog d(catalog_, device, rt_, sink_, parent_);
    d.setForm(form);
    if (d.exec() != QDialog::Accepted)
        return false;
    form = d.form();
    return true;
}

} // namespace rqshell
