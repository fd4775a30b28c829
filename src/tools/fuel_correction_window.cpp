#include "tools/fuel_correction_window.h"

#include "rom/map_grid.h"
#include "rom/map_grid_widget.h"
#include "rom/rules/map_decoding.h"
#include "tools/fuel_correction.h"
#include "tools/fuel_run_recorder.h"
#include "app/settings/settings_keys.h"
#include "tools/fuel_settings.h"
#include "tools/wideband_channels.h"
#include "ui/common_dialog.h"
#include "ui/message_box.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTabWidget>
#include <QVBoxLayout>
#include <cmath>

using namespace vexorin::tools;

const QColor FuelCorrectionWindow::kRicherColor(0xB8, 0xD8, 0xFF);
const QColor FuelCorrectionWindow::kLeanerColor(0xFF, 0xC0, 0xC0);
const QColor FuelCorrectionWindow::kFewSamplesColor(0xD0, 0xD0, 0xD0);

namespace {
const char* const kBinFilter = "BIN Files (*.bin)|*.bin|All Files (*.*)|*.*";
const char* const kRunFilter = "Run Files (*.csv)|*.csv";
const char* const kAdviceFilter = "CSV Files (*.csv)|*.csv";
// The cells the question of Apply lists one by one; the rest are counted.
constexpr int kListedChanges = 20;

QPushButton* button(QWidget* parent, const char* name, const QString& caption)
{
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(QLatin1String(name));
    return b;
}

QString text(const std::string& s)
{
    return QString::fromStdString(s);
}
}  // namespace

FuelCorrectionWindow::FuelCorrectionWindow(SettingsStore& store, ConsultSession& session, SensorStream& stream,
                                           SensorDisplays& displays, std::function<ExternalSensors*()> gauges,
                                           QWidget* parent)
    : QWidget(parent, Qt::Window),
      store_(store),
      gauges_(std::move(gauges)),
      correction_(new FuelCorrection(store, this)),
      recorder_(new FuelRunRecorder(session, stream, displays, gauges_, *correction_, this))
{
    setObjectName(QStringLiteral("FuelCorrection"));
    setWindowTitle(QStringLiteral("Vexorin Fuel Correction"));

    tabs_ = new QTabWidget(this);
    tabs_->setObjectName(QStringLiteral("FuelTabs"));
    correctionGrid_ = new MapGridWidget(tabs_);
    correctionGrid_->setObjectName(QStringLiteral("CorrectionGrid"));
    correctionGrid_->setAccessibleName(QStringLiteral("Correction"));
    targetGrid_ = new MapGridWidget(tabs_);
    targetGrid_->setObjectName(QStringLiteral("TargetGrid"));
    targetGrid_->setAccessibleName(QStringLiteral("Target A/F"));
    targetGrid_->setFocusPolicy(Qt::StrongFocus);
    targetGrid_->setSelectionMode(QAbstractItemView::SingleSelection);
    targetGrid_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                                 QAbstractItemView::AnyKeyPressed);
    correctionGrid_->setFocusPolicy(Qt::StrongFocus);
    correctionGrid_->setSelectionMode(QAbstractItemView::SingleSelection);
    // Every cell in sight: the grids never shrink below their whole size.
    for (MapGridWidget* grid : {correctionGrid_, targetGrid_})
        grid->setMinimumSize(grid->sizeHint());
    tabs_->addTab(correctionGrid_, QStringLiteral("Correction"));
    tabs_->addTab(targetGrid_, QStringLiteral("Target A/F"));

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(buildTop());
    auto* middle = new QHBoxLayout;
    middle->addWidget(tabs_, 0, Qt::AlignTop);
    middle->addWidget(buildSettings(), 1, Qt::AlignTop);
    layout->addLayout(middle);
    layout->addWidget(buildButtons());
    status_ = new QLabel(this);
    status_->setObjectName(QStringLiteral("Status"));
    layout->addWidget(status_);

    connect(correction_, &FuelCorrection::binChanged, this, &FuelCorrectionWindow::refreshBin);
    connect(correction_, &FuelCorrection::targetsChanged, this, &FuelCorrectionWindow::refreshTargets);
    connect(correction_, &FuelCorrection::adviceChanged, this, &FuelCorrectionWindow::refreshCorrection);
    connect(correction_, &FuelCorrection::message, this,
            [this](const QString& t) { MessageBoxes::information(this, t); });
    connect(recorder_, &FuelRunRecorder::message, this, [this](const QString& t) { MessageBoxes::information(this, t); });
    connect(recorder_, &FuelRunRecorder::switched, this, [this](bool on) {
        const QSignalBlocker block(record_);
        record_->setChecked(on);
        channel_->setEnabled(!on);
    });
    connect(targetGrid_, &QTableWidget::itemChanged, this, [this](QTableWidgetItem* item) {
        if (!showingTargets_)
            targetTyped(item->row(), item->column());
    });
    refreshChannels();
    refreshBin();
}

