#pragma once

#include <QString>

#include "hosts/core/check/Finding.h"

namespace tarn::host {

// Returns the heading of a group of findings in the user's language.
QString FindingHeading(FindingKind kind);
// Returns the finding as a sentence in the user's language; paths below `folder` are shown relative
// to it.
QString FindingSentence(const Finding& finding, const std::string& folder);

}  // namespace tarn::host
