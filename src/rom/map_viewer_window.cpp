#include "rom/map_viewer_window.h"

#include "rom/block_preview_window.h"
#include "rom/map_grid_widget.h"
#include "rom/map_surface_window.h"
#include "rom/map_viewer.h"
#include "rom/rom_image.h"
#include "ui/common_dialog.h"
#include "ui/event_loop_yield.h"
#include "ui/layout_audit.h"
#include "ui/message_box.h"
#include "ui/number_prompt.h"
#include "ui/owned_dialogs.h"
#include "ui/plain_text.h"
#include "ui/twips.h"
#include "ui/user_input.h"
#include "ui/window_capture.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QFormLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QProgressBar>
#include <QRegularExpressionValidator>
#include <QPushButton>
#include <QStatusBar>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

using vexorin::rom::kMaps;

namespace {

// Tab 0 keeps the plain name; the other tabs add their number 2 to 6.
QString perTabName(const char* name, int tab)
{
    return tab == 0 ? QLatin1String(name) : QLatin1String(name) + QString::number(tab + 1);
}

QString numbered(const char* name, int tab)
{
    return QLatin1String(name) + QString::number(tab + 1);
}

void setBack(QWidget* w, const std::optional<vexorin::rom::Rgb>& color)
{
    if (color) {
        w->setStyleSheet(QStringLiteral("background-color: rgb(%1,%2,%3); color: black;")
                             .arg(color->r).arg(color->g).arg(color->b));
    } else {
        w->setStyleSheet(QString());
    }
}

const struct ViewItem {
    const char* name;
    const char* caption;
} kViewItems[] = {
    {"FuelMapHighOct", "Fuel Map (High Octane)"},
    {"FuelMapHighOctHighGear", "Fuel Map (HighOct/High Gear)"},
    {"FuelMapLowOct", "Fuel Map (Low Octane)"},
    {"FuelMapLowOctHighGear", "Fuel Map (Low Oct/High Gear)"},
    {"TimingMapHighOct", "Timing Map (High Octane)"},
    {"TimgMapLowOct", "Timing Map (Low Octane)"},
};
}  // namespace

MapViewerWindow::MapViewerWindow(ConsultSession& session, int formCount, QWidget* parent)
    : QWidget(parent, Qt::Window), viewer_(new MapViewer(session, formCount, this)), session_(session)
{
    family_ = std::make_shared<QList<QPointer<MapViewerWindow>>>();
    family_->append(this);
    setObjectName(QStringLiteral("MapViewer"));
    setWindowTitle(viewer_->caption());
    auto* v = new QVBoxLayout(this);
    v->setContentsMargins(4, 0, 4, 0);
    buildMenus(this);

    tabs_ = new QTabWidget(this);
    tabs_->setObjectName(QStringLiteral("MapTabs"));
    for (int t = 0; t < MapViewer::kTabs; ++t)
        tabs_->addTab(buildPage(t), QLatin1String(kMaps[std::size_t(t)].tabCaption));
    v->addWidget(tabs_, 1);

    auto* bar = new QStatusBar(this);
    bar->setObjectName(QStringLiteral("StatusBar1"));
    bar->setSizeGripEnabled(false);
    status_ = new QLabel(bar);
    status_->setObjectName(QStringLiteral("MapStatus"));
    bar->addWidget(status_, 1);
    progress_ = new QProgressBar(bar);
    progress_->setObjectName(QStringLiteral("Progress"));
    progress_->setAccessibleName(QStringLiteral("Progress"));
    progress_->setRange(0, MapViewer::kProgressMaximum);
    progress_->setTextVisible(false);
    progress_->setFixedWidth(260);
    bar->addPermanentWidget(progress_);
    v->addWidget(bar);

    MapViewer& mv = *viewer_;
    connect(tabs_, &QTabWidget::currentChanged, this, [this](int t) {
        viewer_->setCurrentTab(t);
        pages_[std::size_t(t)].download->setFocus();
    });
    connect(&mv, &MapViewer::currentTabChanged, tabs_, &QTabWidget::setCurrentIndex);
    connect(&mv, &MapViewer::gridReset, this, [this](int t) {
        grid(t)->showGrid(viewer_->tab(t).grid);
        placeOverlay(t);
    });
    connect(&mv, &MapViewer::cellChanged, this, [this](int t, int r, int c) {
        grid(t)->showCell(viewer_->tab(t).grid, r, c);
        const MapViewer::Tab& tab = viewer_->tab(t);
        if (tab.overlayVisible && tab.overlayRow == r && tab.overlayColumn == c)
            placeOverlay(t);
    });
    connect(&mv, &MapViewer::tabChanged, this, &MapViewerWindow::refreshTab);
    connect(&mv, &MapViewer::journalChanged, this, &MapViewerWindow::updateEditActions);
    connect(&mv, &MapViewer::currentTabChanged, this, &MapViewerWindow::updateEditActions);
    connect(&mv, &MapViewer::statusChanged, this, &MapViewerWindow::refreshStatus);
    connect(&mv, &MapViewer::beep, this, [] { QApplication::beep(); });
    connect(&mv, &MapViewer::message, this, [this](const QString& text, bool exclamation) {
        if (exclamation)
            MessageBoxes::exclamation(this, text);
        else
            MessageBoxes::information(this, text);
    });
    mv.setYield(throttledEventLoop());
    connect(&mv, &MapViewer::compareChanged, this, [this] {
        for (int t = 0; t < MapViewer::kTabs; ++t)
            grid(t)->setCompareTips(viewer_->tab(t).compareTips);
    });
    connect(&mv.trace(), &MapTrace::switched, this, &MapViewerWindow::traceSwitched);
    connect(&mv.trace(), &MapTrace::moved, this, &MapViewerWindow::showTraceMarks);
    traceFade_.setInterval(100);
    connect(&traceFade_, &QTimer::timeout, this, &MapViewerWindow::showTraceMarks);

    resize(kWidthTwips / vexorin::ui::kTwipsPerPixel, kHeightTwips / vexorin::ui::kTwipsPerPixel);
    for (int t = 0; t < MapViewer::kTabs; ++t) {
        grid(t)->showGrid(mv.tab(t).grid);
        refreshTab(t);
    }
    refreshStatus();
    vexorin::ui::keepTextPlain(this);
}

