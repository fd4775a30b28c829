// The editors' windows beyond the spin buttons: the Edit menus and their
// shortcuts, the grid's context menu, a selection drawn by mouse and by
// Shift+arrows, typed figures in the box over the cell (Enter writes, Esc
// cancels), the preview of a block edit with its clamped cells, and a revert
// that asks first.
#include "app_rig.h"
#include "consult/consult_session.h"
#include "rom/bin_viewer.h"
#include "rom/bin_viewer_window.h"
#include "rom/block_preview_window.h"
#include "rom/file_edits.h"
#include "rom/map_grid_widget.h"
#include "rom/map_viewer.h"
#include "rom/map_viewer_window.h"
#include "rom/rom_image.h"
#include "sim/ecu_simulator.h"
#include "ui/binary_files.h"
#include "ui/common_dialog.h"
#include "ui/message_box.h"
#include "ui/number_prompt.h"
#include "widget_helpers.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QTableWidget>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace vexorin::rom;

namespace {
constexpr int kFuelBank = 0x7D00, kTimingBank = 0x7800;
}

class MapEditWindowTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void theEditMenuHoldsItsItemsAndShortcuts();
    void theGridsContextMenuOffersTheBlockEdits();
    void typingADigitStartsAFigureThatEnterWrites();
    void escapeCancelsATypedFigure();
    void aMouseDragAndShiftArrowsDrawTheSelection();
    void thePreviewListsEveryCellAndShadesTheClampedOnes();
    void ctrlZAndCtrlYUndoAndRedo();
    void revertAsksFirst();
    void theBinViewerHasTheJournalItems();

private:
    QString writeRom();
    void openAndEdit(MapViewerWindow& w, int tab);
    QTemporaryDir dir_;
    QString path_;
    QStringList boxes_;
    QStringList questions_;
    bool answer_ = true;
    std::vector<std::uint8_t> onDisk() const
    {
        std::vector<std::uint8_t> b;
        readImage(path_.toStdString(), b);
        return b;
    }
};

void MapEditWindowTest::init()
{
    MessageBoxes::setPresenter([this](const QString& t, const QString&, bool) { boxes_ << t; });
    MessageBoxes::setQuestionAnswerer([this](const QString& t) {
        questions_ << t;
        return answer_;
    });
    mCommonDialog::setAnswerer([this](const mCommonDialog::DialogRequest&, bool) { return path_; });
    path_ = writeRom();
}

void MapEditWindowTest::cleanup()
{
    MessageBoxes::setPresenter({});
    MessageBoxes::setQuestionAnswerer({});
    mCommonDialog::setAnswerer({});
    vexorin::ui::setNumberAnswerer({});
    BlockPreviewWindow::setAnswerer({});
    FileEdits::shared().forgetAll();
    boxes_.clear();
    questions_.clear();
    answer_ = true;
}

QString MapEditWindowTest::writeRom()
{
    auto rom = vexorin::sim::makeSyntheticRom(3);
    for (int i = 0; i < 256; ++i) {
        rom[std::size_t(kFuelBank + i)] = 20;              // 12.71
        rom[std::size_t(kTimingBank + i)] = std::uint8_t(i % 40);
    }
    const QString path = dir_.filePath(QStringLiteral("edit.bin"));
    vexorin::files::WriteBytes(path.toStdString(), std::vector<std::uint8_t>(rom.begin(), rom.end()), nullptr);
    return path;
}

void MapEditWindowTest::openAndEdit(MapViewerWindow& w, int tab)
{
    w.show();
    w.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&w));
    w.loadBinFile(false);
    w.tabs()->setCurrentIndex(tab);
    w.findChild<QCheckBox*>(QStringLiteral("EditMode") + QString::number(tab + 1))->click();
    QVERIFY(w.viewer().tab(tab).editMode);
    boxes_.clear();
}

