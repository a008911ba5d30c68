// Part of every program that is built with the sanitizers, as a shared library: what the leak check
// must know of the libraries of others.

// Drivers and plug-ins stay loaded: a leak in a library that has gone has no name, so that it could
// not be told from one of ours.
extern "C" int dlclose(void*) {
    return 0;
}

// Memory that they lose.
extern "C" const char* __lsan_default_suppressions() {
    return
        // libsndfile, on Ogg files whose headers are broken.
        "leak:vorbis_info_init\n"
        "leak:libvorbis.so\n"
        // The message bus that SDL asks for the desktop.
        "leak:libdbus-1.so\n"
        // Mesa's drivers, with every screen.
        "leak:swrast_dri.so\n"
        "leak:libEGL_mesa.so\n"
        "leak:libgallium\n"
        "leak:libLLVM\n";
}

extern "C" const char* __lsan_default_options() {
    return "print_suppressions=0";
}