MapViewerWindow::~MapViewerWindow()
{
    viewer_->abortLoad();
    family_->removeAll(this);
}

QList<MapViewerWindow*> MapViewerWindow::family() const
{
    QList<MapViewerWindow*> out;
    for (const QPointer<MapViewerWindow>& w : *family_)
        if (w)
            out.append(w);
    return out;
}

QAction* MapViewerWindow::action(const QString& objectName) const
{
    return findChild<QAction*>(objectName);
}

void MapViewerWindow::buildMenus(QWidget* holder)
{
    auto* menuBar = new QMenuBar(holder);
    auto add = [this](QMenu* menu, const char* name, const char* caption, auto slot) {
        QAction* a = menu->addAction(QLatin1String(caption));
        a->setObjectName(QLatin1String(name));
        connect(a, &QAction::triggered, this, slot);
        return a;
    };
    QMenu* file = menuBar->addMenu(tr("&File"));
    add(file, "Exit", "Exit", [this] { exitViewer(); });

    buildEditMenu(menuBar);

    QMenu* options = menuBar->addMenu(tr("&Options"));
    add(options, "DownloadMapData", "Download Map Data", [this] { viewer_->DownloadMapData(); });
    QAction* live = add(options, "LiveTrace", "Live Trace", [this](bool on) { viewer_->setLiveTrace(on); });
    live->setCheckable(true);
    add(options, "LoadAllMapsFromBINFile", "Load BIN File", [this] { loadBinFile(true); });
    QAction* newViewer = add(options, "OpenNewViewer", "Open New Viewer", [this] { openNewViewer(); });
    newViewer->setEnabled(viewer_->TxtFormCount() == 0);
    add(options, "LoadAllECUDataMaps", "Load All ECU Data Maps", [this] { viewer_->LoadAllECUDataMaps(); });
    options->addSeparator();
    add(options, "CompareWithBinFile", "Compare With BIN File...", [this] { compareWithBinFile(); });
    add(options, "ClearCompare", "Clear Compare", [this] { viewer_->clearCompare(); });

    QMenu* view = menuBar->addMenu(tr("&View"));
    for (int t = 0; t < MapViewer::kTabs; ++t)
        add(view, kViewItems[t].name, kViewItems[t].caption, [this, t] { tabs_->setCurrentIndex(t); });
    static_cast<QVBoxLayout*>(layout())->setMenuBar(menuBar);
}

