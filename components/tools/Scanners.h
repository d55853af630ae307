#pragma once

#include "components/tools/MessageScanner.h"

// The built-in scanners; each lives as long as the process.
namespace tarn::tools {

const MessageScanner& GccScanner();
const MessageScanner& LinkerScanner();
const MessageScanner& SdccScanner();

}  // namespace tarn::tools
