// Of a C library whose heap takes no advice.

#include "hosts/core/LargePages.h"

namespace tarn::host {

void PreferLargePages() {}

}  // namespace tarn::host
