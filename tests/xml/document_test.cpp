#include "xml/document.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

class XmlDocument : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_NE(document = xml::Document::create(0), nullptr); }
    void TearDown() override { document->release(); }

    xml::Document* document = nullptr;
};

TEST_F(XmlDocument, StorageIsAlignedAsAsked) {
    for (int i = 0; i < 1000; ++i) {
        document->allocate_array<char>(static_cast<std::size_t>(i % 7));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(document->allocate_array<double>(1)) % alignof(double),
                  0u);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(document->allocate(16, 16)) % 16, 0u);
    }
}

TEST_F(XmlDocument, PiecesDoNotOverlapWhateverTheirSize) {
    std::vector<char*> pieces;
    std::vector<std::size_t> sizes;
    for (std::size_t i = 0; i < 400; ++i) {
        const std::size_t size = i % 50 == 49 ? 300000 : i * 13 % 2000;
        auto* piece = static_cast<char*>(document->allocate(size, 1));
        ASSERT_NE(piece, nullptr);
        std::memset(piece, static_cast<int>(i % 251), size);
        pieces.push_back(piece);
        sizes.push_back(size);
    }
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const std::string expected(sizes[i], static_cast<char>(i % 251));
        EXPECT_EQ(std::memcmp(pieces[i], expected.data(), sizes[i]), 0) << i;
    }
}

TEST_F(XmlDocument, AStringIsCopiedWithItsTerminator) {
    EXPECT_STREQ(document->copy_string("text and more", 4), "text");
    EXPECT_STREQ(document->copy_string("", 0), "");
}

TEST_F(XmlDocument, ARequestBeyondAllMemoryIsRefused) {
    EXPECT_EQ(document->allocate(static_cast<std::size_t>(-1), 1), nullptr);
    EXPECT_EQ(document->allocate(static_cast<std::size_t>(-8), 8), nullptr);
    ASSERT_NE(document->allocate(7, 1), nullptr);
    EXPECT_EQ(document->allocate(static_cast<std::size_t>(-1), 8), nullptr);
    EXPECT_NE(document->allocate(8, 8), nullptr);
}

TEST_F(XmlDocument, AnAdoptedTextLivesAsLongAsTheLastHandle) {
    char* text = static_cast<char*>(std::malloc(5));
    std::memcpy(text, "text", 5);
    document->adopt_text(text);
    document->retain();
    document->release();
    EXPECT_STREQ(text, "text");
}

} // namespace
