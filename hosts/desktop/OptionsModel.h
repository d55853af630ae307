#pragma once

#include <QAbstractItemModel>
#include <QCoreApplication>
#include <functional>
#include <vector>

#include "hosts/desktop/NodeOptions.h"

namespace tarn::host {

// The rows of a property grid: sections, and below each its options with name, value and where the
// value comes from. Values that are not the node's own are in the quieter colour.
class OptionsModel : public QAbstractItemModel {
  Q_DECLARE_TR_FUNCTIONS(tarn::host::OptionsModel)

 public:
  enum Column { kNameColumn, kValueColumn, kSourceColumn, kColumnCount };

  explicit OptionsModel(QObject* parent = nullptr) : QAbstractItemModel(parent) {}

  // Options that are the same as before keep their places, and so an editor that is open.
  void SetSections(std::vector<OptionSection> newSections);
  // Nothing can be edited; why is the window's to say.
  void SetReadOnly(bool on);
  // Null for a section and for no index.
  const OptionRow* RowAt(const QModelIndex& index) const;
  // Null for an option and for no index.
  const OptionSection* SectionAt(const QModelIndex& index) const;
  // The name column of an option, by its whole key; invalid when it isn't shown.
  QModelIndex Find(const std::string& key) const;
  bool MayEdit(const QModelIndex& index) const;

  // Takes a new value for an option, or says why not. What has changed comes by SetSections.
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

  std::vector<OptionSection> sections;
  bool isReadOnly = false;
};

// A kind of level, as the inspector names it, as the menus do.
QString WordForLevel(const std::string& kind);
// What the user is told of where a value comes from, e.g. "from application blinky".
QString DescribeSource(const OptionRow& row);
// The value as the grid shows it: what the user has written stays as it was written.
QString DisplayValue(const OptionRow& row);
// The text that editing begins with.
QString EditText(const OptionRow& row);

}  // namespace tarn::host
