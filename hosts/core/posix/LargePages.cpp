// Stub for C libraries whose heap can't be configured.

#include "hosts/core/LargePages.h"

namespace tarn::host {

void PreferLargePages() {}

}  // namespace tarn::host
