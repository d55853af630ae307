#include "hosts/desktop/ChangeTexts.h"

#include <QCoreApplication>
#include <array>

#include "widgets/qt/QtText.h"

namespace tarn::host {

namespace {

// Indexed by ChangeKind.
constexpr std::array<const char*, 13> kTexts = {
    QT_TRANSLATE_NOOP("Changes", "Add %1"),
    QT_TRANSLATE_NOOP("Changes", "Remove %1"),
    QT_TRANSLATE_NOOP("Changes", "Move %1"),
    QT_TRANSLATE_NOOP("Changes", "Replace %1"),
    QT_TRANSLATE_NOOP("Changes", "Rename %1 to %2"),
    QT_TRANSLATE_NOOP("Changes", "Add configuration %1"),
    QT_TRANSLATE_NOOP("Changes", "Remove configuration %1"),
    QT_TRANSLATE_NOOP("Changes", "Select configuration %1"),
    QT_TRANSLATE_NOOP("Changes", "Set %1"),
    QT_TRANSLATE_NOOP("Changes", "Reset %1"),
    QT_TRANSLATE_NOOP("Changes", "Change %1"),
    QT_TRANSLATE_NOOP("Changes", "Select application %1"),
    QT_TRANSLATE_NOOP("Changes", "Change the project"),
};

QString CountText(const ChangeLabel& label) {
  const int count = static_cast<int>(label.count);
  if (label.kind == ChangeKind::ChangeOptions) {
    return QCoreApplication::translate("Changes", "%n options", nullptr, count);
  }
  switch (label.nodes) {
    case NodeKind::File:
      return QCoreApplication::translate("Changes", "%n files", nullptr, count);
    case NodeKind::Group:
      return QCoreApplication::translate("Changes", "%n groups", nullptr, count);
    case NodeKind::Application:
      return QCoreApplication::translate("Changes", "%n applications", nullptr, count);
    case NodeKind::Item:
      break;
  }
  return QCoreApplication::translate("Changes", "%n items", nullptr, count);
}

// Labels have no maximum length.
QString Shortened(const std::string& name) {
  constexpr qsizetype kMost = 40;
  const QString text = ToQt(name);
  return text.size() <= kMost ? text : text.left(kMost - 1) + QChar(0x2026);
}

}  // namespace

QString ChangeText(const ChangeLabel& label) {
  const QString text =
      QCoreApplication::translate("Changes", kTexts[static_cast<std::size_t>(label.kind)]);
  if (label.kind == ChangeKind::Other) return text;
  const QString subject = label.count > 1 ? CountText(label) : Shortened(label.name);
  if (label.kind != ChangeKind::Rename) return text.arg(subject);
  return text.arg(subject, Shortened(label.newName));
}

}  // namespace tarn::host
