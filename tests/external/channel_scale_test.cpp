// Scaled gauges of the External Gauge Monitor: the Channel Scale window (its
// fields, ready-made scales, OK, None, Cancel, Enter and Esc), the figure a
// scaled gauge shows beside a reading box and bar that stay as they were, and
// the scales kept in the settings.
#include "answered_dialogs.h"
#include "external/channel_scale_window.h"
#include "external/external_sensors.h"
#include "external/external_sensors_window.h"
#include "external_rig.h"
#include "ui/gradient_bar_widget.h"
#include "ui/layout_audit.h"
#include "widget_helpers.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QAccessibleEditableTextInterface>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>

using vexorin::external::ChannelScale;
using vexorin::external::ScaleField;

namespace {
const ChannelScale kWideband{0.0, 10.0, 5.0, 20.0, QStringLiteral("AFR"), 2};

// The reading of the fourth channel (letter V) is `wideband`; the others answer 1.00V.
struct ScaleRig : ExternalRig {
    ScaleRig()
    {
        answer = [this](char letter) { return letter == 'V' ? wideband : QByteArray("1.00V"); };
    }
    QString scaleKey(int channel, const char* key) const
    {
        return settings.store->ReadSetting(QStringLiteral("ExSensor%1Scale").arg(channel), QLatin1String(key));
    }
    void writeScale(int channel, const QStringList& values)
    {
        const char* keys[] = {"V1", "F1", "V2", "F2", "Unit", "Decimals"};
        for (int i = 0; i < values.size(); ++i)
            settings.store->WriteSetting(QStringLiteral("ExSensor%1Scale").arg(channel), QLatin1String(keys[i]),
                                         values[i]);
    }
    QByteArray wideband = "2.34V";
};

// Connected and polling with every box checked, one round read.
void poll(ScaleRig& r, ExternalSensorsWindow& w)
{
    findButton(&w, QStringLiteral("Connect/Disconnect"))->click();
    for (int n = 1; n <= 8; ++n)
        w.checkBox(n)->setChecked(true);
    findButton(&w, QStringLiteral("Start"))->click();
    w.sensors().link().ChannelRequestTimer.stop();
    r.round();
}

QString accessibleText(QWidget* w, QAccessible::Text t)
{
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(w);
    return a ? a->text(t) : QString();
}

void setTextAccessibly(QWidget* w, const QString& text)
{
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(w);
    QVERIFY(a && a->editableTextInterface() && a->textInterface());
    a->editableTextInterface()->replaceText(0, a->textInterface()->characterCount(), text);
}

void pressAccessibly(QWidget* w)
{
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(w);
    QVERIFY(a && a->actionInterface());
    a->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
}

// The gauge window shown, and the Channel Scale window open on it for a gauge.
ChannelScaleWindow* openShown(ExternalSensorsWindow& w, int channel)
{
    w.show();
    w.editScale(channel);
    ChannelScaleWindow* d = w.channelScaleWindow();
    if (!QTest::qWaitForWindowExposed(d))
        return nullptr;
    return d;
}

QStringList fieldTexts(ChannelScaleWindow* d)
{
    QStringList t;
    for (ScaleField f : {ScaleField::Volts1, ScaleField::Figure1, ScaleField::Volts2, ScaleField::Figure2, ScaleField::Unit})
        t << d->field(f)->text();
    return t << QString::number(d->decimalsBox()->value());
}

void setFields(ChannelScaleWindow* d, const QStringList& texts)
{
    const ScaleField fields[] = {ScaleField::Volts1, ScaleField::Figure1, ScaleField::Volts2, ScaleField::Figure2,
                                 ScaleField::Unit};
    for (int i = 0; i < 5; ++i)
        d->field(fields[i])->setText(texts[i]);
    d->decimalsBox()->setValue(texts[5].toInt());
}
}  // namespace

