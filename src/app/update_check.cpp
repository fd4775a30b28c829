#include "app/update_check.h"

#include "app/settings/settings_access.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>

const QString UpdateCheck::kDefaultAddress = QStringLiteral("https://www.vexorin.org/softwareversion.html");
// The version in the message and the searched text differ; that is how it reads.
const QString UpdateCheck::kCurrentText = QStringLiteral("The current version is  2.0");
const QString UpdateCheck::kCurrentTitle = QStringLiteral("Vexorin\n");
const QString UpdateCheck::kNewUpdateText =
    QStringLiteral("There appears to be a new update! Please check\n\nwww.vexorin.org");

UpdateCheck::UpdateCheck(SettingsStore& store, QObject* parent)
    : QObject(parent), store_(store), network_(new QNetworkAccessManager(this)), deadline_(new QTimer(this))
{
    deadline_->setSingleShot(true);
    connect(deadline_, &QTimer::timeout, this, [this] {
        if (reply_)
            reply_->abort();  // ends in onFinished with an error: no word
    });
}

UpdateCheck::~UpdateCheck()
{
    drop();
}

void UpdateCheck::drop()
{
    deadline_->stop();
    if (!reply_)
        return;
    QNetworkReply* reply = reply_;
    reply_ = nullptr;
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
}

QString UpdateCheck::address() const
{
    const QString stored = readSetting(store_, Settings::UpdatePage).trimmed();
    return stored.isEmpty() ? kDefaultAddress : stored;
}

void UpdateCheck::CheckForUpdates()
{
    drop();  // a later click always starts afresh
    QNetworkRequest request{QUrl(address())};
    request.setTransferTimeout(timeLimitMs_);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    reply_ = network_->get(request);
    reply_->setReadBufferSize(kMaxPageBytes + 1);
    QNetworkReply* reply = reply_;
    connect(reply, &QNetworkReply::finished, this, &UpdateCheck::onFinished);
    connect(reply, &QNetworkReply::downloadProgress, this, [reply](qint64 received, qint64 total) {
        if (received > kMaxPageBytes || total > kMaxPageBytes)
            reply->abort();
    });
    // With the read buffer full no more progress comes: look at what waits.
    connect(reply, &QNetworkReply::readyRead, this, [reply] {
        if (reply->bytesAvailable() > kMaxPageBytes)
            reply->abort();
    });
    deadline_->start(timeLimitMs_);
}

void UpdateCheck::onFinished()
{
    if (!reply_)
        return;
    QNetworkReply* reply = reply_;
    reply_ = nullptr;
    deadline_->stop();
    reply->deleteLater();
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (reply->error() == QNetworkReply::NoError && (status == 0 || (status >= 200 && status < 300))) {
        const QString text = QString::fromUtf8(reply->read(kMaxPageBytes));
        if (pageSaysCurrent(text))
            emit message(kCurrentText, kCurrentTitle);
        else
            emit message(kNewUpdateText, QStringLiteral("Vexorin"));
    }
    emit finished();
}
