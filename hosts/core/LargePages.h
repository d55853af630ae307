#pragma once

namespace tarn::host {

// Makes the heap of this process grow in one large block that the OS may back with large pages. A
// project of many thousand files fills some ten megabytes within a fraction of a second, and with
// small pages the page faults cost as much as the actual work.
//
// Call this from `main` before threads are started; a library must not change its host's heap.
// No-op if the OS or the allocator doesn't support it.
void PreferLargePages();

}  // namespace tarn::host
