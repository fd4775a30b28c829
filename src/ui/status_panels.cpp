#include "ui/status_panels.h"

namespace {
const char* const kStartTexts[StatusPanels::kCount] = {
    "Consult Port Disconnected", "Consult Port", "Standby",
    "External Port Disconnected", "External Port 0", "Standby"};
const char* const kToolTips[StatusPanels::kCount] = {
    "Consult Port Connection State", "Consult Port Number", "Consult Port State",
    "External Port Connection State", "External Port Number", "External Port State"};
}  // namespace

StatusPanels::StatusPanels(QObject* parent)
    : QObject(parent)
{
    for (int i = 0; i < kCount; ++i)
        texts_[std::size_t(i)] = QString::fromLatin1(kStartTexts[i]);
}

QString StatusPanels::text(int panel) const
{
    return panel >= 1 && panel <= kCount ? texts_[std::size_t(panel - 1)] : QString();
}

void StatusPanels::setText(int panel, const QString& text)
{
    if (panel < 1 || panel > kCount)
        return;
    texts_[std::size_t(panel - 1)] = text;
    emit changed(panel, text);
}

QString StatusPanels::toolTip(int panel)
{
    return panel >= 1 && panel <= kCount ? QString::fromLatin1(kToolTips[panel - 1]) : QString();
}

QString StatusPanels::startText(int panel)
{
    return panel >= 1 && panel <= kCount ? QString::fromLatin1(kStartTexts[panel - 1]) : QString();
}
