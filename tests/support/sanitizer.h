// Help for the leak sanitizer, which looks at the end of the program: what a library has lost can
// be told from what we have lost only while the library is still loaded.
#pragma once

// Keeps every library that is loaded now until the program ends. Called once a context exists, it
// keeps the OpenGL driver.
void KeepLibrariesLoaded();
