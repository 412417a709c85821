#include "core/InstanceRequest.h"

#include <gtest/gtest.h>

namespace {

TEST(InstanceRequest, DirectoryTravelsWholeAndPartsWait) {
    const std::string dir = "/p/a\\b\nc d";
    const std::string bytes = rq::instanceRequest(dir);
    EXPECT_FALSE(rq::parseInstanceRequest(bytes.substr(0, bytes.size() - 1)));
    auto call = rq::parseInstanceRequest(bytes);
    ASSERT_TRUE(call && call->open);
    EXPECT_EQ(*call->open, dir);
    call = rq::parseInstanceRequest(rq::instanceRequest(""));
    ASSERT_TRUE(call);
    EXPECT_FALSE(call->open);
    for (const char* bad : {"open \n", "open a\\x\n", "open a\\\n", "hello\n"})
        EXPECT_FALSE(rq::parseInstanceRequest(bad)) << bad;
}

} // namespace
