// Texts of the main window's status bar panels 1 to 6 (7 and 8, date and
// time, are kept current by the status bar itself).
#pragma once

#include <QObject>
#include <QString>
#include <array>

class StatusPanels : public QObject {
    Q_OBJECT
public:
    static constexpr int kCount = 6;

    explicit StatusPanels(QObject* parent = nullptr);

    // Panel numbers count from 1.
    QString text(int panel) const;
    void setText(int panel, const QString& text);
    static QString toolTip(int panel);
    static QString startText(int panel);

signals:
    void changed(int panel, const QString& text);

private:
    std::array<QString, kCount> texts_;
};