QWidget* MapViewerWindow::buildPage(int t)
{
    const bool fuel = kMaps[std::size_t(t)].fuel;
    Page& p = pages_[std::size_t(t)];
    p.widget = new QWidget;
    auto* h = new QHBoxLayout(p.widget);
    h->setSpacing(16);  // "Viewing : ..." and the "ECU Data" caption stand apart
    h->setContentsMargins(6, 4, 6, 4);

    // Left: the map, what it shows, and the file.
    auto* left = new QVBoxLayout;
    auto* heading = new QHBoxLayout;
    auto* meaning = new QLabel(fuel ? QStringLiteral("A/F Ratios") : QStringLiteral("Timing"));
    QFont big = meaning->font();
    big.setBold(true);
    big.setPointSizeF(big.pointSizeF() * 1.2);
    meaning->setFont(big);
    heading->addWidget(meaning);
    heading->addStretch(1);
    p.viewing = new QLabel;
    p.viewing->setObjectName(numbered("Viewing", t));
    heading->addWidget(p.viewing);
    left->addLayout(heading);
    p.grid = new MapGridWidget;
    p.grid->setObjectName(numbered("MapGrid", t));
    p.grid->setFixedSize(p.grid->sizeHint());
    left->addWidget(p.grid);
    connect(p.grid, &QTableWidget::cellPressed, this, [this, t](int r, int c) { gridPressed(t, r, c); });
    connect(p.grid, &MapGridWidget::dragged, this, [this, t](int r, int c) {
        if (viewer_->tab(t).grid.enabled)
            viewer_->extendSelection(t, r, c);
    });
    p.grid->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(p.grid, &QWidget::customContextMenuRequested, this, [this, t](const QPoint& at) {
        QMenu menu(this);
        for (const char* name : {"SetTo", "Add", "ScaleBy", "Interpolate", "Smooth"})
            menu.addAction(action(QLatin1String(name)));
        menu.exec(pages_[std::size_t(t)].grid->viewport()->mapToGlobal(at));
    });
    // By keyboard: the arrows move the selected cell, Ctrl+Up and Ctrl+Down step its value.
    p.grid->setFocusPolicy(Qt::StrongFocus);
    p.grid->installEventFilter(this);

    auto* buttons = new QHBoxLayout;
    p.clearMatrix = new QPushButton(QStringLiteral("Clear Matrix"));
    connect(p.clearMatrix, &QPushButton::clicked, this, [this, t] { viewer_->ClearMatrix(t); });
    auto* snapshot = new QPushButton(QStringLiteral("Save Snapshot"));
    connect(snapshot, &QPushButton::clicked, this, &MapViewerWindow::saveSnapshot);
    auto* load = new QPushButton(QStringLiteral("Load BIN File"));
    connect(load, &QPushButton::clicked, this, [this] { loadBinFile(false); });
    auto* view3d = new QPushButton(QStringLiteral("3D View"));
    view3d->setObjectName(numbered("View3D", t));
    view3d->setToolTip(tr("Shows this map as a surface you can turn and zoom"));
    connect(view3d, &QPushButton::clicked, this, [this, t] { show3dView(t); });
    for (QPushButton* b : {p.clearMatrix, snapshot, load, view3d})
        buttons->addWidget(b);
    left->addLayout(buttons);
    left->addStretch(1);
    h->addLayout(left);

    // Right: the ECU download and the edit frame.
    auto* right = new QVBoxLayout;
    right->setSpacing(2);
    auto* ecu = new QGroupBox(QStringLiteral("ECU Data"));
    auto* ecuLayout = new QVBoxLayout(ecu);
    p.download = new QPushButton(QStringLiteral("Download Map Data"));
    connect(p.download, &QPushButton::clicked, this, [this, t] { viewer_->DownloadButton(t); });
    auto* stop = new QPushButton(QStringLiteral("Stop Data Flow"));
    connect(stop, &QPushButton::clicked, this, [this] { viewer_->StopDataFlow(); });
    p.liveTrace = new QPushButton(QStringLiteral("Live Trace"));
    p.liveTrace->setObjectName(numbered("LiveTrace", t));
    p.liveTrace->setCheckable(true);
    p.liveTrace->setToolTip(tr("Shows on the map where the engine runs now"));
    connect(p.liveTrace, &QPushButton::clicked, this, [this](bool on) { viewer_->setLiveTrace(on); });
    auto* activation = new QPushButton(QStringLiteral("Activation Byte Test"));
    activation->setObjectName(numbered("ActivationByteTest", t));
    connect(activation, &QPushButton::clicked, this, [this] { viewer_->ActivationByteTest(); });
    p.clearBeforeDownload = new QCheckBox(QStringLiteral("Clear Matrix Before Download"));
    p.clearBeforeDownload->setObjectName(numbered("ClearMatrix", t));
    connect(p.clearBeforeDownload, &QCheckBox::toggled, this,
            [this, t](bool on) { viewer_->setClearMatrixBeforeDownload(t, on); });
    auto* traceRow = new QHBoxLayout;  // the two small buttons share a row
    traceRow->addWidget(p.liveTrace);
    traceRow->addWidget(activation);
    ecuLayout->addWidget(p.download);
    ecuLayout->addWidget(stop);
    ecuLayout->addLayout(traceRow);
    ecuLayout->addWidget(p.clearBeforeDownload);
    right->addWidget(ecu);

    auto* edit = new QGroupBox(QStringLiteral("Edit Mode"));
    auto* editLayout = new QVBoxLayout(edit);
    p.editMode = new QCheckBox(QStringLiteral("Edit Mode"));
    p.editMode->setObjectName(numbered("EditMode", t));
    vexorin::ui::onUserToggle(p.editMode, this, [this, t](bool on) { viewer_->setEditMode(t, on); });
    editLayout->addWidget(p.editMode);
    p.editName = new QLabel;
    p.editName->setObjectName(perTabName("EditName", t));
    p.editName->setFont(big);
    editLayout->addWidget(p.editName);
    auto* form = new QFormLayout;
    p.origVal = new QLineEdit;
    p.origVal->setObjectName(perTabName("OrigVal", t));
    p.origVal->setReadOnly(true);
    form->addRow(QStringLiteral("Original Value :"), p.origVal);
    editLayout->addLayout(form);

    auto* valueRow = new QHBoxLayout;
    p.newValueFrame = new QFrame;
    p.newValueFrame->setObjectName(perTabName("NewValueFrame", t));
    p.newValueFrame->setAutoFillBackground(true);
    auto* nv = new QHBoxLayout(p.newValueFrame);
    nv->setContentsMargins(4, 4, 4, 4);
    auto* newLabel = new QLabel(QStringLiteral("New Value :"));
    QFont bold = newLabel->font();
    bold.setBold(true);  // large print: it reads on the red of edit mode
    newLabel->setFont(bold);
    nv->addWidget(newLabel);
    p.textValue = new QLineEdit;
    p.textValue->setObjectName(perTabName("TextValue", t));
    p.textValue->setReadOnly(true);
    p.textValue->setAlignment(Qt::AlignCenter);
    p.textValue->setFixedWidth(70);
    nv->addWidget(p.textValue);
    valueRow->addWidget(p.newValueFrame);
    p.spinFrame = new QFrame;
    p.spinFrame->setObjectName(perTabName("SpinFrame", t));
    p.spinFrame->setAutoFillBackground(true);
    auto* spin = new QVBoxLayout(p.spinFrame);
    spin->setContentsMargins(3, 3, 3, 3);
    spin->setSpacing(1);
    auto* spinButtons = new QWidget;
    spinButtons->setObjectName(numbered("SpinButton", t));
    auto* sb = new QVBoxLayout(spinButtons);
    sb->setContentsMargins(0, 0, 0, 0);
    sb->setSpacing(1);
    const struct {
        Qt::ArrowType arrow;
        const char* name;
        bool up;
    } arrows[] = {{Qt::UpArrow, "Up", true}, {Qt::DownArrow, "Down", false}};
    for (const auto& a : arrows) {
        auto* b = new QToolButton;
        b->setArrowType(a.arrow);
        b->setAccessibleName(QLatin1String(a.name));
        b->setFixedSize(26, 16);
        connect(b, &QToolButton::clicked, this,
                [this, t, up = a.up] { up ? viewer_->spinUp(t) : viewer_->spinDown(t); });
        sb->addWidget(b);
    }
    spin->addWidget(spinButtons);
    valueRow->addWidget(p.spinFrame);
    valueRow->addStretch(1);
    editLayout->addLayout(valueRow);
    auto* bytes = new QFormLayout;
    p.byteDisplayed = new QLabel;
    p.byteChanged = new QLabel;
    bytes->addRow(QStringLiteral("Byte Value Displayed"), p.byteDisplayed);
    bytes->addRow(QStringLiteral("Byte Value When Changed"), p.byteChanged);
    editLayout->addLayout(bytes);
    right->addWidget(edit);
    auto* location = new QGroupBox(QStringLiteral("BIN File Location"));
    auto* locationLayout = new QHBoxLayout(location);
    p.path = new QLineEdit;
    p.path->setObjectName(numbered("FilePath", t));
    p.path->setReadOnly(true);
    p.path->setPlaceholderText(tr("No BIN file loaded"));
    locationLayout->addWidget(p.path);
    right->addWidget(location);
    right->addStretch(1);
    h->addLayout(right, 1);

    // The red outline over the editable cell.
    p.overlay = new QFrame(p.widget);
    p.overlay->setObjectName(numbered("EditFrame", t));
    vexorin::ui::markAsOverlay(p.overlay);
    p.overlay->setStyleSheet(QStringLiteral("QFrame#%1 { background-color: red; }").arg(p.overlay->objectName()));
    p.overlayBox = new QLineEdit(p.overlay);
    p.overlayBox->setObjectName(numbered("EditBox", t));
    p.overlayBox->setReadOnly(true);
    p.overlayBox->setAlignment(Qt::AlignCenter);
    p.overlayBox->setFrame(false);
    // Typed figures: digits, one point, a leading minus.
    p.overlayBox->setValidator(new QRegularExpressionValidator(
        QRegularExpression(QStringLiteral("-?[0-9]{0,5}(\\.[0-9]{0,3})?")), p.overlayBox));
    p.overlayBox->installEventFilter(this);
    p.overlay->hide();
    return p.widget;
}