void MapEditWindowTest::theEditMenuHoldsItsItemsAndShortcuts()
{
    AppRig app;
    MapViewerWindow w(app.core.session());
    auto* bar = w.findChild<QMenuBar*>();
    QStringList menus;
    for (QAction* a : bar->actions())
        menus << a->text();
    QCOMPARE(menus, (QStringList{"&File", "&Edit", "&Options", "&View"}));
    const QStringList items = {"Undo", "Redo", "Revert to Backup", "Set to...", "Add...", "Scale by %...",
                               "Interpolate", "Smooth"};
    QStringList shown;
    for (QAction* a : bar->actions()[1]->menu()->actions())
        if (!a->isSeparator())
            shown << a->text();
    QCOMPARE(shown, items);
    QCOMPARE(w.action(QStringLiteral("Undo"))->shortcut(), QKeySequence(QStringLiteral("Ctrl+Z")));
    QCOMPARE(w.action(QStringLiteral("Redo"))->shortcuts(),
             (QList<QKeySequence>{QKeySequence(QStringLiteral("Ctrl+Y")), QKeySequence(QStringLiteral("Ctrl+Shift+Z"))}));
    // Nothing to take back, no file, no selection: all off.
    for (const char* name : {"Undo", "Redo", "RevertToBackup", "SetTo", "Smooth"})
        QVERIFY2(!w.action(QLatin1String(name))->isEnabled(), name);
    openAndEdit(w, 0);
    QVERIFY(w.action(QStringLiteral("RevertToBackup"))->isEnabled());
    QVERIFY(w.action(QStringLiteral("SetTo"))->isEnabled() == w.viewer().blockEditAllowed(0));
    w.viewer().selectCell(0, 3, 3);
    QVERIFY(w.action(QStringLiteral("Smooth"))->isEnabled());
    w.viewer().selectCell(0, 0, 3);  // a heading: no block
    QVERIFY(!w.action(QStringLiteral("Smooth"))->isEnabled());
    // The menus that were there before keep their items.
    QVERIFY(w.action(QStringLiteral("LiveTrace")));
    QCOMPARE(bar->actions()[0]->menu()->actions().size(), 1);
}

void MapEditWindowTest::theGridsContextMenuOffersTheBlockEdits()
{
    AppRig app;
    MapViewerWindow w(app.core.session());
    openAndEdit(w, 0);
    QStringList offered;
    QTimer::singleShot(0, [&] {
        if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
            for (QAction* a : menu->actions())
                offered << a->text();
            menu->close();
        }
    });
    emit w.grid(0)->customContextMenuRequested(QPoint(80, 60));
    QCOMPARE(offered, (QStringList{"Set to...", "Add...", "Scale by %...", "Interpolate", "Smooth"}));
}

