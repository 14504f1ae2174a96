#pragma once
// Building a new, empty file of the program.

namespace vardelin {

struct Global;

// Makes the file named by DatabaseFileName with the eleven tables, the two keys and the seed rows, and closes
// it again. The file is there whole or not at all. Errors of the engine (the file exists, the folder doesn't,
// the disk is full) go to the caller.
void CreateDatabase(Global &global);

} // namespace vardelin
