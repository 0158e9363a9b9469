#include "call_picture_view.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainterPath>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

using symbols::CallPicture;
using symbols::PictureEdge;
using symbols::PictureNode;

constexpr double kSmallest = 0.1;
constexpr double kLargest = 4;
constexpr double kZoomStep = 1.25;
constexpr double kTurn = 120;
constexpr double kCorner = 4;
constexpr QSizeF kArrow(7, 3.5);
constexpr QSize kStartSize(900, 480);

QRectF RectOf(const PictureNode& node) { return {node.x, node.y, node.width, node.height}; }

bool IsSure(const PictureEdge& edge) {
  return edge.certainty == symbols::Certainty::kSure || edge.certainty == symbols::Certainty::kHost;
}

void PaintEdge(QPainter& painter, const CallPicture& picture, const PictureEdge& edge, const PictureColours& colours) {
  const PictureNode& from = picture.nodes[edge.from];
  const PictureNode& to = picture.nodes[edge.to];
  const QPointF start(from.x + from.width, from.y + from.height / 2);
  const QPointF end(to.x, to.y + to.height / 2);
  const QPointF bend(symbols::PictureBend(from, to), 0);
  const QColor colour = edge.isCycle ? colours.cycle : colours.line;
  painter.setPen(QPen(colour, 1.3, IsSure(edge) ? Qt::SolidLine : Qt::DashLine));
  painter.setBrush(Qt::NoBrush);
  QPainterPath path(start);
  path.cubicTo(start + bend, end - bend, end);
  painter.drawPath(path);
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  painter.drawPolygon(QPolygonF(
      {end, end - QPointF(kArrow.width(), kArrow.height()), end - QPointF(kArrow.width(), -kArrow.height())}));
}

struct NodeLook {
  QColor fill, line;
};

NodeLook LookOf(const PictureNode& node, const PictureColours& colours) {
  if (node.kind == PictureNode::Kind::kOutside) return {colours.outside, colours.outsideLine};
  if (node.kind == PictureNode::Kind::kMore) return {colours.ground, colours.line};
  if (node.level == 0) return {colours.root, colours.rootLine};
  return node.isEntry ? NodeLook{colours.entry, colours.entryLine} : NodeLook{colours.routine, colours.line};
}

void PaintNode(QPainter& painter, const PictureNode& node, const PictureColours& colours, bool isSelected) {
  const NodeLook look = LookOf(node, colours);
  const QRectF rect = RectOf(node);
  const bool isDashed = node.kind == PictureNode::Kind::kMore;
  painter.setPen(
      QPen(node.isCycle ? colours.cycle : look.line, node.level == 0 ? 2 : 1, isDashed ? Qt::DashLine : Qt::SolidLine));
  painter.setBrush(look.fill);
  painter.drawRoundedRect(rect, kCorner, kCorner);
  if (isSelected) {
    painter.setPen(QPen(colours.selection, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(-3, -3, 3, 3), kCorner + 2, kCorner + 2);
  }
  const QRectF inner = rect.adjusted(symbols::kPictureTextMargin, 2, -symbols::kPictureTextMargin, -2);
  const auto line = [&](const QString& text, bool bold, const QColor& colour, int place, const QRectF& room) {
    painter.setFont(PictureFont(bold));
    painter.setPen(colour);
    // What was measured to fit may lack a trifle when it is measured again.
    const QString shown = QFontMetricsF(painter.font()).elidedText(text, Qt::ElideRight, room.width() + 1);
    painter.drawText(room.adjusted(0, 0, 2, 0), place | Qt::AlignLeft, shown);
  };
  const QString title = FromUtf8(node.title) + (node.isCycle ? QStringLiteral(" ↻") : QString());
  if (node.place.empty()) {
    line(title, true, colours.text, Qt::AlignVCenter, inner);
  } else {
    line(title, true, colours.text, Qt::AlignTop, inner);
    line(FromUtf8(node.place), false, colours.faint, Qt::AlignBottom, inner);
  }
}

QColor Mix(const QColor& a, const QColor& b, double share) {
  return QColor::fromRgbF(static_cast<float>(a.redF() * (1 - share) + b.redF() * share),
                          static_cast<float>(a.greenF() * (1 - share) + b.greenF() * share),
                          static_cast<float>(a.blueF() * (1 - share) + b.blueF() * share));
}

}  // namespace

PictureColours PictureColours::Light() {
  return {QColor(0xFFFFFF), QColor(0x1B1B1B), QColor(0x555555), QColor(0x6B7688), QColor(0xB3261E),
          QColor(0x1F5FAE), QColor(0xFFFFFF), QColor(0xD7E6FB), QColor(0xE4F3E3), QColor(0xFDF1D4),
          QColor(0x1F5FAE), QColor(0x3B7D3A), QColor(0x9A6B00)};
}

