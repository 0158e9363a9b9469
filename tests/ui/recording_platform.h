#pragma once

#include <QBuffer>
#include <QPdfWriter>
#include <deque>
#include <functional>
#include <utility>
#include <vector>

#include <quillmate/ui/platform.h>

namespace quillmate::testing {

/// Stands in for the desktop: keeps what was shown, and answers from what the test has put in. A question without a
/// prepared answer is answered with the first button.
class RecordingPlatform : public ui::Platform {
 public:
  std::vector<ui::Message> messages;
  std::deque<ui::Answer> answers;
  std::deque<QString> typed;
  std::deque<QString> folders;
  QStringList files;
  std::deque<QString> saveFiles;
  std::vector<ui::SaveRequest> saveRequests;
  /// What was to be opened outside of the program, and whether that works.
  QStringList opened;
  bool canOpen = true;
  bool hasHelpViewer = true;
  ui::ClipboardContent clipboard;

  ui::Answer Show(const ui::Message& message) override {
    messages.push_back(message);
    if (onShow) std::exchange(onShow, nullptr)();
    return Next(answers, message.buttons == ui::Buttons::kOk ? ui::Answer::kOk : ui::Answer::kYes);
  }
  std::optional<QString> AskText(const QString&, const QString& prompt, const QString&) override {
    prompts.append(prompt);
    return typed.empty() ? std::nullopt : std::optional(Next(typed, {}));
  }
  QString ChooseFolder(const QString& title, const QString&) override {
    prompts.append(title);
    return Next(folders, {});
  }
  QStringList ChooseFiles(const QString& title, const QString&, const QString&) override {
    prompts.append(title);
    return files;
  }
  void SetClipboard(const ui::ClipboardContent& content) override { clipboard = content; }
  QString ClipboardText() override { return clipboard.text; }
  void ClearClipboard() override { clipboard = {}; }
  QString ChooseSaveFile(const ui::SaveRequest& request) override {
    saveRequests.push_back(request);
    return Next(saveFiles, {});
  }
  bool OpenInBrowser(const QString& file) override { return Open(file); }
  bool OpenHelp(const QString& file, const QString& page) override {
    return hasHelpViewer && Open(page.isEmpty() ? file : file + QStringLiteral("::/") + page);
  }
  void Print(const QString& title, const std::function<void(QPagedPaintDevice&)>& print) override {
    QBuffer pages;
    pages.open(QIODevice::WriteOnly);
    QPdfWriter printer(&pages);
    print(printer);
    prompts.append(title);
  }
  void Preview(const QString& title, const std::function<void(QPagedPaintDevice&)>& print) override {
    Print(title, print);
  }
  bool StartSystemInformation() override { return Open(QStringLiteral("Systeminformationen")); }
  qint64 Milliseconds() override {
    if (onClock) onClock();
    return clock += 1000;
  }

  /// The text of the only message since the last call; all texts when there were more.
  QString TakeText() {
    QStringList texts;
    for (const ui::Message& message : messages) texts.append(message.text);
    messages.clear();
    return texts.join(QStringLiteral("|"));
  }

  QStringList prompts;
  /// Called once, while the next message is shown.
  std::function<void()> onShow;
  /// Called whenever the window looks at the clock: with each progress text.
  std::function<void()> onClock;
  qint64 clock = 0;

 private:
  bool Open(const QString& what) {
    opened.append(what);
    return canOpen;
  }
  template <typename Value>
  static Value Next(std::deque<Value>& values, Value otherwise) {
    if (values.empty()) return otherwise;
    Value value = values.front();
    values.pop_front();
    return value;
  }
};

}  // namespace quillmate::testing
