// The Fault Codes help window: the codes this ECU family reports.
#pragma once

#include <QWidget>

class QListWidget;

class FaultCodesWindow : public QWidget {
    Q_OBJECT
public:
    explicit FaultCodesWindow(QWidget* parent = nullptr);
    QStringList lines() const;

private:
    QListWidget* list_;
};
