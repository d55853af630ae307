#pragma once

#include <QPlainTextEdit>
#include <QTextCursor>
#include <optional>

#include "widgets/qt/QtColor.h"

class QKeyEvent;

namespace tarn {

// Callbacks of a RichTextView, implemented by the code that knows the structure of its text.
class RichTextListener {
 public:
  virtual void OnSelectedByUser() = 0;
  // The user starts or stops selecting with the mouse. A stop may come without a start.
  virtual void OnSelecting(bool isSelecting) = 0;
  // The theme changed between dark and light: the colours of the text are outdated.
  virtual void OnPaletteTurned() = 0;
  // Returns a cursor that selects the whole link at a point; null if there is no link.
  virtual QTextCursor LinkAt(QPoint point) const = 0;
  // Returns false if there is no such link; the focus then moves to the next widget.
  virtual bool GoToLink(bool next) = 0;
  // Returns true if the key was used. May destroy the listener.
  virtual bool OnKey(const QKeyEvent& event) = 0;

 protected:
  ~RichTextListener() = default;
};

// Keeps scrolled to the end of its text while it is at the end. A link is underlined while the
// mouse hovers over it; otherwise it is distinguished only by its colour.
class RichTextView : public QPlainTextEdit {
 public:
  RichTextView();

  // Position of the character that is drawn at a point; nullopt if there is none.
  std::optional<int> PositionAt(QPoint point) const;
  bool IsAtEnd() const { return isAtEnd_; }

  RichTextListener* listener = nullptr;  // borrowed; null if there is none

  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  bool focusNextPrevChild(bool next) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void ShowPointed(const QTextCursor& link);

  bool isAtEnd_ = true;
  QPoint pressedAt_;
  bool isDark_ = IsDarkPalette();
};

}  // namespace tarn
