// "Vexorin Log Player": a log file replayed on bars and labels.
#pragma once

#include <QWidget>
#include <array>

class GradientBar;
class LogPlayer;
class QLabel;
class QLineEdit;
class QPushButton;

class LogPlayerWindow : public QWidget {
    Q_OBJECT
public:
    static constexpr int kWidthTwips = 5760, kHeightTwips = 11355;

    explicit LogPlayerWindow(QWidget* parent = nullptr);
    ~LogPlayerWindow() override;

    LogPlayer& player() { return *player_; }
    QLabel* valueLabel(int index) const { return labels_[std::size_t(index - 14)]; }
    GradientBar* bar(int index) const { return bars_[std::size_t(index)]; }
    QPushButton* button(const QString& caption) const;
    QLineEdit* pathBox() const { return path_; }
    QLineEdit* positionBox() const { return position_; }
    QLineEdit* counterBox() const { return counter_; }
    // The picture box that holds the last snapshot.
    QLabel* snapshotPicture() const { return picture_; }

    void loadFile();        // "Load File"
    void openLogFileMenu(); // menu item "Open Log File"
    void snapshot();        // "Snapshot"
    void exportCsv();       // "Export CSV": the loaded log

signals:
    // "Chart": the loaded log on a Log Chart.
    void chartRequested(const QString& logPath);

protected:
    void closeEvent(QCloseEvent* e) override;

private:
    void refresh();
    QString loadedPath() const;

    LogPlayer* player_;
    QLineEdit* path_;
    QLineEdit* position_;
    QLineEdit* counter_;
    QLabel* picture_;
    std::array<QLabel*, 14> labels_{};
    std::array<GradientBar*, 13> bars_{};
    // "Export CSV" and "Chart": they wait for a log.
    std::array<QPushButton*, 2> logButtons_{};
};
