// device.xml: golden files, round trips, the add operations and their duplicate
// tests, the writer's kind-specific attributes, bad input and the checks.

#include "sections/device/DeviceSection.h"
#include "support/SectionTestKit.h"

#include <gtest/gtest.h>

#include <functional>

using namespace rq;
using rqtest::crlf;
using rqtest::RecordingSink;
using rqtest::TempDir;
using rqtest::written;

namespace {

bool readText(DeviceSection& s, const std::string& bytes, RecordingSink& sink,
              std::string* error = nullptr) {
    TempDir dir;
    rqtest::writeFile(dir.path() / "device.xml", bytes);
    ReadContext ctx{sink, nullptr, nullptr, {}};
    const bool ok = s.read(dir.file("device.xml"), ctx);
    if (error)
        *error = ctx.error;
    return ok;
}

LinkCommonFields named(const std::string& name,
                       const std::function<void(LinkCommonFields&)>& more = {}) {
    LinkCommonFields c;
    c.name = name;
    if (more)
        more(c);
    return c;
}

} // namespace

TEST(DeviceGolden, ReadWriteReadGivesTheExpectedBytes) {
    for (const std::string& c : rqtest::caseNames("device")) {
        SCOPED_TRACE(c);
        rqtest::expectGolden<DeviceSection>("device", c);
    }
}

TEST(DeviceModel, ReaderKeepsRecordFieldsAsRead) {
    DeviceSection s;
    ASSERT_TRUE(rqtest::readSection(s, rqtest::dataPath("device", "kinds", "input.xml").string()));
    ASSERT_EQ(s.links().size(), 6u);
    EXPECT_EQ(s.links()[0].devices[0].data[0].mode, "Circularly reading");
    EXPECT_EQ(s.links()[3].listen_port, "5020");
    EXPECT_TRUE(s.links()[3].server_port.empty()); // the client's port stays apart
    EXPECT_EQ(s.counts(), (std::vector<std::pair<std::string, std::size_t>>{
                              {"links", 6}, {"devices", 4}, {"data", 6}}));
}

TEST(DeviceWriter, SerialLinkWithDefaults) {
    DeviceSection s;
    RecordingSink sink;
    LinkCommonFields common;
    common.name = "bus1";
    common.redundtype = "master";
    common.enable = "1";
    common.driver = "tcpclient"; // ignored: the kind of the operation wins
    ASSERT_NE(s.addLink(LinkKind::Serial, common, LinkKindFields{}, sink), nullptr);
    EXPECT_EQ(written(s),
              crlf("<?xml version=\"1.0\" ?>\n<devices>\n"
                   "\t<link name=\"bus1\" period=\"500\" status_var=\"\" control_var=\"\" "
                   "enable=\"1\" redundtype=\"master\" masterlink=\"\" timeout=\"500\" "
                   "params=\"\" driver=\"serial\" devname=\"COM1\" baudrate=\"9600\" "
                   "data_bits=\"8\" parity=\"0\" stop_bits=\"1\">\n"
                   "\t</link>\n</devices>\n"));
}

// Each kind writes its own attributes only, whatever else the record holds.
TEST(DeviceWriter, KindSpecificAttributes) {
    const std::pair<LinkKind, const char*> rows[] = {
        {LinkKind::Serial, " driver=\"serial\" devname=\"D\" baudrate=\"B\" data_bits=\"7\" "
                           "parity=\"1\" stop_bits=\"2\">"},
        {LinkKind::None, " driver=\"none\">"},
        {LinkKind::TcpClient, " driver=\"tcpclient\" server_ip=\"IP\" server_port=\"CP\">"},
        {LinkKind::TcpServer, " driver=\"tcpserver\" server_port=\"LP\">"},
        {LinkKind::Ferolt, " driver=\"ferolt\">"},
    };
    LinkKindFields f{"D", "B", "7", "1", "2", "IP", "CP", "LP"};
    for (const auto& [kind, tail] : rows) {
        DeviceSection s;
        RecordingSink sink;
        LinkItem* link = s.addLink(kind, LinkCommonFields{}, f, sink);
        ASSERT_NE(link, nullptr);
        // Fields of other kinds filled afterwards are still not written.
        static_cast<LinkKindFields&>(*link) = f;
        EXPECT_NE(written(s).find(std::string(tail) + "\r\n\t</link>"), std::string::npos)
            << linkKindKeyword(kind) << ": " << written(s);
    }
}

TEST(DeviceWriter, ModeTextOutsideTheTableWritesEmptyModeAndReadsBackAsDefault) {
    DeviceSection s;
    RecordingSink sink;
    LinkItem* link = s.addLink(LinkKind::None, named("l"), {}, sink);
    DeviceItem d;
    d.name = "d";
    d.data.push_back({"t", "1", "a.b", "", "circularly reading", "0", "1"});
    DeviceSection::addDevice(*link, std::move(d), sink);
    const std::string out = written(s);
    EXPECT_NE(out.find("group=\"0\" mode=\"\" enable=\"1\"/>\r\n"), std::string::npos);
    DeviceSection back;
    ASSERT_TRUE(readText(back, out, sink));
    EXPECT_EQ(back.links()[0].devices[0].data[0].mode, "Circularly reading and once writing");
}

