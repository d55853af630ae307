#include "hosts/desktop/EmptyHint.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QLabel>

namespace tarn::host {

namespace {

constexpr int kMargin = 8;

// Covers the view's viewport and lets the mouse through.
class HintLabel : public QLabel {
 public:
  HintLabel(QAbstractItemView& shownView, const QString& text)
      : QLabel(text, shownView.viewport()), view_(shownView) {
    setWordWrap(true);
    setMargin(kMargin);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    setForegroundRole(QPalette::PlaceholderText);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    shownView.viewport()->installEventFilter(this);
    const QAbstractItemModel* const model = shownView.model();
    const auto follow = [this] { Follow(); };
    connect(model, &QAbstractItemModel::modelReset, this, follow);
    connect(model, &QAbstractItemModel::rowsInserted, this, follow);
    connect(model, &QAbstractItemModel::rowsRemoved, this, follow);
    connect(model, &QAbstractItemModel::layoutChanged, this, follow);
    Follow();
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Resize) Follow();
    return QLabel::eventFilter(watched, event);
  }

 private:
  void Follow() {
    resize(parentWidget()->size());
    setVisible(view_.model() != nullptr && view_.model()->rowCount() == 0);
  }

  QAbstractItemView& view_;
};

}  // namespace

void AddEmptyHint(QAbstractItemView& view, const QString& text) {
  if (view.model() != nullptr) new HintLabel(view, text);
}

}  // namespace tarn::host
