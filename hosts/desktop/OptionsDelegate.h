#pragma once

#include <QCoreApplication>
#include <QPointer>
#include <QStyledItemDelegate>
#include <functional>

#include "hosts/desktop/OptionsModel.h"

class QLabel;
class QTreeView;

namespace tarn::host {

// Draws the cells of the property grid and edits its values in place. A value that can't be taken
// keeps its editor open, with the reason below it.
class OptionsDelegate : public QStyledItemDelegate {
  Q_DECLARE_TR_FUNCTIONS(tarn::host::OptionsDelegate)

 public:
  explicit OptionsDelegate(QTreeView& treeView);

  // Paths below this folder are written relative to it.
  QString baseFolder;
  // Why a value can't be taken; empty when it can.
  std::function<QString(const OptionRow& row, const QString& value)> check;
  // The user wants the inherited value back.
  std::function<void(const QModelIndex& index)> onReset;

  // Hands on what the user has written in an editor that is open, unless it can't be taken.
  void FinishOpen();
  // Closes an editor that is open; what the user has written is gone.
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

  QTreeView& view;
  QPointer<QLabel> bubble;         // why the value in the editor can't be taken
  mutable QPointer<QWidget> open;  // the editor that the user is in
  mutable QPersistentModelIndex edited;
  mutable bool hasText = false;  // the user has changed what stands in the editor
};

}  // namespace tarn::host
