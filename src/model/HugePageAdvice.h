#pragma once

#include <cstddef>

/// Asks the kernel to back a large, freshly allocated buffer with huge pages where it can. A buffer
/// of hundreds of megabytes (the records of a million-line known_hosts file, or the text written
/// from it) otherwise takes a page fault per 4 KiB the first time it is written, and on a small
/// virtual machine those faults cost more than the work itself. Only advice: does nothing for small
/// buffers or where the system has no such notion, and never fails.
void adviseHugePages(void* data, std::size_t bytes);
