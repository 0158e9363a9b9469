#pragma once

#include <QWidget>

#include <quillmate/project/form_picture.h>

namespace quillmate::ui {

/// A form as a sketch: a box for each control whose place is known, as large as it fits; dashed where only the place is
/// known and not the size. The arrow keys go from control to control in the order of the list, a click or Enter
/// chooses.
class FormSketch : public QWidget {
  Q_OBJECT

 public:
  explicit FormSketch(const project::FormPicture& form);

  /// Marks a control, by its number; -1 none.
  void Select(int control);
  /// Where a control is in the widget; empty for one without a place.
  QRectF PlaceOf(int control) const;

  QSize sizeHint() const override;

 signals:
  void Chosen(int control);
  void Selected(int control);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  struct Box {
    QRectF place;
    bool isSized = true;
  };

  double Scale() const;
  int ControlAt(QPointF place) const;
  void SelectNext(int steps);
  void PaintControl(QPainter& painter, int control) const;

  const project::FormPicture& form_;
  /// In twips; empty for controls without a place.
  std::vector<Box> boxes_;
  QSizeF size_;
  int selected_ = -1;
};

/// "cmdOk, CommandButton, 2 Ereignisse".
QString ControlText(const project::FormControl& control);

}  // namespace quillmate::ui
