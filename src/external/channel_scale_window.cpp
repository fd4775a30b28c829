#include "external/channel_scale_window.h"

#include "ui/message_box.h"
#include "ui/plain_text.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QSpinBox>
#include <QVBoxLayout>

using vexorin::external::ChannelScale;
using vexorin::external::fieldCaption;
using vexorin::external::ScaleEntry;
using vexorin::external::ScaleField;

namespace {
// A number as it is being typed: a sign, digits, one decimal mark ('.' or ',').
const QRegularExpression kNumberTyping(QStringLiteral("[-+]?[0-9]*([.,][0-9]*)?"));

QString presetTip(const ChannelScale& s)
{
    return QStringLiteral("%1 V gives %2, %3 V gives %4 %5")
        .arg(vexorin::external::numberText(s.volts1), vexorin::external::roundedFigure(s.figure1, s.decimals),
             vexorin::external::numberText(s.volts2), vexorin::external::roundedFigure(s.figure2, s.decimals), s.unit);
}
}  // namespace

ChannelScaleWindow::ChannelScaleWindow(Apply apply, QWidget* parent) : QDialog(parent), apply_(std::move(apply))
{
    setObjectName(QStringLiteral("ChannelScale"));
    setWindowTitle(QStringLiteral("Channel Scale"));
    setWindowModality(Qt::WindowModal);

    auto* v = new QVBoxLayout(this);
    auto* hint = new QLabel(tr("A reading's figure lies on the straight line through the two points."), this);
    hint->setObjectName(QStringLiteral("ScaleHint"));
    v->addWidget(hint);
    v->addSpacing(4);

    // One row a point: its volts and its figure; then the unit and the decimals.
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(8);
    auto* validator = new QRegularExpressionValidator(kNumberTyping, this);
    const auto addRow = [this, grid](int row, int column, ScaleField f, QWidget* box) {
        auto* label = new QLabel(fieldCaption(f), this);
        label->setBuddy(box);
        box->setAccessibleName(fieldCaption(f));
        box->setObjectName(fieldCaption(f).remove(QLatin1Char(' ')));
        grid->addWidget(label, row, column);
        grid->addWidget(box, row, column + 1);
    };
    const ScaleField fields[] = {ScaleField::Volts1, ScaleField::Figure1, ScaleField::Volts2, ScaleField::Figure2,
                                 ScaleField::Unit};
    for (std::size_t i = 0; i < edits_.size(); ++i) {
        auto* edit = new QLineEdit(this);
        if (fields[i] == ScaleField::Unit) {
            edit->setMaxLength(vexorin::external::kMaxUnitLength);
            edit->setToolTip(tr("Shown after the figure, such as AFR or psi"));
        } else {
            edit->setValidator(validator);
            edit->setMaxLength(16);
        }
        edits_[i] = edit;
        addRow(int(i) / 2, int(i) % 2 * 2, fields[i], edit);
    }
    decimals_ = new QSpinBox(this);
    decimals_->setRange(0, vexorin::external::kMaxScaleDecimals);
    decimals_->setValue(2);
    addRow(2, 2, ScaleField::Decimals, decimals_);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 1);
    v->addLayout(grid);

    // The ready-made scales fill the fields; OK applies them.
    auto* group = new QGroupBox(tr("Ready-made scales"), this);
    auto* presets = new QHBoxLayout(group);
    for (const auto& p : vexorin::external::kScalePresets) {
        const ChannelScale scale = p.scale();
        auto* b = new QPushButton(QString::fromLatin1(p.caption), group);
        b->setToolTip(presetTip(scale));
        b->setAccessibleDescription(b->toolTip());
        connect(b, &QPushButton::clicked, this, [this, scale] { fill(scale); });
        presets->addWidget(b);
    }
    presets->addStretch(1);
    v->addWidget(group);
    v->addSpacing(4);

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* none = buttons->addButton(QStringLiteral("None"), QDialogButtonBox::ResetRole);
    none->setToolTip(tr("Show this gauge's reading alone, without a figure"));
    none->setAccessibleDescription(none->toolTip());
    QPushButton* ok = buttons->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole);
    QPushButton* cancel = buttons->addButton(QStringLiteral("Cancel"), QDialogButtonBox::RejectRole);
    ok->setDefault(true);
    connect(none, &QPushButton::clicked, this, &ChannelScaleWindow::none);
    connect(ok, &QPushButton::clicked, this, &ChannelScaleWindow::accept);
    connect(cancel, &QPushButton::clicked, this, &ChannelScaleWindow::reject);
    v->addWidget(buttons);
    vexorin::ui::keepTextPlain(this);
}

QLineEdit* ChannelScaleWindow::field(ScaleField f) const
{
    const auto i = std::size_t(f);
    return i < edits_.size() ? edits_[i] : nullptr;
}

void ChannelScaleWindow::openFor(int channel, const QString& caption, const std::optional<ChannelScale>& scale)
{
    channel_ = channel;
    setWindowTitle(caption);
    if (scale) {
        fill(*scale);
    } else {
        for (QLineEdit* e : edits_)
            e->clear();
        decimals_->setValue(2);
    }
    edits_[0]->setFocus();
    edits_[0]->selectAll();
    show();
    raise();
    activateWindow();
}

void ChannelScaleWindow::fill(const ChannelScale& scale)
{
    const ScaleEntry e = vexorin::external::entryOf(scale);
    const QString texts[] = {e.volts1, e.figure1, e.volts2, e.figure2, e.unit};
    for (std::size_t i = 0; i < edits_.size(); ++i)
        edits_[i]->setText(texts[i]);
    decimals_->setValue(e.decimals);
}

ScaleEntry ChannelScaleWindow::entry() const
{
    return {edits_[0]->text(), edits_[1]->text(), edits_[2]->text(), edits_[3]->text(), edits_[4]->text(),
            decimals_->value()};
}

void ChannelScaleWindow::none()
{
    if (apply_)
        apply_(channel_, std::nullopt);
    QDialog::accept();
}

void ChannelScaleWindow::accept()
{
    const vexorin::external::ScaleCheck check = vexorin::external::checkEntry(entry());
    if (!check.scale) {
        // The box waits on the gauge window's behalf: were that window unloaded
        // meanwhile, it is deleted only once the box has returned here.
        QPointer<ChannelScaleWindow> self(this);
        MessageBoxes::exclamation(parentWidget() ? parentWidget() : this, check.problem);
        if (!self || !isVisible())
            return;
        QWidget* wrong = check.field == ScaleField::Decimals ? static_cast<QWidget*>(decimals_) : field(check.field);
        wrong->setFocus();
        if (auto* edit = qobject_cast<QLineEdit*>(wrong))
            edit->selectAll();
        return;
    }
    if (apply_)
        apply_(channel_, check.scale);
    QDialog::accept();
}
