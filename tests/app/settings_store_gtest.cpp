#include "app/settings/edit_reg.h"
#include "app/settings/settings_access.h"
#include "fifo.h"
#include "temp_settings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPoint>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>

TEST(SettingsStoreTest, MissingSectionOrKeyReadsEmpty)
{
    TempSettings t;
    EXPECT_EQ(t.store->ReadSetting("PortNumber", "Setting"), QString());
    t.store->WriteSetting("PortNumber", "Setting", "5");
    EXPECT_EQ(t.store->ReadSetting("PortNumber", "Other"), QString());
    EXPECT_EQ(t.store->ReadSetting("PortNumber", "Setting"), QString("5"));
}

TEST(SettingsStoreTest, SectionsAreIniGroupsCreatedOnFirstWrite)
{
    TempSettings t;
    EXPECT_FALSE(QFile::exists(t.file()));
    t.store->WriteSetting("MPH", "Setting", "True");
    t.store->WriteSetting("SetWindowSize", "Height", "8040");
    QFile f(t.file());
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QString ini = QString::fromUtf8(f.readAll());
    EXPECT_TRUE(ini.contains("[MPH]\nSetting=True")) << ini.toStdString();
    EXPECT_TRUE(ini.contains("[SetWindowSize]\nHeight=8040")) << ini.toStdString();
}

TEST(SettingsStoreTest, ValuesSurviveANewStore)
{
    TempSettings t;
    t.store->WriteSetting("VoiceOn", "Setting", "Off");
    SettingsStore again(t.file());
    EXPECT_EQ(again.ReadSetting("VoiceOn", "Setting"), QString("Off"));
}

TEST(SettingsStoreTest, NonTextValueReadsEmpty)
{
    TempSettings t;
    {
        QSettings raw(t.file(), QSettings::IniFormat);
        raw.setValue("Graph1BarColor/BarColor", QStringList{"1", "2"});
        raw.setValue("Graph1PointColor/PointColor", QByteArray("\x01\x02", 2));
        raw.setValue("SetWindowSize/Top", QPoint(3, 4));
    }
    SettingsStore s(t.file());
    EXPECT_EQ(s.ReadSetting("Graph1BarColor", "BarColor"), QString());
    EXPECT_EQ(s.ReadSetting("Graph1PointColor", "PointColor"), QString());
    EXPECT_EQ(s.ReadSetting("SetWindowSize", "Top"), QString());
}

TEST(SettingsStoreTest, TextWithZeroInsideIsCutAtTheZero)
{
    TempSettings t;
    t.store->WriteSetting("StartupAnnounce", "Setting", QString("Hello") + QChar(0) + "World");
    EXPECT_EQ(t.store->ReadSetting("StartupAnnounce", "Setting"), QString("Hello"));
}

TEST(SettingsStoreTest, DefaultsOfTheTable)
{
    TempSettings t;
    EXPECT_EQ(readSettingOrDefault(*t.store, Settings::WindowHeight), QString("8040"));
    EXPECT_EQ(readSettingOrDefault(*t.store, Settings::WindowWidth), QString("13080"));
    EXPECT_EQ(readSettingOrDefault(*t.store, Settings::WindowTop), QString("375"));
    EXPECT_EQ(readSettingOrDefault(*t.store, Settings::WindowLeft), QString("1140"));
    EXPECT_EQ(readSettingOrDefault(*t.store, Settings::PortNumber), QString());
    writeSetting(*t.store, Settings::WindowTop, "0");
    EXPECT_EQ(readSettingOrDefault(*t.store, Settings::WindowTop), QString("0"));
    EXPECT_EQ(Settings::BarSections.size(), 14u);
    EXPECT_EQ(QString(Settings::BarSections.back()), QString("LargeSensorBar"));
}

TEST(SettingsStoreTest, UserStoreLivesUnderVexorin)
{
    // The application's own store: organisation and application "Vexorin".
    qputenv("XDG_CONFIG_HOME", QByteArray("/tmp/vexorin-settings-test-home"));
    SettingsStore s;
    EXPECT_TRUE(s.fileName().endsWith("/Vexorin/Vexorin.conf")) << s.fileName().toStdString();
}

TEST(EditRegTest, KeyValueRoundTrip)
{
    TempSettings t;
    QSettings raw(t.file(), QSettings::IniFormat);
    EditReg::SetKeyValue(raw, "NotifyPorts", "Setting", "True");
    EXPECT_EQ(EditReg::GetKeyValue(raw, "NotifyPorts", "Setting"), QString("True"));
    EXPECT_EQ(EditReg::GetKeyValue(raw, "NotifyPorts", "Missing"), QString());
}

TEST(SettingsStoreTest, SettingsFileThatIsAPipeIsNeverOpened)
{
    QTemporaryDir dir;
    const QString pipe = dir.filePath(QStringLiteral("Vexorin.conf"));
    ASSERT_TRUE(makeFifo(pipe.toStdString()));
    SettingsStore store(pipe);  // a read of the pipe would wait for a writer for ever
    EXPECT_TRUE(store.problem().contains(QStringLiteral("Vexorin.conf is not a regular file.")));
    EXPECT_EQ(store.ReadSetting(QStringLiteral("Options"), QStringLiteral("MPH")), QString());
    store.WriteSetting(QStringLiteral("Options"), QStringLiteral("MPH"), QStringLiteral("1"));
    EXPECT_EQ(store.ReadSetting(QStringLiteral("Options"), QStringLiteral("MPH")), QStringLiteral("1"));
    EXPECT_NE(store.fileName(), pipe);
    EXPECT_TRUE(QFileInfo(pipe).exists() && !QFileInfo(pipe).isFile());

    TempSettings normal;
    EXPECT_TRUE(normal.store->problem().isEmpty());
}

TEST(SettingsStoreTest, UserStoreThatIsAPipeIsNeverOpened)
{
    QTemporaryDir home;
    const QByteArray before = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", home.path().toLocal8Bit());
    ASSERT_TRUE(QDir(home.path()).mkpath(QStringLiteral("Vexorin")));
    const QString pipe = home.filePath(QStringLiteral("Vexorin/Vexorin.conf"));
    ASSERT_TRUE(makeFifo(pipe.toStdString()));
    {
        SettingsStore store;
        EXPECT_TRUE(store.problem().contains(pipe));
        EXPECT_EQ(store.ReadSetting(QStringLiteral("Options"), QStringLiteral("MPH")), QString());
    }
    QFile::remove(pipe);
    {
        SettingsStore store;  // the same place, now free: the user's own file
        EXPECT_TRUE(store.problem().isEmpty());
        EXPECT_EQ(store.fileName(), pipe);
    }
    if (before.isEmpty())
        qunsetenv("XDG_CONFIG_HOME");
    else
        qputenv("XDG_CONFIG_HOME", before);
}
