#include "call_picture_window.h"

#include <QBuffer>
#include <QHBoxLayout>
#include <QImage>
#include <QLabel>
#include <QPagedPaintDevice>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <utility>

#include <quillmate/export/call_picture_svg.h>
#include <quillmate/files/replacement.h>

#include "button_row.h"
#include "qt_text.h"
#include "save_dialog.h"
#include "symbol_text.h"

namespace quillmate::ui {
namespace {

constexpr int kMostLevels = 9;
constexpr int kStartLevels = 2;
constexpr double kZoomStep = 1.25;
/// Points of a saved picture for each of the layout: fit for paper.
constexpr double kImageScale = 2;
/// A picture that would be larger is saved smaller.
constexpr double kLargestImage = 16'000;

QByteArray PngOf(const symbols::CallPicture& picture) {
  const double scale = std::min(kImageScale, kLargestImage / std::max(picture.width, picture.height));
  QImage image(static_cast<int>(std::ceil(picture.width * scale)), static_cast<int>(std::ceil(picture.height * scale)),
               QImage::Format_RGB32);
  const PictureColours colours = PictureColours::Light();
  image.fill(colours.ground);
  {
    QPainter painter(&image);
    painter.scale(scale, scale);
    PaintCallPicture(painter, picture, colours, -1);
  }
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  return bytes;
}

QString CountText(const symbols::CallPicture& picture) {
  const auto count = [&](auto which) { return std::ranges::count_if(picture.nodes, which); };
  const auto callers = count([](const auto& node) { return node.level == -1 && node.more == 0; });
  const auto callees = count([](const auto& node) { return node.level == 1 && node.more == 0; });
  std::size_t moreCallers = 0, moreCallees = 0;
  for (const symbols::PictureNode& node : picture.nodes) {
    if (node.level == -1) moreCallers += node.more;
    if (node.level == 1) moreCallees += node.more;
  }
  if (callers + callees == 0) return QStringLiteral("Nichts ruft diese Routine auf, und sie ruft nichts auf.");
  return QStringLiteral("Unmittelbare Aufrufer: %1, unmittelbar aufgerufen: %2")
      .arg(static_cast<std::size_t>(callers) + moreCallers)
      .arg(static_cast<std::size_t>(callees) + moreCallees);
}

}  // namespace

CallPictureWindow::CallPictureWindow(QWidget* parent, const ListDesk& desk,
                                     std::shared_ptr<const project::Understanding> known, symbols::SymbolId routine)
    : QDialog(parent, Qt::Window),
      desk_(desk),
      known_(std::move(known)),
      routine_(routine),
      view_(new CallPictureView),
      count_(new QLabel) {
  setObjectName(QStringLiteral("frmAufrufbild"));
  setAttribute(Qt::WA_DeleteOnClose);
  count_->setObjectName(QStringLiteral("lblAufrufbild"));
  count_->setWordWrap(true);
  auto* legend = new QLabel(
      QStringLiteral("grün: nichts ruft sie auf  ·  gelb: Aufruf von außen  ·  gestrichelt: möglich  ·  rot ↻: Kreis"));
  legend->setWordWrap(true);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(MakeBar());
  layout->addWidget(view_, 1);
  layout->addWidget(count_);
  layout->addWidget(legend);
  layout->addWidget(MakeButtons());
  connect(view_, &CallPictureView::Chosen, this, [this](const symbols::PictureNode& node) {
    if (node.routine != symbols::kNone) emit RoutineChosen(node.routine);
  });
  connect(view_, &CallPictureView::MiddleWanted, this, [this](const symbols::PictureNode& node) {
    if (node.routine != symbols::kNone) ShowRoutine(node.routine);
  });
  Draw();
  resize(sizeHint().boundedTo(screen()->availableSize() * 9 / 10));
  view_->setFocus();
}

QSpinBox* CallPictureWindow::MakeLevels(const char* name, const char* label, QLayout& bar) {
  auto* levels = new QSpinBox;
  levels->setObjectName(QString::fromLatin1(name));
  levels->setRange(0, kMostLevels);
  levels->setValue(kStartLevels);
  auto* text = new QLabel(QString::fromUtf8(label));
  text->setBuddy(levels);
  levels->setAccessibleName(text->text().remove(QLatin1Char('&')));
  bar.addWidget(text);
  bar.addWidget(levels);
  connect(levels, &QSpinBox::valueChanged, this, &CallPictureWindow::Draw);
  return levels;
}

QWidget* CallPictureWindow::MakeBar() {
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  callers_ = MakeLevels("txtRuferEbenen", "Ebenen &links (Aufrufer)", *layout);
  callees_ = MakeLevels("txtGerufenenEbenen", "Ebenen &rechts (Aufgerufene)", *layout);
  layout->addStretch();
  const struct {
    const char* name;
    const char* text;
    const char* meaning;
    double factor;
  } kZooms[] = {{"cmdGroesser", "+", "Vergrößern (+)", kZoomStep},
                {"cmdKleiner", "−", "Verkleinern (-)", 1 / kZoomStep},
                {"cmdGanz", "Ganz", "Das ganze Bild (0)", 0}};
  for (const auto& zoom : kZooms) {
    auto* button = new QPushButton(QString::fromUtf8(zoom.text));
    button->setObjectName(QString::fromLatin1(zoom.name));
    button->setToolTip(QString::fromUtf8(zoom.meaning));
    button->setAccessibleName(QString::fromUtf8(zoom.meaning));
    button->setAutoDefault(false);
    if (zoom.factor > 0) button->setMaximumWidth(button->fontMetrics().height() * 2);
    layout->addWidget(button);
    connect(button, &QPushButton::clicked, view_, [this, factor = zoom.factor] {
      if (factor > 0) {
        view_->EnlargeInMiddle(factor);
      } else {
        view_->ShowAll();
      }
    });
  }
  return row;
}

QWidget* CallPictureWindow::MakeButtons() {
  auto* row = new ButtonRow;
  row->Add("cmdSpeichern", "S&peichern ...", [this] { desk_.interaction.Guarded([this] { Save(); }); });
  row->Add("cmdDrucken", "&Drucken ...", [this] { desk_.interaction.Guarded([this] { Print(); }); });
  row->Add("cmdSchliessen", "S&chließen", [this] { close(); });
  return row;
}

QString CallPictureWindow::Name() const { return QualifiedName(known_->Index(), routine_); }

symbols::PictureRequest CallPictureWindow::Request() const {
  symbols::PictureRequest request;
  request.routine = routine_;
  request.callerLevels = static_cast<std::uint32_t>(callers_->value());
  request.calleeLevels = static_cast<std::uint32_t>(callees_->value());
  return request;
}

void CallPictureWindow::Draw() {
  setWindowTitle(QStringLiteral("Aufrufbild: ") + Name());
  view_->Show(DrawForScreen(known_->Index(), Request()));
  count_->setText(CountText(view_->Picture()));
}

void CallPictureWindow::ShowRoutine(symbols::SymbolId routine) {
  routine_ = routine;
  Draw();
}

void CallPictureWindow::Save() {
  const QString file = SaveFileDialog(desk_.interaction, QStringLiteral("svg"), "SVG-Bild:svg;PNG-Bild:png;",
                                      FromUtf8(desk_.globals.LastProjectFolder), QStringLiteral("Aufrufe ") + Name());
  if (file.isEmpty()) return;
  const Working working(desk_.interaction);
  std::string bytes;
  if (file.endsWith(QStringLiteral(".png"), Qt::CaseInsensitive)) {
    bytes = PngOf(view_->Picture()).toStdString();
  } else {
    bytes = output::CallPictureSvg(symbols::DrawCalls(known_->Index(), Request()), {ToUtf8(windowTitle()), {}, true});
  }
  desk_.readFiles.Check({ToPath(file)});
  files::ReplaceFile(ToPath(file), bytes);
}

void CallPictureWindow::Print() {
  desk_.interaction.Desktop().Print(windowTitle(), [this](QPagedPaintDevice& device) {
    const symbols::CallPicture& picture = view_->Picture();
    QPageLayout page = device.pageLayout();
    page.setOrientation(picture.width > picture.height ? QPageLayout::Landscape : QPageLayout::Portrait);
    device.setPageLayout(page);
    QPainter painter(&device);
    const QRect room = painter.viewport();
    // At most as large as text is in print.
    const double scale = std::min(
        {room.width() / picture.width, room.height() / picture.height, static_cast<double>(device.logicalDpiX()) / 96});
    painter.scale(scale, scale);
    PaintCallPicture(painter, picture, PictureColours::Light(), -1);
  });
}

}  // namespace quillmate::ui
