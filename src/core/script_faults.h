// What graphics drivers say of a shader that does not compile, in one form for all drivers. No
// OpenGL; any thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// The lines of a driver's log. One that names a place begins "line 12: "; others stay as they are.
std::vector<std::string> ScriptFaults(std::string_view driverLog);
// The one to tell where there is room for one: the first error, else the first line; may be empty.
std::string FirstError(const std::vector<std::string>& faults);
// What to say of a script's file whose shader does not compile, in one line.
std::string CompileFault(std::string_view driverLog);