class ChannelScaleTest : public QObject {
    Q_OBJECT
private slots:
    void init() { dialogs.install(); }
    void cleanup() { dialogs.uninstall(); }
    void everyGaugeHasAScaleButtonAndAnEmptyFigure();
    void theWindowsFieldsAndButtons();
    void presetsFillTheFieldsOnly();
    void okSavesAndTheGaugeShowsTheFigureBesideItsReading();
    void theFigureFollowsTheReadingBox();
    void equalVoltsAreRefusedAndNothingIsSaved();
    void aWrongNumberPutsTheFocusOnItsField();
    void noneRemovesTheScale();
    void cancelAndEscapeKeepTheScale();
    void enterIsOk();
    void keyboardAndAssistiveTechnologyOpenAndFillIt();
    void scalesAreLoadedFromTheSettings();
    void aBrokenSettingIsNoScale();
    void controllerKeepsFiguresPerChannel();
    void layoutIsWholeWithAScaledGauge();

private:
    AnsweredDialogs dialogs;
    QStringList& boxes = dialogs.boxes;
};

void ChannelScaleTest::everyGaugeHasAScaleButtonAndAnEmptyFigure()
{
    ScaleRig r;
    ExternalSensorsWindow w(r.forWindow());
    for (int n = 1; n <= 8; ++n) {
        QPushButton* b = w.scaleButton(n);
        QVERIFY(b);
        QCOMPARE(b->objectName(), QStringLiteral("ScaleButton%1").arg(n));
        QCOMPARE(b->text(), QStringLiteral("Scale..."));
        QCOMPARE(accessibleText(b, QAccessible::Name), QStringLiteral("Scale..."));
        QVERIFY(b->focusPolicy() & Qt::TabFocus);
        QCOMPARE(w.figureLabel(n)->objectName(), QStringLiteral("ExternalFigure%1").arg(n));
        QCOMPARE(w.figureLabel(n)->text(), QString());
        QCOMPARE(w.figureLabel(n)->textFormat(), Qt::PlainText);
    }
    QCOMPARE(accessibleText(w.scaleButton(2), QAccessible::Description), QStringLiteral("Channel scale of Boost PSI"));
    QVERIFY(!w.channelScaleWindow());
}

void ChannelScaleTest::theWindowsFieldsAndButtons()
{
    ScaleRig r;
    ExternalSensorsWindow w(r.forWindow());
    w.show();
    w.scaleButton(4)->click();
    ChannelScaleWindow* d = w.channelScaleWindow();
    QVERIFY(d);
    QVERIFY(d->isVisible());
    QCOMPARE(d->windowTitle(), QStringLiteral("Channel Scale - Wideband L"));
    QCOMPARE(d->channel(), 4);
    QCOMPARE(d->windowModality(), Qt::WindowModal);

    // Each field has its caption as a label that leads to it, and as its accessible name.
    QStringList captions;
    for (QLabel* l : d->findChildren<QLabel*>())
        if (l->buddy()) {
            captions << l->text();
            QCOMPARE(l->buddy()->accessibleName(), l->text());
        }
    QCOMPARE(captions, (QStringList{"Volts 1", "Figure 1", "Volts 2", "Figure 2", "Unit", "Decimals"}));
    QCOMPARE(d->findChildren<QLabel*>().size(), 7);  // and the line about the two points
    QCOMPARE(d->decimalsBox()->minimum(), 0);
    QCOMPARE(d->decimalsBox()->maximum(), 4);
    QCOMPARE(d->field(ScaleField::Volts1)->accessibleName(), QStringLiteral("Volts 1"));
    for (const char* caption : {"Wideband 0-5 V", "Pressure 0.5-4.5 V", "None", "OK", "Cancel"})
        QVERIFY2(findButton(d, QString::fromLatin1(caption)), caption);
    QVERIFY(findButton(d, QStringLiteral("OK"))->isDefault());
    // Without a scale: empty fields, two decimals to start with.
    QCOMPARE(fieldTexts(d), (QStringList{"", "", "", "", "", "2"}));

    // The one window serves every gauge.
    d->reject();
    w.scaleButton(7)->click();
    QCOMPARE(w.channelScaleWindow(), d);
    QCOMPARE(d->windowTitle(), QStringLiteral("Channel Scale - Spare"));
    QCOMPARE(d->channel(), 7);
    QCOMPARE(w.findChildren<ChannelScaleWindow*>().size(), 1);
}

