#include "app/settings/edit_reg.h"

#include <QSettings>
#include <QVariant>

namespace EditReg {

static QString path(const QString& section, const QString& key)
{
    return section + QLatin1Char('/') + key;
}

QString GetKeyValue(QSettings& store, const QString& section, const QString& key)
{
    const QVariant v = store.value(path(section, key));
    if (v.typeId() != QMetaType::QString)
        return QString();
    QString text = v.toString();
    const int zero = text.indexOf(QChar(0));
    if (zero >= 0)
        text.truncate(zero);
    return text;
}

void SetKeyValue(QSettings& store, const QString& section, const QString& key, const QString& text)
{
    store.setValue(path(section, key), text);
    store.sync();
}

}  // namespace EditReg
