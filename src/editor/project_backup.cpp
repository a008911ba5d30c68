#include "editor/project_backup.h"

std::string BackupStamp(const std::tm& localTime) {
    const int parts[] = {localTime.tm_year + 1900, localTime.tm_mon + 1, localTime.tm_mday,
                         localTime.tm_hour + 1,    localTime.tm_min + 1, localTime.tm_sec};
    std::string stamp;
    for (const int part : parts) {
        if (!stamp.empty()) stamp += "-";
        stamp += std::to_string(part);
    }
    return stamp;
}

// Both separators of folders are known: dialogs of this machine give "/".
bool SplitImportPath(const std::string& path, ImportNames& names) {
    const std::size_t dot = path.rfind('.');
    if (dot == std::string::npos) return false;
    names.base = path.substr(0, dot);
    const std::size_t folder = names.base.find_last_of("\\/");
    names.prefix = (folder == std::string::npos ? names.base : names.base.substr(folder + 1)) + "-";
    return true;
}