void ChannelScaleTest::presetsFillTheFieldsOnly()
{
    ScaleRig r;
    ExternalSensorsWindow w(r.forWindow());
    w.editScale(2);
    ChannelScaleWindow* d = w.channelScaleWindow();
    findButton(d, QStringLiteral("Wideband 0-5 V"))->click();
    QCOMPARE(fieldTexts(d), (QStringList{"0", "10", "5", "20", "AFR", "2"}));
    findButton(d, QStringLiteral("Pressure 0.5-4.5 V"))->click();
    QCOMPARE(fieldTexts(d), (QStringList{"0.5", "0", "4.5", "100", "psi", "1"}));
    QVERIFY(d->isVisible());
    QCOMPARE(r.scaleKey(2, "V1"), QString());
    QVERIFY(!w.sensors().scale(2));
    QCOMPARE(w.figureLabel(2)->text(), QString());
}

void ChannelScaleTest::okSavesAndTheGaugeShowsTheFigureBesideItsReading()
{
    ScaleRig r;
    ExternalSensorsWindow w(r.forWindow());
    w.show();
    poll(r, w);
    QCOMPARE(w.readingBox(4)->text(), QStringLiteral("2.34V"));
    QCOMPARE(w.bar(4)->value(), 2);
    const QString barText = w.bar(4)->text();

    w.scaleButton(4)->click();
    ChannelScaleWindow* d = w.channelScaleWindow();
    findButton(d, QStringLiteral("Wideband 0-5 V"))->click();
    findButton(d, QStringLiteral("OK"))->click();
    QVERIFY(!d->isVisible());
    QVERIFY(boxes.isEmpty());

    QCOMPARE(w.figureLabel(4)->text(), QStringLiteral("14.68 AFR"));
    QCOMPARE(w.readingBox(4)->text(), QStringLiteral("2.34V"));
    QCOMPARE(w.bar(4)->value(), 2);
    QCOMPARE(w.bar(4)->text(), barText);
    for (int n : {1, 2, 3, 5, 6, 7, 8})
        QCOMPARE(w.figureLabel(n)->text(), QString());
    // The label stands beside the reading: under it, inside the same gauge.
    QCOMPARE(w.figureLabel(4)->parentWidget(), w.readingBox(4)->parentWidget());
    QVERIFY(w.figureLabel(4)->geometry().top() >= w.readingBox(4)->geometry().bottom());

    const QStringList keys{"V1", "F1", "V2", "F2", "Unit", "Decimals"};
    QStringList saved;
    for (const QString& k : keys)
        saved << r.scaleKey(4, qPrintable(k));
    QCOMPARE(saved, (QStringList{"0", "10", "5", "20", "AFR", "2"}));
    QCOMPARE(r.scaleKey(3, "V1"), QString());

    // Opened again, the fields show the saved scale.
    w.scaleButton(4)->click();
    QCOMPARE(fieldTexts(d), (QStringList{"0", "10", "5", "20", "AFR", "2"}));
    d->reject();
}

