// The device configuration editor without a display: forms and their checks, the
// catalog's choices, command flows with a scripted dialog host and a recording
// sink, and the bytes of device.xml through undo and redo of every command.

#include "core/Catalogs.h"
#include "core/StorableValue.h"
#include "core/ValueChecks.h"
#include "sections/device/DeviceSectionEditor.h"
#include "support/EditorTestKit.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>

using namespace rq;
using Texts = std::vector<std::string>;

namespace {

// Records the title each link dialog opened with.
struct Dialogs : DeviceDialogHost {
    explicit Dialogs(MessageSink& s) : sink(s) {}
    MessageSink& sink;
    rqtest::ScriptedDialog<LinkForm> links;
    rqtest::ScriptedDialog<DeviceForm> devices;
    rqtest::ScriptedDialog<DeviceDataForm> data;
    std::vector<std::string> titles;
    bool linkDialog(LinkForm& f, const std::string& title) override {
        titles.push_back(title);
        return links.answer(f, sink, validateLinkForm);
    }
    bool deviceDialog(DeviceForm& f, const DeviceChoices&) override {
        return devices.answer(f, sink, validateDeviceForm);
    }
    bool dataDialog(DeviceDataForm& f, const DeviceItem&) override {
        return data.answer(f, sink, validateDeviceDataForm);
    }
};

LinkForm link(LinkKind kind, std::string name) {
    LinkForm f = newLinkForm(kind);
    f.name = std::move(name);
    return f;
}

struct DeviceEditorTest : ::testing::Test {
    DeviceEditorTest() {
        catalogs.loadFrom(rqtest::programDir());
        ReadContext ctx{sink, &catalogs.hmi, &catalogs.io, {}};
        EXPECT_TRUE(section.read(rqtest::demoFile("device.xml"), ctx));
        sink.entries.clear();
    }
    std::string text() const { return rqtest::written(section); }
    EditorResult run(int command, const void* node, std::vector<std::size_t> rows = {}) {
        return editor.run(command, EditorSelection{const_cast<void*>(node), std::move(rows)});
    }
    LinkItem& linkAt(std::size_t i) { return section.links()[i]; }

    Catalogs catalogs;
    DeviceSection section;
    rqtest::RecordingSink sink;
    Dialogs dialogs{sink};
    UndoHistory history;
    DeviceSectionEditor editor{section, catalogs.io, dialogs, sink, history};
};

} // namespace

TEST(DeviceForms, LinkPagesChecksAndStoredFields) {
    struct Case {
        const char* what;
        std::function<void(LinkForm&)> change;
        std::optional<std::string> message;
    } cases[] = {
        {"valid", [](LinkForm&) {}, std::nullopt},
        {"no name", [](LinkForm& f) { f.name.clear(); },
         "The link name is null, please set link name!"},
        {"slave without master", [](LinkForm& f) { f.redundancy = 1; },
         "Please set master link name!"},
        {"no serial device", [](LinkForm& f) { f.devname.clear(); },
         "serial device is null, please choose serial device name!"},
    };
    for (const Case& c : cases) {
        LinkForm f = link(LinkKind::Serial, "bus");
        c.change(f);
        EXPECT_EQ(validateLinkForm(f), c.message) << c.what;
    }
    LinkForm client = link(LinkKind::TcpClient, "c");
    EXPECT_EQ(validateLinkForm(client), "IP address is null, please input IP address!");
    client.server_ip = "10.0.0.1";
    client.server_port = 0;
    EXPECT_EQ(validateLinkForm(client), "Please enter an integer between 1 and 65535.");
    client.server_port = 8200;
    client.server_ip = "10.0.0.01";
    EXPECT_EQ(validateLinkForm(client), checkIpv4Address("Server IP Address", "10.0.0.01"));
    ASSERT_TRUE(validateLinkForm(client));
    LinkForm quoted = link(LinkKind::None, "a\"b");
    EXPECT_EQ(validateLinkForm(quoted), checkStorableValue("Linkage Name", "a\"b"));
    DeviceDataForm point;
    point.type = 0;
    point.address = "1";
    point.dataname = "db.x&y";
    EXPECT_EQ(validateDeviceDataForm(point), checkStorableValue("Realtime Data", "db.x&y"));
    EXPECT_EQ(newLinkForm(LinkKind::TcpServer).listen_port, 1); // not the client's 8200
    EXPECT_EQ(newLinkForm(LinkKind::TcpClient).server_port, 8200);

    // Parity shows as text and is kept as a digit; "7" shows "none" until stored.
    LinkItem item;
    item.driver = "serial";
    item.parity = "7";
    item.enable = "x";
    item.redundtype = "slave";
    LinkForm f = linkFormFromRecord(item);
    EXPECT_EQ(f.parity, "none");
    EXPECT_TRUE(f.disabled);
    EXPECT_EQ(f.redundancy, 1);
    f.parity = "Even";
    storeLinkForm(f, item);
    EXPECT_EQ(item.parity, "2");
    EXPECT_EQ(item.enable, "0");
    LinkItem tcp;
    tcp.driver = "tcpclient";
    EXPECT_EQ(linkFormFromRecord(tcp).server_port, 0); // missing port: refused on OK
    EXPECT_STREQ(linkAddTitle(LinkKind::None), "add common serial communication link");
    EXPECT_STREQ(linkModifyTitle(LinkKind::TcpClient), "modify TCP network client link");
}

