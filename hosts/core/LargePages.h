#pragma once

namespace tarn::host {

// Has the heap of this process grow in one large piece that the machine may back with large pages.
// A project of many thousand files fills some ten megabytes within a fraction of a second, and with
// small pages their first touch costs as much as the work on them. For a program's `main`, before
// it starts threads; a library has no business with its host's heap. Where the machine or its
// allocator offers nothing of the kind, nothing happens.
void PreferLargePages();

}  // namespace tarn::host
