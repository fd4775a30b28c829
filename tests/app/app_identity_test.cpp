// The application's identity: its command line answers without a window
// system, and every window carries its icon.
#include "app/app_identity.h"

#include <QApplication>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTest>

namespace {
struct Run {
    int code = -1;
    QString out;
    QString err;
};

// The built application with `args`, in an environment without any display.
Run runApp(const QStringList& args, bool withDisplay = false)
{
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XDG_SESSION_TYPE"})
        env.remove(QLatin1String(name));
    if (withDisplay)
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    p.setProcessEnvironment(env);
    p.start(QStringLiteral(VEXORIN_APP), args);
    Run r;
    if (!p.waitForFinished(20000)) {
        p.kill();
        p.waitForFinished();
        return r;
    }
    r.code = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    r.out = QString::fromLocal8Bit(p.readAllStandardOutput());
    r.err = QString::fromLocal8Bit(p.readAllStandardError());
    return r;
}
}  // namespace

class AppIdentityTest : public QObject {
    Q_OBJECT
private slots:
    void versionAnswersWithoutADisplay();
    void helpListsTheOptionsWithoutADisplay();
    void anUnknownOptionIsAMistake();
    void optionsAreKnownBeforeAnyWindow();
    void identityNamesTheSettingsAndTheDesktopEntry();
    void iconComesInThreeSizes();
};

void AppIdentityTest::versionAnswersWithoutADisplay()
{
    for (const char* option : {"--version", "-v"}) {
        const Run r = runApp({QLatin1String(option)});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out, QStringLiteral("Vexorin 2.5.1\n"));
    }
}

void AppIdentityTest::helpListsTheOptionsWithoutADisplay()
{
    const Run r = runApp({QStringLiteral("--help")});
    QCOMPARE(r.code, 0);
    QVERIFY2(r.out.contains(QStringLiteral("--version")), qPrintable(r.out));
    QVERIFY(r.out.contains(QStringLiteral("--help")));
    QVERIFY(r.out.contains(QStringLiteral("Consult")));
    QVERIFY(r.out.startsWith(QStringLiteral("Usage: ")));
}

void AppIdentityTest::anUnknownOptionIsAMistake()
{
    const Run r = runApp({QStringLiteral("--no-such-option")}, true);
    QCOMPARE(r.code, 1);
    QVERIFY2(r.err.contains(QStringLiteral("no-such-option")), qPrintable(r.err));
}

void AppIdentityTest::optionsAreKnownBeforeAnyWindow()
{
    using vexorin::app::answersOnTerminal;
    const QString app = QStringLiteral("vexorin");
    QVERIFY(answersOnTerminal({app, QStringLiteral("--version")}));
    QVERIFY(answersOnTerminal({app, QStringLiteral("-h")}));
    QVERIFY(answersOnTerminal({app, QStringLiteral("--help-all")}));
    QVERIFY(!answersOnTerminal({app}));
    // The window system's own options and mistakes go to the full parse.
    QVERIFY(!answersOnTerminal({app, QStringLiteral("-platform"), QStringLiteral("offscreen")}));
    QVERIFY(!answersOnTerminal({app, QStringLiteral("--bogus"), QStringLiteral("--version")}));
}

void AppIdentityTest::identityNamesTheSettingsAndTheDesktopEntry()
{
    vexorin::app::setApplicationIdentity();
    QCOMPARE(QCoreApplication::organizationName(), QStringLiteral("Vexorin"));
    QCOMPARE(QCoreApplication::applicationName(), QStringLiteral("Vexorin"));
    QCOMPARE(QCoreApplication::applicationVersion(), QStringLiteral("2.5.1"));
    QCOMPARE(QGuiApplication::desktopFileName(), QStringLiteral("org.vexorin.Vexorin"));
    QVERIFY(!QApplication::windowIcon().isNull());
}

void AppIdentityTest::iconComesInThreeSizes()
{
    const QIcon icon = vexorin::app::applicationIcon();
    QCOMPARE(icon.availableSizes(), (QList<QSize>{{48, 48}, {128, 128}, {256, 256}}));
    for (int size : {48, 128, 256}) {
        const QImage image = icon.pixmap(size).toImage();
        QCOMPARE(image.size(), QSize(size, size));
        // Drawn, not blank: the corners are clear and the middle is not.
        QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
        QVERIFY(qAlpha(image.pixel(size / 2, size / 2)) > 200);
    }
}

QTEST_MAIN(AppIdentityTest)
#include "app_identity_test.moc"
