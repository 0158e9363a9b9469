#include "form_window.h"

#include <QHeaderView>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "button_row.h"
#include "qt_text.h"
#include "symbol_text.h"

namespace quillmate::ui {
namespace {

constexpr QSize kStartSize(1000, 560);
/// Number of the control, number of the handler.
constexpr int kControlRole = Qt::UserRole;
constexpr int kHandlerRole = Qt::UserRole + 1;

enum Column { kName, kType, kCaption, kEvents };

void Mark(QTreeWidgetItem& item, int column) {
  QFont font = item.font(column);
  font.setBold(true);
  item.setFont(column, font);
}

}  // namespace

FormWindow::FormWindow(QWidget* parent, const ListDesk& desk, std::shared_ptr<const project::Understanding> known,
                       project::FormPicture form)
    : QDialog(parent, Qt::Window),
      desk_(desk),
      known_(std::move(known)),
      form_(std::move(form)),
      list_(new QTreeWidget) {
  setObjectName(QStringLiteral("frmFormular"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(QStringLiteral("Formular: ") + FromUtf8(form_.title));
  resize(kStartSize.boundedTo(screen()->availableSize() * 9 / 10));
  auto* count = new QLabel(CountText());
  count->setObjectName(QStringLiteral("lblFormular"));
  count->setWordWrap(true);
  BuildList();
  auto* parts = new QSplitter;
  parts->setChildrenCollapsible(false);
  parts->addWidget(list_);
  if (form_.HasPlaces()) {
    sketch_ = new FormSketch(form_);
    parts->addWidget(sketch_);
    connect(sketch_, &FormSketch::Selected, this,
            [this](int control) { list_->setCurrentItem(items_[static_cast<std::size_t>(control)]); });
    connect(sketch_, &FormSketch::Chosen, this, &FormWindow::ChooseControl);
    connect(list_, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem* now) {
      if (now != nullptr) sketch_->Select(now->data(0, kControlRole).toInt());
    });
  }
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(count);
  layout->addWidget(parts, 1);
  layout->addWidget(MakeButtons());
  connect(list_, &QTreeWidget::itemClicked, this, [this](const QTreeWidgetItem* item) { Choose(item); });
  connect(list_, &QTreeWidget::itemActivated, this, [this](const QTreeWidgetItem* item) { Choose(item); });
  list_->setFocus();
}

QString FormWindow::CountText() const {
  if (form_.controls.empty()) {
    return form_.isPartial ? QStringLiteral(
                                 "Welche Steuerelemente das Formular hat, sagt die Quelle nicht: Sie stehen in "
                                 "einer Datei, die hier nicht gelesen wird.")
                           : QStringLiteral("Das Formular hat keine Steuerelemente.");
  }
  QString text = QStringLiteral("Steuerelemente: %1").arg(form_.controls.size());
  if (form_.isPartial) text += QStringLiteral(", vielleicht weitere");
  if (!form_.deadHandlers.empty()) {
    text += QStringLiteral(", tote Ereignisroutinen: %1").arg(form_.deadHandlers.size());
  }
  if (!form_.HasPlaces()) {
    text += QStringLiteral(". Eine Skizze gibt es nicht: Wo die Steuerelemente liegen, sagt die Quelle nicht.");
  }
  return text;
}

QString FormWindow::HandlerText(const project::FormEvent& event) const {
  if (event.handler == symbols::kNone) {
    return event.action.empty() ? QStringLiteral("Routine fehlt") : FromUtf8(event.action);
  }
  const symbols::Symbol& symbol = known_->Index().SymbolAt(event.handler);
  const std::uint32_t shown = known_->ShownLine(symbol.module, symbol.line);
  return QStringLiteral("%1, Zeile %2")
      .arg(SymbolName(known_->Index(), event.handler))
      .arg(shown > 0 ? shown : known_->Index().EditorLine(symbol.module, symbol.line));
}

void FormWindow::AddEvents(QTreeWidgetItem& item, const std::vector<project::FormEvent>& events) {
  for (const project::FormEvent& event : events) {
    auto* row = new QTreeWidgetItem(&item, {FromUtf8(event.name), {}, {}, HandlerText(event)});
    row->setData(0, kControlRole, item.data(0, kControlRole));
    row->setData(0, kHandlerRole, event.handler);
    if (event.handler == symbols::kNone && event.action.empty()) Mark(*row, kEvents);
  }
}

void FormWindow::BuildList() {
  list_->setObjectName(QStringLiteral("lstFormular"));
  list_->setAccessibleName(QStringLiteral("Steuerelemente"));
  list_->setHeaderLabels(
      {QStringLiteral("Name"), QStringLiteral("Typ"), QStringLiteral("Beschriftung"), QStringLiteral("Ereignisse")});
  list_->setUniformRowHeights(true);
  list_->setAllColumnsShowFocus(true);
  // Beside the sketch little of the list is seen: what the code does about a control comes before its caption.
  list_->header()->moveSection(kEvents, kType);
  auto* own = new QTreeWidgetItem(list_, {QStringLiteral("(Formular)"), {}, FromUtf8(form_.title), {}});
  own->setData(0, kControlRole, -1);
  own->setData(0, kHandlerRole, symbols::kNone);
  AddEvents(*own, form_.events);
  for (std::size_t i = 0; i < form_.controls.size(); ++i) {
    const project::FormControl& control = form_.controls[i];
    QString name = FromUtf8(control.name);
    if (control.index >= 0) name += QStringLiteral("(%1)").arg(control.index);
    QStringList events;
    for (const project::FormEvent& event : control.events) events << FromUtf8(event.name);
    auto* item = new QTreeWidgetItem(
        {name, FromUtf8(control.type), FromUtf8(control.caption), events.join(QStringLiteral(", "))});
    item->setData(0, kControlRole, static_cast<int>(i));
    item->setData(0, kHandlerRole, symbols::kNone);
    const bool isInside = control.parent >= 0 && control.parent < static_cast<int>(i);
    if (isInside) {
      items_[static_cast<std::size_t>(control.parent)]->addChild(item);
    } else {
      list_->addTopLevelItem(item);
    }
    items_.push_back(item);
    AddEvents(*item, control.events);
  }
  if (!form_.deadHandlers.empty()) {
    auto* dead = new QTreeWidgetItem(list_, {QStringLiteral("Tote Ereignisroutinen")});
    dead->setData(0, kControlRole, -1);
    dead->setData(0, kHandlerRole, symbols::kNone);
    Mark(*dead, kName);
    for (const symbols::SymbolId routine : form_.deadHandlers) {
      project::FormEvent event{std::string(known_->Index().Name(routine)), routine, {}};
      AddEvents(*dead, {event});
      dead->child(dead->childCount() - 1)->setText(kEvents, QStringLiteral("Das Steuerelement gibt es nicht."));
    }
  }
  list_->expandAll();
  for (const Column column : {kName, kType, kCaption, kEvents}) list_->resizeColumnToContents(column);
  list_->setCurrentItem(list_->topLevelItem(0));
}

QWidget* FormWindow::MakeButtons() {
  auto* row = new ButtonRow;
  row->Add("cmdKopieren", "&Kopieren", [this] { desk_.interaction.Guarded([this] { CopyList(desk_, {AsTable()}); }); });
  row->Add("cmdSpeichern", "S&peichern ...",
           [this] { desk_.interaction.Guarded([this] { SaveList(desk_, {AsTable()}); }); });
  row->Add("cmdSchliessen", "S&chließen", [this] { close(); });
  return row;
}

void FormWindow::Choose(const QTreeWidgetItem* item) {
  const auto handler = item->data(0, kHandlerRole).value<symbols::SymbolId>();
  if (handler != symbols::kNone) emit RoutineChosen(handler);
}

void FormWindow::ChooseControl(int control) {
  const std::vector<project::FormEvent>& events = form_.controls[static_cast<std::size_t>(control)].events;
  const auto handled = std::ranges::find_if(events, [](const auto& e) { return e.handler != symbols::kNone; });
  if (handled != events.end()) emit RoutineChosen(handled->handler);
}

output::Table FormWindow::AsTable() const {
  return {"Formular", {"Name", "Typ", "Beschriftung", "Ereignis", "Behandlung"}, [this](output::TableSink& sink) {
            const auto write = [&](const project::FormControl& control) {
              const project::FormEvent none;
              for (std::size_t i = 0; i < std::max<std::size_t>(1, control.events.size()); ++i) {
                const bool isThere = i < control.events.size();
                const project::FormEvent& event = isThere ? control.events[i] : none;
                sink.Text(control.name).Text(control.type).Text(control.caption).Text(event.name);
                sink.Text(isThere ? ToUtf8(HandlerText(event)) : std::string()).EndRow();
              }
            };
            project::FormControl own;
            own.name = "(Formular)";
            own.caption = form_.title;
            own.events = form_.events;
            write(own);
            for (const project::FormControl& control : form_.controls) write(control);
            for (const symbols::SymbolId routine : form_.deadHandlers) {
              sink.Text("").Text("").Text("").Text(known_->Index().Name(routine)).Text("tot").EndRow();
            }
          }};
}

}  // namespace quillmate::ui
