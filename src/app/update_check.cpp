#include "app/update_check.h"

#include "app/settings/settings_access.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

const QString UpdateCheck::kDefaultAddress = QStringLiteral("https://www.vexorin.org/softwareversion.html");
// The version in the message and the searched text differ; that is how it reads.
const QString UpdateCheck::kCurrentText = QStringLiteral("The current version is  2.0");
const QString UpdateCheck::kCurrentTitle = QStringLiteral("Vexorin\n");
const QString UpdateCheck::kNewUpdateText =
    QStringLiteral("There appears to be a new update! Please check\n\nwww.vexorin.org");

UpdateCheck::UpdateCheck(SettingsStore& store, QObject* parent)
    : QObject(parent), store_(store), network_(new QNetworkAccessManager(this))
{
}

UpdateCheck::~UpdateCheck()
{
    if (reply_)
        reply_->abort();
}

QString UpdateCheck::address() const
{
    const QString stored = readSetting(store_, Settings::UpdatePage).trimmed();
    return stored.isEmpty() ? kDefaultAddress : stored;
}

void UpdateCheck::CheckForUpdates()
{
    if (reply_)
        return;  // one check at a time
    QNetworkRequest request{QUrl(address())};
    request.setTransferTimeout(kTimeoutMs);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    reply_ = network_->get(request);
    connect(reply_, &QNetworkReply::finished, this, &UpdateCheck::onFinished);
}

void UpdateCheck::onFinished()
{
    QNetworkReply* reply = reply_;
    reply_ = nullptr;
    reply->deleteLater();
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (reply->error() == QNetworkReply::NoError && (status == 0 || (status >= 200 && status < 300))) {
        const QString text = QString::fromUtf8(reply->readAll());
        if (pageSaysCurrent(text))
            emit message(kCurrentText, kCurrentTitle);
        else
            emit message(kNewUpdateText, QStringLiteral("Vexorin"));
    }
    emit finished();
}
