// How the program ends, told to whoever started it.
#pragma once

enum ExitCode : int {
    kExitDone = 0,
    kExitWrongArguments = 2,
    kExitNoProject = 3,  // missing, or not a project
    kExitNoOpenGl = 4,
    kExitOutputFailed = 5,
    kExitStrictFault = 6,  // a missing or broken file, in a strict run
};
