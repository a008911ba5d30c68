#include "support/sanitizer.h"

#include <dlfcn.h>
#include <link.h>

#include <string>
#include <vector>

void KeepLibrariesLoaded() {
    std::vector<std::string> names;
    dl_iterate_phdr(
        [](dl_phdr_info* info, std::size_t, void* list) {
            if (info->dlpi_name != nullptr && info->dlpi_name[0] == '/') {
                static_cast<std::vector<std::string>*>(list)->emplace_back(info->dlpi_name);
            }
            return 0;
        },
        &names);
    // The handles are given away on purpose: nothing is to be unloaded.
    for (const std::string& name : names) dlopen(name.c_str(), RTLD_LAZY | RTLD_NODELETE);
}
