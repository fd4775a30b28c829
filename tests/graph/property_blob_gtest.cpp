#include "graph/property_blob.h"

#include <gtest/gtest.h>

using namespace vexorin::graph;

namespace {
std::uint32_t le32(const ByteVector& b, std::size_t at)
{
    return std::uint32_t(b[at]) | (std::uint32_t(b[at + 1]) << 8) | (std::uint32_t(b[at + 2]) << 16) |
           (std::uint32_t(b[at + 3]) << 24);
}
std::uint16_t le16(const ByteVector& b, std::size_t at)
{
    return std::uint16_t(b[at] | (b[at + 1] << 8));
}
}  // namespace

TEST(PropertyBlobTest, TheControlAndGraphExample)
{
    PropertyBlob b;
    ByteVector control{1, 2, 3, 4, 5, 6};
    ByteVector graph(72);
    for (std::size_t i = 0; i < graph.size(); ++i)
        graph[i] = std::uint8_t(i * 3);
    b.writeBytes(u16("control"), control);
    b.writeBytes(u16("graph"), graph);
    const ByteVector out = b.serialize();
    ASSERT_EQ(out.size(), 156u);
    EXPECT_EQ(le32(out, 0), 0x0000B293u);
    EXPECT_EQ(le32(out, 4), 156u);
    // First record at 8: type, name length, hash, distance +44, name, then the array.
    EXPECT_EQ(le16(out, 8), 0x2011);
    EXPECT_EQ(le16(out, 10), 7);
    EXPECT_EQ(le32(out, 12), PropertyBlob::nameHash(u16("control")));
    EXPECT_EQ(std::int32_t(le32(out, 16)), 44);
    for (std::size_t i = 0; i < 7; ++i) {
        EXPECT_EQ(out[20 + 2 * i], std::uint8_t("control"[i]));
        EXPECT_EQ(out[21 + 2 * i], 0);
    }
    EXPECT_EQ(le16(out, 34), 1);  // one dimension
    EXPECT_EQ(le32(out, 36), 6u); // six elements
    EXPECT_EQ(le32(out, 40), 0u); // lower bound
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_EQ(out[44 + i], control[i]);
    EXPECT_EQ(out[50], 0);  // padding to 52
    EXPECT_EQ(out[51], 0);
    // Second record at 52, 104 bytes, pointing back 44 to the first.
    EXPECT_EQ(le16(out, 52), 0x2011);
    EXPECT_EQ(le16(out, 54), 5);
    EXPECT_EQ(std::int32_t(le32(out, 60)), -44);
    EXPECT_EQ(le32(out, 76), 72u);
    for (std::size_t i = 0; i < 72; ++i)
        EXPECT_EQ(out[84 + i], graph[i]);

    std::string error;
    const auto back = PropertyBlob::parse(out, &error);
    ASSERT_TRUE(back) << error;
    EXPECT_EQ(back->readBytes(u16("control")), control);
    EXPECT_EQ(back->readBytes(u16("graph")), graph);
}

TEST(PropertyBlobTest, SingleRecordLinksToItself)
{
    PropertyBlob b;
    b.writeInt(u16("Count"), 0);
    const ByteVector out = b.serialize();
    EXPECT_EQ(out.size(), 8u + 28);  // 12 of header, 10 of name, 4 of value, 2 of padding
    EXPECT_EQ(le32(out, 16), 0u);
    const auto back = PropertyBlob::parse(out, nullptr);
    ASSERT_TRUE(back);
    EXPECT_EQ(back->records().size(), 1u);
    EXPECT_EQ(back->readInt(u16("Count")), 0);
}

