#include "app/command_line.h"
#include "app/program.h"

int main(int argc, char** argv) {
    int exitCode = 0;
    const auto commandLine = ParseCommandLine(argc, argv, exitCode);
    return commandLine ? RunProgram(*commandLine) : exitCode;
}
