#include "external/sensor_name_window.h"

#include "ui/plain_text.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QVBoxLayout>

SensorNameWindow::SensorNameWindow(OkHandler onOk, QWidget* parent)
    : QMainWindow(parent, Qt::Window), onOk_(std::move(onOk))
{
    setObjectName(QStringLiteral("SensorName"));
    setWindowTitle(QStringLiteral("Sensor Name"));
    QMenu* file = menuBar()->addMenu(tr("&File"));
    QAction* exit = file->addAction(QStringLiteral("Exit"));
    exit->setObjectName(QStringLiteral("Exit"));
    connect(exit, &QAction::triggered, this, &SensorNameWindow::cancel);

    auto* body = new QWidget(this);
    auto* v = new QVBoxLayout(body);
    heading_ = new QLabel(QStringLiteral("External Sensor"), body);
    heading_->setObjectName(QStringLiteral("Heading"));
    QFont f = heading_->font();
    f.setBold(true);
    f.setPointSizeF(f.pointSizeF() * 1.2);
    heading_->setFont(f);
    edit_ = new QLineEdit(body);
    edit_->setObjectName(QStringLiteral("SensorNameText"));
    edit_->setAccessibleName(tr("Sensor name"));
    heading_->setBuddy(edit_);
    auto* buttons = new QDialogButtonBox(body);
    QPushButton* ok = buttons->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole);
    QPushButton* cancel = buttons->addButton(QStringLiteral("Cancel"), QDialogButtonBox::RejectRole);
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &SensorNameWindow::ok);
    connect(cancel, &QPushButton::clicked, this, &SensorNameWindow::cancel);
    connect(edit_, &QLineEdit::returnPressed, this, &SensorNameWindow::ok);
    v->addWidget(heading_);
    v->addWidget(edit_);
    v->addWidget(buttons);
    setCentralWidget(body);
    resize(320, sizeHint().height());
    vexorin::ui::keepTextPlain(this);
}

QString SensorNameWindow::heading() const
{
    return heading_->text();
}

QString SensorNameWindow::text() const
{
    return edit_->text();
}

void SensorNameWindow::open(const QString& heading, const QString& text)
{
    heading_->setText(heading);
    edit_->setText(text);
    edit_->selectAll();
    show();
    raise();
    activateWindow();
    edit_->setFocus();
}

void SensorNameWindow::ok()
{
    if (onOk_)
        onOk_(heading_->text(), edit_->text());
    close();
}

void SensorNameWindow::cancel()
{
    close();
}
