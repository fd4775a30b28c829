// "Check For Updates": the version page of the web site is fetched in the
// background and searched for "2.5". An unreachable page, a page past 64 KB
// or a transfer still running after 15 seconds ends the check without a word.
#pragma once

#include <QObject>
#include <QString>

class QNetworkAccessManager;
class QNetworkReply;
class QTimer;
class SettingsStore;

class UpdateCheck : public QObject {
    Q_OBJECT
public:
    static constexpr int kTimeoutMs = 15000;      // the whole transfer, whatever the server does
    static constexpr qint64 kMaxPageBytes = 64 * 1024;  // a version page is a few bytes
    static const QString kDefaultAddress;
    static const QString kCurrentText;
    static const QString kCurrentTitle;
    static const QString kNewUpdateText;

    explicit UpdateCheck(SettingsStore& store, QObject* parent = nullptr);
    ~UpdateCheck() override;

    // The page's address: the setting if there is one, else the web site's page.
    QString address() const;
    // Starts a check; a check still running is dropped and a fresh one starts.
    void CheckForUpdates();
    bool busy() const { return reply_ != nullptr; }
    // The time limit of a whole check (tests shorten it).
    void setTimeLimitMs(int ms) { timeLimitMs_ = ms; }
    // The outcome of a page's text, as the check reports it.
    static bool pageSaysCurrent(const QString& text) { return text.contains(QLatin1String("2.5")); }

signals:
    // The outcome message and its title.
    void message(const QString& text, const QString& title);
    // The check is over, with or without a message.
    void finished();

private:
    void onFinished();
    void drop();

    SettingsStore& store_;
    QNetworkAccessManager* network_;
    QNetworkReply* reply_ = nullptr;
    QTimer* deadline_;
    int timeLimitMs_ = kTimeoutMs;
};
