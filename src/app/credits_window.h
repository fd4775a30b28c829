// "Credits": the thanks rising through a viewport; any click or key closes it.
#pragma once

#include <QWidget>

class CreditsScroll;
class QLabel;

class CreditsWindow : public QWidget {
    Q_OBJECT
public:
    explicit CreditsWindow(QWidget* parent = nullptr);
    CreditsScroll& scroll() { return *scroll_; }
    QLabel* inner() const { return inner_; }

protected:
    bool eventFilter(QObject* watched, QEvent* e) override;
    void showEvent(QShowEvent* e) override;
    void hideEvent(QHideEvent* e) override;

private:
    CreditsScroll* scroll_;
    QWidget* viewport_;
    QLabel* inner_;
};
