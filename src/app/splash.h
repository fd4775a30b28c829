// The splash: shown on the main window's first activation, gone after five
// seconds or at a click or key. It is also the About window.
#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

class Splash : public QObject {
    Q_OBJECT
public:
    static constexpr int kSplashMs = 5000;
    static const QString kProductName;
    static const QString kWebAddress;
    static const QString kMailAddress;

    explicit Splash(QObject* parent = nullptr);

    QString SplashSwitch = QStringLiteral("0");
    QTimer SplashTimer;

    // "Version 2.5.1": major, minor and revision joined by dots.
    static QString versionText();

    // The main window is activated: the first time, the splash is shown.
    void mainWindowActivated();
    void SplashTimerTick();
    // A click on a label or the logo, or a key, in the splash.
    void dismiss();

signals:
    void showRequested();
    void unloadRequested();
};
