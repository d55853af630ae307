#pragma once

#include <QAbstractItemModel>
#include <QCoreApplication>
#include <functional>
#include <vector>

#include "hosts/desktop/NodeOptions.h"

namespace tarn::host {

// Item model of the property grid: sections, and below each its options with name, value and
// source. Values not set at the node itself are shown in a dimmed colour.
class OptionsModel : public QAbstractItemModel {
  Q_DECLARE_TR_FUNCTIONS(tarn::host::OptionsModel)

 public:
  enum Column { kNameColumn, kValueColumn, kSourceColumn, kColumnCount };

  explicit OptionsModel(QObject* parent = nullptr) : QAbstractItemModel(parent) {}

  // Replaces the rows. Options that exist before and after keep their index, so an open editor
  // stays open.
  void SetSections(std::vector<OptionSection> newSections);
  // Disables editing; the window shows the reason.
  void SetReadOnly(bool on);
  // Returns nullptr for a section or an invalid index.
  const OptionRow* RowAt(const QModelIndex& index) const;
  // Returns nullptr for an option or an invalid index.
  const OptionSection* SectionAt(const QModelIndex& index) const;
  // Returns the index of an option's name column by its full key; invalid if it isn't shown.
  QModelIndex Find(const std::string& key) const;
  bool MayEdit(const QModelIndex& index) const;

  // Stores a new value of an option, or reports why that is impossible. The change arrives through
  // SetSections.
  std::function<bool(OptionRow row, QString value)> onChange;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  bool HasSameRows(const std::vector<OptionSection>& other) const;

  std::vector<OptionSection> sections_;
  bool isReadOnly_ = false;
};

// Returns the user's term for a kind of level as named by the inspector.
QString WordForLevel(const std::string& kind);
// Returns the origin of a value in words, e.g. "from application blinky".
QString DescribeSource(const OptionRow& row);
// Returns the value as displayed in the grid: a value set by the user is shown verbatim.
QString DisplayValue(const OptionRow& row);
// Returns the initial text of an editor.
QString EditText(const OptionRow& row);

}  // namespace tarn::host
