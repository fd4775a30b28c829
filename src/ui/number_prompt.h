// A small dialog that asks for one number. Tests answer it through an
// answerer, so that no dialog waits for a person.
#pragma once

#include <QString>
#include <functional>
#include <optional>

class QWidget;

namespace vexorin::ui {

// The number typed, or nothing when the person cancelled.
std::optional<double> askNumber(QWidget* parent, const QString& title, const QString& label, double start,
                                int decimals);

// Answers instead of a person, given the dialog's title (an empty function restores the dialog).
using NumberAnswerer = std::function<std::optional<double>(const QString& title)>;
void setNumberAnswerer(NumberAnswerer answerer);

}  // namespace vexorin::ui
