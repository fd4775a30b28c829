// The layout audit finds what a user would see as broken, and nothing else.
#include "ui/layout_audit.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

class LayoutAuditTest : public QObject {
    Q_OBJECT
private slots:
    void laidOutWindowHasNoProblem();
    void narrowTextsAreCutShort();
    void wrappedLabelIsJudgedByHeight();
    void overlappingSiblingsAreFound();
    void textHalfHiddenByItsParentIsFound();
    void overlayMustBeOpaqueAndCoverWholeControls();
};

void LayoutAuditTest::laidOutWindowHasNoProblem()
{
    QWidget w;
    w.setObjectName(QStringLiteral("Window"));
    auto* v = new QVBoxLayout(&w);
    v->addWidget(new QLabel(QStringLiteral("Data Received Status : Good")));
    v->addWidget(new QPushButton(QStringLiteral("Download BIN File")));
    v->addWidget(new QCheckBox(QStringLiteral("Clear Matrix Before Download")));
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    QCOMPARE(vexorin::ui::layoutProblems(&w), QStringList());
}

void LayoutAuditTest::narrowTextsAreCutShort()
{
    QWidget w;
    auto* label = new QLabel(QStringLiteral("Monitoring Sensors"), &w);
    label->setGeometry(0, 0, 40, 30);
    auto* button = new QPushButton(QStringLiteral("Throttle Enrichment Table"), &w);
    button->setGeometry(0, 40, 60, 30);
    auto* box = new QCheckBox(QStringLiteral("Display Alert Message"), &w);
    box->setGeometry(0, 80, 50, 30);
    w.resize(200, 200);
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    const QString found = vexorin::ui::layoutProblems(&w).join(QLatin1Char('\n'));
    QVERIFY(found.contains(QStringLiteral("\"Monitoring Sensors\" in  shows its text cut short")));
    QVERIFY(found.contains(QStringLiteral("\"Throttle Enrichment Table\" in  shows its text cut short")));
    QVERIFY(found.contains(QStringLiteral("\"Display Alert Message\" in  shows its text cut short")));
}

void LayoutAuditTest::wrappedLabelIsJudgedByHeight()
{
    QWidget w;
    auto* label = new QLabel(QStringLiteral("Edit mode will overwrite the file. Please make a backup first."), &w);
    label->setWordWrap(true);
    label->setGeometry(0, 0, 120, 200);
    w.resize(200, 220);
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    QCOMPARE(vexorin::ui::layoutProblems(&w), QStringList());
    label->setGeometry(0, 0, 120, 20);  // one line of three shows
    QCOMPARE(vexorin::ui::layoutProblems(&w).size(), 1);
}

void LayoutAuditTest::overlappingSiblingsAreFound()
{
    QWidget w;
    auto* a = new QLabel(QStringLiteral("Viewing : BIN File Data"), &w);
    a->setGeometry(0, 0, 180, 20);
    auto* b = new QLabel(QStringLiteral("ECU Data"), &w);
    b->setGeometry(170, 0, 80, 20);
    w.resize(300, 40);
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    const QStringList found = vexorin::ui::layoutProblems(&w);
    QCOMPARE(found.size(), 1);
    QVERIFY(found[0].contains(QStringLiteral("overlap")));
}

void LayoutAuditTest::textHalfHiddenByItsParentIsFound()
{
    QWidget w;
    auto* panel = new QWidget(&w);
    panel->setGeometry(0, 0, 200, 50);
    auto* caption = new QLabel(QStringLiteral("Timers and Switches"), panel);
    caption->setGeometry(0, 42, 180, 20);  // half below the panel's edge
    auto* gone = new QLabel(QStringLiteral("Misc Items"), panel);
    gone->setGeometry(0, 70, 180, 20);  // wholly out of sight is not cut
    w.resize(200, 100);
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    const QStringList found = vexorin::ui::layoutProblems(&w);
    QCOMPARE(found.size(), 1);
    QVERIFY(found[0].contains(QStringLiteral("\"Timers and Switches\" in  is partly hidden by its parent")));
}

void LayoutAuditTest::overlayMustBeOpaqueAndCoverWholeControls()
{
    QWidget w;
    for (int row = 0; row < 4; ++row)
        (new QLabel(QStringLiteral("Row %1").arg(row), &w))->setGeometry(0, row * 25, 100, 24);
    auto* overlay = vexorin::ui::markAsOverlay(new QWidget(&w));
    overlay->setGeometry(0, 50, 100, 50);  // rows 2 and 3, whole
    w.resize(120, 110);
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    QStringList found = vexorin::ui::layoutProblems(&w);
    QCOMPARE(found.size(), 1);
    QVERIFY(found[0].contains(QStringLiteral("lets them show through")));
    overlay->setAutoFillBackground(true);
    QCOMPARE(vexorin::ui::layoutProblems(&w), QStringList());
    overlay->setGeometry(0, 40, 100, 60);  // and the lower part of row 1
    found = vexorin::ui::layoutProblems(&w);
    QCOMPARE(found.size(), 1);
    QVERIFY(found[0].contains(QStringLiteral("covers part of QLabel \"Row 1\"")));
}

QTEST_MAIN(LayoutAuditTest)
#include "layout_audit_test.moc"