void ChannelScaleTest::theFigureFollowsTheReadingBox()
{
    ScaleRig r;
    ExternalSensorsWindow w(r.forWindow());
    poll(r, w);
    w.editScale(4);
    ChannelScaleWindow* d = w.channelScaleWindow();
    findButton(d, QStringLiteral("Pressure 0.5-4.5 V"))->click();
    findButton(d, QStringLiteral("OK"))->click();
    QCOMPARE(w.figureLabel(4)->text(), QStringLiteral("46.0 psi"));

    r.wideband = "4.87V";
    r.round();
    QCOMPARE(w.readingBox(4)->text(), QStringLiteral("4.87V"));
    QCOMPARE(w.figureLabel(4)->text(), QStringLiteral("109.3 psi"));  // beyond the second point
    QCOMPARE(w.bar(4)->value(), 5);
    r.wideband = "0.25V";
    r.round();
    QCOMPARE(w.figureLabel(4)->text(), QStringLiteral("-6.2 psi"));  // -6.25: half up is towards the larger
    QCOMPARE(w.bar(4)->value(), 0);

    // No number, no figure; the bar keeps its value as before.
    r.wideband = "";
    r.round();
    QCOMPARE(w.readingBox(4)->text(), QString());
    QCOMPARE(w.figureLabel(4)->text(), QString());
    r.wideband = "garbage";
    r.round();
    QCOMPARE(w.figureLabel(4)->text(), QString());

    // Stop puts the idle text into the box, and the figure follows.
    findButton(&w, QStringLiteral("Stop"))->click();
    QCOMPARE(w.readingBox(4)->text(), QStringLiteral("0.00V"));
    QCOMPARE(w.figureLabel(4)->text(), QStringLiteral("-12.5 psi"));
}

void ChannelScaleTest::equalVoltsAreRefusedAndNothingIsSaved()
{
    ScaleRig r;
    ExternalSensorsWindow w(r.forWindow());
    ChannelScaleWindow* d = openShown(w, 4);
    QVERIFY(d && d->isVisible());
    setFields(d, {"2.5", "10", "2.50", "20", "AFR", "2"});
    findButton(d, QStringLiteral("OK"))->click();
    QCOMPARE(boxes,
             QStringList{QStringLiteral("Volts 1 and Volts 2 are the same: the two points need two different voltages.")});
    QVERIFY(d->isVisible());
    QCOMPARE(d->focusWidget(), d->field(ScaleField::Volts2));
    QCOMPARE(r.scaleKey(4, "V1"), QString());
    QVERIFY(!w.sensors().scale(4));
    QCOMPARE(w.figureLabel(4)->text(), QString());

    // Put right, OK takes it.
    d->field(ScaleField::Volts2)->setText(QStringLiteral("4.5"));
    findButton(d, QStringLiteral("OK"))->click();
    QVERIFY(!d->isVisible());
    QCOMPARE(r.scaleKey(4, "V2"), QStringLiteral("4.5"));
    QCOMPARE(w.figureLabel(4)->text(), QStringLiteral("-2.50 AFR"));  // 0.00V on the line through (2.5, 10), (4.5, 20)
}

void ChannelScaleTest::aWrongNumberPutsTheFocusOnItsField()
{
    ScaleRig r;
    ExternalSensorsWindow w(r.forWindow());
    ChannelScaleWindow* d = openShown(w, 1);
    QVERIFY(d && d->isVisible());
    setFields(d, {"0.5", "0", "4.5", "", "psi", "1"});
    findButton(d, QStringLiteral("OK"))->click();
    QCOMPARE(boxes, QStringList{QStringLiteral("Figure 2 must be a number, such as 100.")});
    QCOMPARE(d->focusWidget(), d->field(ScaleField::Figure2));
    QVERIFY(d->isVisible());
    QVERIFY(!w.sensors().scale(1));

    // The number boxes take no letters as they are typed.
    d->field(ScaleField::Figure1)->clear();
    QTest::keyClicks(d->field(ScaleField::Figure1), QStringLiteral("1a2,5x"));
    QCOMPARE(d->field(ScaleField::Figure1)->text(), QStringLiteral("12,5"));
    // The unit is short.
    QCOMPARE(d->field(ScaleField::Unit)->maxLength(), 8);
    d->reject();
}

