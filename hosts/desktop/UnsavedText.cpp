#include "hosts/desktop/UnsavedText.h"

#include <QString>

#include "widgets/qt/QtText.h"

namespace tarn::host {

std::optional<std::string> UnsavedText::ToBytes() const {
  if (isUtf8) return hasMark ? "\xEF\xBB\xBF" + *text : *text;
  const QString typed = ToQt(*text);
  const QByteArray bytes = typed.toLatin1();
  if (QString::fromLatin1(bytes) != typed) return std::nullopt;
  return bytes.toStdString();
}

}  // namespace tarn::host
