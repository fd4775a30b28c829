// The message boxes of Vexorin: fixed text, one OK button. Tests replace the
// presenter so that no box waits for a click.
#pragma once

#include <QString>
#include <functional>

class QWidget;

namespace MessageBoxes {

// Title "Vexorin", no icon.
void information(QWidget* parent, const QString& text);
// A title of its own, no icon.
void information(QWidget* parent, const QString& text, const QString& title);
// Title "Vexorin", the exclamation icon.
void exclamation(QWidget* parent, const QString& text);
// Like information, but the box does not wait: the caller goes on at once (alerts
// that repeat while a box stays open show one more box each time).
void notify(QWidget* parent, const QString& text);
// A title of its own and the critical icon.
void critical(QWidget* parent, const QString& text, const QString& title);

// A question with the buttons Yes and No (title "Vexorin"): true for Yes.
bool question(QWidget* parent, const QString& text);

using Presenter = std::function<void(const QString& text, const QString& title, bool critical)>;
// Replaces the boxes (an empty presenter restores them).
void setPresenter(Presenter presenter);
// Answers the questions instead of a person (an empty function restores the boxes).
using Answerer = std::function<bool(const QString& text)>;
void setQuestionAnswerer(Answerer answerer);

}  // namespace MessageBoxes
