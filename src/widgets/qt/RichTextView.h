#pragma once

#include <QPlainTextEdit>
#include <QTextCursor>
#include <optional>

#include "widgets/qt/QtColor.h"

class QKeyEvent;

namespace tarn {

// Who knows what the text of a RichTextView means.
class RichTextListener {
 public:
  virtual void OnSelectedByUser() = 0;
  // The user begins or ends to select by mouse. It may end without a beginning.
  virtual void OnSelecting(bool isSelecting) = 0;
  // Dark became light, or the other way round: the colours of the text are wrong.
  virtual void OnPaletteTurned() = 0;
  // Over the whole of the link there; null beside links.
  virtual QTextCursor LinkAt(QPoint point) const = 0;
  // False when there is none, and the keyboard goes on to the next widget.
  virtual bool GoToLink(bool next) = 0;
  // It may end the listener. True when the key was used.
  virtual bool OnKey(const QKeyEvent& event) = 0;

 protected:
  ~RichTextListener() = default;
};

// Stays at the end of its text as long as it stands there. A link is underlined while the mouse is
// over it; what sets it off otherwise is its colour.
class RichTextView : public QPlainTextEdit {
 public:
  RichTextView();

  // The character that is drawn there; nothing beside the text.
  std::optional<int> PositionAt(QPoint point) const;
  bool IsAtEnd() const { return isAtEnd; }

  RichTextListener* listener = nullptr;  // borrowed; null while there is none

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

  bool isAtEnd = true;
  QPoint pressedAt;
  bool isDark = IsDarkPalette();
};

}  // namespace tarn