FuelCorrectionWindow::~FuelCorrectionWindow()
{
    recorder_->stop();
}

QWidget* FuelCorrectionWindow::buildTop()
{
    auto* top = new QWidget(this);
    auto* row = new QHBoxLayout(top);
    row->setContentsMargins(0, 0, 0, 0);
    QPushButton* open = button(top, "OpenBin", QStringLiteral("Open BIN..."));
    connect(open, &QPushButton::clicked, this, &FuelCorrectionWindow::openBin);
    path_ = new QLabel(QStringLiteral("No BIN file"), top);
    path_->setObjectName(QStringLiteral("BinPath"));
    path_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    map_ = new QComboBox(top);
    map_->setObjectName(QStringLiteral("Map"));
    map_->addItems(FuelCorrection::mapCaptions());
    map_->setAccessibleName(QStringLiteral("Map"));
    connect(map_, qOverload<int>(&QComboBox::currentIndexChanged), correction_, &FuelCorrection::setMapIndex);
    auto* mapLabel = new QLabel(QStringLiteral("&Map"), top);
    mapLabel->setBuddy(map_);
    row->addWidget(open);
    row->addWidget(path_, 1);
    row->addWidget(mapLabel);
    row->addWidget(map_);
    return top;
}

QWidget* FuelCorrectionWindow::buildSettings()
{
    auto* box = new QWidget(this);
    auto* form = new QFormLayout(box);
    form->setContentsMargins(0, 0, 0, 0);
    channel_ = new QComboBox(box);
    channel_->setObjectName(QStringLiteral("WidebandChannel"));
    channel_->setAccessibleName(QStringLiteral("Wideband channel"));
    form->addRow(QStringLiteral("Wideband channel"), channel_);
    const FuelSettings settings = correction_->settings();
    for (std::size_t i = 0; i < kFuelSettingFields.size(); ++i) {
        const FuelSettingField& f = kFuelSettingFields[i];
        auto* spin = new QDoubleSpinBox(box);
        spin->setObjectName(QString(f.key->key));
        spin->setAccessibleName(QString::fromUtf8(f.caption));
        spin->setRange(f.min, f.max);
        spin->setSingleStep(f.step);
        spin->setDecimals(f.decimals);
        spin->setValue(f.get(settings));
        spin->setKeyboardTracking(false);
        connect(spin, qOverload<double>(&QDoubleSpinBox::valueChanged), this, &FuelCorrectionWindow::settingsEdited);
        numbers_[i] = spin;
        form->addRow(QString::fromUtf8(f.caption), spin);
    }
    useAlpha_ = new QCheckBox(QString::fromLatin1(kUseAlphaCaption), box);
    useAlpha_->setObjectName(QStringLiteral("UseAlpha"));
    useAlpha_->setChecked(settings.useAlpha);
    connect(useAlpha_, &QCheckBox::toggled, this, &FuelCorrectionWindow::settingsEdited);
    form->addRow(useAlpha_);
    return box;
}

