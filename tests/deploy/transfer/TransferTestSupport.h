#pragma once
// A device emulator on its own loopback address and a small project to deploy.

#include "deploy/emulator/DeviceEmulator.h"
#include "deploy/transfer/TransferJob.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <mutex>

namespace xfer {

namespace fs = std::filesystem;

struct Device {
    rqtest::TempDir root;
    std::unique_ptr<rq::DeviceEmulator> emulator;
    std::string ip;

    Device(const std::string& address, const std::string& type, const std::string& versionDate = {},
           int readyAfter = 0, rq::EmulatorFault fault = rq::EmulatorFault::None)
        : ip(address) {
        rq::EmulatorOptions o;
        o.address = address;
        o.root = root.str();
        o.type = type;
        o.versionDate = versionDate;
        o.readyAfterSeconds = readyAfter;
        o.fault = fault;
        emulator = std::make_unique<rq::DeviceEmulator>(o);
        std::string error;
        EXPECT_TRUE(emulator->start(&error)) << error;
    }
    std::string file(const std::string& devicePath) const { return emulator->rootPath(devicePath); }
};

// Every event, status line and outcome in order.
struct Recorder : rq::TransferListener {
    std::mutex m;
    std::vector<rq::TransferEvent> events;
    std::vector<std::string> statuses;
    int outcomes = 0;
    void onTransferEvent(const rq::TransferEvent& e) override {
        std::lock_guard lock(m);
        events.push_back(e);
    }
    void onStatus(const std::string& text) override {
        std::lock_guard lock(m);
        statuses.push_back(text);
    }
    void onOutcome(const rq::TransferOutcome&) override {
        std::lock_guard lock(m);
        ++outcomes;
    }
    std::vector<int> codes() {
        std::lock_guard lock(m);
        std::vector<int> c;
        for (const auto& e : events)
            c.push_back(e.code);
        return c;
    }
};

// A project directory with a few files and a compiled user library.
inline void makeProject(const fs::path& dir) {
    rqtest::writeFile(dir / "rqrun.xml", "<?xml version=\"1.0\" ?>\r\n<rqrun name=\"p\" "
                                         "description=\"\">\r\n</rqrun>\r\n");
    rqtest::writeFile(dir / "rtdb.xml", "<?xml version=\"1.0\" ?>\r\n<rtdb/>\r\n");
    fs::create_directories(dir / "data");
    rqtest::writeFile(dir / "data" / "values.bin", std::string("\x01\x02\x00\x03", 4));
    rqtest::writeFile(dir / "libhmiuserfun.so", "not really a library");
}

} // namespace xfer
