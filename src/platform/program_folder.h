// Where the program lies, for the files that are installed beside it. Depends on SDL2; any thread.
#pragma once

#include <string>

// Without a separator at its end; "." when the system does not tell.
std::string ProgramFolder();
