// Message boxes and file dialogs answered by the test: the boxes' texts are
// kept, each file dialog is noted ("open .log Log Files (*.log)|*.log", with
// the offered name behind when there is one) and answered with the next of
// `answers` (a cancel when none is left).
#pragma once

#include "ui/common_dialog.h"
#include "ui/message_box.h"

#include <QStringList>

struct AnsweredDialogs {
    QStringList boxes;
    QStringList answers;
    QStringList requests;

    void install()
    {
        MessageBoxes::setPresenter([this](const QString& t, const QString&, bool) { boxes << t; });
        mCommonDialog::setAnswerer([this](const mCommonDialog::DialogRequest& req, bool save) {
            QStringList parts{save ? QStringLiteral("save") : QStringLiteral("open"), req.defaultExtension, req.filter};
            if (!req.fileSpec.isEmpty())
                parts << req.fileSpec;
            requests << parts.join(QLatin1Char(' '));
            return answers.isEmpty() ? QString() : answers.takeFirst();
        });
    }
    void uninstall()
    {
        MessageBoxes::setPresenter({});
        mCommonDialog::setAnswerer({});
        boxes.clear();
        answers.clear();
        requests.clear();
    }
};