TEST(DeviceModel, LinkDuplicateTestIsExactAndCaseSensitive) {
    DeviceSection s;
    RecordingSink sink;
    LinkItem* a = s.addLink(LinkKind::None, named("bus"), {}, sink);
    ASSERT_NE(a, nullptr);
    EXPECT_NE(s.addLink(LinkKind::Serial, named("Bus"), {}, sink), nullptr);
    EXPECT_NE(s.addLink(LinkKind::Serial, named("bus "), {}, sink), nullptr);
    EXPECT_TRUE(sink.entries.empty());
    EXPECT_EQ(s.addLink(LinkKind::TcpClient, named("bus"), {}, sink), nullptr);
    ASSERT_EQ(sink.texts(), std::vector<std::string>{"The link already exist!"});
    EXPECT_EQ(sink.entries[0].icon, MessageIcon::Stop);
    EXPECT_EQ(s.links().size(), 3u);
    EXPECT_TRUE(s.linkNameExists("bus"));
    EXPECT_FALSE(s.linkNameExists("bus", a)); // the link being modified is left out
    EXPECT_TRUE(s.removeLink(a));
    EXPECT_FALSE(s.removeLink(a));
    EXPECT_FALSE(s.linkNameExists("bus"));
}

TEST(DeviceModel, DeviceNamesAreUniquePerLink) {
    DeviceSection s;
    RecordingSink sink;
    LinkItem* l1 = s.addLink(LinkKind::None, named("l1"), {}, sink);
    LinkItem* l2 = s.addLink(LinkKind::None, named("l2"), {}, sink);
    DeviceItem d;
    d.name = "dev";
    DeviceItem* first = DeviceSection::addDevice(*l1, d, sink);
    ASSERT_NE(first, nullptr);
    EXPECT_NE(DeviceSection::addDevice(*l2, d, sink), nullptr);
    EXPECT_TRUE(sink.entries.empty());
    EXPECT_EQ(DeviceSection::addDevice(*l1, d, sink), nullptr);
    EXPECT_EQ(sink.texts(), std::vector<std::string>{"The device already exist!"});
    // Adding more devices keeps the first one where it is.
    for (int i = 0; i < 100; ++i) {
        d.name = "n" + std::to_string(i);
        DeviceSection::addDevice(*l1, d, sink);
    }
    EXPECT_EQ(first->name, "dev");
    EXPECT_FALSE(DeviceSection::deviceNameExists(*l1, "dev", first));
    EXPECT_TRUE(DeviceSection::removeDevice(*l1, first));
    EXPECT_FALSE(DeviceSection::deviceNameExists(*l1, "dev"));
}

TEST(DeviceReader, BadInputFailsCleanly) {
    DeviceSection filled;
    RecordingSink sink;
    filled.addLink(LinkKind::None, named("old"), {}, sink);
    rqtest::expectBadFilesFail(
        filled, "<links/>", "<?xml version=\"1.0\" ?>\n<Devices>\n</Devices>\n",
        "<devices><link name=\"a\"b\" driver=\"none\"></link></devices>",
        "<devices><link name=\"\xff\xfe\" driver=\"none\"></link></devices>");
}

TEST(DeviceReader, NameWithQuoteIsWrittenRawAndNoLongerParses) {
    DeviceSection s;
    RecordingSink sink;
    s.addLink(LinkKind::None, named("a\"b"), {}, sink);
    const std::string out = written(s);
    EXPECT_NE(out.find("<link name=\"a\"b\" "), std::string::npos);
    DeviceSection back;
    EXPECT_FALSE(readText(back, out, sink));
}

TEST(DeviceReader, LongValues) {
    RecordingSink sink;
    const std::string longValue(1 << 20, 'p');
    DeviceSection big;
    LinkItem* l = big.addLink(
        LinkKind::None, named("l", [&](LinkCommonFields& c) { c.params = longValue; }), {}, sink);
    DeviceItem d;
    d.name = "d";
    d.params = longValue;
    DeviceSection::addDevice(*l, d, sink);
    DeviceSection back;
    ASSERT_TRUE(readText(back, written(big), sink));
    EXPECT_EQ(back.links()[0].params, longValue);
    EXPECT_EQ(back.links()[0].devices[0].params, longValue);
}

TEST(DeviceCheck, ReportsRawValuesReferencesUnknownKindsAndDuplicates) {
    DeviceSection s;
    RecordingSink sink;
    LinkItem* a = s.addLink(
        LinkKind::None, named("a", [](LinkCommonFields& c) { c.status_var = "db.ok"; }), {}, sink);
    LinkItem* b =
        s.addLink(LinkKind::None,
                  named("b", [](LinkCommonFields& c) { c.control_var = "db.missing"; }), {}, sink);
    b->name = "a";       // a rename through Modify is not tested against other links
    a->driver = "bogus"; // would be dropped on the next read
    DeviceItem d;
    d.name = "d<1";
    d.data.push_back({"t", "1", "db.ok", "", "Circularly reading", "0", "1"});
    d.data.push_back({"", "2", "db.gone", "", "Circularly reading", "0", "1"});
    DeviceSection::addDevice(*a, d, sink);
    DeviceSection::addDevice(*a, d, sink); // refused
    a->devices.push_back(d);               // a duplicate only Modify could make

    rqtest::FakeCheck ctx{{"db", "ok"}};
    s.check(ctx);
    std::string all;
    for (const auto& f : ctx.findings())
        all += f + "\n";
    for (const char* part : {"device.xml: duplicate link \"a\"", "unknown kind \"bogus\"",
                             "device.xml: duplicate device \"d<1\" in link \"a\"",
                             "device \"d<1\" name", "db.missing", "db.gone", "data 2 has no type"})
        EXPECT_NE(all.find(part), std::string::npos) << part << "\n" << all;
    EXPECT_EQ(all.find("\"db.ok\""), std::string::npos) << all; // a known reference passes
}
