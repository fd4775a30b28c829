// "Vexorin BIN Compare": two BIN files chosen side by side, the summary of
// what differs and a list of the places, a map's row opening the Map Viewer.
// The window shows its BinCompareView and forwards the person's input to it.
#pragma once

#include <QWidget>

class BinCompareView;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

class BinCompareWindow : public QWidget {
    Q_OBJECT
public:
    explicit BinCompareWindow(QWidget* parent = nullptr);

    BinCompareView& view() { return *view_; }
    QLineEdit* pathA() const { return pathA_; }
    QLineEdit* pathB() const { return pathB_; }
    QLabel* summary() const { return summary_; }
    QListWidget* list() const { return list_; }
    QPushButton* openMapButton() const { return openMap_; }

    // "Open A..." and "Open B...": the file dialog, then the file read.
    void chooseA();
    void chooseB();

signals:
    // A map's row was opened: the Map Viewer with A on `tab`, compared with B.
    void mapRequested(int tab, const QString& pathA, const QString& pathB);

private:
    void refresh();
    void refreshOpenMap();
    QString chooseFile();

    BinCompareView* view_;
    QLineEdit* pathA_;
    QLineEdit* pathB_;
    QLabel* summary_;
    QListWidget* list_;
    QPushButton* openMap_;
};