PictureColours PictureColours::Of(const QPalette& palette) {
  const QColor ground = palette.color(QPalette::Base);
  if (ground.lightness() > 127) return Light();
  const QColor text = palette.color(QPalette::Text);
  return {ground,
          text,
          Mix(text, ground, 0.3),
          QColor(0x9AA5B8),
          QColor(0xFF8A80),
          QColor(0x8AB4F8),
          Mix(ground, text, 0.08),
          QColor(0x1E3A5F),
          QColor(0x1F3D22),
          QColor(0x453611),
          QColor(0x8AB4F8),
          QColor(0x81C784),
          QColor(0xE0B24A)};
}

QFont PictureFont(bool bold) {
  QFont font = QApplication::font();
  font.setPixelSize(static_cast<int>(symbols::kPictureTextSize));
  font.setBold(bold);
  return font;
}

CallPicture DrawForScreen(const symbols::ReferenceIndex& index, const symbols::PictureRequest& request) {
  const QFontMetricsF plain(PictureFont(false)), bold(PictureFont(true));
  return symbols::DrawCalls(index, request, [&](std::string_view text, bool isBold) {
    return (isBold ? bold : plain).horizontalAdvance(FromUtf8(text)) + 1;
  });
}

void PaintCallPicture(QPainter& painter, const CallPicture& picture, const PictureColours& colours, int selected) {
  painter.setRenderHint(QPainter::Antialiasing);
  for (const PictureEdge& edge : picture.edges) PaintEdge(painter, picture, edge, colours);
  for (std::size_t node = 0; node < picture.nodes.size(); ++node) {
    PaintNode(painter, picture.nodes[node], colours, static_cast<int>(node) == selected);
  }
}

QString NodeText(const PictureNode& node) {
  QString text = FromUtf8(node.title);
  if (!node.place.empty()) text += QStringLiteral(" in ") + FromUtf8(node.place);
  if (node.kind == PictureNode::Kind::kMore) return text + QStringLiteral(" auf dieser Ebene");
  if (node.kind == PictureNode::Kind::kOutside) return text + QStringLiteral(", außerhalb des Codes");
  text += node.level == 0  ? QStringLiteral(", in der Mitte")
          : node.level < 0 ? QStringLiteral(", Aufrufer der Ebene %1").arg(-node.level)
                           : QStringLiteral(", aufgerufen auf Ebene %1").arg(node.level);
  if (node.isEntry) text += QStringLiteral(", wird von nichts aufgerufen");
  if (node.isCycle) text += QStringLiteral(", Teil eines Kreises");
  return text;
}

CallPictureView::CallPictureView() {
  setObjectName(QStringLiteral("picAufrufe"));
  setAccessibleName(QStringLiteral("Bild der Aufrufe"));
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setMinimumSize(120, 80);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize CallPictureView::sizeHint() const { return kStartSize; }

void CallPictureView::Show(CallPicture picture) {
  picture_ = std::move(picture);
  Select(0);
  ShowAll();
}

void CallPictureView::Select(int node) {
  selected_ = node;
  if (node < static_cast<int>(picture_.nodes.size())) {
    setAccessibleDescription(NodeText(picture_.nodes[static_cast<std::size_t>(node)]));
  }
  update();
}

void CallPictureView::ShowAll() {
  showsAll_ = true;
  if (picture_.width <= 0 || picture_.height <= 0) return;
  scale_ = std::clamp(std::min(width() / picture_.width, height() / picture_.height), kSmallest, 1.0);
  origin_ = QPointF(width() - picture_.width * scale_, height() - picture_.height * scale_) / 2;
  update();
}

void CallPictureView::Enlarge(double factor, QPointF around) {
  const double scale = std::clamp(scale_ * factor, kSmallest, kLargest);
  origin_ = around - (around - origin_) * (scale / scale_);
  scale_ = scale;
  showsAll_ = false;
  update();
}

QRectF CallPictureView::PlaceOf(int node) const {
  const QRectF rect = RectOf(picture_.nodes[static_cast<std::size_t>(node)]);
  return {origin_ + rect.topLeft() * scale_, rect.size() * scale_};
}

int CallPictureView::NodeAt(QPointF place) const {
  const QPointF at = (place - origin_) / scale_;
  const auto found = std::ranges::find_if(picture_.nodes, [&](const PictureNode& n) { return RectOf(n).contains(at); });
  return found == picture_.nodes.end() ? -1 : static_cast<int>(found - picture_.nodes.begin());
}

void CallPictureView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const PictureColours colours = PictureColours::Of(palette());
  painter.fillRect(rect(), colours.ground);
  painter.translate(origin_);
  painter.scale(scale_, scale_);
  PaintCallPicture(painter, picture_, colours, hasFocus() ? selected_ : -1);
}

