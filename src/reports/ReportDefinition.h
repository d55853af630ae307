#pragma once

#include <memory>
#include <string>

#include "widgets/ReportControl.h"
#include "xml/XmlNode.h"

// The columns and the look of the reports of the system.
namespace tarn {

// Columns of the build report, by index.
enum OutputColumn : int {
  kOutputIcon,
  kOutputDescription,
  kOutputFile,
  kOutputLine,
  kOutputHelp,
};

// Columns of the globals, by index.
enum GlobalsColumn : int {
  kGlobalsIcon,
  kGlobalsName,
  kGlobalsDefinition,
  kGlobalsFile,
  kGlobalsLine,
};

// Each with its pictures out of the folder "resources" below `configFolder`.
std::unique_ptr<CXmlNode> MakeOutputDefinition(const std::string& configFolder);
std::unique_ptr<CXmlNode> MakeGlobalsDefinition(const std::string& configFolder);
// Makes columns of pictures show the numbers of the pictures as text, for a report that nobody
// looks at.
void ShowPicturesAsNumbers(CXmlNode& definition);

// How the reports look.
ReportLook MakeReportLook();

}  // namespace tarn