TEST_F(DeviceEditorTest, DeviceAndDataFormsFollowTheCatalog) {
    const DeviceChoices serial{catalogs.io, "serial"};
    const DeviceItem& meter = linkAt(0).devices[1];
    DeviceForm f = deviceFormFromRecord(serial, meter);
    ASSERT_GE(f.driver, 0);
    EXPECT_EQ(serial.driver(f.driver)->name, "meter645");
    EXPECT_EQ(catalogs.io.ProductNameAt("meter645", f.product), "Meter 2007");
    EXPECT_EQ(validateDeviceForm(DeviceForm{}), "Please input device name!");
    DeviceForm noDriver = f;
    noDriver.driver = -1;
    EXPECT_EQ(validateDeviceForm(noDriver), "Please select device driver name!");

    // Choosing a driver takes its catalog entry's text as the manufacturer.
    applyDriverSelection(serial, f);
    EXPECT_EQ(f.manufacturer, serial.driver(f.driver)->description);
    EXPECT_EQ(f.product, 0);
    DeviceItem stored = meter;
    storeDeviceForm(serial, f, stored);
    EXPECT_EQ(stored.product, "Meter 1997");
    EXPECT_EQ(stored.params, meter.params); // only the ferolt driver writes params

    const DeviceItem& tankio = linkAt(0).devices[0];
    DeviceDataForm d = dataFormFromRecord(catalogs.io, tankio, tankio.data[2]);
    EXPECT_TRUE(d.ungroup);
    EXPECT_EQ(dataPointCell(tankio.data[2], 2), "No group");
    EXPECT_EQ(dataPointCell(tankio.data[0], 5), "Circularly reading");
    EXPECT_EQ(dataFromForm(catalogs.io, tankio, d), tankio.data[2]);
    // The pick button offers the real-time type the catalog pairs: coil is bit.
    EXPECT_EQ(pairedRealtimeType(catalogs.io, tankio, d.type), 0);
    EXPECT_EQ(pairedRealtimeType(catalogs.io, tankio, -1), -1);
    EXPECT_EQ(validateDeviceDataForm(DeviceDataForm{}), "Please choose data type!");
    d.dataname.clear();
    EXPECT_EQ(validateDeviceDataForm(d), "Please choose data!");
}

