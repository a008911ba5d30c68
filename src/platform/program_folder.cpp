#include "platform/program_folder.h"

#include <SDL.h>

#include <memory>

std::string ProgramFolder() {
    const std::unique_ptr<char, decltype(&SDL_free)> base(SDL_GetBasePath(), &SDL_free);
    if (base == nullptr) return ".";
    std::string folder = base.get();
    while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
    return folder;
}
