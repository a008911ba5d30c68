// Names of the backups that every save leaves. No state; any thread.
#pragma once

#include <ctime>
#include <string>

// Year, month, day, hour plus 1, minute plus 1 and second of a local time, "-" between them and
// without leading zeros. The plus ones are part of the form that backups have always had.
std::string BackupStamp(const std::tm& localTime);

// What an import needs of the path of the chosen file: the path without its ending, and the name
// that its ids get before them, with a "-". False when the path has no ".".
struct ImportNames {
    std::string base;
    std::string prefix;
};
bool SplitImportPath(const std::string& path, ImportNames& names);
