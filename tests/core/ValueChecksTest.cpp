#include "core/ValueChecks.h"
#include "core/DataTypes.h"

#include <gtest/gtest.h>

namespace {

// Each type's edges: the last value in range passes, the next one is refused.
TEST(ValueChecks, InitialValueAgainstItsType) {
    struct Case {
        const char* type; // keyword
        int length;
        const char* value;
        bool ok;
    };
    const Case cases[] = {
        {"bit", 1, "1", true},
        {"bit", 1, "2", false},
        {"bit", 3, "7", true},
        {"bit", 3, "8", false},
        {"bit", 1, "-1", false},
        {"char", 1, "-128", true},
        {"char", 1, "127", true},
        {"char", 1, "128", false},
        {"char", 1, "-129", false},
        {"char", 1, "0x10", false},
        {"uchar", 1, "255", true},
        {"uchar", 1, "256", false},
        {"uchar", 1, "0xFF", true},
        {"uchar", 1, "0x100", false},
        {"uchar", 1, "-1", false},
        {"short", 2, "-32768", true},
        {"short", 2, "32768", false},
        {"ushort", 2, "0xffff", true},
        {"ushort", 2, "65536", false},
        {"long", 4, "+2147483647", true},
        {"long", 4, "-2147483648", true},
        {"long", 4, "2147483648", false},
        {"ulong", 4, "4294967295", true},
        {"ulong", 4, "0x100000000", false},
        {"ulong", 4, "99999999999999999999", false},
        {"ulong", 4, "0xFFFFFFFFFFFFFFFFFF", false},
        {"long", 4, "12abc", false},
        {"long", 4, " 1", false},
        {"long", 4, "1.5", false},
        {"short", 2, "0x", false},
        {"float", 4, "-1.5e3", true},
        {"float", 4, ".5", true},
        {"float", 4, "3.4e38", true},
        {"float", 4, "3.5e38", false},
        {"double", 8, "3.5e38", true},
        {"double", 8, "1e309", false},
        {"double", 8, "1e-400", true},
        {"double", 8, "nan", false},
        {"float", 4, "inf", false},
        {"float", 4, "0x1p3", false},
        {"float", 4, "1e", false},
        {"float", 4, ".", false},
        {"string", 5, "abcde", true},
        {"string", 5, "abcdef", false},
        {"array", 4, "anything", true},
        {"short", 2, "", true},
    };
    for (const Case& c : cases) {
        const int type = rq::DataTypeTable::indexOfKeyword(c.type);
        ASSERT_GE(type, 0) << c.type;
        auto message = rq::checkInitialValue(type, c.length, c.value);
        EXPECT_EQ(!message, c.ok) << c.type << " " << c.value << ": " << message.value_or("");
    }
    // The message says what the type accepts.
    EXPECT_EQ(*rq::checkInitialValue(rq::DataTypeTable::indexOfKeyword("uchar"), 1, "300"),
              "The initial value \"300\" must be a whole number from 0 to 255, or 0x0 to 0xFF "
              "(data type \"unsigned char\").");
    EXPECT_EQ(*rq::checkInitialValue(rq::DataTypeTable::indexOfKeyword("bit"), 2, "4"),
              "The initial value \"4\" must be a whole number from 0 to 3 (data type \"bit\", 2 "
              "bits).");
    EXPECT_FALSE(rq::checkInitialValue(-1, 0, "x"));
}

TEST(ValueChecks, Ipv4Address) {
    for (const char* ok : {"192.168.1.20", "0.0.0.0", "255.255.255.255", "10.0.0.1", ""})
        EXPECT_FALSE(rq::checkIpv4Address("IP", ok)) << ok;
    for (const char* bad : {"256.1.1.1", "1.2.3", "1.2.3.4.5", "010.1.1.1", "1..2.3", "1.2.3.4.",
                            " 1.2.3.4", "a.b.c.d", "1.2.3.-4", "1234.1.1.1", "host"})
        EXPECT_TRUE(rq::checkIpv4Address("IP", bad)) << bad;
    EXPECT_EQ(*rq::checkIpv4Address("Server IP Address", "1.2.3"),
              "The field \"Server IP Address\" must hold an IPv4 address: four numbers from 0 to "
              "255 separated by dots, without leading zeros (for example 192.168.1.20).");
}

} // namespace