TEST_F(DeviceEditorTest, NodesMenusAndList) {
    std::vector<EditorNode> nodes = editor.nodes();
    ASSERT_EQ(nodes.size(), 5u);
    EXPECT_EQ(nodes[0].label, "bus1");
    EXPECT_EQ(nodes[0].children[1].label, "meter");
    EXPECT_EQ(nodes[4].children[0].label, "simdev");
    EditorList l = editor.list(&linkAt(0).devices[0]);
    ASSERT_EQ(l.columns.size(), 6u);
    EXPECT_EQ(l.rows(), 4u);
    EXPECT_EQ(l.cell(3, 5), "Circularly reading and once writing");
    EXPECT_TRUE(editor.list(&linkAt(0)).columns.empty());
    EXPECT_EQ(editor.listMenu(&linkAt(0).devices[0]), 137);
    EXPECT_EQ(editor.treeMenu(nullptr), 136);
    EXPECT_EQ(editor.keys(&linkAt(0).devices[0]).remove, 32836);
    EXPECT_EQ(editor.keys(&linkAt(0)).add, 0);
}

TEST_F(DeviceEditorTest, LinkFlows) {
    // Cancel, a duplicate that reopens with what was typed, then a free name.
    dialogs.links.script = {std::nullopt};
    EXPECT_FALSE(run(32831, nullptr).changed);
    dialogs.links.script = {link(LinkKind::TcpClient, "plc"), link(LinkKind::TcpClient, "plc2")};
    dialogs.links.script[1]->server_ip = "10.0.0.9";
    dialogs.links.script[0]->server_ip = "10.0.0.9";
    EditorResult r = run(32834, nullptr);
    ASSERT_TRUE(r.changed);
    EXPECT_EQ(sink.texts(), Texts{"The link already exist!"});
    EXPECT_EQ(dialogs.titles, (Texts{"add serial communication link", "Add TCP network client",
                                     "Add TCP network client"}));
    EXPECT_EQ(dialogs.links.opened[2].name, "plc");
    ASSERT_EQ(section.links().size(), 6u);
    EXPECT_EQ(r.select, &linkAt(5));
    EXPECT_EQ(linkAt(5).driver, "tcpclient");
    EXPECT_EQ(linkAt(5).server_port, "8200");

    // The ferolt link's own command; Modify refuses another link's name.
    dialogs.links.script = {link(LinkKind::Ferolt, "f")};
    ASSERT_TRUE(run(32916, nullptr).changed);
    EXPECT_EQ(dialogs.titles.back(), "add ferolt serial communication link");
    sink.entries.clear();
    dialogs.links.script = {link(LinkKind::Ferolt, "bus1"), link(LinkKind::Ferolt, "f2")};
    ASSERT_TRUE(run(32830, &linkAt(6)).changed);
    EXPECT_EQ(dialogs.titles.back(), "modify ferolt communication link");
    EXPECT_EQ(sink.texts(), Texts{"The link already exist!"});
    EXPECT_EQ(linkAt(6).name, "f2");

    // Delete asks; only a link is deleted by it.
    sink.entries.clear();
    EXPECT_FALSE(run(32827, &linkAt(0).devices[0]).changed);
    sink.answers = {false, true};
    EXPECT_FALSE(run(32827, &linkAt(0)).changed);
    ASSERT_TRUE(run(32827, &linkAt(0)).changed);
    EXPECT_EQ(sink.texts(), (Texts{"Are you sure to delete current communication link?",
                                   "Are you sure to delete current communication link?"}));
    EXPECT_EQ(linkAt(0).name, "plc");
}