QWidget* FuelCorrectionWindow::buildButtons()
{
    auto* bar = new QWidget(this);
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    record_ = button(bar, "RecordRun", QStringLiteral("Record Run"));
    record_->setCheckable(true);
    connect(record_, &QPushButton::clicked, this, &FuelCorrectionWindow::recordRun);
    const std::pair<const char*, QString> others[] = {{"OpenRuns", QStringLiteral("Open Runs...")},
                                                      {"ClearRuns", QStringLiteral("Clear")},
                                                      {"Apply", QStringLiteral("Apply...")},
                                                      {"ExportCsv", QStringLiteral("Export CSV...")}};
    const std::function<void()> actions[] = {[this] { openRuns(); }, [this] { correction_->clear(); },
                                             [this] { applyCorrection(); }, [this] { exportCsv(); }};
    row->addWidget(record_);
    for (std::size_t i = 0; i < std::size(others); ++i) {
        QPushButton* b = button(bar, others[i].first, others[i].second);
        connect(b, &QPushButton::clicked, this, actions[i]);
        row->addWidget(b);
    }
    row->addStretch(1);
    return bar;
}

int FuelCorrectionWindow::channel() const
{
    return channel_->currentIndex() + 1;
}

void FuelCorrectionWindow::refreshChannels()
{
    if (recorder_->recording())
        return;
    ExternalSensors* gauges = gauges_ ? gauges_() : nullptr;
    const int keep = channel_->count() > 0 ? channel() : defaultWidebandChannel(store_, gauges);
    const QSignalBlocker block(channel_);
    channel_->clear();
    channel_->addItems(widebandChannelCaptions(store_, gauges));
    channel_->setCurrentIndex(keep - 1);
}

void FuelCorrectionWindow::showEvent(QShowEvent* e)
{
    refreshChannels();
    QWidget::showEvent(e);
}

void FuelCorrectionWindow::closeEvent(QCloseEvent* e)
{
    recorder_->stop();
    QWidget::closeEvent(e);
}

void FuelCorrectionWindow::settingsEdited()
{
    FuelSettings s = correction_->settings();
    for (std::size_t i = 0; i < kFuelSettingFields.size(); ++i)
        kFuelSettingFields[i].set(s, numbers_[i]->value());
    s.useAlpha = useAlpha_->isChecked();
    correction_->setSettings(s);
}

void FuelCorrectionWindow::openBin()
{
    const QString path = mCommonDialog::openFileName(this, QStringLiteral(".bin"), QLatin1String(kBinFilter));
    if (!path.isEmpty())
        correction_->openBin(path);
}

void FuelCorrectionWindow::recordRun(bool on)
{
    if (!on) {
        recorder_->stop();
        return;
    }
    const QString why = recorder_->refusal(channel());
    if (!why.isEmpty()) {
        record_->setChecked(false);
        MessageBoxes::information(this, why);
        return;
    }
    const QString path = mCommonDialog::saveFileName(this, QStringLiteral(".csv"), QLatin1String(kRunFilter),
                                                     FuelRunRecorder::defaultFileName());
    if (path.isEmpty()) {
        record_->setChecked(false);
        return;
    }
    recorder_->start(path, channel());
}

void FuelCorrectionWindow::openRuns()
{
    const QStringList paths = mCommonDialog::openFileNames(this, QLatin1String(kRunFilter));
    if (!paths.isEmpty())
        correction_->openRuns(paths);
}

void FuelCorrectionWindow::applyCorrection()
{
    if (correction_->binPath().isEmpty()) {
        MessageBoxes::information(this, QStringLiteral("Open a BIN file first."));
        return;
    }
    const QVector<FuelCorrection::Change> changes = correction_->changes();
    if (changes.isEmpty() || recorder_->recording()) {
        correction_->apply();  // says why nothing is written
        return;
    }
    QString question = QStringLiteral("Write %1 cells of %2 to %3?\n")
                           .arg(changes.size())
                           .arg(map_->currentText(), QFileInfo(correction_->binPath()).fileName());
    for (int i = 0; i < changes.size() && i < kListedChanges; ++i) {
        const FuelCorrection::Change& c = changes[i];
        question += QStringLiteral("\nRow %1, column %2: %3 to %4").arg(c.row).arg(c.column).arg(c.oldFigure, c.newFigure);
    }
    if (changes.size() > kListedChanges)
        question += QStringLiteral("\n... and %1 more").arg(changes.size() - kListedChanges);
    if (MessageBoxes::question(this, question))
        correction_->apply();
}

