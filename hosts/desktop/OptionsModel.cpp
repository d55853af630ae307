#include "hosts/desktop/OptionsModel.h"

#include <QCoreApplication>
#include <QFont>
#include <QGuiApplication>
#include <QPalette>
#include <algorithm>

#include "platform/text/Text.h"
#include "widgets/qt/QtColor.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

namespace {

// Share of the background in the colour of values that aren't set here.
constexpr float kQuiet = 0.45F;

// Shortened, because the column header already says that it is the origin.
QString ShortSource(const OptionRow& row) {
  return row.sourceLabel.empty() ? DescribeSource(row) : ToQt(row.sourceLabel);
}

QString TipFor(const OptionRow& row) {
  const QString value = ToQt(row.value);
  QString tip = "<b>" + ToQt(row.definition.label).toHtmlEscaped() + "</b>";
  if (row.HasMacros()) {
    tip += "<br>" + OptionsModel::tr("As written: %1").arg(ToQt(row.written).toHtmlEscaped());
    tip += "<br>" + OptionsModel::tr("Expands to: %1")
                        .arg(value.isEmpty() ? OptionsModel::tr("(empty)") : value.toHtmlEscaped());
  } else if (!value.isEmpty()) {
    tip += "<br>" + value.toHtmlEscaped();
  }
  const QString source = DescribeSource(row);
  if (!source.isEmpty()) tip += "<br><i>" + source.toHtmlEscaped() + "</i>";
  return tip;
}

QVariant DataOf(const OptionRow& row, int column, int role) {
  const bool isValue = column == OptionsModel::kValueColumn;
  switch (role) {
    case Qt::DisplayRole:
      if (column == OptionsModel::kNameColumn) return ToQt(row.definition.label);
      return isValue ? DisplayValue(row) : ShortSource(row);
    case Qt::EditRole:
      return isValue ? QVariant(EditText(row)) : QVariant();
    case Qt::CheckStateRole:
      if (!isValue || row.kind != OptionKind::YesNo) return {};
      return EqualNoCase(row.value, "Yes") ? Qt::Checked : Qt::Unchecked;
    case Qt::ToolTipRole:
      return TipFor(row);
    case Qt::AccessibleTextRole:
      if (!isValue) return {};
      return OptionsModel::tr("%1: %2").arg(ToQt(row.definition.label), DisplayValue(row));
    case Qt::AccessibleDescriptionRole:
      return isValue ? DescribeSource(row) : ToQt(row.definition.help);
    case Qt::FontRole:
      if (column != OptionsModel::kSourceColumn && row.MayReset()) {
        QFont bold;
        bold.setBold(true);
        return bold;
      }
      return {};
    case Qt::ForegroundRole: {
      const bool isQuiet = column == OptionsModel::kSourceColumn || (isValue && !row.IsOwn());
      if (!isQuiet) return {};
      // Some desktops set the colour of placeholders for fields alone.
      const QPalette palette = QGuiApplication::palette();
      return Blend(palette.color(QPalette::Text), palette.color(QPalette::Base), kQuiet);
    }
    default:
      return {};
  }
}

}  // namespace

QString WordForLevel(const std::string& kind) {
  if (EqualNoCase(kind, "application")) return OptionsModel::tr("application");
  if (EqualNoCase(kind, "group")) return OptionsModel::tr("folder");
  if (EqualNoCase(kind, "project")) return OptionsModel::tr("project");
  return OptionsModel::tr("file");
}

QString DescribeSource(const OptionRow& row) {
  const QString label = ToQt(row.sourceLabel);
  switch (row.source) {
    case OptionSource::Own:
      return row.definition.removable ? OptionsModel::tr("set here") : QString();
    case OptionSource::Inherited:
      return OptionsModel::tr("from %1 %2").arg(WordForLevel(row.sourceKind), label);
    case OptionSource::Reference:
      return OptionsModel::tr("same as %1 %2").arg(WordForLevel(row.sourceKind), label);
    case OptionSource::Definition:
      return OptionsModel::tr("default");
    case OptionSource::Nothing:
      break;
  }
  return {};
}

QString DisplayValue(const OptionRow& row) {
  const bool hasLabels = row.kind == OptionKind::YesNo || row.kind == OptionKind::Choice;
  if (row.kind == OptionKind::YesNo) {
    return EqualNoCase(row.shown, "Yes") ? OptionsModel::tr("Yes") : OptionsModel::tr("No");
  }
  const bool isWritten = row.IsOwn() && !hasLabels;
  return ToQt(isWritten ? row.written : row.shown);
}

QString EditText(const OptionRow& row) {
  switch (row.kind) {
    case OptionKind::YesNo:
    case OptionKind::Choice:
      return ToQt(row.IsOwn() ? row.written : row.value);
    case OptionKind::Paths:
    case OptionKind::List:
      // A new list usually extends the inherited one.
      if (!row.IsOwn()) return row.value.empty() ? QString() : QString("$(Inherited)");
      break;
    default:
      break;
  }
  return ToQt(row.written);
}