void ChannelScaleTest::noneRemovesTheScale()
{
    ScaleRig r;
    r.writeScale(4, {"0", "10", "5", "20", "AFR", "2"});
    r.writeScale(5, {"0.5", "0", "4.5", "100", "psi", "1"});
    ExternalSensorsWindow w(r.forWindow());
    QCOMPARE(w.figureLabel(4)->text(), QStringLiteral("10.00 AFR"));
    w.editScale(4);
    ChannelScaleWindow* d = w.channelScaleWindow();
    findButton(d, QStringLiteral("None"))->click();
    QVERIFY(!d->isVisible());
    QCOMPARE(w.figureLabel(4)->text(), QString());
    QVERIFY(!w.sensors().scale(4));
    QVERIFY(r.settings.store->keys(QStringLiteral("ExSensor4Scale")).isEmpty());
    // The other gauge keeps its own.
    QCOMPARE(w.figureLabel(5)->text(), QStringLiteral("-12.5 psi"));
    QCOMPARE(r.scaleKey(5, "Unit"), QStringLiteral("psi"));
    // Opened again: empty fields.
    w.editScale(4);
    QCOMPARE(fieldTexts(d), (QStringList{"", "", "", "", "", "2"}));
    d->reject();
}

void ChannelScaleTest::cancelAndEscapeKeepTheScale()
{
    ScaleRig r;
    r.writeScale(4, {"0", "10", "5", "20", "AFR", "2"});
    ExternalSensorsWindow w(r.forWindow());
    ChannelScaleWindow* d = openShown(w, 4);
    QVERIFY(d && d->isVisible());
    findButton(d, QStringLiteral("Pressure 0.5-4.5 V"))->click();
    findButton(d, QStringLiteral("Cancel"))->click();
    QVERIFY(!d->isVisible());
    QCOMPARE(r.scaleKey(4, "Unit"), QStringLiteral("AFR"));
    QCOMPARE(w.figureLabel(4)->text(), QStringLiteral("10.00 AFR"));

    w.editScale(4);
    QCOMPARE(fieldTexts(d), (QStringList{"0", "10", "5", "20", "AFR", "2"}));  // not what Cancel dropped
    findButton(d, QStringLiteral("Pressure 0.5-4.5 V"))->click();
    QTest::keyClick(d->field(ScaleField::Unit), Qt::Key_Escape);
    QVERIFY(!d->isVisible());
    QCOMPARE(r.scaleKey(4, "V1"), QStringLiteral("0"));
    QCOMPARE(w.sensors().scale(4), std::optional<ChannelScale>(kWideband));
    QVERIFY(boxes.isEmpty());
}

void ChannelScaleTest::enterIsOk()
{
    ScaleRig r;
    ExternalSensorsWindow w(r.forWindow());
    ChannelScaleWindow* d = openShown(w, 3);
    QVERIFY(d && d->isVisible());
    setFields(d, {"0.5", "0", "4.5", "150", "psi", "0"});
    QTest::keyClick(d->field(ScaleField::Figure2), Qt::Key_Return);
    QVERIFY(!d->isVisible());
    QCOMPARE(r.scaleKey(3, "F2"), QStringLiteral("150"));
    QCOMPARE(w.figureLabel(3)->text(), QStringLiteral("-19 psi"));  // -18.75

    // From the Decimals box as well.
    w.editScale(3);
    d->decimalsBox()->setFocus();
    d->decimalsBox()->setValue(2);
    QTest::keyClick(d->decimalsBox(), Qt::Key_Enter);
    QVERIFY(!d->isVisible());
    QCOMPARE(r.scaleKey(3, "Decimals"), QStringLiteral("2"));
    QCOMPARE(w.figureLabel(3)->text(), QStringLiteral("-18.75 psi"));
}

