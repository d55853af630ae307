#pragma once

#include <memory>

#include "widgets/ReportControl.h"

namespace tarn {

// Shows a report as a list with columns, and above it, where the report wants that, what its rows
// are grouped by.
std::unique_ptr<ReportPeer> MakeReportPeer(CReportControl& report);

}  // namespace tarn
