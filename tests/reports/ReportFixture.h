#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "reports/GenericReport.h"
#include "support/MemoryFileSystem.h"
#include "support/ReportDump.h"
#include "xml/XmlDump.h"

namespace tarn::test {

// Returns the header of a bitmap, without pixels.
inline std::string BitmapBytes(int width, int height) {
  std::string bytes(54, '\0');
  bytes[0] = 'B';
  bytes[1] = 'M';
  bytes[14] = 40;
  bytes[18] = static_cast<char>(width);
  bytes[22] = static_cast<char>(height);
  return bytes;
}

// Returns a line for each column: caption/name, width and flags.
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

// Returns foreground and background of the cells as hexadecimal digits, in column order, "-" for
// cells that are black on white.
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
