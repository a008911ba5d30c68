// Playing: messages, frames, and the end of the demo. Main thread.
#pragma once

class Session;

// Runs until Esc, the close box, or the clock passes 230 seconds.
void RunMainLoop(Session& session);
