#pragma once
// A small project whose real-time data is used across the sections, for the tests
// of the reference questions and of Find References: database "plant" with group
// "tanks" (Level, Flow, Spare, alias L2 standing for Level) and database "aux" (X).
// plant.Level is used in hmidb.xml, device.xml (a link and data point 2), param.xml,
// history.xml and alarm.xml; plant.Flow by data point 1 and the history data; aux.X
// by nothing.

#include "project/Project.h"

namespace rqtest {

inline void fillUsedData(rq::Project& p) {
    rq::DataNode& plant = p.rtdb.root().addDatabase("plant");
    rq::DataNode& tanks = plant.addGroup("tanks");
    tanks.addItem(rq::DataItem::makeData("Level", "float", "4", "0", "tank level"));
    tanks.addItem(rq::DataItem::makeData("Flow", "float", "4", "0", ""));
    tanks.addItem(rq::DataItem::makeData("Spare", "int", "4", "0", ""));
    tanks.addItem(rq::DataItem::makeAlias("L2", "Level"));
    p.rtdb.root().addDatabase("aux").addItem(rq::DataItem::makeData("X", "int", "4", "0", ""));

    p.hmidb.io.items.push_back({"level", "plant", "Level", 500});
    rq::LinkItem& link = p.device.links().emplace_back();
    link.name = "bus1";
    link.status_var = "plant.Level";
    rq::DeviceItem& dev = link.devices.emplace_back();
    dev.name = "tankio";
    dev.data.emplace_back().dataname = "plant.Flow";
    dev.data.emplace_back().dataname = "plant.Level";
    p.param.items.push_back({"plant", "Level", "1"});
    rq::HistoryRecord& record = p.history.records().emplace_back();
    record.name = "h1";
    rq::HistoryData& d = record.data.emplace_back();
    d.dbname = "plant";
    d.dataname = "Flow";
    d.type = "period";
    d.queryvarname = "plant.Level";
    rq::AlarmGroup& alarms = p.alarm.groups().emplace_back();
    alarms.name = "tanks";
    alarms.data.push_back({"plant", "Level", "1", "", {}});
}

} // namespace rqtest