void MapViewerWindow::refreshTab(int t)
{
    const MapViewer::Tab& tab = viewer_->tab(t);
    Page& p = pages_[std::size_t(t)];
    p.viewing->setText(tab.viewing);
    p.path->setText(tab.pathBox == QLatin1String(vexorin::rom::kNoFile) ? QString() : tab.pathBox);
    p.clearMatrix->setEnabled(tab.clearMatrixEnabled);
    vexorin::ui::setCheckedQuietly(p.editMode, tab.editMode);
    p.editName->setText(tab.editName);
    p.origVal->setText(tab.origVal);
    p.textValue->setText(tab.textValue);
    setBack(p.textValue, tab.textValueColor);
    const std::optional<vexorin::rom::Rgb> red =
        tab.framesRed ? std::optional<vexorin::rom::Rgb>(vexorin::rom::Rgb{0xFF, 0, 0}) : std::nullopt;
    for (QFrame* f : {p.newValueFrame, p.spinFrame}) {
        QPalette pal = palette();
        if (red) {
            pal.setColor(QPalette::Window, QColor(red->r, red->g, red->b));
            pal.setColor(QPalette::WindowText, Qt::white);  // "New Value :" stays readable on the red
        }
        f->setPalette(pal);
    }
    p.byteDisplayed->setText(tab.byteValueDisplayed);
    p.byteChanged->setText(tab.byteValueWhenChanged);
    placeOverlay(t);
    showSelection(t);
    updateEditActions();
}