TEST(PropertyBlobTest, AllThreeTypesRoundTrip)
{
    PropertyBlob b;
    b.writeInt(u16("Int"), -123456);
    std::u16string t = u"Text with \u00e9 and \xd800 alone";
    b.writeText(u16("Text"), t);
    b.writeBytes(u16("Empty"), {});
    b.writeBytes(u16("Odd"), {9, 8, 7});
    const auto back = PropertyBlob::parse(b.serialize(), nullptr);
    ASSERT_TRUE(back);
    EXPECT_EQ(back->readInt(u16("Int")), -123456);
    EXPECT_EQ(back->readText(u16("Text")), t);
    EXPECT_TRUE(back->has(u16("Empty")));
    EXPECT_EQ(back->readBytes(u16("Odd")), (ByteVector{9, 8, 7}));
    // Missing names, wrong types and other case give the empty value.
    EXPECT_EQ(back->readInt(u16("Missing")), 0);
    EXPECT_EQ(back->readInt(u16("int")), 0);
    EXPECT_EQ(back->readInt(u16("Text")), 0);
    EXPECT_TRUE(back->readBytes(u16("Nope")).empty());
    EXPECT_TRUE(back->readText(u16("Nope")).empty());
}

TEST(PropertyBlobTest, RecordOrderDoesNotMatter)
{
    PropertyBlob a;
    a.writeInt(u16("B"), 2);
    a.writeInt(u16("A"), 1);
    const auto back = PropertyBlob::parse(a.serialize(), nullptr);
    ASSERT_TRUE(back);
    EXPECT_EQ(back->readInt(u16("A")), 1);
    EXPECT_EQ(back->readInt(u16("B")), 2);
}

TEST(PropertyBlobTest, DamagedBlobsAreRefusedWithAReason)
{
    PropertyBlob b;
    b.writeText(u16("State"), u"abcd");
    b.writeInt(u16("Count"), 3);
    const ByteVector good = b.serialize();
    std::string error;

    EXPECT_FALSE(PropertyBlob::parse(ByteVector{}, &error));
    EXPECT_FALSE(error.empty());
    ByteVector badMagic = good;
    badMagic[0] ^= 1;
    EXPECT_FALSE(PropertyBlob::parse(badMagic, &error));
    EXPECT_NE(error.find("magic"), std::string::npos);
    for (std::size_t cut = 0; cut < good.size(); ++cut) {
        const ByteVector shortened(good.begin(), good.begin() + long(cut));
        EXPECT_FALSE(PropertyBlob::parse(shortened, &error)) << cut;
    }
    ByteVector longer = good;
    longer.resize(good.size() + 100, 0xAB);  // trailing bytes past the stated length are ignored
    EXPECT_TRUE(PropertyBlob::parse(longer, &error));

    ByteVector hugeText = good;
    hugeText[8 + 12 + 10] = 0xFF;  // text length
    hugeText[8 + 12 + 10 + 3] = 0x7F;
    EXPECT_FALSE(PropertyBlob::parse(hugeText, &error));

    ByteVector loop = good;
    const std::size_t second = 8 + 12 + 10 + 4 + 8;
    loop[second + 8] = 0;  // the second record points at itself, never back to the first
    loop[second + 9] = 0;
    loop[second + 10] = 0;
    loop[second + 11] = 0;
    EXPECT_FALSE(PropertyBlob::parse(loop, &error));

    ByteVector outside = good;
    outside[16] = 0xF0;  // a distance far past the end
    outside[17] = 0x7F;
    EXPECT_FALSE(PropertyBlob::parse(outside, &error));

    ByteVector unknownType = good;
    unknownType[8] = 0x42;
    EXPECT_FALSE(PropertyBlob::parse(unknownType, &error));
    EXPECT_NE(error.find("type"), std::string::npos);
}

TEST(PropertyBlobTest, HashIsStableAndIgnoresCase)
{
    EXPECT_EQ(PropertyBlob::nameHash(u16("Graph")), PropertyBlob::nameHash(u16("graph")));
    EXPECT_NE(PropertyBlob::nameHash(u16("graph")), PropertyBlob::nameHash(u16("state")));
}
