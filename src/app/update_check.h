// "Check For Updates": the version page of the web site is fetched in the
// background and searched for "2.5". An unreachable page ends the check
// without a word.
#pragma once

#include <QObject>
#include <QString>

class QNetworkAccessManager;
class QNetworkReply;
class SettingsStore;

class UpdateCheck : public QObject {
    Q_OBJECT
public:
    static constexpr int kTimeoutMs = 15000;
    static const QString kDefaultAddress;
    static const QString kCurrentText;
    static const QString kCurrentTitle;
    static const QString kNewUpdateText;

    explicit UpdateCheck(SettingsStore& store, QObject* parent = nullptr);
    ~UpdateCheck() override;

    // The page's address: the setting if there is one, else the web site's page.
    QString address() const;
    void CheckForUpdates();
    bool busy() const { return reply_ != nullptr; }
    // The outcome of a page's text, as the check reports it.
    static bool pageSaysCurrent(const QString& text) { return text.contains(QLatin1String("2.5")); }

signals:
    // The outcome message and its title.
    void message(const QString& text, const QString& title);
    // The check is over, with or without a message.
    void finished();

private:
    void onFinished();

    SettingsStore& store_;
    QNetworkAccessManager* network_;
    QNetworkReply* reply_ = nullptr;
};
