#pragma once

#include <QCoreApplication>
#include <QPointer>
#include <QStyledItemDelegate>
#include <functional>

#include "hosts/desktop/OptionsModel.h"

class QLabel;
class QTreeView;

namespace tarn::host {

// Draws the cells of the property grid and edits its values in place. An invalid value keeps its
// editor open, with the reason shown below it.
class OptionsDelegate : public QStyledItemDelegate {
  Q_DECLARE_TR_FUNCTIONS(tarn::host::OptionsDelegate)

 public:
  explicit OptionsDelegate(QTreeView& treeView);

  // Paths below this folder are written relative to it.
  QString baseFolder;
  // Returns why a value is invalid; an empty string if it is valid.
  std::function<QString(const OptionRow& row, const QString& value)> check;
  // Called when the user resets an option to the inherited value.
  std::function<void(const QModelIndex& index)> onReset;

  // Commits an open editor, unless its value is invalid.
  void FinishOpen();
  // Closes an open editor and discards its content.
  void Abandon();

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model,
                    const QModelIndex& index) const override;
  void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const override;
  void destroyEditor(QWidget* editor, const QModelIndex& index) const override;
  bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;
  bool helpEvent(QHelpEvent* event, QAbstractItemView* itemView, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override;
  bool eventFilter(QObject* object, QEvent* event) override;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

 private:
  const OptionRow* RowOf(const QModelIndex& index) const;
  bool HasResetButton(const QModelIndex& index) const;
  bool Fits(QWidget& editor);
  void Finish(QWidget* editor);
  void Close(QWidget* editor);
  bool OnKey(QWidget* editor, int key);
  void ShowProblem(QWidget& editor, const QString& problem);

  QTreeView& view_;
  QPointer<QLabel> bubble_;         // why the edited value is invalid
  mutable QPointer<QWidget> open_;  // the active editor
  mutable QPersistentModelIndex edited_;
  mutable bool hasText_ = false;  // the user has changed the editor's content
};

}  // namespace tarn::host
