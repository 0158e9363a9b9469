#include "hand_over.h"

#include <QDateTime>
#include <utility>

#include <quillmate/files/paths.h>

#include "hand_over_maker.h"
#include "qt_text.h"
#include "save_dialog.h"

namespace quillmate::ui {
namespace {

namespace fs = std::filesystem;

/// A place in a folder that nothing has yet: "Lager Übergabe", "Lager Übergabe (2)".
fs::path FreeName(const fs::path& folder, const std::string& name) {
  fs::path free = folder / files::PathFromText(name);
  std::error_code ignored;
  for (int number = 2; fs::exists(fs::symlink_status(free, ignored)); ++number) {
    free = folder / files::PathFromText(name + " (" + std::to_string(number) + ")");
  }
  return free;
}

const QString& TaskName() {
  static const QString name = QStringLiteral("frmUebergabeFortschritt");
  return name;
}

}  // namespace

HandOver::HandOver(QWidget& window, const ListDesk& desk, Exports& exports, PrintCommands& printing)
    : window_(window), desk_(desk), exports_(exports), printing_(printing) {}

void HandOver::Ask(std::shared_ptr<const project::Understanding> known) {
  if (!desk_.tasks.IsFree(TaskName())) return;
  known_ = std::move(known);
  auto* dialog = new HandOverDialog(&window_, choice_);
  connect(dialog, &HandOverDialog::Chosen, this, [this](const HandOverChoice& choice) {
    choice_ = choice;
    desk_.interaction.Guarded([this, choice] {
      if (desk_.session.IsLoaded()) Run(choice);
    });
  });
  connect(dialog, &QDialog::finished, this, [this](int result) {
    if (result == QDialog::Rejected) known_.reset();
  });
  dialog->open();
}

fs::path HandOver::ChooseTarget(bool zipped) {
  const QString start = FromUtf8(desk_.globals.LastProjectFolder);
  const std::string name = files::CleanName(desk_.session.Name() + " Übergabe");
  if (zipped) {
    return ToPath(SaveFileDialog(desk_.interaction, QStringLiteral("zip"), "Zip-Datei:zip;", start, FromUtf8(name)));
  }
  const QString chosen =
      desk_.interaction.Desktop().ChooseFolder(QStringLiteral("Bitte Ordner für die Übergabe auswählen"), start);
  return chosen.isEmpty() ? fs::path() : FreeName(ToPath(chosen), name);
}

void HandOver::Run(const HandOverChoice& choice) {
  // What was understood belongs to the project that was loaded when the command was given.
  std::shared_ptr<const project::Understanding> held = std::exchange(known_, nullptr);
  const fs::path target = ChooseTarget(choice.zipped);
  if (target.empty() || !desk_.tasks.IsFree(TaskName())) return;
  desk_.readFiles.Check({target});
  HandOverOrder order = OrderFor(choice);
  order.target = target;
  order.site = exports_.SiteOf(*held);
  order.known = std::move(held);
  desk_.tasks.Start({TaskName(), QStringLiteral("Übergabe"),
                     [order = std::move(order)](BackgroundJob& job) { HandProjectOver(order, job); },
                     [this, target] {
                       desk_.interaction.Show("Die Übergabe liegt in\r\n" + files::PathText(target),
                                              MessageIcon::kInformation);
                     }});
}

HandOverOrder HandOver::OrderFor(const HandOverChoice& choice) const {
  HandOverOrder order;
  order.choice = choice;
  order.source = desk_.session.Files();
  order.title = desk_.session.Name();
  order.time = ToUtf8(QDateTime::currentDateTime().toString(QStringLiteral("dd.MM.yyyy, HH:mm")));
  if (notes_) order.notes = notes_();
  order.look = settings::LookOf(desk_.globals.Options);
  order.moduleCount = desk_.session.Views().Count();
  if (choice.pdf) order.pdf = printing_.WholeProject();
  return order;
}

}  // namespace quillmate::ui
