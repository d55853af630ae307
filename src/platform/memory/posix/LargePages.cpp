// Of a C library whose heap takes no advice.

#include "platform/memory/LargePages.h"

namespace tarn {

void PreferLargePages() {}

}  // namespace tarn
