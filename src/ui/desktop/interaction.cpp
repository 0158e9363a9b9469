#include "interaction.h"

#include <QApplication>
#include <QWidget>
#include <exception>
#include <utility>

#include "error_text.h"
#include "qt_text.h"

namespace quillmate::ui {
namespace {

/// How often long work shows where it is, and lets the desktop see that the program lives.
constexpr qint64 kProgressPause = 50;

}  // namespace

Interaction::Interaction(Platform& platform, QString title) : platform_(platform), title_(std::move(title)) {}

void Interaction::Guarded(const std::function<void()>& work) {
  if (isBusy_) return;
  isBusy_ = true;
  Attempt(work);
  isBusy_ = false;
  if (waiting_.empty()) return;
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (isBusy_ || waiting_.empty()) return;
        const std::function<void()> next = std::move(waiting_.front());
        waiting_.pop_front();
        Guarded(next);
      },
      Qt::QueuedConnection);
}

void Interaction::GuardedInTurn(std::function<void()> work) {
  if (isBusy_) {
    waiting_.push_back(std::move(work));
  } else {
    Guarded(work);
  }
}

void Interaction::Attempt(const std::function<void()>& step) {
  try {
    step();
  } catch (const std::exception& error) {
    Show(ErrorText(error), MessageIcon::kExclamation);
  } catch (...) {
    Show("Unbekannter Fehler", MessageIcon::kExclamation);
  }
}

Answer Interaction::Show(std::string_view text, MessageIcon icon, Buttons buttons, std::string_view detail,
                         std::string_view list) {
  return platform_.Show({title_, FromUtf8(text), icon, buttons, FromUtf8(detail), FromUtf8(list)});
}

void Interaction::ShowProgress(std::string_view text) {
  const qint64 now = platform_.Milliseconds();
  const bool atOnce = !text.empty() && now - lastShown_ >= kProgressPause;
  emit Progress(FromUtf8(text), atOnce);
  if (!atOnce) return;
  lastShown_ = now;
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

Working::Working(Interaction& interaction) : interaction_(interaction) {
  QApplication::setOverrideCursor(Qt::WaitCursor);
}

Working::~Working() {
  interaction_.ShowProgress({});
  QApplication::restoreOverrideCursor();
}

UpdateLock::UpdateLock(QWidget& widget) : widget_(widget) { widget_.setUpdatesEnabled(false); }

UpdateLock::~UpdateLock() { widget_.setUpdatesEnabled(true); }

}  // namespace quillmate::ui
