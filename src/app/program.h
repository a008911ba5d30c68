// The program as the command line asks for it. Main thread.
#pragma once

struct CommandLine;

// Does what is asked and returns the exit code. Every failure is one line on standard error.
int RunProgram(const CommandLine& commandLine);
