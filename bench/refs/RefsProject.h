#pragma once
// The project of the reference benchmarks: 100,000 real-time data items in database
// "plant" (100 groups) with 50,501 uses (20,000 data points with a status variable
// each, 5,000 alarm data, 2,500 history data with a query variable, 500 HMI data,
// one parameter). Var_7 is used by a data point, a parameter and more.

#include "project/Project.h"

#include <string>

namespace refsbench {

inline constexpr int kItems = 100000;

inline std::string item(int i) {
    return "Var_" + std::to_string(i % kItems);
}

inline void fill(rq::Project& p) {
    rq::DataNode& db = p.rtdb.root().addDatabase("plant");
    for (int g = 0; g < 100; ++g) {
        rq::DataNode& group = db.addGroup("g" + std::to_string(g));
        for (int i = 0; i < kItems / 100; ++i)
            group.addItem(rq::DataItem::makeData(item(g * 1000 + i), "float", "4", "0", ""));
    }
    int n = 0;
    for (int l = 0; l < 20; ++l) {
        rq::LinkItem& link = p.device.links().emplace_back();
        link.name = "link" + std::to_string(l);
        link.driver = "none"; // a common link: the device file reads it back
        for (int d = 0; d < 20; ++d) {
            rq::DeviceItem& dev = link.devices.emplace_back();
            dev.name = "dev" + std::to_string(d);
            for (int k = 0; k < 50; ++k, n += 7) {
                rq::DeviceDataItem& point = dev.data.emplace_back();
                point.type = "float";
                point.address = std::to_string(k);
                point.dataname = "plant." + item(n);
                point.status_var = "plant." + item(n + 1);
            }
        }
    }
    for (int g = 0; g < 5; ++g) {
        rq::AlarmGroup& group = p.alarm.groups().emplace_back();
        group.name = "alarms" + std::to_string(g);
        for (int k = 0; k < 1000; ++k, n += 3)
            group.data.push_back({"plant", item(n), "1", "", {}});
    }
    for (int r = 0; r < 5; ++r) {
        rq::HistoryRecord& record = p.history.records().emplace_back();
        record.name = "history" + std::to_string(r);
        for (int k = 0; k < 500; ++k, n += 5) {
            rq::HistoryData& d = record.data.emplace_back();
            d.dbname = "plant";
            d.dataname = item(n);
            d.type = "period";
            d.queryvarname = "plant." + item(n + 2);
        }
    }
    for (int k = 0; k < 500; ++k, n += 11)
        p.hmidb.io.items.push_back({"hmi" + std::to_string(k), "plant", item(n), 500});
    // One item used everywhere besides.
    p.param.items.push_back({"plant", item(7), "1"});
}

} // namespace refsbench
