// The shared immutable text: copies share one buffer, the empty text owns none, and
// it compares by its bytes with every kind of string.

#include "core/SharedText.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

using rq::SharedText;

TEST(SharedText, SharingEqualityAndEmpty) {
    const SharedText empty, fromEmpty{std::string_view{}}, fromString{std::string()};
    for (const SharedText* e : {&empty, &fromEmpty, &fromString}) {
        EXPECT_TRUE(e->empty());
        EXPECT_EQ(e->useCount(), 0u); // no buffer
        EXPECT_STREQ(e->c_str(), "");
        EXPECT_EQ(*e, "");
    }

    SharedText a(std::string("float")), b = a, c("float");
    EXPECT_TRUE(a.sharesWith(b));
    EXPECT_FALSE(a.sharesWith(c));
    EXPECT_EQ(a.useCount(), 2u);
    EXPECT_EQ(a, c);
    EXPECT_EQ(a, std::string("float"));
    EXPECT_NE(a, "floa");
    EXPECT_NE(a, "float ");
    EXPECT_LT(a, "int");
    EXPECT_EQ(a.size(), 5u);
    EXPECT_STREQ(a.c_str(), "float");
    EXPECT_EQ("type " + a + "!", "type float!");

    // Bytes are kept exactly, NULs and high bytes included.
    const std::string odd("a\0\xff\"<", 5);
    EXPECT_EQ(SharedText(odd).str(), odd);

    // Dropping handles frees the buffer with the last one; moving hands it over.
    b = SharedText();
    EXPECT_EQ(a.useCount(), 1u);
    SharedText moved = std::move(a);
    EXPECT_TRUE(a.empty());
    EXPECT_EQ(moved, "float");
    moved = moved; // self-assignment keeps the text
    EXPECT_EQ(moved, "float");
}

TEST(SharedText, PoolSharesEqualTextsUpToItsLimit) {
    rq::SharedTextPool pool(2);
    const SharedText f1 = pool.get("float"), f2 = pool.get(std::string("float"));
    EXPECT_TRUE(f1.sharesWith(f2));
    EXPECT_TRUE(pool.get("").empty());
    const SharedText i1 = pool.get("int");
    EXPECT_TRUE(i1.sharesWith(pool.get("int")));
    // Full: a third text is copied each time, still with the right bytes.
    const SharedText d1 = pool.get("double"), d2 = pool.get("double");
    EXPECT_FALSE(d1.sharesWith(d2));
    EXPECT_EQ(d1, "double");
}

// Handles to one buffer copied and dropped on several threads at once leave the
// count exact (the sanitizer build also sees a lost free or a double free here).
TEST(SharedText, CountsCopiesOnSeveralThreads) {
    const SharedText shared("measured value");
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&shared] {
            std::vector<SharedText> copies;
            for (int i = 0; i < 10000; ++i)
                copies.push_back(shared);
        });
    for (auto& t : threads)
        t.join();
    EXPECT_EQ(shared.useCount(), 1u);
}