void MapEditWindowTest::typingADigitStartsAFigureThatEnterWrites()
{
    AppRig app;
    MapViewerWindow w(app.core.session());
    openAndEdit(w, 0);
    const QRect cell = w.grid(0)->visualRect(w.grid(0)->model()->index(4, 6));
    QTest::mouseClick(w.grid(0)->viewport(), Qt::LeftButton, {}, cell.center());
    w.grid(0)->setFocus();
    QTest::keyClicks(w.grid(0), QStringLiteral("1"));
    QVERIFY(!w.overlayBox(0)->isReadOnly());
    QVERIFY(w.overlayBox(0)->hasFocus());
    QTest::keyClicks(w.overlayBox(0), QStringLiteral("3.5x"));  // the x is not taken
    QCOMPARE(w.overlayBox(0)->text(), QStringLiteral("13.5"));
    saveShot(&w, QStringLiteral("map-viewer-typed-figure.png"));
    QTest::keyClick(w.overlayBox(0), Qt::Key_Return);
    QVERIFY(w.overlayBox(0)->isReadOnly());
    const int byte = onDisk()[std::size_t(kFuelBank + 3 * 16 + 5)];
    QCOMPARE(byte, byteForFigure(FigureKind::Fuel, 13.5));
    QCOMPARE(w.grid(0)->item(4, 6)->text(), QString::fromStdString(FormatAfr(byte)));
    QCOMPARE(w.overlayBox(0)->text(), w.grid(0)->item(4, 6)->text());
    QVERIFY(w.grid(0)->hasFocus());
    // Enter opens the figure as it stands; a minus over a fuel cell is refused on Enter.
    QTest::keyClick(w.grid(0), Qt::Key_Return);
    QCOMPARE(w.overlayBox(0)->text(), w.grid(0)->item(4, 6)->text());
    QCOMPARE(w.overlayBox(0)->selectedText(), w.overlayBox(0)->text());
    QTest::keyClicks(w.overlayBox(0), QStringLiteral("-3"));
    QTest::keyClick(w.overlayBox(0), Qt::Key_Enter);
    QCOMPARE(boxes_, QStringList{QStringLiteral("The figure must be between 6.56 and 19.60.")});
    QCOMPARE(int(onDisk()[std::size_t(kFuelBank + 3 * 16 + 5)]), byte);
    // Arrows move the selection; Ctrl+Up steps the cell as the spin button's up.
    QTest::keyClick(w.grid(0), Qt::Key_Right);
    QCOMPARE(w.viewer().tab(0).overlayColumn, 7);
    QCOMPARE(*w.viewer().tab(0).selection, (MapSelection{4, 7, 4, 7}));
    QTest::keyClick(w.grid(0), Qt::Key_Up, Qt::ControlModifier);
    QCOMPARE(int(onDisk()[std::size_t(kFuelBank + 3 * 16 + 6)]), 19);
}

void MapEditWindowTest::escapeCancelsATypedFigure()
{
    AppRig app;
    MapViewerWindow w(app.core.session());
    openAndEdit(w, 4);
    w.viewer().selectCell(4, 2, 2);
    const QString before = w.grid(4)->item(2, 2)->text();
    w.grid(4)->setFocus();
    QTest::keyClick(w.grid(4), Qt::Key_Minus);
    QTest::keyClicks(w.overlayBox(4), QStringLiteral("5"));
    QCOMPARE(w.overlayBox(4)->text(), QStringLiteral("-5"));
    QTest::keyClick(w.overlayBox(4), Qt::Key_Escape);
    QVERIFY(w.overlayBox(4)->isReadOnly());
    QCOMPARE(w.overlayBox(4)->text(), before);
    QCOMPARE(int(onDisk()[std::size_t(kTimingBank + 17)]), 17);
    // Leaving the box writes nothing either.
    QTest::keyClicks(w.grid(4), QStringLiteral("7"));
    w.tabs()->setFocus();
    QVERIFY(w.overlayBox(4)->isReadOnly());
    QCOMPARE(int(onDisk()[std::size_t(kTimingBank + 17)]), 17);
    QVERIFY(!w.viewer().canUndo());
}