void MapViewerWindow::placeOverlay(int t)
{
    const MapViewer::Tab& tab = viewer_->tab(t);
    Page& p = pages_[std::size_t(t)];
    if (!tab.overlayVisible) {
        p.overlay->hide();
        return;
    }
    // The frame covers the cell and a little more; the box inside shows the cell.
    const QRect cell = p.grid->cellRect(tab.overlayRow, tab.overlayColumn, p.widget);
    constexpr int border = 2;
    p.overlay->setGeometry(cell.adjusted(-border, -border, border, border));
    p.overlayBox->setGeometry(border, border, cell.width(), cell.height());
    if (!typingFigure(t))
        p.overlayBox->setText(tab.grid.text(tab.overlayRow, tab.overlayColumn));
    const auto color = tab.grid.color(tab.overlayRow, tab.overlayColumn);
    setBack(p.overlayBox, color);
    p.overlay->show();
    p.overlay->raise();
}

void MapViewerWindow::traceSwitched(bool on)
{
    for (const Page& p : pages_)
        vexorin::ui::setCheckedQuietly(p.liveTrace, on);
    if (QAction* a = action(QStringLiteral("LiveTrace"))) {
        const QSignalBlocker quiet(a);
        a->setChecked(on);
    }
    if (on)
        traceFade_.start();
    else
        traceFade_.stop();
    showTraceMarks();
}