void FuelCorrectionWindow::exportCsv()
{
    if (correction_->binPath().isEmpty()) {
        MessageBoxes::information(this, QStringLiteral("Open a BIN file first."));
        return;
    }
    const QString path = mCommonDialog::saveFileName(this, QStringLiteral(".csv"), QLatin1String(kAdviceFilter),
                                                     QFileInfo(correction_->binPath()).completeBaseName() +
                                                         QStringLiteral("-correction.csv"));
    QString error;
    if (!path.isEmpty() && !correction_->exportCsv(path, &error))
        MessageBoxes::information(this, QStringLiteral("The CSV file could not be written: %1.").arg(error));
}

void FuelCorrectionWindow::refreshBin()
{
    const QString path = correction_->binPath();
    path_->setText(path.isEmpty() ? QStringLiteral("No BIN file") : QDir::toNativeSeparators(path));
    path_->setToolTip(path);
    refreshTargets();
    refreshCorrection();
}

namespace {
// The headings of a grid as the Map Viewer shows them.
MapGrid headedGrid(const FuelCorrection& c)
{
    MapGrid grid;
    grid.rebuild();
    grid.setText(0, 0, QString::fromLatin1(MapGrid::kCorner));
    for (int i = 1; i < MapGrid::kSize; ++i) {
        grid.setText(i, 0, c.rpmHeading(i));
        grid.setText(0, i, c.tpHeading(i));
    }
    return grid;
}
}  // namespace

void FuelCorrectionWindow::refreshTargets()
{
    MapGrid grid = headedGrid(*correction_);
    const bool loaded = !correction_->binPath().isEmpty();
    for (int r = 1; r < MapGrid::kSize && loaded; ++r)
        for (int c = 1; c < MapGrid::kSize; ++c) {
            const double t = correction_->target(r, c);
            grid.setText(r, c, text(twoDecimals(t)));
            grid.setColor(r, c, vexorin::rom::AfrBandColor(int(std::lround(t * 100))));
        }
    showingTargets_ = true;
    targetGrid_->showGrid(grid);
    for (int r = 1; r < MapGrid::kSize; ++r)
        for (int c = 1; c < MapGrid::kSize; ++c) {
            QTableWidgetItem* it = targetGrid_->item(r, c);
            it->setFlags(loaded ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable : Qt::ItemIsEnabled);
            it->setToolTip(loaded ? QStringLiteral("Target for RPM %1, TP %2").arg(grid.text(r, 0), grid.text(0, c))
                                  : QString());
        }
    showingTargets_ = false;
}

void FuelCorrectionWindow::refreshCorrection()
{
    MapGrid grid = headedGrid(*correction_);
    const int minSamples = correction_->settings().minSamples;
    for (int r = 1; r < MapGrid::kSize; ++r)
        for (int c = 1; c < MapGrid::kSize; ++c) {
            const CellAdvice& a = correction_->cell(r, c);
            if (a.enough)
                grid.setText(r, c, text(twoDecimals(a.suggested)));
            const QColor color = a.changes() ? (a.richer() ? kRicherColor : kLeanerColor)
                                 : a.samples > 0 && a.samples < minSamples ? kFewSamplesColor
                                                                           : QColor();
            if (color.isValid())
                grid.setColor(r, c, {std::uint8_t(color.red()), std::uint8_t(color.green()), std::uint8_t(color.blue())});
        }
    correctionGrid_->showGrid(grid);
    for (int r = 1; r < MapGrid::kSize; ++r)
        for (int c = 1; c < MapGrid::kSize; ++c)
            correctionGrid_->item(r, c)->setToolTip(text(cellTip(correction_->cell(r, c))));
    status_->setText(correction_->status());
}

void FuelCorrectionWindow::targetTyped(int row, int column)
{
    if (row < 1 || column < 1)
        return;
    const QString typed = targetGrid_->item(row, column)->text();
    if (typed == text(twoDecimals(correction_->target(row, column))))
        return;
    correction_->setTarget(row, column, typed);
}
