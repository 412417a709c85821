// The I/O driver catalog delivered beside the program, as the device dialogs use it.

#include "core/DataTypes.h"
#include "core/FileUtil.h"
#include "core/IoDriverCatalog.h"
#include "sections/device/DeviceSection.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <set>

using namespace rq;

TEST(DriverCatalogData, EveryLinkKindOffersDriversOfKnownTypes) {
    IoDriverCatalog catalog;
    ASSERT_TRUE(catalog.load(joinPath(rqtest::programDir(), "iodevdrv.xml")));

    // Every kind of link has its drivers; a link without any would also end
    // FindDriver's search early for the links after it.
    for (const LinkKindRow& kind : kLinkKinds) {
        const IoLinkKind* link = catalog.FindLinkKind(kind.keyword);
        ASSERT_NE(link, nullptr) << kind.keyword;
        EXPECT_FALSE(link->drivers.empty()) << kind.keyword;
    }

    std::set<std::string> driverNames;
    for (const IoLinkKind& link : catalog.links()) {
        for (const IoDeviceDriver& d : link.drivers) {
            EXPECT_TRUE(driverNames.insert(d.name).second) << "driver twice: " << d.name;
            EXPECT_EQ(catalog.FindDriver(d.name), &d) << d.name;
            EXPECT_FALSE(d.description.empty()) << d.name;
            EXPECT_FALSE(d.filename.empty()) << d.name;
            EXPECT_FALSE(d.dataTypes.empty()) << d.name;
            EXPECT_FALSE(d.products.empty()) << d.name;
            std::set<std::string> typeNames;
            for (const IoDataType& t : d.dataTypes) {
                EXPECT_GE(DataTypeTable::indexOfKeyword(t.vartype), 0)
                    << d.name << " " << t.name << ": " << t.vartype;
                EXPECT_TRUE(typeNames.insert(t.name).second) << d.name << " " << t.name;
            }
            for (const IoProduct& p : d.products)
                for (const IoCfgType& c : p.cfgTypes) {
                    EXPECT_FALSE(c.code.empty()) << d.name << " " << p.name;
                    // The "Range:" list selects the entry whose text begins with the code.
                    EXPECT_EQ(c.display.rfind(c.code, 0), 0u) << c.code << " " << c.display;
                }
        }
    }

    const IoDeviceDriver* ferolt = catalog.FindDriver("ferolt");
    ASSERT_NE(ferolt, nullptr);
    EXPECT_EQ(ferolt->link->name, "ferolt");
    EXPECT_EQ(catalog.CfgTypeDisplay("ferolt", "FR-200", "PT100"), "PT100 resistance thermometer");
    for (const IoProduct& p : ferolt->products)
        EXPECT_FALSE(p.cfgTypes.empty()) << p.name;
}