bool OptionsModel::HasSameRows(const std::vector<OptionSection>& other) const {
  const auto isSameRow = [](const OptionRow& a, const OptionRow& b) {
    return a.GetKey() == b.GetKey() && a.kind == b.kind;
  };
  return std::equal(sections_.begin(), sections_.end(), other.begin(), other.end(),
                    [&](const OptionSection& a, const OptionSection& b) {
                      return a.name == b.name &&
                             std::equal(a.rows.begin(), a.rows.end(), b.rows.begin(), b.rows.end(),
                                        isSameRow);
                    });
}

void OptionsModel::SetSections(std::vector<OptionSection> newSections) {
  if (!HasSameRows(newSections)) {
    beginResetModel();
    sections_ = std::move(newSections);
    endResetModel();
    return;
  }
  sections_ = std::move(newSections);
  for (int i = 0; i < rowCount(); ++i) {
    const QModelIndex section = index(i, 0);
    Q_EMIT dataChanged(index(0, 0, section),
                       index(rowCount(section) - 1, kColumnCount - 1, section));
  }
}

void OptionsModel::SetReadOnly(bool on) {
  isReadOnly_ = on;
}

const OptionRow* OptionsModel::RowAt(const QModelIndex& index) const {
  if (!index.isValid() || index.internalId() == 0) return nullptr;
  return &sections_[index.internalId() - 1].rows[static_cast<std::size_t>(index.row())];
}

const OptionSection* OptionsModel::SectionAt(const QModelIndex& index) const {
  if (!index.isValid() || index.internalId() != 0) return nullptr;
  return &sections_[static_cast<std::size_t>(index.row())];
}

QModelIndex OptionsModel::Find(const std::string& key) const {
  for (int i = 0; i < rowCount(); ++i) {
    const QModelIndex section = index(i, 0);
    for (int k = 0; k < rowCount(section); ++k) {
      const QModelIndex option = index(k, 0, section);
      if (RowAt(option)->GetKey() == key) return option;
    }
  }
  return {};
}

bool OptionsModel::MayEdit(const QModelIndex& index) const {
  const OptionRow* const row = RowAt(index);
  return row != nullptr && row->definition.enabled && !isReadOnly_;
}

QModelIndex OptionsModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) return {};
  return createIndex(row, column,
                     parent.isValid() ? static_cast<quintptr>(parent.row() + 1) : quintptr{0});
}

QModelIndex OptionsModel::parent(const QModelIndex& index) const {
  if (!index.isValid() || index.internalId() == 0) return {};
  return createIndex(static_cast<int>(index.internalId()) - 1, 0, quintptr{0});
}

int OptionsModel::rowCount(const QModelIndex& parent) const {
  if (!parent.isValid()) return static_cast<int>(sections_.size());
  const OptionSection* const section = parent.column() == 0 ? SectionAt(parent) : nullptr;
  return section == nullptr ? 0 : static_cast<int>(section->rows.size());
}

int OptionsModel::columnCount(const QModelIndex&) const {
  return kColumnCount;
}

QVariant OptionsModel::data(const QModelIndex& index, int role) const {
  if (const OptionRow* const row = RowAt(index)) return DataOf(*row, index.column(), role);
  const OptionSection* const section = SectionAt(index);
  if (section == nullptr || index.column() != 0) return {};
  if (role == Qt::DisplayRole) return ToQt(section->label);
  if (role == Qt::FontRole) {
    QFont bold;
    bold.setBold(true);
    return bold;
  }
  return {};
}

bool OptionsModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  const OptionRow* const row = RowAt(index);
  if (row == nullptr || index.column() != kValueColumn || !MayEdit(index) || !onChange) {
    return false;
  }
  if (role == Qt::CheckStateRole) {
    return onChange(*row, value.toInt() == Qt::Checked ? "Yes" : "No");
  }
  if (role != Qt::EditRole) return false;
  // An editor that was closed without a change sets nothing.
  return value.toString() == EditText(*row) || onChange(*row, value.toString());
}

QVariant OptionsModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  switch (section) {
    case kNameColumn:
      return tr("Option");
    case kValueColumn:
      return tr("Value");
    case kSourceColumn:
      return tr("Origin");
    default:
      return {};
  }
}

Qt::ItemFlags OptionsModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  const OptionRow* const row = RowAt(index);
  if (row == nullptr) return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
  // An option disabled by another option is greyed out; one disabled by a build remains readable.
  if (row->definition.enabled) flags |= Qt::ItemIsEnabled;
  if (index.column() == kValueColumn && MayEdit(index)) {
    flags |= row->kind == OptionKind::YesNo ? Qt::ItemIsUserCheckable : Qt::ItemIsEditable;
  }
  return flags;
}

}  // namespace tarn::host