void MapViewerWindow::showTraceMarks()
{
    for (int t = 0; t < MapViewer::kTabs; ++t)
        grid(t)->setTraceMarks(viewer_->trace().marks(kMaps[std::size_t(t)].fuel));
}

void MapViewerWindow::refreshStatus()
{
    status_->setText(viewer_->status());
    progress_->setValue(viewer_->progress());
}

void MapViewerWindow::resizeEvent(QResizeEvent* e)
{
    QWidget::resizeEvent(e);
    for (int t = 0; t < MapViewer::kTabs; ++t)
        placeOverlay(t);
}

void MapViewerWindow::loadBinFile(bool fromMenu)
{
    const QString path = mCommonDialog::openFileName(this, QString::fromLatin1(vexorin::rom::kBinExtension),
                                                     QString::fromLatin1(vexorin::rom::kBinFilter));
    if (path.isEmpty())
        return;
    QPointer<MapViewerWindow> self(this);
    viewer_->LoadBinFile(path, fromMenu);
    if (self)
        refreshStatus();
}

void MapViewerWindow::compareWithBinFile()
{
    if (viewer_->tab(0).pathBox == QLatin1String(vexorin::rom::kNoFile)) {
        MessageBoxes::information(this, QString::fromLatin1(vexorin::rom::kLoadBinFileFirst));
        return;
    }
    const QString path = mCommonDialog::openFileName(this, QString::fromLatin1(vexorin::rom::kBinExtension),
                                                     QString::fromLatin1(vexorin::rom::kBinFilter));
    if (!path.isEmpty())
        viewer_->compareWith(path);
}

MapSurfaceWindow* MapViewerWindow::show3dView(int t)
{
    QPointer<MapSurfaceWindow>& w = surfaces_[std::size_t(t)];
    if (!w) {
        w = new MapSurfaceWindow(*viewer_, t, this);
        w->setAttribute(Qt::WA_DeleteOnClose);
    }
    w->show();
    w->raise();
    w->activateWindow();
    return w;
}

void MapViewerWindow::saveSnapshot()
{
    saveWindowSnapshot(this);
}

MapViewerWindow* MapViewerWindow::openNewViewer()
{
    auto* w = new MapViewerWindow(session_, viewer_->nextFormCount(), parentWidget());
    w->family_ = family_;
    family_->append(w);
    w->setAttribute(Qt::WA_DeleteOnClose);
    w->viewer().setCaption(viewer_->nextViewerCaption());
    w->viewer().trace().setScaleSource(viewer_->trace().scaleSource());
    w->setWindowTitle(w->viewer().caption());
    w->show();
    emit viewerOpened(w);
    return w;
}

void MapViewerWindow::close3dViews()
{
    for (QPointer<MapSurfaceWindow>& w : surfaces_)
        if (w)
            w->close();
}

void MapViewerWindow::unload()
{
    viewer_->abortLoad();
    viewer_->setLiveTrace(false);
    close3dViews();
    vexorin::ui::endDialogsOf(this);
    hide();
    emit unloaded();
    vexorin::ui::deleteWhenDialogsEnd(this);
}

void MapViewerWindow::exitViewer()
{
    if (viewer_->TxtFormCount() >= 1) {
        for (MapViewerWindow* w : family())
            if (w != this)
                w->unload();
    }
    unload();
}

void MapViewerWindow::closeEvent(QCloseEvent* e)
{
    viewer_->setLiveTrace(false);  // the stream ends with the window
    close3dViews();
    if (viewer_->TxtFormCount() == 0) {
        // The first viewer is only hidden, to be found as it was left.
        e->ignore();
        hide();
        return;
    }
    e->ignore();
    exitViewer();
}