void MapEditWindowTest::aMouseDragAndShiftArrowsDrawTheSelection()
{
    AppRig app;
    MapViewerWindow w(app.core.session());
    openAndEdit(w, 4);
    MapGridWidget* grid = w.grid(4);
    const auto centre = [grid](int r, int c) { return grid->visualRect(grid->model()->index(r, c)).center(); };
    QTest::mousePress(grid->viewport(), Qt::LeftButton, {}, centre(3, 3));
    QMouseEvent move(QEvent::MouseMove, centre(6, 8), grid->viewport()->mapToGlobal(centre(6, 8)), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(grid->viewport(), &move);
    QTest::mouseRelease(grid->viewport(), Qt::LeftButton, {}, centre(6, 8));
    QCOMPARE(*w.viewer().tab(4).selection, (MapSelection{3, 3, 6, 8}));
    QCOMPARE(*grid->selection(), (MapSelection{3, 3, 6, 8}));
    QCOMPARE(w.viewer().tab(4).overlayRow, 3);  // the cell pressed first stays the edited one
    saveShot(&w, QStringLiteral("map-viewer-selection.png"));
    grid->setFocus();
    QTest::keyClick(grid, Qt::Key_Left, Qt::ShiftModifier);
    QTest::keyClick(grid, Qt::Key_Down, Qt::ShiftModifier);
    QCOMPARE(*w.viewer().tab(4).selection, (MapSelection{3, 3, 7, 7}));
    // A plain arrow collapses it to the next cell; headings never join one.
    QTest::keyClick(grid, Qt::Key_Up);
    QCOMPARE(*w.viewer().tab(4).selection, (MapSelection{2, 3, 2, 3}));
    QTest::keyClick(grid, Qt::Key_Up);
    QCOMPARE(*w.viewer().tab(4).selection, (MapSelection{1, 3, 1, 3}));
    QTest::keyClick(grid, Qt::Key_Up);
    QVERIFY(!w.viewer().tab(4).selection);
    QVERIFY(!grid->selection());
    QCOMPARE(w.findChild<QLabel*>(QStringLiteral("EditName5"))->text(), QStringLiteral("TP"));
}

void MapEditWindowTest::thePreviewListsEveryCellAndShadesTheClampedOnes()
{
    AppRig app;
    MapViewerWindow w(app.core.session());
    openAndEdit(w, 4);
    w.viewer().selectCell(4, 3, 5);
    w.viewer().extendSelection(4, 4, 8);  // degrees 36..39 and (52..55) % 40 = 12..15
    QStringList titles;
    vexorin::ui::setNumberAnswerer([&](const QString& title) {
        titles << title;
        return std::optional<double>(title == QLatin1String("Add") ? 100 : 300);
    });
    int rows = -1, shaded = 0;
    QString firstNew, windowTitle;
    BlockPreviewWindow::setAnswerer([&](BlockPreviewWindow& preview) {
        preview.show();
        saveShot(&preview, QStringLiteral("map-viewer-block-preview.png"));
        windowTitle = preview.windowTitle();
        rows = preview.table()->rowCount();
        for (int i = 0; i < rows; ++i)
            shaded += preview.table()->item(i, 3)->background().color() == BlockPreviewWindow::kClampedBack;
        firstNew = preview.table()->item(0, 3)->text();
        return false;  // Cancel
    });
    const auto before = onDisk();
    w.action(QStringLiteral("ScaleBy"))->trigger();
    QCOMPARE(titles, QStringList{QStringLiteral("Scale by %")});
    QVERIFY(!w.viewer().canUndo());
    QCOMPARE(windowTitle, QStringLiteral("Preview - Scale by %"));
    QCOMPARE(rows, 8);
    QCOMPARE(shaded, 4);  // four times 36..39 passes 128; four times 12..15 does not
    QCOMPARE(firstNew, QStringLiteral("128"));
    QCOMPARE(onDisk(), before);

    // Add 100 degrees: the first row (36..39 → 136..139) is clamped at 128, the second (12..15 → 112..115) not.
    BlockPreviewWindow::setAnswerer([&](BlockPreviewWindow& preview) {
        shaded = 0;
        for (int i = 0; i < preview.table()->rowCount(); ++i)
            shaded += preview.table()->item(i, 3)->background().color() == BlockPreviewWindow::kClampedBack;
        firstNew = preview.table()->item(0, 3)->text();
        return true;  // OK
    });
    w.action(QStringLiteral("Add"))->trigger();
    QCOMPARE(shaded, 4);
    QCOMPARE(firstNew, QStringLiteral("128"));
    const auto after = onDisk();
    for (int c = 5; c <= 8; ++c) {
        QCOMPARE(int(after[std::size_t(kTimingBank + 2 * 16 + c - 1)]), 128);
        QCOMPARE(int(after[std::size_t(kTimingBank + 3 * 16 + c - 1)]), (48 + c - 1) % 40 + 100);
    }
    QCOMPARE(w.grid(4)->item(4, 5)->text(), QString::number((48 + 4) % 40 + 100));
}

void MapEditWindowTest::ctrlZAndCtrlYUndoAndRedo()
{
    AppRig app;
    MapViewerWindow w(app.core.session());
    openAndEdit(w, 0);
    const auto before = onDisk();
    w.viewer().selectCell(0, 2, 2);
    QVERIFY(w.viewer().typeFigure(0, QStringLiteral("15")));
    const auto after = onDisk();
    QVERIFY(w.action(QStringLiteral("Undo"))->isEnabled());
    QTest::keyClick(w.grid(0), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(onDisk(), before);
    QCOMPARE(w.grid(0)->item(2, 2)->text(), QStringLiteral("12.71"));
    QVERIFY(!w.action(QStringLiteral("Undo"))->isEnabled());
    QVERIFY(w.action(QStringLiteral("Redo"))->isEnabled());
    QTest::keyClick(w.grid(0), Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(onDisk(), after);
    QTest::keyClick(w.grid(0), Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(w.grid(0), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(onDisk(), after);
}

void MapEditWindowTest::revertAsksFirst()
{
    AppRig app;
    MapViewerWindow w(app.core.session());
    openAndEdit(w, 0);
    const auto original = onDisk();
    w.viewer().selectCell(0, 2, 2);
    w.viewer().typeFigure(0, QStringLiteral("15"));
    w.viewer().selectCell(0, 2, 3);
    w.viewer().typeFigure(0, QStringLiteral("16"));
    answer_ = false;
    w.action(QStringLiteral("RevertToBackup"))->trigger();
    const QString question =
        QStringLiteral("Write back 2 bytes from %1?").arg(dir_.filePath(QStringLiteral("edit.orig.bin")));
    QCOMPARE(questions_, QStringList{question});
    QVERIFY(onDisk() != original);
    answer_ = true;
    w.action(QStringLiteral("RevertToBackup"))->trigger();
    QCOMPARE(onDisk(), original);
    QCOMPARE(w.grid(0)->item(2, 3)->text(), QStringLiteral("12.71"));
}

void MapEditWindowTest::theBinViewerHasTheJournalItems()
{
    BinViewerWindow w;
    w.show();
    w.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&w));
    auto* bar = w.findChild<QMenuBar*>();
    QStringList menus;
    for (QAction* a : bar->actions())
        menus << a->text();
    QCOMPARE(menus, (QStringList{"File", "Edit", "Tools"}));
    QStringList items;
    for (QAction* a : bar->actions()[1]->menu()->actions())
        items << a->text();
    QCOMPARE(items, (QStringList{"Undo", "Redo", "Revert to Backup"}));
    QVERIFY(!w.action(QStringLiteral("RevertToBackup"))->isEnabled());
    w.openBinFile();
    w.viewer().selectBank(listIndexOfBank(253));
    w.viewer().setEditMode(true);
    w.viewer().clickCell(1, 1);
    w.viewer().doubleClickCell(1, 1);
    w.viewer().editBoxKey('7');
    w.viewer().editBoxKey('E');
    w.viewer().editBoxFocusLost();
    QCOMPARE(int(onDisk()[std::size_t(kFuelBank)]), 0x7E);
    QVERIFY(w.action(QStringLiteral("Undo"))->isEnabled());
    QTest::keyClick(&w, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(int(onDisk()[std::size_t(kFuelBank)]), 20);
    QCOMPARE(w.viewer().grid().text(1, 1), QStringLiteral("14"));
    QTest::keyClick(&w, Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(int(onDisk()[std::size_t(kFuelBank)]), 0x7E);
    w.action(QStringLiteral("RevertToBackup"))->trigger();
    QCOMPARE(questions_.size(), 1);
    QCOMPARE(int(onDisk()[std::size_t(kFuelBank)]), 20);
}

QTEST_MAIN(MapEditWindowTest)
#include "map_edit_window_test.moc"
