// Contents of the reports, for hosts without windows.

#include <iterator>
#include <memory>
#include <vector>

#include "automation/ApplicationSearch.h"
#include "automation/ProjectInspector.h"
#include "platform/files/FileTexts.h"
#include "platform/text/Text.h"
#include "project/TreeMerge.h"
#include "project/TreeText.h"
#include "reports/GlobalsReport.h"
#include "reports/OutputReport.h"
#include "reports/ReportDefinition.h"
#include "reports/SymbolFile.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

// Images aren't needed here, and reports must also work in an installation without them.
std::unique_ptr<CXmlNode> WithoutPictures(std::unique_ptr<CXmlNode> definition) {
  ShowPicturesAsNumbers(*definition);
  return definition;
}

// Writes the rows of `root` in report order as elements with an attribute for each column.
void WriteRows(CGenericReport& report, const CXmlNode& root, const char* column, CXmlNode& out) {
  if (!report.Create(kStylePopup, {}, nullptr, 0)) return;
  int sorted = -1;
  for (int i = 0; column != nullptr && i < report.GetColumns().GetCount(); ++i) {
    if (EqualNoCase(report.GetColumn(i).GetCaption(), column)) sorted = i;
  }
  report.Reload(&root, true, sorted);
  for (int row = 0; row < report.GetRows().GetCount(); ++row) {
    CXmlNode& element = *out.AddChild("Row");
    for (int i = 0; i < report.GetColumns().GetCount(); ++i) {
      element.AddAttr(report.GetColumn(i).GetName(), report.GetValueAt(row, i));
    }
  }
}

}  // namespace

std::string ProjectInspector::GetGlobals(const char* application, const char* column) {
  CProjectModel* model = Model();
  if (model == nullptr) return {};
  const std::string key = OrEmpty(application);
  const CXmlNode* node = key.empty() ? model->GetActiveApplication() : FindApplication(*model, key);
  if (node == nullptr) return {};
  const std::string path = model->Paths().GlobalsFileOf(*node);
  FileSystem& files = model->GetFiles();
  const Result<std::string> text = files.ReadWholeFile(path);
  CXmlNode globals;
  globals.SetName("Globals");
  globals.AddAttr("File", path);
  globals.AddAttr("Found", text ? "Yes" : "No");
  if (!text && text.GetError().code != ErrorCode::NotFound) {
    globals.AddAttr("Reason", text.GetError().text);
  }
  if (text) {
    const auto definition = WithoutPictures(MakeGlobalsDefinition({}));
    CGlobalsReport report(files, 0, *definition);
    WriteRows(report, *ReadSymbols(*text), column, globals);
  }
  return globals.ToString(g_xmlDisplayOptions);
}

std::string ProjectInspector::GetReport(const char* log) {
  CProjectModel* model = Model();
  if (model == nullptr) return {};
  CXmlNode root;
  CXmlParseInfo info;
  root.Load(OrEmpty(log), info);
  CXmlNode rows;
  rows.SetName("Report");
  const auto definition = WithoutPictures(MakeOutputDefinition({}));
  COutputReport report(model->GetFiles(), 0, *definition);
  WriteRows(report, root, nullptr, rows);
  return rows.ToString(g_xmlDisplayOptions);
}

std::string ProjectInspector::MergeTexts(const char* base, const char* theirs, const char* ours) {
  const struct {
    const char* name;
    std::string text;
  } sides[] = {{"base", OrEmpty(base)}, {"theirs", OrEmpty(theirs)}, {"ours", OrEmpty(ours)}};
  CXmlNode trees[std::size(sides)];
  for (std::size_t i = 0; i < std::size(sides); ++i) {
    if (!ReadWholeTree(sides[i].text, trees[i])) {
      return JoinFileTexts(std::vector<FileText>{{"damaged", sides[i].name}});
    }
  }
  const MergedTree merged = MergeTrees(trees[0], trees[1], trees[2]);
  const bool isOurs = IsSameTree(*merged.root, trees[2]);
  std::vector<FileText> list = {
      {"text", isOurs ? sides[2].text : WriteTree(*merged.root, sides[2].text)}};
  for (const TreeConflict& each : merged.conflicts) list.push_back({each.place, each.what});
  return JoinFileTexts(list);
}

}  // namespace tarn
