#include "form_sketch.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

constexpr double kTwipsPerPixel = 15;
constexpr double kMargin = 10;
constexpr int kSmallestText = 7;
constexpr double kLargestScale = 2.0 / kTwipsPerPixel;
/// Of a control whose size is not known, in twips.
constexpr QSizeF kUsualSize(1440, 360);
constexpr QSizeF kTallSize(1440, 1080);
constexpr QSizeF kSquareSize(360, 360);

bool IsOneOf(const std::string& type, std::initializer_list<const char*> types) {
  return std::ranges::any_of(types, [&](const char* one) { return FromUtf8(type).contains(QLatin1String(one)); });
}

QSizeF UsualSize(const project::FormControl& control) {
  if (IsOneOf(control.type, {"List", "Frame", "Page", "Picture", "Image", "Grid"})) return kTallSize;
  return IsOneOf(control.type, {"Spin", "Timer", "Dialog"}) ? kSquareSize : kUsualSize;
}

/// A caption as it is seen, without the mark of its access key.
QString SeenCaption(const std::string& caption) {
  QString text = FromUtf8(caption);
  text.replace(QStringLiteral("&&"), QStringLiteral("\x01"));
  return text.remove(QLatin1Char('&')).replace(QLatin1Char('\x01'), QLatin1Char('&'));
}

}  // namespace

QString ControlText(const project::FormControl& control) {
  QString text = FromUtf8(control.name);
  if (control.index >= 0) text += QStringLiteral("(%1)").arg(control.index);
  if (!control.type.empty()) text += QStringLiteral(", ") + FromUtf8(control.type);
  if (!control.caption.empty()) text += QStringLiteral(", \"%1\"").arg(SeenCaption(control.caption));
  const std::size_t events = control.events.size();
  if (events == 0) return text + QStringLiteral(", keine Ereignisse");
  return text + (events == 1 ? QStringLiteral(", 1 Ereignis") : QStringLiteral(", %1 Ereignisse").arg(events));
}

FormSketch::FormSketch(const project::FormPicture& form) : form_(form) {
  setObjectName(QStringLiteral("picFormular"));
  setAccessibleName(QStringLiteral("Skizze des Formulars"));
  setFocusPolicy(Qt::StrongFocus);
  setMinimumSize(160, 120);
  size_ = QSizeF(form.width.value_or(0), form.height.value_or(0));
  for (const project::FormControl& control : form.controls) {
    Box box;
    if (control.left && control.top) {
      const QSizeF usual = UsualSize(control);
      box.isSized = control.width && control.height;
      box.place = QRectF(*control.left, *control.top, control.width.value_or(usual.width()),
                         control.height.value_or(usual.height()));
      size_ = size_.expandedTo(QSizeF(box.place.right(), box.place.bottom()));
    }
    boxes_.push_back(box);
  }
}

QSize FormSketch::sizeHint() const {
  const QSizeF size = size_ / kTwipsPerPixel + QSizeF(2 * kMargin, 2 * kMargin);
  return size.toSize().expandedTo(QSize(240, 160)).boundedTo(QSize(720, 560));
}

double FormSketch::Scale() const {
  if (size_.isEmpty()) return 1 / kTwipsPerPixel;
  return std::min({(width() - 2 * kMargin) / size_.width(), (height() - 2 * kMargin) / size_.height(), kLargestScale});
}

QRectF FormSketch::PlaceOf(int control) const {
  const QRectF& place = boxes_[static_cast<std::size_t>(control)].place;
  const double scale = Scale();
  return place.isEmpty() ? QRectF() : QRectF(place.topLeft() * scale + QPointF(kMargin, kMargin), place.size() * scale);
}

/// The smallest one: containers are around what they hold.
int FormSketch::ControlAt(QPointF place) const {
  int found = -1;
  for (int control = 0; control < static_cast<int>(boxes_.size()); ++control) {
    const QRectF box = PlaceOf(control);
    if (!box.contains(place)) continue;
    const QRectF before = found < 0 ? QRectF() : PlaceOf(found);
    if (found < 0 || box.width() * box.height() <= before.width() * before.height()) found = control;
  }
  return found;
}

