#include "sections/device/DeviceCsv.h"

#include "sections/device/DeviceEdits.h"
#include "sections/device/DeviceForms.h"

namespace rq {

namespace {

class DeviceTable : public ListTableExchange<DeviceDataItem> {
public:
    DeviceTable(DeviceSection& section, const IoDriverCatalog& catalog)
        : section_(section), catalog_(catalog) {}
    std::vector<std::string> columns() const override {
        return {"link", "device", "data type", "data address", "real-time data", "status variable",
                "mode", "group",  "enable"};
    }
    std::vector<std::size_t> keyColumns() const override { return {0, 1, 4}; }

protected:
    int sectionIndex() const override { return kDeviceSectionIndex; }
    std::vector<ItemList> itemLists() override {
        std::vector<ItemList> lists;
        devices_.clear();
        DeviceSection& s = section_;
        for (std::size_t l = 0; l < s.links().size(); ++l)
            for (std::size_t d = 0; d < s.links()[l].devices.size(); ++d) {
                lists.push_back({{s.links()[l].name, s.links()[l].devices[d].name},
                                 [&s, l, d]() -> std::vector<DeviceDataItem>& {
                                     return s.links()[l].devices[d].data;
                                 }});
                devices_.push_back(&s.links()[l].devices[d]);
            }
        return lists;
    }
    std::vector<std::size_t> listColumns() const override { return {0, 1}; }
    CsvRow rowOf(std::size_t list, const DeviceDataItem& p) const override {
        const CsvRow& where = itemList(list).where;
        return {where[0],     where[1], p.type,  p.address, p.dataname,
                p.status_var, p.mode,   p.group, p.enable};
    }
    std::optional<std::string> itemOf(const CsvRow& row, std::size_t list,
                                      DeviceDataItem& item) const override {
        DeviceDataItem given{row[2], row[3], row[4], row[5], row[6], row[7], row[8]};
        // The dialog's choices: a mode of the list, a group 0..7 or none, enabled
        // or not.
        // Empty values take the dialog's defaults.
        if (!given.mode.empty() && dataModeKeyword(given.mode)[0] == '\0') {
            bool keyword = false;
            for (const DataModeRow& m : kDataModes)
                if (given.mode == m.keyword) {
                    given.mode = m.shown;
                    keyword = true;
                }
            if (!keyword)
                return "unknown mode \"" + given.mode + "\"";
        }
        if (!given.group.empty() && given.group != "255" &&
            (given.group.size() != 1 || given.group[0] < '0' || given.group[0] > '7'))
            return "group must be 0 to 7, or 255 for no group, not \"" + given.group + "\"";
        if (!given.enable.empty() && given.enable != "0" && given.enable != "1")
            return "enable must be 1 or 0, not \"" + given.enable + "\"";
        const DeviceItem& device = *devices_[list];
        const DeviceDataForm form = dataFormFromRecord(catalog_, device, given);
        if (auto message = validateDeviceDataForm(form))
            return message;
        item = dataFromForm(catalog_, device, form);
        return std::nullopt;
    }
    std::string missingList(const CsvRow& row) const override {
        return "there is no device \"" + row[1] + "\" on link \"" + row[0] + "\"";
    }

private:
    DeviceSection& section_;
    const IoDriverCatalog& catalog_;
    std::vector<const DeviceItem*> devices_;
};

} // namespace

std::unique_ptr<TableExchange> makeDeviceTable(DeviceSection& section,
                                               const IoDriverCatalog& catalog) {
    return std::make_unique<DeviceTable>(section, catalog);
}

} // namespace rq
