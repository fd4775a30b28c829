#include "consult/dev_lister.h"

#include <gtest/gtest.h>

namespace {
DeviceSource devices(QList<PlatformDevice> list)
{
    return [list](bool) { return list; };
}
}  // namespace

TEST(GuidStorage, ToStringPadsEachField)
{
    const GUID_Storage g(0x4D36E978, 0xE325, 0x11CE, {0xBF, 0xC1, 0x08, 0x00, 0x2B, 0xE1, 0x03, 0x18});
    EXPECT_EQ(g.ToString(), QString("4D36E978:E325:11CE:BF:C1:08:00:2B:E1:03:18"));
    const GUID_Storage small(0x1, 0x2, 0x3, {0, 1, 2, 3, 4, 5, 6, 7});
    EXPECT_EQ(small.ToString(), QString("00000001:0002:0003:00:01:02:03:04:05:06:07"));
}

TEST(GuidStorage, CopyCompareClear)
{
    const GUID_Storage a = DevLister::portsClassGuid();
    unsigned char raw[16];
    a.CopyToThisPTR(raw);
    GUID_Storage b;
    EXPECT_FALSE(b.IsEqual(a));
    b.CopyFromThisPTR(raw);
    EXPECT_TRUE(b.IsEqual(a));
    GUID_Storage c;
    c.CopyFromThisClass(a);
    EXPECT_TRUE(c.IsEqual(a));
    EXPECT_EQ(c.Data1(), 0x4D36E978u);
    EXPECT_EQ(c.Data2(), 0xE325);
    EXPECT_EQ(c.Data3(), 0x11CE);
    EXPECT_EQ(c.Data4()[7], 0x18);
    c.Clear();
    EXPECT_EQ(c.ToString(), QString("00000000:0000:0000:00:00:00:00:00:00:00:00"));
    EXPECT_EQ(GUID_Storage::PadStr("7", 3, '0'), QString("007"));
    EXPECT_EQ(GUID_Storage::PadStr("1234", 3, '0'), QString("1234"));
}

TEST(DevListerTest, GuidByName)
{
    DevLister l;
    QList<GUID_Storage> guids;
    QString status;
    l.GetGUIDByName("Ports", guids, status);
    EXPECT_EQ(status, QString("OK"));
    ASSERT_EQ(guids.size(), 1);
    EXPECT_TRUE(guids[0].IsEqual(DevLister::portsClassGuid()));
    l.GetGUIDByName("Printers?", guids, status);
    EXPECT_EQ(status, QString("Incorrect class name"));
    EXPECT_TRUE(guids.isEmpty());
    QString name;
    l.GetNameByGUID(DevLister::portsClassGuid(), name, status);
    EXPECT_EQ(name, QString("Ports"));
    EXPECT_EQ(status, QString("OK"));
}

TEST(DevListerTest, EmptyFriendlyNameShowsDescription)
{
    DevLister l(devices({{"/dev/ttyS0", "Communications Port", "", "Ports"},
                         {"/dev/ttyUSB0", "FT232R", "FT232R - /dev/ttyUSB0 (COM2)", "Ports"}}));
    QString status;
    const GUID_Storage g = DevLister::portsClassGuid();
    l.AddToList(&g, true, status);
    EXPECT_EQ(status, QString("OK"));
    ASSERT_EQ(l.ListCount(), 2);
    EXPECT_EQ(l.Item(1).GetName(), QString("Communications Port"));
    EXPECT_EQ(l.Item(2).GetName(), QString("FT232R - /dev/ttyUSB0 (COM2)"));
    EXPECT_EQ(l.Item(2).GetLocation(), QString("Ports"));
    EXPECT_EQ(l.Item(3).GetName(), QString());  // out of range
    l.ListClear();
    EXPECT_EQ(l.ListCount(), 0);
}

TEST(DevListerTest, LongPropertyGivesBufferTooSmallAndTheWalkGoesOn)
{
    const QString longName(600, QChar('x'));
    DevLister l(devices({{"a", longName, "", "Ports"}, {"b", "Second", "Second (COM2)", "Ports"}}));
    QString status;
    l.AddToList(nullptr, true, status);
    EXPECT_EQ(status, QString("Buffer too small 601 vs 500SPDRP_DEVICEDESC "));
    ASSERT_EQ(l.ListCount(), 2);
    EXPECT_EQ(l.Item(1).Description, QString());
    EXPECT_EQ(l.Item(2).GetName(), QString("Second (COM2)"));
}

TEST(DevListerTest, StrTrimToNull)
{
    EXPECT_EQ(DevLister::StrTrimToNull(QString("abc") + QChar(0) + "def"), QString("abc"));
    EXPECT_EQ(DevLister::StrTrimToNull("plain"), QString("plain"));
}