void FormSketch::Select(int control) {
  selected_ = control;
  setAccessibleDescription(control < 0 ? QString() : ControlText(form_.controls[static_cast<std::size_t>(control)]));
  update();
}

void FormSketch::PaintControl(QPainter& painter, int control) const {
  const project::FormControl& what = form_.controls[static_cast<std::size_t>(control)];
  const QRectF place = PlaceOf(control);
  if (place.isEmpty()) return;
  const bool isField = IsOneOf(what.type, {"Text", "Combo", "List", "Grid"});
  const bool isPlain = IsOneOf(what.type, {"Label", "Line", "Shape"});
  const bool isFrame = IsOneOf(what.type, {"Frame", "Page", "Tab"});
  const QColor text = palette().color(QPalette::WindowText);
  QColor line = text;
  line.setAlphaF(isPlain ? 0.25F : 0.55F);
  const bool isUsed = std::ranges::any_of(what.events, [](const auto& e) { return e.handler != symbols::kNone; });
  if (isUsed) line = palette().color(QPalette::Highlight);
  painter.setPen(
      QPen(line, isUsed ? 1.6 : 1, boxes_[static_cast<std::size_t>(control)].isSized ? Qt::SolidLine : Qt::DashLine));
  painter.setBrush(isPlain || isFrame ? QBrush(Qt::NoBrush)
                                      : QBrush(palette().color(isField ? QPalette::Base : QPalette::Button)));
  painter.drawRect(place);
  if (control == selected_) {
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(place.adjusted(-2, -2, 2, 2));
  }
  const QString caption = what.caption.empty() ? FromUtf8(what.name) : SeenCaption(what.caption);
  QColor ink = isField ? palette().color(QPalette::Text) : text;
  if (what.caption.empty()) ink.setAlphaF(0.7F);
  painter.setPen(ink);
  const QRectF room = place.adjusted(3, 1, -3, -1);
  const int where = isFrame              ? Qt::AlignLeft | Qt::AlignTop
                    : isPlain || isField ? Qt::AlignLeft | Qt::AlignVCenter
                                         : static_cast<int>(Qt::AlignCenter);
  painter.save();
  painter.setClipRect(place);
  painter.drawText(room, where,
                   painter.fontMetrics().elidedText(caption, Qt::ElideRight, static_cast<int>(room.width())));
  painter.restore();
}

void FormSketch::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF form(QPointF(kMargin, kMargin), size_ * Scale());
  painter.setPen(palette().color(QPalette::Mid));
  painter.setBrush(palette().color(QPalette::Window));
  painter.fillRect(rect(), palette().color(QPalette::Base));
  painter.drawRect(form);
  // Texts shrink with their boxes, as far as they can be read.
  QFont small = font();
  const int usual = painter.fontInfo().pixelSize();
  small.setPixelSize(
      std::clamp(static_cast<int>(usual * Scale() * kTwipsPerPixel), std::min(kSmallestText, usual), usual));
  painter.setFont(small);
  for (int control = 0; control < static_cast<int>(boxes_.size()); ++control) PaintControl(painter, control);
}

void FormSketch::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const int control = ControlAt(event->position());
  if (control < 0) return;
  Select(control);
  emit Selected(control);
  emit Chosen(control);
}

void FormSketch::SelectNext(int steps) {
  const int count = static_cast<int>(boxes_.size());
  for (int at = selected_ + steps; at >= 0 && at < count; at += steps) {
    if (boxes_[static_cast<std::size_t>(at)].place.isEmpty()) continue;
    Select(at);
    emit Selected(at);
    return;
  }
}

void FormSketch::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Right:
    case Qt::Key_Down:
      return SelectNext(1);
    case Qt::Key_Left:
    case Qt::Key_Up:
      return SelectNext(-1);
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (selected_ >= 0) emit Chosen(selected_);
      return;
    default:
      QWidget::keyPressEvent(event);
  }
}

bool FormSketch::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  const int control = ControlAt(help->pos());
  if (control < 0) {
    QToolTip::hideText();
  } else {
    QToolTip::showText(help->globalPos(), ControlText(form_.controls[static_cast<std::size_t>(control)]), this);
  }
  return true;
}

}  // namespace quillmate::ui
