// The window "Vexorin E.C.U. Register Viewer": the bank selector, the matrix
// of one bank, the region list with its converted value, and the buttons.
#pragma once

#include "tools/register_viewer.h"

#include <QMainWindow>

class ColorPicker;
class MapGridWidget;
class QComboBox;
class QLabel;
class QListWidget;
class QPushButton;
class QRadioButton;
class ConsultSession;

class RegisterViewerWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit RegisterViewerWindow(ConsultSession& session, QWidget* parent = nullptr);

    RegisterViewer& viewer() { return viewer_; }
    MapGridWidget* matrixWidget() const { return matrix_; }
    QComboBox* bankSelector() const { return selector_; }
    QListWidget* regionList() const { return list_; }

signals:
    // View, Hex Chart.
    void hexChartRequested();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void refreshMatrix();
    void refreshState();
    void saveSnapshot();

    RegisterViewer viewer_;
    MapGridWidget* matrix_ = nullptr;
    QComboBox* selector_ = nullptr;
    QListWidget* list_ = nullptr;
    QRadioButton* ecu_ = nullptr;
    QRadioButton* eprom_ = nullptr;
    QLabel* converted_ = nullptr;
    QLabel* notice_ = nullptr;
    ColorPicker* picker_ = nullptr;
};
