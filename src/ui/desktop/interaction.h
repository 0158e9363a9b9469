#pragma once

#include <QObject>
#include <QString>
#include <deque>
#include <functional>
#include <string_view>

#include <quillmate/ui/platform.h>

class QWidget;

namespace quillmate::ui {

/// How commands talk to the user: message boxes under the program's title, the progress of long work, and one guard
/// around everything that the user asks for.
class Interaction : public QObject {
  Q_OBJECT

 public:
  /// `title`: of the message boxes. The platform must outlive it.
  Interaction(Platform& platform, QString title);

  Platform& Desktop() const noexcept { return platform_; }
  const QString& Title() const noexcept { return title_; }

  /// Runs something the user asked for. An error is shown and ends it; while something runs, nothing else starts.
  void Guarded(const std::function<void()>& work);
  /// The same, but what comes while something runs is taken up after it.
  void GuardedInTurn(std::function<void()> work);
  /// Shows the error of a step within guarded work, which goes on.
  void Attempt(const std::function<void()>& step);

  /// Message box. Texts are UTF-8.
  Answer Show(std::string_view text, MessageIcon icon = MessageIcon::kNone, Buttons buttons = Buttons::kOk,
              std::string_view detail = {}, std::string_view list = {});
  /// What long work is at, UTF-8; empty when the work is done. Keeps the desktop from taking the program for dead.
  void ShowProgress(std::string_view text);

 signals:
  /// `atOnce`: to be painted although no events are handled meanwhile.
  void Progress(const QString& text, bool atOnce);

 private:
  Platform& platform_;
  QString title_;
  bool isBusy_ = false;
  std::deque<std::function<void()>> waiting_;
  qint64 lastShown_ = 0;
};

/// The hourglass, and no progress any more at the end, however the work ends.
class Working {
 public:
  explicit Working(Interaction& interaction);
  ~Working();
  Working(const Working&) = delete;
  Working& operator=(const Working&) = delete;

 private:
  Interaction& interaction_;
};

/// Keeps a widget from painting while it is being filled.
class UpdateLock {
 public:
  explicit UpdateLock(QWidget& widget);
  ~UpdateLock();
  UpdateLock(const UpdateLock&) = delete;
  UpdateLock& operator=(const UpdateLock&) = delete;

 private:
  QWidget& widget_;
};

}  // namespace quillmate::ui
