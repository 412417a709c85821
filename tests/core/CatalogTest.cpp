// The HMI device catalog and the I/O driver catalog.

#include "core/Catalogs.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

using namespace rq;
using rqtest::TempDir;
using rqtest::writeFile;

TEST(HmiDeviceCatalog, ReadsEntriesWithTheirDefaults) {
    TempDir dir;
    writeFile(dir.path() / "h.xml",
              "<hmidevices>"
              "<hmidevice name=\"A\" screen_width=\" 800px\" screen_height=\"abc\" "
              "has_cfcard=\"yes\" ladder=\"0x0\" fbd=\"2\" display=\"Type A\"/>"
              "<other name=\"X\"/>"
              "<hmidevice screen_width=\"1\"/>"
              "<hmidevice name=\"B\" has_cfcard=\"1\" redundancy=\"0x10\"/>"
              "<hmidevice name=\"A\" display=\"second A\"/>"
              "</hmidevices>");
    HmiDeviceCatalog c;
    ASSERT_TRUE(c.LoadHmiDeviceCatalog(dir.file("h.xml")));
    ASSERT_EQ(c.entries().size(), 3u);
    const HmiDeviceType* a = c.FindByName("A");
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->display, "Type A");
    EXPECT_EQ(a->screenWidth, 800);
    EXPECT_EQ(a->screenHeight, 0);
    EXPECT_FALSE(a->hasCfCard);
    EXPECT_EQ(a->ladder, 0);
    EXPECT_EQ(a->fbd, 2);
    EXPECT_EQ(a->externalC, 0); // absent flag: not supported
    const HmiDeviceType* b = c.FindByName("B");
    EXPECT_EQ(b->display, "B"); // listed under its name
    EXPECT_TRUE(b->hasCfCard);
    EXPECT_EQ(b->redundancy, 16);
    EXPECT_EQ(c.FindByDisplay("second A"), &c.entries()[2]);
    EXPECT_EQ(c.FindByName("a"), nullptr);

    writeFile(dir.path() / "bad.xml", "<devices/>");
    HmiDeviceCatalog other;
    EXPECT_FALSE(other.LoadHmiDeviceCatalog(dir.file("bad.xml")));
    EXPECT_FALSE(other.LoadHmiDeviceCatalog(dir.file("missing.xml")));
    EXPECT_TRUE(other.empty());
    EXPECT_EQ(other.FindByName("A"), nullptr);
}

TEST(IoDriverCatalog, LooksUpLinksDriversProductsAndTypes) {
    TempDir dir;
    writeFile(dir.path() / "d.xml",
              "<iodevicedrivers>"
              "<link name=\"serial\">"
              " <devicedriver name=\"d\" description=\"D serial\" filename=\"d.so\">"
              "  <datatype name=\"coil\" vartype=\"bit\"/>"
              "  <products><product_type name=\"P1\"><cfg_types>"
              "    <a code=\"1\" display=\"one\"/><b code=\"2\" display=\"two\"/>"
              "  </cfg_types></product_type><product_type name=\"P2\"/></products>"
              " </devicedriver>"
              "</link>"
              "<link name=\"empty\"/>"
              "<link name=\"tcp\"><devicedriver name=\"d\"/><devicedriver name=\"t\"/></link>"
              "</iodevicedrivers>");
    IoDriverCatalog c;
    ASSERT_TRUE(c.load(dir.file("d.xml")));
    const IoDeviceDriver* d = c.FindDriver("d");
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->link->name, "serial");    // the earlier link wins
    EXPECT_EQ(c.FindDriver("t"), nullptr); // the search stops at the link without drivers
    EXPECT_EQ(c.ListDrivers("tcp").size(), 2u);
    EXPECT_EQ(c.ListDataTypes("d")[0]->vartype, "bit");
    EXPECT_EQ(c.ListProducts("d").size(), 2u);
    EXPECT_EQ(IoDriverCatalog::ListCfgTypes(d->products[0]).size(), 2u);
    EXPECT_EQ(c.CfgTypeDisplay("d", "P1", "2"), "two");
    EXPECT_EQ(c.CfgTypeDisplay("d", "P2", "2"), "");
    EXPECT_EQ(c.DriverNameAt("serial", 0), "d");
    EXPECT_EQ(c.DriverNameAt("serial", 1), "");
    EXPECT_EQ(c.DriverNameAt("nothing", 0), "");
    EXPECT_EQ(c.ProductNameAt("d", 1), "P2");
    EXPECT_EQ(c.ProductIndex("d", "P2"), 1);
    EXPECT_EQ(c.ProductIndex("d", "P9"), -1);
    EXPECT_EQ(c.ProductIndex("zz", "P1"), -1);
    EXPECT_EQ(IoDriverCatalog::DriverDescription(d), "D serial");
    EXPECT_EQ(IoDriverCatalog::DriverDescription(nullptr), "");

    // With the empty link last, the later driver is found.
    writeFile(dir.path() / "e.xml",
              "<iodevicedrivers><link name=\"B\"><devicedriver name=\"d\"/></link>"
              "<link name=\"A\"/></iodevicedrivers>");
    IoDriverCatalog e;
    ASSERT_TRUE(e.load(dir.file("e.xml")));
    EXPECT_NE(e.FindDriver("d"), nullptr);
}

TEST(Catalogs, TheDeliveredCatalogsLoad) {
    Catalogs c;
    c.loadFrom(rqtest::programDir());
    ASSERT_FALSE(c.hmi.empty());
    bool allZero = false, chineseDisplay = false;
    for (const auto& t : c.hmi.entries()) {
        allZero |= !t.ladder && !t.fbd && !t.externalC && !t.redundancy && !t.hasCfCard;
        chineseDisplay |= t.display.find("\xE5\xAF\xB8") != std::string::npos; // "inch"
    }
    EXPECT_TRUE(allZero);
    EXPECT_TRUE(chineseDisplay);
}