void ChannelScaleTest::keyboardAndAssistiveTechnologyOpenAndFillIt()
{
    ScaleRig r;
    ExternalSensorsWindow w(r.forWindow());
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    // Space on the focused button opens it, with the focus in Volts 1.
    w.scaleButton(2)->setFocus();
    QTest::keyClick(w.scaleButton(2), Qt::Key_Space);
    ChannelScaleWindow* d = w.channelScaleWindow();
    QVERIFY(d && d->isVisible());
    QCOMPARE(d->channel(), 2);
    QCOMPARE(d->focusWidget(), d->field(ScaleField::Volts1));
    // Tab goes through the fields in order.
    QStringList order;
    for (int i = 0; i < 6; ++i) {
        order << d->focusWidget()->accessibleName();
        QTest::keyClick(d->focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(order, (QStringList{"Volts 1", "Figure 1", "Volts 2", "Figure 2", "Unit", "Decimals"}));
    d->reject();

    // A screen reader presses the button, a preset and OK, and edits a field.
    // (A press is a click that shows on screen first: it comes a moment later.)
    pressAccessibly(w.scaleButton(2));
    QTRY_VERIFY(d->isVisible());
    pressAccessibly(findButton(d, QStringLiteral("Pressure 0.5-4.5 V")));
    QTRY_COMPARE(d->field(ScaleField::Unit)->text(), QStringLiteral("psi"));
    setTextAccessibly(d->field(ScaleField::Unit), QStringLiteral("kPa"));
    setTextAccessibly(d->field(ScaleField::Figure2), QStringLiteral("689.5"));
    pressAccessibly(findButton(d, QStringLiteral("OK")));
    QTRY_VERIFY(!d->isVisible());
    QCOMPARE(r.scaleKey(2, "Unit"), QStringLiteral("kPa"));
    QCOMPARE(r.scaleKey(2, "F2"), QStringLiteral("689.5"));
    QCOMPARE(w.figureLabel(2)->text(), QStringLiteral("-86.2 kPa"));  // -86.1875
    QCOMPARE(accessibleText(w.figureLabel(2), QAccessible::Name), QStringLiteral("-86.2 kPa"));
}

void ChannelScaleTest::scalesAreLoadedFromTheSettings()
{
    ScaleRig r;
    r.writeScale(4, {"0", "10", "5", "20", "AFR", "2"});
    r.writeScale(8, {"4", "-40", "1", "110", "C", "0"});
    ExternalSensorsWindow w(r.forWindow());
    QCOMPARE(w.sensors().scale(4), std::optional<ChannelScale>(kWideband));
    QCOMPARE(w.figureLabel(4)->text(), QStringLiteral("10.00 AFR"));  // the idle 0.00V
    QCOMPARE(w.figureLabel(8)->text(), QStringLiteral("160 C"));
    QCOMPARE(w.figureLabel(1)->text(), QString());
    poll(r, w);
    QCOMPARE(w.figureLabel(4)->text(), QStringLiteral("14.68 AFR"));
    QCOMPARE(w.figureLabel(8)->text(), QStringLiteral("110 C"));
    QCOMPARE(w.readingBox(4)->text(), QStringLiteral("2.34V"));
    w.editScale(8);
    QCOMPARE(fieldTexts(w.channelScaleWindow()), (QStringList{"4", "-40", "1", "110", "C", "0"}));
    w.channelScaleWindow()->reject();
}

void ChannelScaleTest::aBrokenSettingIsNoScale()
{
    ScaleRig r;
    r.writeScale(1, {"1", "10", "1", "20", "AFR", "2"});     // one voltage twice
    r.writeScale(2, {"zero", "10", "5", "20", "AFR", "2"});  // no number
    r.writeScale(3, {"0", "10", "5", "20", "AFR", "two"});   // no decimals
    r.writeScale(5, {"0", "10", "5"});                       // keys missing
    r.writeScale(6, {"0,5", "0", "4.5", "100", "psi", "1"}); // a comma is read as the mark
    ExternalSensorsWindow w(r.forWindow());
    for (int n : {1, 2, 3, 5}) {
        QVERIFY(!w.sensors().scale(n));
        QCOMPARE(w.figureLabel(n)->text(), QString());
    }
    QCOMPARE(w.figureLabel(6)->text(), QStringLiteral("-12.5 psi"));
    w.editScale(1);
    QCOMPARE(fieldTexts(w.channelScaleWindow()), (QStringList{"", "", "", "", "", "2"}));
    // OK with a good scale writes the section whole again.
    findButton(w.channelScaleWindow(), QStringLiteral("Wideband 0-5 V"))->click();
    findButton(w.channelScaleWindow(), QStringLiteral("OK"))->click();
    QCOMPARE(r.scaleKey(1, "V2"), QStringLiteral("5"));
    QCOMPARE(w.figureLabel(1)->text(), QStringLiteral("10.00 AFR"));
}

void ChannelScaleTest::controllerKeepsFiguresPerChannel()
{
    ScaleRig r;
    ExternalSensors& s = r.load();
    QSignalSpy figures(&s, &ExternalSensors::figureChanged);
    QCOMPARE(s.scaleCaption(4), QStringLiteral("Channel Scale - Wideband L"));
    s.link().setReading(4, QStringLiteral("2.34V"));
    QCOMPARE(s.figureText(4), QString());
    QCOMPARE(figures.count(), 0);  // no scale, nothing to show

    s.setScale(4, kWideband);
    QCOMPARE(s.figureText(4), QStringLiteral("14.68 AFR"));
    QCOMPARE(figures.count(), 1);
    QCOMPARE(figures.takeFirst().at(0).toInt(), 4);
    s.link().setReading(4, QStringLiteral("2.34V"));  // the same text: no change
    QCOMPARE(figures.count(), 0);
    s.link().setReading(4, QStringLiteral("5.00V"));
    QCOMPARE(s.figureText(4), QStringLiteral("20.00 AFR"));
    QCOMPARE(figures.count(), 1);
    figures.clear();
    // A new scale with the same text still tells the window (its width may change).
    ChannelScale wider = kWideband;
    wider.volts1 = -5.0;
    wider.figure1 = 0.0;
    s.setScale(4, wider);
    QCOMPARE(s.figureText(4), QStringLiteral("20.00 AFR"));
    QCOMPARE(figures.count(), 1);
    QCOMPARE(s.link().bar(4), 5);
    QCOMPARE(s.link().reading(4), QStringLiteral("5.00V"));

    s.setScale(4, std::nullopt);
    QCOMPARE(s.figureText(4), QString());
    QVERIFY(!s.scale(4));
    QVERIFY(!s.scale(0));
    QVERIFY(!s.scale(9));
    QCOMPARE(s.figureText(9), QString());
    s.setScale(9, kWideband);  // ignored
    QVERIFY(r.settings.store->keys(QStringLiteral("ExSensor9Scale")).isEmpty());
}

void ChannelScaleTest::layoutIsWholeWithAScaledGauge()
{
    ScaleRig r;
    r.writeScale(4, {"0", "10", "5", "20", "AFR", "2"});
    r.writeScale(2, {"0.5", "-14.7", "4.5", "30", "psi", "1"});
    r.writeScale(8, {"0", "-1000", "5", "20000", "kPa", "2"});
    ExternalSensorsWindow w(r.forWindow());
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    poll(r, w);
    w.resize(w.minimumSizeHint());
    QTest::qWait(20);
    QCOMPARE(vexorin::ui::layoutProblems(&w), QStringList());
    // The figure fits at both ends of the device's range without moving the gauge.
    const int width = w.figureLabel(8)->width();
    for (const char* reading : {"0.00V", "5.00V", "2.34V"}) {
        w.sensors().link().setReading(8, QString::fromLatin1(reading));
        QTest::qWait(10);
        QCOMPARE(vexorin::ui::layoutProblems(&w), QStringList());
        QCOMPARE(w.figureLabel(8)->width(), width);
    }
    // All bars stand equally tall, scaled or not.
    for (int n = 2; n <= 8; ++n)
        QCOMPARE(w.bar(n)->height(), w.bar(1)->height());
    saveShot(&w, QStringLiteral("external-gauge-monitor-scaled.png"));

    w.editScale(4);
    ChannelScaleWindow* d = w.channelScaleWindow();
    QVERIFY(QTest::qWaitForWindowExposed(d));
    QTest::qWait(20);
    QCOMPARE(vexorin::ui::layoutProblems(d), QStringList());
    saveShot(d, QStringLiteral("channel-scale.png"));
    d->reject();
}

QTEST_MAIN(ChannelScaleTest)
#include "channel_scale_test.moc"
