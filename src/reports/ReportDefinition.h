#pragma once

#include <memory>
#include <string>

#include "widgets/ReportControl.h"

// Columns and appearance of the built-in reports.
namespace tarn {

class CXmlNode;

// Columns of the build report, by index.
enum OutputColumn : int {
  kOutputIcon,
  kOutputDescription,
  kOutputFile,
  kOutputLine,
  kOutputHelp,
};

// Columns of the globals report, by index.
enum GlobalsColumn : int {
  kGlobalsIcon,
  kGlobalsName,
  kGlobalsDefinition,
  kGlobalsFile,
  kGlobalsLine,
};

// Return the definition with the paths of its images in the folder "resources" below
// `configFolder`.
std::unique_ptr<CXmlNode> MakeOutputDefinition(const std::string& configFolder);
std::unique_ptr<CXmlNode> MakeGlobalsDefinition(const std::string& configFolder);
// Makes image columns show the image numbers as text, for a report without a visible window.
void ShowPicturesAsNumbers(CXmlNode& definition);

// Returns the appearance of the reports.
ReportLook MakeReportLook();

}  // namespace tarn