void CallPictureView::resizeEvent(QResizeEvent*) {
  if (showsAll_) ShowAll();
}

void CallPictureView::wheelEvent(QWheelEvent* event) {
  Enlarge(std::pow(kZoomStep, event->angleDelta().y() / kTurn), event->position());
  event->accept();
}

void CallPictureView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton && event->button() != Qt::MiddleButton) return;
  pressed_ = event->position();
  grabbed_ = origin_;
  isDragged_ = false;
}

void CallPictureView::mouseMoveEvent(QMouseEvent* event) {
  if ((event->buttons() & (Qt::LeftButton | Qt::MiddleButton)) == 0) {
    setCursor(NodeAt(event->position()) >= 0 ? Qt::PointingHandCursor : Qt::OpenHandCursor);
    return;
  }
  const QPointF way = event->position() - pressed_;
  if (!isDragged_ && way.manhattanLength() < QApplication::startDragDistance()) return;
  isDragged_ = true;
  showsAll_ = false;
  setCursor(Qt::ClosedHandCursor);
  origin_ = grabbed_ + way;
  update();
}

void CallPictureView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || std::exchange(isDragged_, false)) return;
  const int node = NodeAt(event->position());
  if (node < 0) return;
  Select(node);
  emit Chosen(picture_.nodes[static_cast<std::size_t>(node)]);
}

void CallPictureView::mouseDoubleClickEvent(QMouseEvent* event) {
  const int node = NodeAt(event->position());
  // The release that follows would choose once more.
  isDragged_ = true;
  if (node >= 0) emit MiddleWanted(picture_.nodes[static_cast<std::size_t>(node)]);
}

void CallPictureView::SelectNext(int dx, int dy) {
  const QPointF from = RectOf(picture_.nodes[static_cast<std::size_t>(selected_)]).center();
  int best = selected_;
  double nearest = std::numeric_limits<double>::max();
  for (std::size_t node = 0; node < picture_.nodes.size(); ++node) {
    const QPointF way = RectOf(picture_.nodes[node]).center() - from;
    const double along = way.x() * dx + way.y() * dy;
    const double aside = std::abs(dx != 0 ? way.y() : way.x());
    if (along <= 1 || (dy != 0 && aside > 1)) continue;
    const double distance = along + aside / 4;
    if (distance < nearest) {
      nearest = distance;
      best = static_cast<int>(node);
    }
  }
  Select(best);
  KeepInSight();
}

void CallPictureView::KeepInSight() {
  const QRectF place = PlaceOf(selected_);
  const QRectF room = QRectF(rect()).adjusted(10, 10, -10, -10);
  QPointF shift;
  if (place.right() > room.right()) shift.setX(room.right() - place.right());
  if (place.left() + shift.x() < room.left()) shift.setX(room.left() - place.left());
  if (place.bottom() > room.bottom()) shift.setY(room.bottom() - place.bottom());
  if (place.top() + shift.y() < room.top()) shift.setY(room.top() - place.top());
  if (!shift.isNull()) showsAll_ = false;
  origin_ += shift;
  update();
}

void CallPictureView::keyPressEvent(QKeyEvent* event) {
  if (picture_.nodes.empty()) return QWidget::keyPressEvent(event);
  const PictureNode& node = picture_.nodes[static_cast<std::size_t>(selected_)];
  switch (event->key()) {
    case Qt::Key_Left:
      return SelectNext(-1, 0);
    case Qt::Key_Right:
      return SelectNext(1, 0);
    case Qt::Key_Up:
      return SelectNext(0, -1);
    case Qt::Key_Down:
      return SelectNext(0, 1);
    case Qt::Key_Return:
    case Qt::Key_Enter:
      emit Chosen(node);
      return;
    case Qt::Key_Space:
      emit MiddleWanted(node);
      return;
    case Qt::Key_Plus:
      return EnlargeInMiddle(kZoomStep);
    case Qt::Key_Minus:
      return EnlargeInMiddle(1 / kZoomStep);
    case Qt::Key_0:
      return ShowAll();
    default:
      QWidget::keyPressEvent(event);
  }
}

bool CallPictureView::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  const int node = NodeAt(help->pos());
  if (node < 0) {
    QToolTip::hideText();
  } else {
    QToolTip::showText(help->globalPos(), NodeText(picture_.nodes[static_cast<std::size_t>(node)]), this);
  }
  return true;
}

}  // namespace quillmate::ui
