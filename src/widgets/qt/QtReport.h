#pragma once

#include <memory>

#include "widgets/ReportControl.h"

namespace tarn {

// Shows a report as a list with columns and, if enabled, its grouping columns above it.
std::unique_ptr<ReportPeer> MakeReportPeer(CReportControl& report);

}  // namespace tarn
