#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "reports/GenericReport.h"
#include "support/MemoryFileSystem.h"
#include "support/ReportDump.h"
#include "xml/XmlDump.h"

namespace tarn::test {

// The header of a bitmap, and no pixels.
inline std::string BitmapBytes(int width, int height) {
  std::string bytes(54, '\0');
  bytes[0] = 'B';
  bytes[1] = 'M';
  bytes[14] = 40;
  bytes[18] = static_cast<char>(width);
  bytes[22] = static_cast<char>(height);
  return bytes;
}

// A column a line: caption/name, width, and what it is.
inline std::string DefinitionText(const CGenericReport& report) {
  std::string text;
  for (int i = 0; i < report.GetColumns().GetCount(); ++i) {
    const CGenericColumn& column = report.GetColumn(i);
    text += column.GetCaption() + "/" + column.GetName() + " " + std::to_string(column.GetWidth());
    if (column.IsAutoSize()) text += " auto";
    if (column.GetIconId() >= 0) text += " #" + std::to_string(column.GetIconId());
    if (column.IsSortable()) text += " sort";
    if (column.IsEditable()) text += " edit";
    if (!column.IsVisible()) text += " hidden";
    if (column.IsTreeColumn()) text += " tree";
    if (column.HasHyperlink()) text += " link";
    text += "\n";
  }
  return text;
}

// Text and background of the cells that have any other than black on white, as hexadecimal digits
// in the order of the files, "-" for the others.
inline std::string ColorsText(const CGenericReport& report, int row) {
  std::string text;
  for (int i = 0; i < report.GetColumns().GetCount(); ++i) {
    ReportItemMetrics metrics;
    report.GetItemAt(row, i)->GetItemMetrics(metrics);
    char colors[32];
    std::snprintf(colors, sizeof colors, "%x/%x ", metrics.foreColor, metrics.backColor);
    text += metrics == ReportItemMetrics() ? "- " : colors;
  }
  return text;
}

}  // namespace tarn::test
