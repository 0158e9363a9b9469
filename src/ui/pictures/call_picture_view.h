#pragma once

#include <QColor>
#include <QPainter>
#include <QPointF>
#include <QWidget>

#include <quillmate/symbols/call_picture.h>

namespace quillmate::ui {

/// The colours of a picture: of a light ground on paper, those of the window on the screen.
struct PictureColours {
  QColor ground, text, faint, line, cycle, selection;
  QColor routine, root, entry, outside;
  QColor rootLine, entryLine, outsideLine;

  static PictureColours Light();
  static PictureColours Of(const QPalette& palette);
};

/// Paints a picture with its upper left corner at the origin. `selected` is marked, if it is a node.
void PaintCallPicture(QPainter& painter, const symbols::CallPicture& picture, const PictureColours& colours,
                      int selected);
/// The font that pictures are laid out and painted in; one unit is one point of the picture.
QFont PictureFont(bool bold);
/// Lays it out for PaintCallPicture.
symbols::CallPicture DrawForScreen(const symbols::ReferenceIndex& index, const symbols::PictureRequest& request);

/// A picture of calls to look at: the wheel and + and - enlarge it, 0 shows all of it, it is moved with the mouse, and
/// the arrow keys go from node to node. A click or Enter chooses a node, a double click or Space takes it into the
/// middle.
class CallPictureView : public QWidget {
  Q_OBJECT

 public:
  CallPictureView();

  void Show(symbols::CallPicture picture);
  const symbols::CallPicture& Picture() const noexcept { return picture_; }
  /// The number of the node that the keys act on.
  int Selected() const noexcept { return selected_; }
  /// All of it, as large as it fits, but not enlarged.
  void ShowAll();
  void Enlarge(double factor, QPointF around);
  void EnlargeInMiddle(double factor) { Enlarge(factor, rect().center()); }
  /// Where a node is in the widget.
  QRectF PlaceOf(int node) const;

  QSize sizeHint() const override;

 signals:
  void Chosen(const quillmate::symbols::PictureNode& node);
  void MiddleWanted(const quillmate::symbols::PictureNode& node);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  int NodeAt(QPointF place) const;
  void Select(int node);
  void SelectNext(int dx, int dy);
  void KeepInSight();

  symbols::CallPicture picture_;
  int selected_ = 0;
  double scale_ = 1;
  QPointF origin_;
  bool showsAll_ = true;
  QPointF pressed_, grabbed_;
  bool isDragged_ = false;
};

/// Name, module, and what is said of a node, in words.
QString NodeText(const symbols::PictureNode& node);

}  // namespace quillmate::ui
