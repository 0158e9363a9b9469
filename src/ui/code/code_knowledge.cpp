#include "code_knowledge.h"

#include <QApplication>
#include <utility>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

using State = project::UnderstandingBuilder::State;

/// Short work is not worth a word.
constexpr int kTellEvery = 250;

}  // namespace

CodeKnowledge::CodeKnowledge(project::Session& session, symbols::Host assumed)
    : session_(session),
      assumed_(assumed),
      builder_([this] { QMetaObject::invokeMethod(this, &CodeKnowledge::TakeOver, Qt::QueuedConnection); }) {
  setObjectName(QStringLiteral("Verständnis"));
  clock_.setInterval(kTellEvery);
  connect(&clock_, &QTimer::timeout, this, [this] {
    // What a command is at is more important.
    if (QApplication::overrideCursor() != nullptr) return;
    hasTold_ = true;
    emit StatusChanged(QStringLiteral("Untersuche den Code: %1 %").arg(builder_.Percent()));
  });
}

void CodeKnowledge::Start() {
  builder_.Start({session_.Folder(), session_.Texts().Time(), assumed_});
  if (IsOnTheWay()) clock_.start();
}

void CodeKnowledge::Drop() {
  clock_.stop();
  builder_.Drop();
}

void CodeKnowledge::TakeOver() {
  // What an earlier project's thread has sent comes too late.
  const State before = builder_.Now();
  builder_.Take();
  if (before != State::kBuilding || builder_.Now() == State::kBuilding) return;
  clock_.stop();
  if (std::exchange(hasTold_, false)) emit StatusChanged({});
  emit Arrived();
}

std::shared_ptr<const project::Understanding> CodeKnowledge::Get() {
  if (builder_.Now() == State::kWaiting) {
    builder_.Take();
    emit Arrived();
  }
  return builder_.Made();
}

QString CodeKnowledge::MissingText() const {
  if (IsOnTheWay()) {
    return QStringLiteral("Der Code wird noch untersucht (%1 %). Bitte gleich noch einmal.").arg(builder_.Percent());
  }
  if (!session_.IsLoaded()) return QStringLiteral("Es ist kein Projekt geladen.");
  const QString reason = FromUtf8(builder_.Error()).simplified();
  return reason.isEmpty() ? QStringLiteral("Der Code konnte nicht untersucht werden.")
                          : QStringLiteral("Der Code konnte nicht untersucht werden: ") + reason;
}

}  // namespace quillmate::ui