TEST_F(DeviceEditorTest, DeviceAndDataFlows) {
    DeviceForm dev;
    dev.name = "tankio";
    dev.address = "2";
    dev.driver = 0;
    DeviceForm other = dev;
    other.name = "pump";
    EXPECT_FALSE(run(32828, nullptr).changed); // the section's node: nothing
    dialogs.devices.script = {DeviceForm{}, dev, other};
    EditorResult r = run(32828, &linkAt(0));
    ASSERT_TRUE(r.changed);
    EXPECT_EQ(sink.texts(), (Texts{"Please input device name!", "The device already exist!"}));
    ASSERT_EQ(linkAt(0).devices.size(), 3u);
    EXPECT_EQ(r.select, &linkAt(0).devices[2]);
    EXPECT_EQ(linkAt(0).devices[2].driver, "modbusrtu");
    EXPECT_EQ(linkAt(0).devices[2].enable, "1");

    DeviceDataForm d;
    d.type = 0;
    d.address = "1";
    d.dataname = "plant.Pump1_Run";
    DeviceItem& pump = linkAt(0).devices[2];
    dialogs.data.script = {d, d};
    EXPECT_TRUE(run(32835, &pump).changed);
    EXPECT_TRUE(run(32835, &pump).changed);
    ASSERT_EQ(pump.data.size(), 2u);
    EXPECT_EQ(pump.data[0].mode, "Circularly reading");
    EXPECT_EQ(pump.data[0].group, "0");
    // Modify fills from the selected row and stores into the first point bound to
    // the same real-time data.
    d.address = "9";
    dialogs.data.script = {d};
    EXPECT_TRUE(run(32837, &pump, {1}).changed);
    EXPECT_EQ(pump.data[0].address, "9");
    EXPECT_EQ(pump.data[1].address, "1");

    sink.entries.clear();
    EXPECT_FALSE(run(32836, &pump, {}).changed);
    EXPECT_TRUE(sink.entries.empty());
    sink.answers = {true};
    EXPECT_TRUE(run(32836, &pump, {0, 1}).changed);
    EXPECT_TRUE(pump.data.empty());
    sink.answers = {true};
    EXPECT_TRUE(run(32829, &pump).changed);
    EXPECT_EQ(sink.texts().back(), "Are you sure to delete current device?");
    EXPECT_EQ(linkAt(0).devices.size(), 2u);
}

// Every command is one step: undo gives the file's bytes as before, redo as after.
TEST_F(DeviceEditorTest, EveryCommandUndoesAndRedoesToTheSameBytes) {
    DeviceForm dev;
    dev.name = "d";
    dev.address = "1";
    dev.driver = 0;
    DeviceDataForm point;
    point.type = 1;
    point.address = "5";
    point.dataname = "plant.x";
    LinkForm renamed = linkFormFromRecord(linkAt(1));
    renamed.name = "plc9";
    renamed.server_port = 503;
    DeviceForm devRenamed =
        deviceFormFromRecord(DeviceChoices{catalogs.io, "serial"}, linkAt(0).devices[0]);
    devRenamed.disabled = true;
    const std::vector<std::string> texts = rqtest::expectEveryStepUndoesAndRedoes(
        history,
        {
            {"Undo Add Link",
             [&] {
                 return dialogs.links.script = {link(LinkKind::Serial, "s")},
                        run(32831, nullptr).changed;
             }},
            {"Undo Modify Link",
             [&] { return dialogs.links.script = {renamed}, run(32830, &linkAt(1)).changed; }},
            {"Undo Add Device",
             [&] { return dialogs.devices.script = {dev}, run(32828, &linkAt(0)).changed; }},
            {"Undo Modify Device",
             [&] {
                 return dialogs.devices.script = {devRenamed},
                        run(32830, &linkAt(0).devices[0]).changed;
             }},
            {"Undo Add Data",
             [&] {
                 return dialogs.data.script = {point}, run(32835, &linkAt(0).devices[0]).changed;
             }},
            {"Undo Modify Data",
             [&] {
                 return dialogs.data.script = {point},
                        run(32837, &linkAt(0).devices[0], {1}).changed;
             }},
            {"Undo Delete Data",
             [&] {
                 return sink.answers = {true}, run(32836, &linkAt(0).devices[0], {0, 2}).changed;
             }},
            {"Undo Delete Device",
             [&] { return sink.answers = {true}, run(32829, &linkAt(0).devices[1]).changed; }},
            {"Undo Delete Link",
             [&] { return sink.answers = {true}, run(32827, &linkAt(1)).changed; }},
        },
        [&] { return text(); });
    EXPECT_EQ(texts.front(), rqtest::readFile(rqtest::demoFile("device.xml")));
}
