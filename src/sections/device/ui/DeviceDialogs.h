#pragma once
// The Qt dialogs of the device configuration: the property sheet of each link
// kind (one QTabWidget page per page of the sheet), "Device Information" and
// "Device Data Setting". They expose their fields through forms and never change
// the model; OK runs the form's validator, shows the first failing message through
// the sink and keeps the dialog open.

#include "core/MessageSink.h"
#include "sections/device/DeviceCommands.h"
#include "sections/rtdb/ui/RtdbPickField.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QSpinBox;
class QTabWidget;

namespace rqshell {

// Where a pick button browses: the project's databases and the system database.
struct RealtimeSource {
    const rq::RtdbSection& project;
    const rq::RtdbSection* system;
};

// CDeviceComLinkPropSheet, CDeviceNoneLinkPropSheet, CDeviceTcpClientLinkPropSheet,
// CDeviceTcpServerLinkPropSheet: the pages of the form's kind, "Basic Setting"
// first; no Apply button.
class CDeviceLinkPropSheet : public QDialog {
    Q_OBJECT
public:
    CDeviceLinkPropSheet(rq::LinkKind kind, const QString& title, RealtimeSource rt,
                         rq::MessageSink& sink, QWidget* parent = nullptr);
    void setForm(const rq::LinkForm& form);
    rq::LinkForm form() const;
    void accept() override;

    QTabWidget* pages() const { return tabs_; }
    QLineEdit* nameEdit() const { return name_; }

private:
    QWidget* basicPage(RealtimeSource rt);
    QWidget* serialPage();
    QWidget* tcpClientPage();
    QWidget* tcpServerPage();

    rq::LinkKind kind_;
    rq::MessageSink& sink_;
    QTabWidget* tabs_;
    QLineEdit* name_;
    QLineEdit* period_;
    QComboBox* redundancy_;
    QLineEdit* masterlink_;
    QLineEdit* timeout_;
    QLineEdit* params_;
    CRtdbPickField* status_;
    CRtdbPickField* control_;
    QCheckBox* disabled_;
    QComboBox* devname_ = nullptr;
    QComboBox* baudrate_ = nullptr;
    QComboBox* dataBits_ = nullptr;
    QComboBox* stopBits_ = nullptr;
    QComboBox* parity_ = nullptr;
    QLineEdit* serverIp_ = nullptr;
    QLineEdit* serverPort_ = nullptr;
    QLineEdit* listenPort_ = nullptr;
};

// "Device Information".
class CDeviceInfoDialog : public QDialog {
    Q_OBJECT
public:
    CDeviceInfoDialog(const rq::DeviceChoices& choices, RealtimeSource rt, rq::MessageSink& sink,
                      QWidget* parent = nullptr);
    void setForm(const rq::DeviceForm& form);
    rq::DeviceForm form() const;
    void accept() override;

    QComboBox* driverBox() const { return driver_; }
    QComboBox* productBox() const { return product_; }
    QComboBox* rangeBox() const { return range_; }

private:
    void fillProducts(int product);
    void fillRanges(int cfgType);
    void onDriverChanged(int index);

    const rq::DeviceChoices& choices_;
    rq::MessageSink& sink_;
    QLineEdit* name_;
    QLineEdit* address_;
    QComboBox* driver_;
    QLineEdit* manufacturer_;
    QComboBox* product_;
    QComboBox* range_;
    QLineEdit* params_;
    CRtdbPickField* status_;
    CRtdbPickField* control_;
    QCheckBox* disabled_;
};

// "Device Data Setting".
class CDeviceDataDialog : public QDialog {
    Q_OBJECT
public:
    CDeviceDataDialog(const rq::IoDriverCatalog& catalog, const rq::DeviceItem& device,
                      RealtimeSource rt, rq::MessageSink& sink, QWidget* parent = nullptr);
    void setForm(const rq::DeviceDataForm& form);
    rq::DeviceDataForm form() const;
    void accept() override;

    QComboBox* typeBox() const { return type_; }
    CRtdbPickField* dataField() const { return data_; }

private:
    const rq::IoDriverCatalog& catalog_;
    const rq::DeviceItem& device_;
    rq::MessageSink& sink_;
    QComboBox* type_;
    QLineEdit* address_;
    CRtdbPickField* data_;
    CRtdbPickField* status_;
    QComboBox* mode_;
    QComboBox* group_;
    QCheckBox* ungroup_;
    QCheckBox* disabled_;
};

class DeviceQtDialogHost : public rq::DeviceDialogHost {
public:
    DeviceQtDialogHost(QWidget* parent, rq::MessageSink& sink, const rq::IoDriverCatalog& catalog,
                       RealtimeSource rt)
        : parent_(parent), sink_(sink), catalog_(catalog), rt_(rt) {}
    bool linkDialog(rq::LinkForm& form, const std::string& title) override;
    bool deviceDialog(rq::DeviceForm& form, const rq::DeviceChoices& choices) override;
    bool dataDialog(rq::DeviceDataForm& form, const rq::DeviceItem& device) override;

private:
    QWidget* parent_;
    rq::MessageSink& sink_;
    const rq::IoDriverCatalog& catalog_;
    RealtimeSource rt_;
};

} // namespace rqshell
