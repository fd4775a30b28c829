// The splash and About window: product name, version, the web and mail
// labels. Always on top; a click or a key closes it.
#pragma once

#include <QWidget>

class Splash;

class SplashWindow : public QWidget {
    Q_OBJECT
public:
    explicit SplashWindow(Splash& splash, QWidget* parent = nullptr);

protected:
    void mousePressEvent(QMouseEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;
    void paintEvent(QPaintEvent* e) override;

private:
    Splash& splash_;
};
