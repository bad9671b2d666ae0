#ifndef VANLAYOUT_MEMORY_H
#define VANLAYOUT_MEMORY_H

/// Prepares the memory of the process for layouts: much is asked for in small pieces and stays until the end. Where the
/// system offers none of what this uses, nothing happens and all works the same, only slower.
void tuneMemory();

#endif
