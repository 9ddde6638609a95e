#include "files/DownloadPlan.h"

#include "files/FileItem.h"
#include "files/FileUrl.h"

namespace harbrix {

std::vector<Download> planDownload(const std::vector<FileItem>& items, const QSet<QUuid>& selected,
                                   const QUrl& chosen) {
    std::vector<Download> downloads;
    if (selected.isEmpty())
        return downloads;
    for (const FileItem& item : items) {
        if (selected.contains(item.id))
            downloads.push_back(
                {item.url, item.isDirectory ? childUrl(chosen, nativeName(item.url)) : chosen});
    }
    return downloads;
}

} // namespace harbrix
